#include "shell/start_up.h"

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "shell/clsLauncher.h"
#include "shell/clsSecurity.h"
#include "shell/company_tables.h"
#include "shell/lost_table.h"
#include "store/clsKVRData.h"

namespace tallwick {
namespace {

constexpr std::string_view kNoSuiteText =
    "Tallwick Escrow Accounting cannot start: the suite's main program is not running.  Start Tallwick, "
    "open a company and try again.";

}  // namespace

// The steps in their order. Each shows the message of its own failure.
class StartUpRun {
 public:
  StartUpRun(const Ports& ports, const SuiteFactory& attach) : ports_(ports), attach_(attach) {}

  StartUpOutcome Run() {
    outcome_.result = Steps();
    const bool opened =
        outcome_.result == StartUpResult::kStarted || outcome_.result == StartUpResult::kOutOfDate;
    if (opened) outcome_.session = std::move(session_);
    return std::move(outcome_);
  }

 private:
  StartUpResult Steps() {
    if (!AttachSuite()) return StartUpResult::kNoSuite;
    LoadLauncher();
    if (!ProveDataPath()) return StartUpResult::kNoDataPath;
    if (!StartEngine()) return StartUpResult::kNoEngine;
    session_->company_ = std::make_unique<CompanyTables>(*session_->home_);
    for (TableBase* table : session_->company_->All()) {
      const StartUpResult result = OpenTable(*table);
      if (result != StartUpResult::kStarted) return result;
    }
    TellReadOnly();
    session_->ReloadUser();
    return update_wanted_ ? StartUpResult::kOutOfDate : StartUpResult::kStarted;
  }

  bool AttachSuite() {
    std::unique_ptr<Suite> suite = attach_();
    if (!suite) {
      ports_.boxes.Critical(kProgramName, kNoSuiteText);
      return false;
    }
    suite->RegisterProgram(kProgramName, ports_.workstation.ProcessId());
    session_ = std::make_unique<Session>(ports_, std::move(suite));
    return true;
  }

  // Settings that lie in the company's folder wait for it: making their folder would make an empty company
  // where the real one is out of reach.
  void LoadLauncher() {
    const Suite& suite = session_->TheSuite();
    const std::string data = WithBackslash(Trim(suite.DataPath()));
    std::string settings = WithBackslash(Trim(suite.SettingsPath()));
    const bool in_data = !data.empty() && ToUpper(settings).rfind(ToUpper(data), 0) == 0;
    if (in_data && !DataPathProblem(ports_.files, data).empty()) settings.clear();
    session_->launcher_ = std::make_unique<clsLauncher>(ports_.files, ports_.registry, settings);
    session_->launcher_->SetAppName("Tallwick.exe");
    session_->launcher_->Load();
  }

  bool ProveDataPath() {
    const std::string path = WithBackslash(Trim(session_->TheSuite().DataPath()));
    if (const std::string problem = DataPathProblem(ports_.files, path); !problem.empty()) {
      ports_.boxes.Critical(kProgramName, problem);
      return false;
    }
    session_->data_path_ = path;
    return true;
  }

  bool StartEngine() {
    session_->data_ = std::make_unique<clsKVRData>(
        StorePorts{ports_.clock, ports_.workstation, ports_.files, ports_.boxes, engine::SystemFiles()});
    const auto note = [ports = ports_, path = session_->data_path_](std::string_view table) {
      NoteMadeTable(ports, path, table);
    };
    // The session owns the tables that ask.
    const auto why_lost = [session = session_.get()](std::string_view table) {
      return WhyLost(*session->home_, table);
    };
    session_->home_ = std::make_unique<TableHome>(
        TableHome{*session_->data_, ports_.files, ports_.boxes, session_->data_path_, note, why_lost});
    return session_->data_->InitializeCodebase();
  }

  StartUpResult OpenTable(TableBase& table) {
    if (!table.Exists()) {
      if (!table.MayMake() || table.CreateMissing() != engine::kSuccess) return StartUpResult::kTablesRefused;
      outcome_.made_tables.push_back(table.Name());
    }
    // Asked without a word first: a table held exclusively, and one that lacks a field, have messages of
    // their own.
    const int probe = table.OpenQuietly({}, false);
    if (probe > 0) return StartUpResult::kStarted;
    if (probe == engine::kErrorOpenRefused) {
      ports_.boxes.Inform(kProgramName, kExclusiveText);
      return StartUpResult::kExclusive;
    }
    if (probe == engine::kErrorFieldName) {
      update_wanted_ = update_wanted_ || WantsUpdate(table);
      const bool opened = update_wanted_ && table.OpenAsItIs({}, false) > 0;
      return opened ? StartUpResult::kStarted : StartUpResult::kTablesRefused;
    }
    if (table.Open() > 0) return StartUpResult::kStarted;
    TellRefused(table, session_->data_->OpenErrorCode());
    return StartUpResult::kTablesRefused;
  }

  bool WantsUpdate(const TableBase& table) {
    std::string text = "Escrow Accounting can not start with " + table.Name() + ".  " + table.Lack().text +
                       ".  " + table.Lack().advice;
    if (!table.Lack().addable) {
      ports_.boxes.Critical(kProgramName, text);
      return false;
    }
    text += "\r\rUpdate Database Versions now?";
    return ports_.boxes.Show({BoxIcon::kExclamation, std::string(kProgramName), text, BoxButtons::kYesNo,
                              BoxAnswer::kNo}) == BoxAnswer::kYes;
  }

  void TellRefused(const TableBase& table, int code) {
    const std::string shown = ports_.files.PlatformPath(session_->data_path_);
    const std::string standstill(clsKVRData::StandstillAdvice(code));
    const std::string advice =
        !standstill.empty() ? standstill + "."
        : code == engine::kErrorReadOnly
            ? "The last posts of a program that ended early wait to be brought to the tables, and that must "
              "be written.  Have somebody start Escrow Accounting who may write in the folder (" +
                  shown + "), then start again here."
            : "Have everybody leave the program.  Then \"escrowctl --data " + shown +
                  " verify\" says what is wrong, \"mend\" in its place mends what can be mended, and a copy "
                  "brings back the rest.";
    ports_.boxes.Critical(kProgramName, "Escrow Accounting can not start: " + table.Name() +
                                            " does not open.  " + table.WhyNotOpen(code) + " (" +
                                            std::to_string(code) + ").\r\r" + advice);
  }

  // Looking at things needs no more than reading.
  void TellReadOnly() {
    std::string tables;
    for (const TableBase* table : session_->company_->All()) {
      if (!session_->data_->IsReadOnly(table->Handle())) continue;
      tables += (tables.empty() ? "" : ", ") + table->Name();
    }
    if (tables.empty()) return;
    ports_.boxes.Inform(
        kProgramName,
        "The company's data can be looked at here, but not changed: the folder or its files are "
        "write-protected (" +
            tables + ").\r(" + ports_.files.PlatformPath(session_->data_path_) +
            ")\r\rWhatever would post or change something is refused.  Have the rights on the "
            "folder, or its disk, seen to, and start again.");
  }

  // A table that appears by itself is worth knowing for whoever looks for a lost one later.
  static void NoteMadeTable(const Ports& ports, const std::string& data_path, std::string_view table) {
    std::string line = FormatDateTime(ports.clock.Now(), "yyyy-mm-dd hh:nn:ss ");
    line += ports.workstation.ComputerName() + ": " + std::string(table) +
            " was missing and has been made, empty.\r\n";
    ports.files.CreateFolder(data_path + "Logs\\");
    ports.files.Append(data_path + "Logs\\Tables.log", ToWindows1252(line).value_or(line));
  }

  Ports ports_;
  const SuiteFactory& attach_;
  std::unique_ptr<Session> session_;
  StartUpOutcome outcome_;
  bool update_wanted_ = false;
};

std::string DataPathProblem(const FileSystem& files, std::string_view data_path) {
  const std::string path = WithBackslash(Trim(data_path));
  std::string problem;
  if (path.empty()) {
    problem = "The suite names no data folder for the company.";
  } else if (!files.FolderExists(path)) {
    problem = "The folder does not exist or cannot be reached.";
  } else if (!files.FolderIsReadable(path)) {
    problem = "The folder cannot be read.  Ask for the right to read and write in it.";
  }
  if (problem.empty()) return {};
  return "Company Data Path error: " + problem + "\r(" + (path.empty() ? path : files.PlatformPath(path)) +
         ")";
}

StartUpOutcome StartUp(const Ports& ports, const SuiteFactory& attach) {
  return StartUpRun(ports, attach).Run();
}

}  // namespace tallwick
