// tallwick-escrow: the desktop. It attaches to the suite's running main program and ends with its main
// window.
#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

#include "core/system_ports.h"
#include "ui/desktop.h"
#include "ui/document_printer.h"
#include "ui/qt_message_boxes.h"
#include "ui/screenshots.h"
#include "ui/style.h"
#include "ui/suite_client.h"
#include "ui/suite_protocol.h"

namespace tallwick {
namespace {

void AddOptions(QCommandLineParser& parser) {
  parser.setApplicationDescription("Escrow accounting, beside the running Tallwick suite.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions(
      {{"light", "Light scheme, whatever the system's."},
       {"dark", "Dark scheme, whatever the system's."},
       {"socket", "Name of the suite's local socket.", "name", SuiteSocketName()},
       {"screenshots", "Save a picture of every screen in the folder and end.", "folder"},
       {"data", "With --screenshots: the company data path.", "folder"},
       {"company", "With --screenshots: the company name.", "name", "Lakeside Title"},
       {"number", "With --screenshots: the company number.", "number", "12"},
       {"today", "With --screenshots: the day, as MM/DD/YYYY; the system's when left out.", "date"}});
}

Scheme SchemeOf(const QCommandLineParser& parser) {
  if (parser.isSet("dark")) return Scheme::kDark;
  return parser.isSet("light") ? Scheme::kLight : Scheme::kSystem;
}

int RunScreenshots(const QCommandLineParser& parser) {
  if (!parser.isSet("data")) {
    QTextStream(stderr) << "Name the company data path of the pictures with --data." << Qt::endl;
    return 2;
  }
  if (SchemeOf(parser) == Scheme::kSystem) return TakeAllScreenshots(QCoreApplication::arguments().mid(1));
  const Date today = ParseDisplayDate(parser.value("today").toStdString()).value_or(Date{});
  return TakeScreenshots({parser.value("screenshots"), parser.value("data"), parser.value("company"),
                          parser.value("number"), today},
                         SchemeOf(parser) == Scheme::kDark);
}

int RunDesktop(const QCommandLineParser& parser) {
  const QString socket_name = parser.value("socket");
  QtMessageBoxes boxes;
  QtDocumentPrinter printer(boxes);
  Desktop desktop({boxes, SystemFileSystem(), SystemClock(), SystemWorkstation(), &printer});
  QObject::connect(&desktop, &Desktop::Ended, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  if (!desktop.Start([&] { return AttachToSuite(socket_name, SystemFileSystem()); })) return 1;
  return QApplication::exec();
}

// Without a display Qt would end the process with a core dump: pictures are taken off the screen, all else is
// told.
bool ChoosePlatform(int argc, char** argv) {
#ifdef Q_OS_LINUX
  const auto is_set = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
  if (is_set("QT_QPA_PLATFORM") || is_set("DISPLAY") || is_set("WAYLAND_DISPLAY")) return true;
  for (int i = 1; i < argc; ++i) {
    const QByteArray argument(argv[i]);
    if (argument.startsWith("--screenshots") || argument == "--help" || argument == "--version") {
      return qputenv("QT_QPA_PLATFORM", "offscreen");
    }
  }
  QTextStream(stderr) << "There is no display. Set DISPLAY, or use escrowctl." << Qt::endl;
  return false;
#else
  Q_UNUSED(argc)
  Q_UNUSED(argv)
  return true;
#endif
}

}  // namespace
}  // namespace tallwick

int main(int argc, char** argv) {
  using namespace tallwick;
  if (!ChoosePlatform(argc, argv)) return 1;
  QApplication app(argc, argv);
  QCoreApplication::setOrganizationName("Tallwick");
  QCoreApplication::setApplicationName("Escrow Accounting");
  QApplication::setQuitOnLastWindowClosed(false);  // the desktop says when it has ended

  QCommandLineParser parser;
  AddOptions(parser);
  parser.process(app);
  ApplyStyle(app, SchemeOf(parser));
  return parser.isSet("screenshots") ? RunScreenshots(parser) : RunDesktop(parser);
}
