#include "ui/qt_help_viewer.h"

#include <QDesktopServices>
#include <QUrl>

#include "core/system_ports.h"

namespace tallwick {

// The desktop opens the file at its contents: a way to a place within is the platform viewer's own matter.
bool QtHelpViewer::Show(std::string_view file, const HelpRequest&) {
  return QDesktopServices::openUrl(
      QUrl::fromLocalFile(QString::fromStdString(SystemFileSystem().PlatformPath(file))));
}

}  // namespace tallwick
