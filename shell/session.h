// The one run-wide object: start-up makes it and hands it to every screen. It owns the attachment to the
// suite, the data object, the current user and the company-wide tables, and holds the selected bank.
// Invariant: while a bank is selected, its code stands in ESCROW_BANKS as it was when the bank was selected;
// a screen that reads the bank again must be ready to find it gone.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/clock.h"
#include "core/file_system.h"
#include "core/message_boxes.h"
#include "core/period.h"
#include "core/print_document.h"
#include "core/sheet.h"
#include "core/workstation.h"
#include "shell/suite.h"

namespace tallwick {

class HelpViewer;
class Machine;
class Registry;
class clsKVRData;
class clsLauncher;
class clsSecurity;
struct CompanyTables;
struct TableHome;

// The program's version, shown as "1.00.0001".
struct ProgramVersion {
  int major = 1;
  int minor = 0;
  int revision = 1;
  int build = 1;
};

// What a session stands on. All of it must outlive the session.
struct Ports {
  MessageBoxes& boxes;
  FileSystem& files;
  Clock& clock;
  Workstation& workstation;
  const Registry* registry = nullptr;  // null where there are no earlier settings to take over
  Machine* machine = nullptr;          // null where nobody asks about the machine
  HelpViewer* help = nullptr;          // null where the platform shows no help files
  DocumentPrinter* printer = nullptr;  // null where the face cannot print
  SheetPrinter* sheets = nullptr;      // of checks; null where the face cannot print them
};

enum class SessionChange {
  kBank,          // another bank, or none, is selected
  kUser,          // the user or the user's rights
  kPosted,        // a transaction was posted, changed or removed
  kPrinter,       // the current printer
  kSwitch,        // the transactions switch
  kScreenClosed,  // a screen was closed
};

// Told what has changed, after the change.
class SessionWatcher {
 public:
  virtual ~SessionWatcher() = default;
  virtual void SessionChanged(SessionChange change) = 0;
};

class Session {
 public:
  Session(const Ports& ports, std::unique_ptr<Suite> suite);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  MessageBoxes& Boxes() const { return ports_.boxes; }
  FileSystem& Files() const { return ports_.files; }
  Clock& TheClock() const { return ports_.clock; }
  Workstation& TheWorkstation() const { return ports_.workstation; }
  Machine* TheMachine() const { return ports_.machine; }
  HelpViewer* Help() const { return ports_.help; }
  DocumentPrinter* Documents() const { return ports_.printer; }
  SheetPrinter* Sheets() const { return ports_.sheets; }
  Suite& TheSuite() const { return *suite_; }
  RunState& Run() { return run_; }
  const ProgramVersion& Version() const { return version_; }
  clsSecurity& User() const { return *user_; }
  // These exist from the end of a successful start-up on.
  clsLauncher& Launcher() const { return *launcher_; }
  clsKVRData& Data() const { return *data_; }
  CompanyTables& Company() const { return *company_; }
  // For opening tables of one's own.
  const TableHome& Home() const { return *home_; }

  // The login name that the suite hands over, without blanks around it; "" where nobody has logged in.
  std::string Login() const;
  // Ends with "\".
  const std::string& DataPath() const { return data_path_; }

  // "" when no bank is selected. The code is trimmed.
  const std::string& BankCode() const { return bank_code_; }
  const std::string& BankName() const { return bank_name_; }
  // Makes the bank the selected one; two empty texts close it. Asks and tests nothing: SelectBank in
  // bank_select.h does.
  void SetBank(std::string_view code, std::string_view name);

  // Whether the suite has security switched on. Where it has switched it, or names another login, since the
  // user was loaded, that user is read first, and the selected bank is closed unless it is the user's.
  bool SecurityOn();
  // True when the current user may use the right (rights.h; 0 asks for none, kAdministrator for the group):
  // always while security is off, never for a login that is not among the users.
  bool MayUse(int right);
  // The same for a caller that has just asked whether security is on.
  bool MayUse(int right, bool security_on) const;
  // True when the current user may work in the bank, to read or to post: always while security is off, else
  // when the bank is among the user's.
  bool MayUseBank(std::string_view bank_code);
  // True when the current user may look at the record of the user with the login: an administrator, and
  // everybody at the own one.
  bool MayReadUser(std::string_view login);
  // Loads the record of the suite's login again while security is on, else forgets the user's rights.
  void ReloadUser();
  // Why nobody has rights here though security is on; "" when nothing is wrong.
  std::string UserProblem() const;

  // Name of the current printer as the face knows it, "" for none.
  const std::string& Printer() const { return printer_; }
  void SetPrinter(std::string_view printer);

  // Tells every watcher. Posting screens call it with kPosted after a commit.
  void NotifyChanged(SessionChange change);
  void Watch(SessionWatcher* watcher);
  void Unwatch(SessionWatcher* watcher);

 private:
  friend class StartUpRun;
  // None while security is off.
  std::optional<std::string> SecuredLogin() const;
  void LoadUser();

  Ports ports_;
  std::unique_ptr<Suite> suite_;
  RunState run_;
  ProgramVersion version_;
  std::unique_ptr<clsLauncher> launcher_;
  std::string data_path_;
  std::unique_ptr<clsKVRData> data_;
  std::unique_ptr<TableHome> home_;
  std::unique_ptr<clsSecurity> user_;
  std::optional<std::string> loaded_for_;  // the secured login whose user was looked up last
  std::unique_ptr<CompanyTables> company_;
  std::string bank_code_;
  std::string bank_name_;
  std::string printer_;
  std::vector<SessionWatcher*> watchers_;
};

}  // namespace tallwick
