// tallwick-escrow: the desktop. It attaches to the suite's running main program and ends with its main
// window.
#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>

#include "core/system_ports.h"
#include "print/document_printer.h"
#include "print/sheet_printer.h"
#include "shell/about.h"
#include "shell/machine.h"
#include "shell/registry.h"
#include "ui/desktop.h"
#include "ui/folder_suite.h"
#include "ui/qt_help_viewer.h"
#include "ui/qt_message_boxes.h"
#include "ui/screenshots.h"
#include "ui/single_instance.h"
#include "ui/splash.h"
#include "ui/start_time.h"
#include "ui/style.h"
#include "ui/suite_client.h"
#include "ui/suite_protocol.h"
#include "ui/window_room.h"

namespace tallwick {
namespace {

constexpr int kMeasuredStarts = 10;

void AddOptions(QCommandLineParser& parser) {
  parser.setApplicationDescription("Escrow accounting, beside the running Tallwick suite.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addOptions(
      {{"light", "Light scheme, whatever the system's."},
       {"dark", "Dark scheme, whatever the system's."},
       {"socket", "Name of the suite's local socket.", "name", SuiteSocketName()},
       {"no-boxes",
        "Print message boxes, with their safe answers, instead of showing them, and \"ready\" when the "
        "window stands."},
       {"time-start", "Measure ten starts over the company of --data and end."},
       {"start-once", "One of those starts."},
       {"screenshots", "Save a picture of every screen in the folder and end.", "folder"},
       {"data", "With --screenshots and --time-start: the company data path.", "folder"},
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
  const std::optional<Date> today = ParseDisplayDate(parser.value("today").toStdString());
  if (!today) {
    QTextStream(stderr) << "Write --today as MM/DD/YYYY." << Qt::endl;
    return 2;
  }
  if (SchemeOf(parser) == Scheme::kSystem) return TakeAllScreenshots(QCoreApplication::arguments().mid(1));
  return TakeScreenshots({parser.value("screenshots"), parser.value("data"), parser.value("company"),
                          parser.value("number"), *today},
                         SchemeOf(parser) == Scheme::kDark);
}

FolderCompany CompanyOf(const QCommandLineParser& parser) {
  return {parser.value("data"), parser.value("company"), parser.value("number")};
}

void BringToFront(Desktop& desktop) {
  if (ScreenHost* host = desktop.Find(kMainScreen)) {
    QWidget& window = host->Window();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
  }
}

// For whoever watches a program without a face.
void Tell(const QCommandLineParser& parser, const char* word) {
  if (parser.isSet("no-boxes")) QTextStream(stdout) << word << Qt::endl;
}

int RunDesktop(const QCommandLineParser& parser) {
  const WindowRoom window_room(*qApp);
  const QString socket_name = parser.value("socket");
  SingleInstance instance(socket_name);
  if (!instance.IsFirst()) return 0;
  const std::unique_ptr<QSplashScreen> splash = MakeSplash();
  splash->show();
  QApplication::processEvents();

  QtMessageBoxes shown_boxes;
  PrintedBoxes printed_boxes;
  MessageBoxes& boxes = parser.isSet("no-boxes") ? static_cast<MessageBoxes&>(printed_boxes) : shown_boxes;
  const std::unique_ptr<Registry> registry = UserRegistry(SystemFileSystem());
  QtHelpViewer help;
  QtDocumentPrinter printer(boxes);
  QtSheetPrinter sheets(boxes);
  Desktop desktop({boxes, SystemFileSystem(), SystemClock(), SystemWorkstation(), registry.get(),
                   &SystemMachine(), &help, &printer, &sheets});
  QObject::connect(&desktop, &Desktop::Ended, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
  QObject::connect(&instance, &SingleInstance::ShowAsked, &desktop, [&] {
    BringToFront(desktop);
    Tell(parser, "shown");
  });
  const bool started = desktop.Start([&] { return AttachToSuite(socket_name, SystemFileSystem()); });
  splash->close();
  if (started) Tell(parser, "ready");
  return started ? QApplication::exec() : 1;
}

// Without a display Qt would end the process with a core dump: pictures are taken off the screen, all else is
// told.
bool ChoosePlatform(int argc, char** argv) {
#ifdef Q_OS_LINUX
  const auto is_set = [](const char* name) { return !qEnvironmentVariableIsEmpty(name); };
  if (is_set("QT_QPA_PLATFORM") || is_set("DISPLAY") || is_set("WAYLAND_DISPLAY")) return true;
  for (int i = 1; i < argc; ++i) {
    const QByteArray argument(argv[i]);
    if (argument.startsWith("--screenshots") || argument.startsWith("--time-start") ||
        argument.startsWith("--start-once") || argument == "--help" || argument == "--version") {
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
  QCoreApplication::setApplicationVersion(QString::fromStdString(VersionTextOf({})));
  QApplication::setQuitOnLastWindowClosed(false);  // the desktop says when it has ended

  QCommandLineParser parser;
  AddOptions(parser);
  parser.process(app);
  ApplyStyle(app, SchemeOf(parser));
  if (parser.isSet("time-start")) return MeasureStart(CompanyOf(parser), kMeasuredStarts);
  if (parser.isSet("start-once")) return StartOnce(CompanyOf(parser));
  return parser.isSet("screenshots") ? RunScreenshots(parser) : RunDesktop(parser);
}
