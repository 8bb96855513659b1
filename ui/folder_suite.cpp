#include "ui/folder_suite.h"

#include <QTextStream>

#include "core/system_ports.h"
#include "ui/bound_widget.h"

namespace tallwick {

std::string FolderSuite::DataPath() const {
  return SystemFileSystem().HeldPath(company_.data_path.toStdString());
}

BoxAnswer PrintedBoxes::Show(const Box& box) {
  const std::string_view icon = IconWord(box.icon);
  QTextStream(stderr) << QString::fromLatin1(icon.data(), static_cast<qsizetype>(icon.size())) << ": "
                      << QString::fromStdString(box.title) << ": " << ShownText(box.text) << Qt::endl;
  return SafeAnswer(box);
}

}  // namespace tallwick
