// deposit: posting through the deposit screen, and looking at what is posted.
#include "cli/commands/posted.h"
#include "cli/surroundings.h"
#include "core/text.h"
#include "posting/deposit_facts.h"
#include "posting/entry_problems.h"

namespace tallwick::cli {

namespace {

struct DepositArguments {
  std::string dated;
  std::string sequence;
  bool sequence_given = false;
  std::string period;
  std::vector<std::string> items;  // FILE:AMOUNT:SOURCE
  std::vector<int> wire_ins;       // item numbers
  int item = 0;                    // to be cleared; 0 = every outstanding one
};

// "CCYYMMDD" of a date in any of the forms that a command line knows; "" for none.
std::string StoredForm(const std::string& typed) {
  std::optional<Date> date = ParseIsoDate(typed);
  if (!date && typed.size() == 8) date = ParseStoredDate(typed);
  if (!date) date = ParseDisplayDate(typed);
  return date && !date->IsEmpty() ? StoredDate(*date) : "";
}

std::string NameOf(const DepositArguments& arguments) {
  return "Deposit " + Quoted(arguments.dated + " " + arguments.sequence);
}

// The pieces of an item: file, amount, and a source that may have ":" in it.
void AddItem(const std::string& item, int row, std::vector<TypedEntry>* entries) {
  const std::size_t first = item.find(':');
  const std::size_t second = first == std::string::npos ? first : item.find(':', first + 1);
  entries->push_back({"txtFileNumbers", item.substr(0, first), row});
  if (first == std::string::npos) return;
  entries->push_back({"txtAmounts", item.substr(first + 1, second - first - 1), row});
  if (second != std::string::npos) entries->push_back({"txtSources", item.substr(second + 1), row});
}

std::vector<TypedEntry> EntriesOf(const DepositArguments& arguments) {
  std::vector<TypedEntry> entries = {{"txtDepositDated", arguments.dated}};
  if (arguments.sequence_given) entries.push_back({"txtDateSequence", arguments.sequence});
  entries.push_back({"txtDepositAcctPeriod", arguments.period});
  int row = 0;
  for (const std::string& item : arguments.items) AddItem(item, ++row, &entries);
  for (int wire_in : arguments.wire_ins) entries.push_back({"chkWireIn", "", wire_in});
  return entries;
}

int Post(Office& office, const DepositArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<DepositTable> deposits = OpenPosted<DepositTable>(office, &status);
  if (!deposits) return status;
  if (arguments.items.size() > kDepositItems)
    return office.Refuse("A deposit holds " + std::to_string(kDepositItems) + " items, and " +
                         std::to_string(arguments.items.size()) + " were given");
  const ScreenUse use{
      .screen = "frmEditDepositsPost", .only_new = true, .any_number = !arguments.sequence_given};
  const ScreenOutcome outcome = PostOnScreen(office, use, EntriesOf(arguments));
  const std::string& key = outcome.key;
  const bool found = key.size() > 8 && deposits->SeekDeposit(key.substr(0, 8), key.substr(8));
  return ShowPosted(office, *deposits, outcome, found, NameOf(arguments));
}

int Show(Office& office, const DepositArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<DepositTable> deposits = OpenPosted<DepositTable>(office, &status);
  if (!deposits) return status;
  const std::string dated = StoredForm(arguments.dated);
  const std::string sequence = StoredSequence(arguments.sequence);
  return ShowFields(office, *deposits, !dated.empty() && deposits->SeekDeposit(dated, sequence),
                    NameOf(arguments) + " is not posted");
}

int Clear(Office& office, const DepositArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<DepositTable> deposits = OpenPosted<DepositTable>(office, &status);
  if (!deposits) return status;
  const std::string dated = StoredForm(arguments.dated);
  const std::string sequence = StoredSequence(arguments.sequence);
  const bool there = !dated.empty() && deposits->SeekDeposit(dated, sequence);
  ScreenOutcome outcome;
  if (there) {
    const DepositRecord deposit = deposits->Read();
    std::vector<TypedEntry> entries = {
        {"txtDepositDated", DisplayDate(ParseStoredDate(deposit.dated).value_or(Date{}))},
        {"txtDateSequence", deposit.sequence},
        {"txtStmtPeriod", arguments.period}};
    if (arguments.item != 0) {
      entries.push_back({"chkCleared", "", arguments.item});
    } else {
      entries.push_back({"cmdMarkAll", ""});
    }
    outcome = PostOnScreen(office, {"frmEditDepositsClear"}, entries);
  }
  return ShowChanged(office, *deposits, outcome,
                     !outcome.key.empty() && deposits->SeekDeposit(dated, sequence), NameOf(arguments),
                     there ? " was not cleared" : " is not posted");
}

int List(Office& office) {
  int status = kDone;
  const std::unique_ptr<DepositTable> deposits = OpenPosted<DepositTable>(office, &status);
  if (!deposits) return status;
  Output& out = office.Out();
  out.StartList("deposits");
  for (bool on = deposits->Top("DEPODATED"); on; on = deposits->Skip()) {
    const DepositRecord deposit = deposits->Read();
    const std::string items =
        std::to_string(deposit.item_count) + (deposit.item_count == 1 ? " item" : " items");
    out.Item(out.IsJson() ? FieldsJson(*deposits) : Json(),
             PadRight(DepositName(deposit.dated, deposit.sequence), 15) + "  " + PadLeft(items, 8) + "  " +
                 PadLeft(AmountText(DepositTotal(deposit)), 14) + "  " + StateOf(deposit).text);
  }
  out.EndList();
  return kDone;
}

void AddPost(CLI::App& deposit, Action& chosen) {
  CLI::App* post = deposit.add_subcommand("post", "Posts a deposit through the deposit screen");
  auto arguments = std::make_shared<DepositArguments>();
  post->add_option("--dated", arguments->dated, "Date posted, MM/DD/YYYY")->required();
  post->add_option("--seq", arguments->sequence, "Sequence within the date; the next one unless said")
      ->each([arguments](const std::string&) { arguments->sequence_given = true; });
  post->add_option("--period", arguments->period, "Accounting period in the bank's form")->required();
  post->add_option("--item", arguments->items, "FILE:AMOUNT:SOURCE of each item, up to 15")->required();
  post->add_option("--wire-in", arguments->wire_ins, "Numbers of the items whose money came by wire")
      ->check(CLI::Range(1, kDepositItems));
  Choose(post, chosen, arguments, Post);
}

}  // namespace

void AddDepositCommands(CLI::App& app, Action& chosen) {
  CLI::App* deposit = app.add_subcommand("deposit", "Deposits of the selected bank");
  deposit->require_subcommand(1);
  AddPost(*deposit, chosen);
  auto arguments = std::make_shared<DepositArguments>();
  CLI::App* show = deposit->add_subcommand("show", "A deposit's fields");
  show->add_option("DATE", arguments->dated, "Date posted")->required();
  show->add_option("SEQ", arguments->sequence, "Sequence within the date")->required();
  Choose(show, chosen, arguments, Show);
  CLI::App* clear = deposit->add_subcommand("clear", "Marks items of a deposit cleared");
  auto clearing = std::make_shared<DepositArguments>();
  clear->add_option("DATE", clearing->dated, "Date posted")->required();
  clear->add_option("SEQ", clearing->sequence, "Sequence within the date")->required();
  clear->add_option("ITEM", clearing->item, "Number of the item; every outstanding one unless said")
      ->check(CLI::Range(1, kDepositItems));
  clear->add_option("--stmt", clearing->period, "Statement period")->required();
  Choose(clear, chosen, clearing, Clear);
  Choose(deposit->add_subcommand("list", "Posted deposits, by date"), chosen, List);
}

}  // namespace tallwick::cli
