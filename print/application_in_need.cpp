#include "print/application_in_need.h"

namespace tallwick {

ApplicationInNeed::ApplicationInNeed() {
  if (QCoreApplication::instance() != nullptr) return;
  static char program[] = "tallwick";
  static char platform_option[] = "-platform";
  static char platform[] = "offscreen";
  arguments_ = {program, platform_option, platform, nullptr};
  count_ = static_cast<int>(arguments_.size()) - 1;
  // Nobody needs to know what the platform finds missing in a program without windows.
  handler_ = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  made_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
}

ApplicationInNeed::~ApplicationInNeed() {
  if (!made_) return;
  made_.reset();
  qInstallMessageHandler(handler_);
}

}  // namespace tallwick
