#include "print/pdf_file.h"

#include <QFile>

#include "print/application_in_need.h"

namespace tallwick {

bool WritePdfFile(const std::string& path, const std::string& title,
                  const std::function<bool(QPdfWriter&)>& draw) {
  const ApplicationInNeed application;
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::WriteOnly)) return false;
  bool drawn = false;
  {
    QPdfWriter writer(&file);
    writer.setTitle(QString::fromStdString(title));
    writer.setCreator("Tallwick Escrow Accounting");
    drawn = draw(writer);
  }
  if (drawn && file.flush() && file.error() == QFileDevice::NoError) return true;
  file.remove();
  return false;
}

}  // namespace tallwick
