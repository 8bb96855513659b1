// What a command works in: the ports made of the global options, and, as far as the command needs them, the
// record store, the company's session with its screens, and the selected bank.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/application.h"
#include "cli/boxes.h"
#include "cli/options.h"
#include "cli/output.h"
#include "cli/surroundings.h"
#include "core/form.h"
#include "shell/machine.h"
#include "shell/session.h"
#include "store/clsKVRData.h"
#include "tables/table_base.h"

namespace tallwick::cli {

// Behind what could not be opened for engine::kErrorOpenRefused.
inline constexpr std::string_view kTableIsHeld =
    "another workstation or another program keeps a table or its index for itself.  Try again in a moment";

class Office {
 public:
  Office(GlobalOptions& options, CommandLineBoxes& boxes, Output& out);
  ~Office();

  GlobalOptions& Options() { return options_; }
  CommandLineBoxes& Boxes() { return boxes_; }
  FileSystem& Files() { return files_; }
  CommandLineClock& TheClock() { return clock_; }
  CommandLineWorkstation& TheWorkstation() { return workstation_; }
  Output& Out() { return out_; }

  // A started engine without a company, for single tables. Null after a message.
  clsKVRData* Store();
  // The tables of --data without starting the company, for work on damaged ones. Nullopt after a message
  // where there is no company.
  std::optional<TableHome> Tables();
  // False, after a message that names it, while another workstation holds the company's folder (held form)
  // for itself.
  bool MayEnter(const std::string& folder);
  // Makes the folder of --data where it is missing, for a company that begins. False after a message.
  bool MakeDataFolder();
  // The company of --data, started as the desktop starts it. Null after a message; Status() then says with
  // what to end.
  Session* Open();
  // Open, and the bank of --bank selected, without the question whether its date shall advance. Null after a
  // message.
  Session* OpenBank();
  // The accounting day of --bank, which decides the form of its periods (0 = month and year). Nullopt after a
  // message.
  std::optional<std::int32_t> BankAccountingDay();
  // Lets checks be printed, into this PDF file; before the company is opened. False after a message where the
  // print module is not installed.
  bool PrintInto(const std::string& path);
  // Who is asked when a screen wants another one opened; null = nobody.
  void SetScreenOpener(ScreenOpener* opener) { opener_.target = opener; }
  // The screens exist once Open has succeeded.
  ScreenCatalogue& Screens() { return application_->Screens(); }
  // A screen for a command, not for a script, which shows all that a clerk would see. Null after a message;
  // Status() then says whether it was refused, or a table could not be opened.
  std::unique_ptr<Form> MakeScreen(std::string_view screen, std::string_view mode);
  // Whether the user of the options may use the right (rights.h), for commands that work past the screens,
  // also where the company cannot be opened. False after a message; Status() then says with what to end.
  bool Granted(int right);
  // Names of the company-wide tables that Open found missing and made.
  const std::vector<std::string>& MadeTables() const { return made_tables_; }
  // Reads the user of the options again, after they have changed.
  void ReloadUser();

  int Status() const { return status_; }
  // Says why a command did nothing. The exit status: Status() where that has one already, else kRefused.
  int Refuse(std::string_view why) {
    out_.Fail(why);
    return status_ != kDone ? status_ : kRefused;
  }
  // Says what could not be shown of something that is written and stands. The command is done, whatever can
  // not be read: who repeats a post that failed must not repeat this one.
  void Stands(std::string_view not_shown) {
    boxes_.Exclaim(kProgramName, not_shown);
    stands_ = true;
  }
  // False when a table could not be read on, so that what was printed is not all.
  bool ReadWhole() const {
    return stands_ || !application_ || !application_->TheSession().Data().HasToldUnreadable();
  }

 private:
  // Stands between the screens, which are made with the company, and whoever opens them later.
  struct Opener : ScreenOpener {
    ScreenOpener* target = nullptr;
    void OpenScreen(std::string_view screen, std::string_view mode) override {
      if (target != nullptr) target->OpenScreen(screen, mode);
    }
    void OpenItem(std::string_view screen, std::string_view mode, const std::vector<KeyText>& key) override {
      if (target != nullptr) target->OpenItem(screen, mode, key);
    }
    bool Offers(std::string_view screen, std::string_view mode) const override {
      return target == nullptr || target->Offers(screen, mode);
    }
  };

  Ports ThePorts() {
    return {boxes_, files_, clock_, workstation_, nullptr, &SystemMachine(), nullptr, nullptr, sheets_.get()};
  }
  bool HasDataOption();
  bool BankTablesAreThere();
  // Says what failed and keeps the exit status; always null.
  Session* Refused(std::string_view why, int status);

  GlobalOptions& options_;
  CommandLineBoxes& boxes_;
  Output& out_;
  FileSystem& files_;
  CommandLineClock clock_;
  CommandLineWorkstation workstation_;
  Opener opener_;
  std::unique_ptr<SheetPrinter> sheets_;
  std::unique_ptr<clsKVRData> store_;
  std::unique_ptr<Application> application_;
  std::vector<std::string> made_tables_;
  int status_ = kDone;
  bool stands_ = false;
};

}  // namespace tallwick::cli
