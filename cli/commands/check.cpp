// check: posting and changing through the check screen, and looking at what is posted.
#include <algorithm>

#include "cli/commands/posted.h"
#include "core/text.h"
#include "posting/check_numbering.h"
#include "posting/entry_problems.h"
#include "tables/check_table.h"
#include "tables/status_text.h"

namespace tallwick::cli {

namespace {

constexpr std::string_view kScreen = "frmEditChecksPost";

struct CheckArguments {
  std::string number;
  std::string new_number;
  std::vector<TypedEntry> entries;
  std::string status;
  std::string order = "number";
};

// The number goes first: it decides whether the screen shows a posted check.
std::vector<TypedEntry> WithNumber(const CheckArguments& arguments) {
  std::vector<TypedEntry> entries = {{"txtCheckNumber", arguments.number}};
  entries.insert(entries.end(), arguments.entries.begin(), arguments.entries.end());
  return entries;
}

int Post(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenPosted<CheckTable>(office, &status);
  if (!checks) return status;
  ScreenOutcome outcome;
  // Looking up a posted number zero would offer its removal.
  outcome.taken = NumberValue(arguments.number) == 0 && SeekCounted(*checks, arguments.number);
  if (!outcome.taken) {
    outcome =
        PostOnScreen(office, {.screen = kScreen, .mode = "Posting", .only_new = true}, WithNumber(arguments));
  }
  return ShowPosted(office, *checks, outcome, !outcome.key.empty() && checks->SeekNumber(outcome.key),
                    "Check " + Quoted(arguments.number));
}

int Show(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenPosted<CheckTable>(office, &status);
  if (!checks) return status;
  return ShowFields(office, *checks, SeekCounted(*checks, arguments.number),
                    "Check " + Quoted(arguments.number) + " is not posted");
}

// What a command does to a posted check on the screen.
struct Change {
  const char* name;
  const char* help;
  ScreenUse use;
  const char* not_done;  // "was not voided"
};

constexpr Change kVoid{"void", "Voids a check", {kScreen, "Voiding"}, " was not voided"};
constexpr Change kStop{"stop", "Stops the payment of a check", {kScreen, "Stop Payment"}, " was not stopped"};
constexpr Change kClear{"clear", "Marks a check cleared", {kScreen, "Clearing"}, " was not cleared"};
constexpr Change kOutstanding{"outstanding",
                              "Sets a check outstanding again",
                              {kScreen, "Clearing", "cmdSetOutstanding"},
                              " was not set outstanding"};
constexpr Change kRenumber{
    "renumber", "Gives a posted check another number", {kScreen, "Posting"}, " was not renumbered"};

template <const Change& kChange>
int ChangePosted(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenPosted<CheckTable>(office, &status);
  if (!checks) return status;
  const std::string name = "Check " + Quoted(arguments.number);
  if (!SeekCounted(*checks, arguments.number))
    return ShowFields(office, *checks, false, name + " is not posted");
  std::vector<TypedEntry> entries = WithNumber(arguments);
  if (!arguments.new_number.empty()) {
    entries.push_back({"mnuEditRenumberCheck", {}});
    entries.push_back({"txtCheckNumber", arguments.new_number});
  }
  const ScreenOutcome outcome = PostOnScreen(office, kChange.use, entries);
  return ShowChanged(office, *checks, outcome, !outcome.key.empty() && checks->SeekNumber(outcome.key), name,
                     kChange.not_done);
}

int Remove(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenPosted<CheckTable>(office, &status);
  if (!checks) return status;
  // Looking up number zero offers its removal at once.
  const bool zero = NumberValue(arguments.number) == 0;
  return RemoveOnScreen(office, {kScreen, "Posting", zero ? "" : "mnuEditRemoveCheck"},
                        {"txtCheckNumber", arguments.number}, "Check " + Quoted(arguments.number),
                        SeekCounted(*checks, arguments.number));
}

// Shows the number of the next check, after setting it where a number is given.
int Next(Office& office, const CheckArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<CheckTable> checks = OpenPosted<CheckTable>(office, &status);
  if (!checks) return status;
  Session& session = *office.OpenBank();
  if (!arguments.new_number.empty()) {
    const std::string problem = SetNextCheckNumber(session, arguments.new_number);
    if (!problem.empty()) return office.Refuse(problem);
  }
  const CheckNumbering numbering =
      ReadCheckNumbering(*checks, session.Files(), session.DataPath(), session.BankCode());
  if (!office.ReadWhole()) return kRefused;
  if (!numbering.problem.empty()) return office.Refuse(numbering.problem);
  const std::string next = numbering.Proposal();
  office.Out().Set("next", next);
  office.Out().Line(next);
  return kDone;
}

void ListCheck(CheckTable& checks, Output& out) {
  const CheckRecord check = checks.Read();
  std::string line;
  if (!out.IsJson())
    line = PadLeft(check.number, 12) + "  " + PadRight(DisplayDate(check.dated), 10) + "  " +
           PadLeft(AmountText(check.amount), 14) + "  " + PadRight(check.file_number, 14) + "  " +
           PadRight(CheckStatusText(check.status), 16) + "  " + check.payee;
  out.Item(out.IsJson() ? FieldsJson(checks) : Json(), line);
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
  const std::unique_ptr<CheckTable> checks = OpenPosted<CheckTable>(office, &open_status);
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

constexpr EntryOption kPostOptions[] = {
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
constexpr EntryOption kStatement = {"--stmt", "txtCheckStmtPeriod", true, "Statement period"};
constexpr EntryOption kStatusOptions[] = {{"--reason", "txtCheckReason", true, "Reason"}, kStatement};

using Runner = int (*)(Office&, const CheckArguments&);

std::shared_ptr<CheckArguments> AddCommand(CLI::App& check, Action& chosen, const char* name,
                                           const char* help, Runner run,
                                           std::span<const EntryOption> options = {}) {
  CLI::App* command = check.add_subcommand(name, help);
  auto arguments = std::make_shared<CheckArguments>();
  command->add_option("NUMBER", arguments->number, "Number of the check")->required();
  AddEntryOptions(*command, options, arguments->entries);
  Choose(command, chosen, arguments, run);
  return arguments;
}

template <const Change& kChange>
std::shared_ptr<CheckArguments> AddChange(CLI::App& check, Action& chosen,
                                          std::span<const EntryOption> options = {}) {
  return AddCommand(check, chosen, kChange.name, kChange.help, ChangePosted<kChange>, options);
}

void AddPost(CLI::App& check, Action& chosen) {
  const auto arguments =
      AddCommand(check, chosen, "post", "Posts a check through the check screen", Post, kPostOptions);
  const std::function<void(std::int64_t)> mark = [arguments](std::int64_t) {
    arguments->entries.push_back({"chkHandwritten", {}});
  };
  check.get_subcommand("post")->add_flag_function("--handwritten", mark,
                                                  "Written by hand, not to be printed");
}

void AddList(CLI::App& check, Action& chosen) {
  CLI::App* list = check.add_subcommand("list", "Posted checks");
  auto arguments = std::make_shared<CheckArguments>();
  list->add_option("--status", arguments->status, "Only those with this status: O, H, C, V or S")
      ->check(CLI::IsMember({"O", "H", "C", "V", "S"}, CLI::ignore_case));
  list->add_option("--order", arguments->order, "number, payee or amount")
      ->check(CLI::IsMember({"number", "payee", "amount"}));
  Choose(list, chosen, arguments, List);
}

}  // namespace

void AddCheckCommands(CLI::App& app, Action& chosen) {
  CLI::App* check = app.add_subcommand("check", "Checks of the selected bank");
  check->require_subcommand(1);
  AddPost(*check, chosen);
  AddCommand(*check, chosen, "show", "A check's fields", Show);
  AddList(*check, chosen);
  AddChange<kVoid>(*check, chosen, kStatusOptions);
  AddChange<kStop>(*check, chosen, kStatusOptions);
  AddChange<kClear>(*check, chosen, std::span(&kStatement, 1));
  AddChange<kOutstanding>(*check, chosen);
  const auto renumber = AddChange<kRenumber>(*check, chosen);
  check->get_subcommand("renumber")->add_option("NEW", renumber->new_number, "Its new number")->required();
  AddCommand(*check, chosen, "remove", "Removes a check and its cross-reference", Remove);
  CLI::App* next = check->add_subcommand("next", "The number that the next check gets");
  auto arguments = std::make_shared<CheckArguments>();
  next->add_option("--set", arguments->new_number, "Has the numbers go on from here");
  Choose(next, chosen, arguments, Next);
  AddCheckPrintCommands(*check, chosen);
}

}  // namespace tallwick::cli
