#include "print/pdf_file.h"

#include <QFileInfo>
#include <QSaveFile>

#include "print/application_in_need.h"

namespace tallwick {
namespace {

using Draw = std::function<bool(QPdfWriter&)>;

bool DrawInto(QIODevice& device, const std::string& title, const Draw& draw) {
  if (!device.open(QIODevice::WriteOnly)) return false;
  QPdfWriter writer(&device);
  writer.setTitle(QString::fromStdString(title));
  writer.setCreator("Tallwick Escrow Accounting");
  return draw(writer);
}

}  // namespace

bool WritePdfFile(const std::string& path, const std::string& title, const Draw& draw) {
  const ApplicationInNeed application;
  const QString name = QString::fromStdString(path);
  // A pipe or a device cannot be replaced.
  if (const QFileInfo target(name); target.exists() && !target.isFile()) {
    QFile device(name);
    return DrawInto(device, title, draw) && device.flush() && device.error() == QFileDevice::NoError;
  }
  // Written beside the old file, whose place it takes only when it is whole.
  QSaveFile file(name);
  if (!DrawInto(file, title, draw)) file.cancelWriting();
  return file.isOpen() && file.commit();
}

}  // namespace tallwick
