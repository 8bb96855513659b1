// tallwick-suite: stands in for the suite's main program where that is not installed.
// Runs until it is told to stop; every program that registers is printed on a line.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTextStream>
#include <QThread>

#include "suite/suite_server.h"
#include "ui/suite_protocol.h"

namespace tallwick {
namespace {

constexpr int kStartTries = 50;
constexpr unsigned long kStartPauseMs = 100;

int Fail(const QString& what) {
  QTextStream(stderr) << what << Qt::endl;
  return 1;
}

void AddOptions(QCommandLineParser& parser) {
  parser.setApplicationDescription("Publishes a company to Tallwick programs of this user.");
  parser.addHelpOption();
  parser.addOptions({{"settings", "INI file with what is published.", "file"},
                     {"data", "Company data path.", "folder"},
                     {"company", "Company name.", "name"},
                     {"number", "Company number.", "number"},
                     {"login", "Login name of the user.", "login"},
                     {"security", "Whether rights are enforced: on or off.", "on|off"},
                     {"branches", "Branches of the company, parted by commas.", "names"},
                     {"branch", "Select a branch of the suite that runs on the socket.", "name"},
                     {"files", "Text file with the known escrow file numbers, one a line.", "file"},
                     {"socket", "Name of the local socket.", "name", SuiteSocketName()},
                     {"background", "Start in the background; return when it answers."},
                     {"stop", "End the suite that runs on the socket."}});
}

// "" or what is wrong with the options.
QString TakeOptions(const QCommandLineParser& parser, SuiteSettings& settings) {
  if (parser.isSet("settings") && !ReadSettings(parser.value("settings"), settings)) {
    return "The settings file " + parser.value("settings") + ", or the file list it names, cannot be read.";
  }
  if (parser.isSet("data")) settings.data_path = parser.value("data");
  if (parser.isSet("company")) settings.company_name = parser.value("company");
  if (parser.isSet("number")) settings.company_number = parser.value("number");
  if (parser.isSet("login")) settings.login = parser.value("login");
  if (parser.isSet("branches")) SetBranches(parser.value("branches").split(','), settings);
  if (parser.isSet("security")) {
    const QString security = parser.value("security").toLower();
    if (security != "on" && security != "off") return "--security takes on or off.";
    settings.security_on = security == "on";
  }
  if (parser.isSet("files") && !ReadFileList(parser.value("files"), settings)) {
    return "The file list " + parser.value("files") + " cannot be read.";
  }
  if (settings.data_path.isEmpty())
    return "Name the company's data path with --data or in the settings file.";
  settings.data_path = QDir(settings.data_path).absolutePath();
  return {};
}

// Starts this program again without its "--background" and waits until it answers.
int StartInBackground(const QString& socket_name) {
  QStringList arguments = QCoreApplication::arguments().mid(1);
  arguments.removeAll("--background");
  if (!AskSuite(socket_name, {{"ask", "state"}}).isEmpty())
    return Fail("A suite already runs on " + socket_name + ".");
  QProcess process;
  process.setProgram(QCoreApplication::applicationFilePath());
  process.setArguments(arguments);
  process.setStandardOutputFile(QProcess::nullDevice());
  process.setStandardErrorFile(QProcess::nullDevice());
  if (!process.startDetached()) return Fail("The suite could not be started.");
  for (int i = 0; i < kStartTries; ++i) {
    if (!AskSuite(socket_name, {{"ask", "state"}}).isEmpty()) return 0;
    QThread::msleep(kStartPauseMs);
  }
  return Fail("The suite was started but does not answer on " + socket_name + ".");
}

int Run() {
  QCommandLineParser parser;
  AddOptions(parser);
  parser.process(*QCoreApplication::instance());
  const QString socket_name = parser.value("socket");
  if (parser.isSet("stop")) {
    const bool ended = AskSuite(socket_name, {{"ask", "quit"}})["ended"].toBool();
    return ended ? 0 : Fail("No suite runs on " + socket_name + ".");
  }
  if (parser.isSet("branch")) {
    const QString wanted = parser.value("branch");
    const QJsonObject answer = AskSuite(socket_name, {{"ask", "branch"}, {"branch", wanted}});
    if (answer.isEmpty()) return Fail("No suite runs on " + socket_name + ".");
    return answer["branch"].toString() == wanted ? 0 : Fail("The company has no branch " + wanted + ".");
  }
  SuiteSettings settings;
  const QString wrong = TakeOptions(parser, settings);
  if (!wrong.isEmpty()) return Fail(wrong);
  if (parser.isSet("background")) return StartInBackground(socket_name);

  SuiteServer server(settings);
  if (!server.Listen(socket_name))
    return Fail("Another suite runs on " + socket_name + ", or it cannot be used.");
  QTextStream out(stdout);
  out << "Company " << settings.company_name << " (" << settings.company_number << "), data in "
      << settings.data_path << Qt::endl;
  QObject::connect(&server, &SuiteServer::Registered, &server,
                   [&out](const QString& program, qint64 process) {
                     out << "registered " << program << " " << process << Qt::endl;
                   });
  QObject::connect(&server, &SuiteServer::EndAsked, QCoreApplication::instance(), &QCoreApplication::quit,
                   Qt::QueuedConnection);
  return QCoreApplication::exec();
}

}  // namespace
}  // namespace tallwick

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  return tallwick::Run();
}
