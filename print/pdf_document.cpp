#include "print/pdf_document.h"

#include <QFile>
#include <QGuiApplication>
#include <QPdfWriter>
#include <memory>
#include <vector>

#include "print/page_renderer.h"

namespace tallwick {
namespace {

constexpr int kSmallest = 0;  // the "quality" of a PNG file is its size

// Fonts need Qt's application object. A program without windows gets one for as long as it writes.
class ApplicationInNeed {
 public:
  ApplicationInNeed() {
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
  ~ApplicationInNeed() {
    if (!made_) return;
    made_.reset();
    qInstallMessageHandler(handler_);
  }
  ApplicationInNeed(const ApplicationInNeed&) = delete;
  ApplicationInNeed& operator=(const ApplicationInNeed&) = delete;

 private:
  QtMessageHandler handler_ = nullptr;
  std::vector<char*> arguments_;  // Qt keeps references to both
  int count_ = 0;
  std::unique_ptr<QGuiApplication> made_;
};

}  // namespace

bool WritePdf(const PrintDocument& document, const std::string& path) {
  const ApplicationInNeed application;
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::WriteOnly)) return false;
  bool drawn = false;
  {
    QPdfWriter writer(&file);
    writer.setTitle(QString::fromStdString(document.name));
    writer.setCreator("Tallwick Escrow Accounting");
    SetPaper(document, writer);
    drawn = DrawDocument(document, writer);
  }
  if (drawn && file.flush() && file.error() == QFileDevice::NoError) return true;
  file.remove();
  return false;
}

int WritePictures(const PrintDocument& document, const std::string& stem, int dots_per_inch) {
  const ApplicationInNeed application;
  int pages = 0;
  for (const QImage& picture : DrawPictures(document, dots_per_inch)) {
    const QString path = QString::fromStdString(stem + "-" + std::to_string(++pages) + ".png");
    if (!picture.save(path, "PNG", kSmallest)) return 0;
  }
  return pages;
}

}  // namespace tallwick
