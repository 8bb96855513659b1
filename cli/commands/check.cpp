// check: posting through the check screen, and looking at what is posted.
#include <algorithm>

#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "core/text.h"
#include "posting/entry_problems.h"
#include "tables/check_table.h"
#include "tables/status_text.h"

namespace tallwick::cli {

namespace {

struct CheckArguments {
  std::string number;
  // What is typed, by control; a control that stands here with an empty text is emptied.
  std::vector<std::pair<std::string, std::string>> entries;
  bool handwritten = false;
  std::string status;
  std::string order = "number";
};

// The bank's checks, open; null after a message.
std::unique_ptr<CheckTable> OpenChecks(Office& office, int* status) {
  Session* session = office.OpenBank();
  *status = session == nullptr ? office.Status() : kDone;
  if (session == nullptr) return nullptr;
  auto checks = std::make_unique<CheckTable>(session->Home());
  if (checks->Open(session->BankCode()) > 0) return checks;
  office.Out().Fail("The checks of bank " + session->BankCode() + " could not be opened");
  *status = kNoTables;
  return nullptr;
}

Json CheckJson(CheckTable& checks) {
  return RecordJson(checks.Data(), checks.Handle(), checks.Data().FieldList(checks.Handle()),
                    Trimming::kBoth);
}

// Types the entries into the screen, in the order of the form, and presses the posting button. A screen that
// has posted stands at the next number; one that has refused keeps what was typed.
bool PostOnScreen(Form& form, const CheckArguments& arguments) {
  form.Opened();
  form.Change("txtCheckNumber", arguments.number);
  for (const auto& [control, text] : arguments.entries) form.Change(control, text);
  if (arguments.handwritten) form.SetCheck("chkHandwritten", 1);
  form.Click("cmdOk");
  return Trim(form.Find("txtCheckNumber")->text) != Trim(arguments.number);
}

int Post(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenChecks(office, &status);
  if (!checks) return status;
  Output& out = office.Out();
  // The screen would show a posted check and change it; a command that posts must not.
  const bool taken = checks->SeekNumber(arguments.number);
  const std::unique_ptr<Form> form = taken ? nullptr : office.Screens().Make("frmEditChecksPost", "Posting");
  const bool posted =
      form != nullptr && PostOnScreen(*form, arguments) && checks->SeekNumber(arguments.number);
  out.Set("posted", posted);
  if (!posted) {
    out.Fail("Check " + Quoted(arguments.number) + (taken ? " is posted already" : " was not posted"));
    return kRefused;
  }
  const Json fields = CheckJson(*checks);
  out.Set("fields", fields);
  out.Line("posted");
  out.Line(FieldLines(fields));
  return kDone;
}

int Show(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenChecks(office, &status);
  if (!checks) return status;
  if (!checks->SeekNumber(arguments.number)) {
    office.Out().Fail("Check " + Quoted(arguments.number) + " is not posted");
    return kRefused;
  }
  const Json fields = CheckJson(*checks);
  office.Out().Set("fields", fields);
  office.Out().Line(FieldLines(fields));
  return kDone;
}

void ListCheck(CheckTable& checks, Output& out) {
  const CheckRecord check = checks.Read();
  std::string line;
  if (!out.IsJson())
    line = PadLeft(check.number, 12) + "  " + PadRight(DisplayDate(check.dated), 10) + "  " +
           PadLeft(AmountText(check.amount), 14) + "  " + PadRight(check.file_number, 14) + "  " +
           PadRight(CheckStatusText(check.status), 16) + "  " + check.payee;
  out.Item(out.IsJson() ? CheckJson(checks) : Json(), line);
}

// The table has no tag on amounts: their records are sorted here, least amount first, then by number.
void ListByAmount(CheckTable& checks, std::string_view status, Output& out) {
  std::vector<std::pair<Currency, std::int32_t>> order;
  for (bool on = checks.Top("CHXNUMBER"); on; on = checks.Skip()) {
    const CheckRecord check = checks.Read();
    if (status.empty() || check.status == status) order.emplace_back(check.amount, checks.RecordNumber());
  }
  std::stable_sort(order.begin(), order.end(),
                   [](const auto& left, const auto& right) { return left.first < right.first; });
  for (const auto& [amount, record] : order)
    if (checks.GoTo(record)) ListCheck(checks, out);
}

int List(Office& office, const CheckArguments& arguments) {
  int open_status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenChecks(office, &open_status);
  if (!checks) return open_status;
  const std::string status = ToUpper(arguments.status);
  Output& out = office.Out();
  out.StartList("checks");
  if (arguments.order == "amount") {
    ListByAmount(*checks, status, out);
  } else {
    const std::string_view tag = arguments.order == "payee" ? "CHXPAYEE" : "CHXNUMBER";
    for (bool on = checks->Top(tag); on; on = checks->Skip())
      if (status.empty() || checks->Read().status == status) ListCheck(*checks, out);
  }
  out.EndList();
  return kDone;
}

// An option whose text is typed into a control.
struct EntryOption {
  const char* option;
  const char* control;
  bool required;
  const char* what;
};

constexpr EntryOption kEntryOptions[] = {
    {"--dated", "txtCheckDated", true, "Date on the check, MM/DD/YYYY"},
    {"--payee", "txtCheckPayee", true, "Payee"},
    {"--addr1", "txtCheckAddr1", false, "Address line 1"},
    {"--addr2", "txtCheckAddr2", false, "Address line 2"},
    {"--city", "txtCheckCityState", false, "City, state and ZIP"},
    {"--amount", "txtCheckAmount", true, "Amount"},
    {"--file", "txtCheckFileNumber", true, "Escrow file number"},
    {"--period", "txtCheckAcctPeriod", true, "Accounting period in the bank's form"},
    {"--voucher", "txtCheckVoucherNumber", false, "Voucher number"},
    {"--tin", "txtTIN", false, "Payee's taxpayer number"},
    {"--control", "txtCheckControl", false, "Control number"},
};

void AddPost(CLI::App& check, Action& chosen) {
  CLI::App* post = check.add_subcommand("post", "Posts a check through the check screen");
  auto arguments = std::make_shared<CheckArguments>();
  post->add_option("NUMBER", arguments->number)->required();
  for (const EntryOption& entry : kEntryOptions) {
    const std::function<void(const std::string&)> type = [arguments,
                                                          control = entry.control](const std::string& text) {
      arguments->entries.emplace_back(control, text);
    };
    post->add_option_function(entry.option, type, entry.what)->required(entry.required);
  }
  post->add_flag("--handwritten", arguments->handwritten, "Written by hand, not to be printed");
  Choose(post, chosen, arguments, Post);
}

}  // namespace

void AddCheckCommands(CLI::App& app, Action& chosen) {
  CLI::App* check = app.add_subcommand("check", "Checks of the selected bank");
  check->require_subcommand(1);
  AddPost(*check, chosen);
  auto arguments = std::make_shared<CheckArguments>();
  CLI::App* show = check->add_subcommand("show", "A check's fields");
  show->add_option("NUMBER", arguments->number)->required();
  Choose(show, chosen, arguments, Show);
  CLI::App* list = check->add_subcommand("list", "Posted checks");
  list->add_option("--status", arguments->status, "Only those with this status: O, H, C, V or S")
      ->check(CLI::IsMember({"O", "H", "C", "V", "S"}, CLI::ignore_case));
  list->add_option("--order", arguments->order, "number, payee or amount")
      ->check(CLI::IsMember({"number", "payee", "amount"}));
  Choose(list, chosen, arguments, List);
}

}  // namespace tallwick::cli
