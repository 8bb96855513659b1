// voucher: posting through the voucher screen, and looking at what is posted.
#include "cli/commands/posted.h"
#include "core/text.h"
#include "posting/entry_problems.h"
#include "posting/item_number.h"
#include "posting/post_voucher.h"
#include "shell/company_tables.h"
#include "tables/status_text.h"

namespace tallwick::cli {

namespace {

struct VoucherArguments {
  std::string number;
  std::vector<TypedEntry> entries;
  std::string status;
};

int Post(Office& office, const VoucherArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<VoucherTable> vouchers = OpenPosted<VoucherTable>(office, &status);
  if (!vouchers) return status;
  std::vector<TypedEntry> entries;
  // Without a number the screen's proposal stands.
  if (!arguments.number.empty()) entries.push_back({"txtVCHRNumber", arguments.number});
  entries.insert(entries.end(), arguments.entries.begin(), arguments.entries.end());
  const ScreenOutcome outcome =
      PostOnScreen(office, {.screen = "frmEditVouchersPost", .only_new = true}, entries);
  return ShowPosted(office, *vouchers, outcome, !outcome.key.empty() && vouchers->SeekNumber(outcome.key),
                    arguments.number.empty() ? "The voucher" : "Voucher " + Quoted(arguments.number));
}

int Show(Office& office, const VoucherArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<VoucherTable> vouchers = OpenPosted<VoucherTable>(office, &status);
  if (!vouchers) return status;
  return ShowFields(office, *vouchers, SeekCounted(*vouchers, arguments.number),
                    "Voucher " + Quoted(arguments.number) + " is not posted");
}

int Remove(Office& office, const VoucherArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<VoucherTable> vouchers = OpenPosted<VoucherTable>(office, &status);
  if (!vouchers) return status;
  return RemoveOnScreen(office, {"frmEditVouchersPost", "Posting", "mnuEditRemoveVoucher"},
                        {"txtVCHRNumber", arguments.number}, "Voucher " + Quoted(arguments.number),
                        SeekCounted(*vouchers, arguments.number));
}

int List(Office& office, const VoucherArguments& arguments) {
  int status = kDone;
  const std::unique_ptr<VoucherTable> vouchers = OpenPosted<VoucherTable>(office, &status);
  if (!vouchers) return status;
  const std::string wanted = ToUpper(arguments.status);
  Output& out = office.Out();
  out.StartList("vouchers");
  for (bool on = vouchers->Top("VCHRNUMBER"); on; on = vouchers->Skip()) {
    const VoucherRecord voucher = vouchers->Read();
    if (!wanted.empty() && voucher.status != wanted) continue;
    out.Item(out.IsJson() ? FieldsJson(*vouchers) : Json(),
             PadLeft(voucher.number, 12) + "  " + PadRight(DisplayDate(voucher.dated), 10) + "  " +
                 PadLeft(AmountText(voucher.amount), 14) + "  " + PadRight(voucher.file_number, 14) + "  " +
                 PadRight(VoucherStatusText(voucher.status), 11) + "  " + voucher.payee);
  }
  out.EndList();
  return kDone;
}

int Next(Office& office) {
  int status = kDone;
  const std::unique_ptr<VoucherTable> vouchers = OpenPosted<VoucherTable>(office, &status);
  if (!vouchers) return status;
  Session& session = *office.Open();
  const std::optional<BankRecord> bank = session.Company().banks.Find(session.BankCode());
  const std::int64_t next = NextVoucherNumber(*vouchers, bank ? bank->last_voucher : 0);
  office.Out().Set("next", next);
  office.Out().Line(std::to_string(next));
  return kDone;
}

constexpr EntryOption kPostOptions[] = {
    {"--dated", "txtVCHRDated", true, "Date of the voucher, MM/DD/YYYY"},
    {"--payee", "txtVCHRPayee", true, "Payee"},
    {"--reason", "txtVCHRReason", true, "Reason"},
    {"--amount", "txtVCHRAmount", true, "Amount"},
    {"--file", "txtVCHRFileNumber", true, "Escrow file number"},
    {"--period", "txtVCHRAcctPeriod", true, "Accounting period in the bank's form"},
};

}  // namespace

void AddVoucherCommands(CLI::App& app, Action& chosen) {
  CLI::App* voucher = app.add_subcommand("voucher", "Vouchers of the selected bank");
  voucher->require_subcommand(1);
  CLI::App* post = voucher->add_subcommand("post", "Posts a voucher through the voucher screen");
  auto posted = std::make_shared<VoucherArguments>();
  post->add_option("NUMBER", posted->number, "The next number unless said");
  AddEntryOptions(*post, kPostOptions, posted->entries);
  Choose(post, chosen, posted, Post);
  auto arguments = std::make_shared<VoucherArguments>();
  CLI::App* show = voucher->add_subcommand("show", "A voucher's fields");
  show->add_option("NUMBER", arguments->number)->required();
  Choose(show, chosen, arguments, Show);
  CLI::App* remove = voucher->add_subcommand("remove", "Removes an unused voucher and its cross-reference");
  remove->add_option("NUMBER", arguments->number)->required();
  Choose(remove, chosen, arguments, Remove);
  CLI::App* list = voucher->add_subcommand("list", "Posted vouchers");
  list->add_option("--status", arguments->status, "Only those with this status: O or C")
      ->check(CLI::IsMember({"O", "C"}, CLI::ignore_case));
  Choose(list, chosen, arguments, List);
  Choose(voucher->add_subcommand("next", "The number of the next voucher"), chosen, Next);
}

}  // namespace tallwick::cli
