// A title office in a temporary folder: suite, ports and session, with the real engine under it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "core/form.h"
#include "core/system_ports.h"
#include "shell/bank_select.h"
#include "shell/company_tables.h"
#include "shell/start_up.h"
#include "tables/bank_tables.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tallwick::testing {

// What a test's suite says; a test changes it between calls.
struct SuiteFacts {
  std::string company = "Lakeside Title";
  std::string number = "12";
  std::string data_path;
  std::string branch;
  std::string login = "jdoe";
  bool security = false;
  std::optional<std::set<std::string>> files;  // none: the suite offers no list
  std::string registered;
};

class FakeSuite : public Suite {
 public:
  explicit FakeSuite(SuiteFacts& facts) : facts_(facts) {}
  std::string CompanyName() const override { return facts_.company; }
  std::string CompanyNumber() const override { return facts_.number; }
  std::string DataPath() const override { return facts_.data_path; }
  std::string ApplicationPath() const override { return {}; }
  std::string SettingsPath() const override { return facts_.data_path; }
  std::string UpdatePath() const override { return {}; }
  std::string BranchName() const override { return facts_.branch; }
  bool SecurityOn() const override { return facts_.security; }
  std::string Login() const override { return facts_.login; }
  bool RegisterProgram(std::string_view program, int process_id) override {
    facts_.registered = std::string(program) + " " + std::to_string(process_id);
    return true;
  }
  std::optional<bool> KnowsFile(std::string_view file_no) const override {
    if (!facts_.files) return std::nullopt;
    return facts_.files->contains(std::string(file_no));
  }
  std::optional<std::vector<std::string>> Files() const override {
    if (!facts_.files) return std::nullopt;
    return std::vector(facts_.files->begin(), facts_.files->end());
  }

 private:
  SuiteFacts& facts_;
};

class Office : public ScreenOpener {
 public:
  Office() { suite.data_path = folder.Held(); }

  StartUpOutcome Start() {
    return StartUp({boxes, *files, clock, workstation, registry, machine, nullptr, printer, sheets},
                   [this] { return std::make_unique<FakeSuite>(suite); });
  }
  // Starts, and opens a bank FNB on month-and-year periods: March 2024, reconciled through January 2024.
  bool Open(const std::function<void(BankRecord&)>& change = {}) {
    session = std::move(Start().session);
    return session && AddBank("FNB", "First National Trust", change) && SelectBank(*session, "FNB");
  }
  bool AddBank(std::string_view code, std::string_view name,
               const std::function<void(BankRecord&)>& change = {}) {
    BankRecord bank;
    bank.code = code;
    bank.name = name;
    bank.account_number = "00123456";
    bank.accounting = {3, 0, 2024};
    bank.reconciled = {1, 0, 2024};
    bank.audit_trail = true;
    if (change) change(bank);
    return session->Company().banks.AddBank(bank) == engine::kSuccess;
  }
  void WriteFile(std::string_view name, std::string_view text) {
    SystemFileSystem().Write(folder.Held(name), text);
  }
  std::string ReadFile(std::string_view name) {
    return SystemFileSystem().Read(folder.Held(name)).value_or("");
  }
  // The texts of the boxes since the last call.
  std::vector<std::string> TakeTexts() {
    std::vector<std::string> texts = boxes.Texts();
    boxes.shown.clear();
    return texts;
  }
  void OpenScreen(std::string_view screen, std::string_view mode) override {
    opened.push_back(std::string(screen) + " " + std::string(mode));
  }

  bool Offers(std::string_view screen, std::string_view) const override { return screen != missing_screen; }

  TempFolder folder;
  FileSystem* files = &SystemFileSystem();  // a test may put another in its place before it starts
  FakeClock clock;
  FakeWorkstation workstation;
  ScriptedBoxes boxes;
  const Registry* registry = nullptr;
  Machine* machine = nullptr;
  SheetPrinter* sheets = nullptr;
  DocumentPrinter* printer = nullptr;
  SuiteFacts suite;
  std::unique_ptr<Session> session;
  std::vector<std::string> opened;
  std::string missing_screen;
};

// What a person sees of a control: a label's or button's caption, else its text.
inline std::string Seen(Form& form, std::string_view name, int index = 0) {
  const Control* control = form.Find(name, index);
  if (control == nullptr) return "(no " + std::string(name) + ")";
  const bool speaks_by_caption =
      control->kind == ControlKind::kLabel || control->kind == ControlKind::kButton;
  return speaks_by_caption ? control->caption : control->text;
}

}  // namespace tallwick::testing
