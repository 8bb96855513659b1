#include "reports/view_file_ledgers.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "core/text_rows.h"
#include "reports/report_origin.h"
#include "shell/bank_select.h"
#include "shell/status_style.h"
#include "tables/notes_table.h"

namespace tallwick {
namespace {

constexpr std::string_view kCaption = "File Ledger";
constexpr std::size_t kAmountColumn = 3;

struct SectionGrid {
  LedgerSection section;
  std::string_view control;
  std::string_view caption;
  std::string_view headings;
  std::string_view empty;  // said of a ledger without such items
};
constexpr std::array<SectionGrid, 4> kGrids{
    {{LedgerSection::kChecks, "grdChecks", "Checks", kCheckHeadings,
      "No check of this bank account is charged to the file."},
     {LedgerSection::kWires, "grdWires", "Wire Transfers", kWireHeadings,
      "No wire of this bank account is charged to the file."},
     {LedgerSection::kDeposits, "grdDeposits", "Deposits", kDepositHeadings,
      "Nothing in this bank account has been received for the file."},
     {LedgerSection::kVouchers, "grdVouchers", "Vouchers", kVoucherHeadings,
      "No voucher of this bank account is charged to the file."}}};

constexpr std::string_view kFigures[] = {"lblFileBalance", "lblCondition", "lblStatus", "lblMultipleBanks",
                                         "lblVouchered",   "lblMessage",   "lblNotes"};

template <class Item>
void AddLines(const std::vector<Item>& items, std::vector<std::string> (*cells)(const Item&),
              TextRows& rows) {
  for (const Item& item : items) rows.Add(cells(item), StatusStyle(item.status));
}

void AddLines(const BankLedger& bank, LedgerSection section, TextRows& rows) {
  switch (section) {
    case LedgerSection::kChecks:
      return AddLines(bank.Checks(), CheckCells, rows);
    case LedgerSection::kWires:
      return AddLines(bank.Wires(), WireCells, rows);
    case LedgerSection::kDeposits:
      return AddLines(bank.Deposits(), DepositCells, rows);
    case LedgerSection::kVouchers:
      return AddLines(bank.Vouchers(), VoucherCells, rows);
  }
}

// The printed totals, with the block that the printed ledger has below the vouchers. The bank is the one
// chosen above them, so its name, which may be long, is left out.
void AddTotals(const BankLedger& bank, TextRows& rows) {
  for (const LedgerTotal& total : TotalsOf(bank)) {
    const std::string caption = total.remark.empty() ? total.caption : total.caption + " Balance";
    rows.Add({caption, ReportAmount(total.amount)});
  }
  rows.Add({"Bank Balance", ReportAmount(bank.BankBalance())});
  rows.Add({"less Net Vouchers", ReportAmount(bank.TotalVouchers())});
  rows.Add({"Adjusted Balance", ReportAmount(bank.AdjustedBalance())});
}

ItemRoute RouteTo(const BankLedger& bank, LedgerSection section, std::size_t row) {
  switch (section) {
    case LedgerSection::kChecks:
      return RouteToItem("Check", bank.Checks()[row].number, {});
    case LedgerSection::kWires:
      return RouteToItem("Wire", bank.Wires()[row].number, {});
    case LedgerSection::kDeposits: {
      const LedgerDeposit& deposit = bank.Deposits()[row];
      const Date dated = ParseStoredDate(deposit.dated).value_or(Date());
      return RouteToItem("Deposit", deposit.sequence, DisplayDate(dated));
    }
    case LedgerSection::kVouchers:
      break;
  }
  return RouteToItem("Voucher", bank.Vouchers()[row].number, {});
}

}  // namespace

FrmViewFileLedgers::FrmViewFileLedgers(Session& session, ScreenOpener& opener, std::string_view file_number)
    : ReportForm("frmViewFileLedgers", session, &opener) {
  SetFormCaption(std::string(kCaption));
  Add(ControlKind::kMenu, "mnuFileRefresh", "&Refresh");
  Add(ControlKind::kText, "txtFileNumber", "File &Number").text = ToUpper(Trim(file_number));
  Add(ControlKind::kButton, "cmdShow", "&Show");
  Add(ControlKind::kList, "lstBanks", "&Banks");
  for (const SectionGrid& grid : kGrids)
    Add(ControlKind::kGrid, std::string(grid.control), std::string(grid.caption));
  Add(ControlKind::kGrid, "grdTotals", "Totals");
  Add(ControlKind::kButton, "cmdOpenItem", "&Open Item").enabled = false;
  for (std::string_view figure : kFigures) Add(ControlKind::kLabel, std::string(figure));
}

void FrmViewFileLedgers::OnOpen() {
  SetPrintable(false);
  SetFocus("txtFileNumber");
  if (!Text("txtFileNumber").empty()) ShowFile();
}

void FrmViewFileLedgers::ShowFile() {
  const std::string file = ToUpper(Trim(Text("txtFileNumber")));
  if (file.empty()) return Refuse("Type the number of the file whose ledger is wanted.", "txtFileNumber");
  SetText("txtFileNumber", file);
  reading_ = ReadFileLedger(session_, file);
  if (!reading_.complete) {
    Refuse(reading_.message, "txtFileNumber");
    reading_.ledger = FileLedger(file);
  }
  SetFormCaption(std::string(kCaption) + " - " + file);
  ShowHead();
  std::vector<std::string> banks;
  for (const BankLedger& bank : reading_.ledger.Banks())
    banks.push_back(bank.Name() + "   " + ReportAmount(bank.BankBalance()));
  SetRows("lstBanks", banks, banks.empty() ? 0 : 1);
  ShowBank();
  ShowNotes();
}

void FrmViewFileLedgers::ShowHead() {
  const FileLedger& ledger = reading_.ledger;
  const bool shown = reading_.message.empty();
  SetPrintable(reading_.complete);
  SetCaption("lblMessage", reading_.message);
  SetCaption("lblFileBalance", shown ? ReportAmount(ledger.FileBalance()) : "");
  SetCaption("lblCondition", shown ? std::string(ledger.Condition()) : "");
  SetCaption("lblStatus", shown ? std::string(ledger.Status()) : "");
  SetCaption("lblMultipleBanks", shown ? std::string(ledger.MultipleBanks()) : "");
  SetCaption("lblVouchered", shown ? ReportAmount(ledger.Vouchered()) : "");
}

const BankLedger* FrmViewFileLedgers::Bank() {
  const int row = At("lstBanks").selected;
  return row > 0 ? &reading_.ledger.Banks()[static_cast<std::size_t>(row) - 1] : nullptr;
}

void FrmViewFileLedgers::ShowBank() {
  const BankLedger* bank = Bank();
  for (const SectionGrid& grid : kGrids) {
    auto rows =
        std::make_shared<TextRows>(Split(grid.headings, '|'), std::vector<std::size_t>{kAmountColumn});
    if (bank != nullptr) {
      AddLines(*bank, grid.section, *rows);
      rows->SayWhenEmpty(std::string(grid.empty));
    }
    SetSource(grid.control, std::move(rows));
  }
  auto totals =
      std::make_shared<TextRows>(std::vector<std::string>{"Totals", "Amount"}, std::vector<std::size_t>{1});
  if (bank != nullptr) AddTotals(*bank, *totals);
  SetSource("grdTotals", std::move(totals));
  Mark(std::nullopt);
}

void FrmViewFileLedgers::ShowNotes() {
  NotesTable notes(session_.Home());
  std::string text;
  if (notes.Open() > 0) {
    for (const NoteRecord& note : notes.NotesOf(reading_.ledger.FileNumber()))
      text += (text.empty() ? "" : "\r\n\r\n") + note.kind + "\r\n" + note.text;
  }
  SetCaption("lblNotes", text.empty() ? "There are no notes of this file." : text);
}

void FrmViewFileLedgers::OnChoose(Control& control) {
  if (control.name == "lstBanks") return ShowBank();
  for (const SectionGrid& grid : kGrids) {
    if (grid.control == control.name && control.selected > 0)
      Mark(Marked{grid.section, static_cast<std::size_t>(control.selected) - 1});
  }
}

void FrmViewFileLedgers::Mark(std::optional<Marked> item) {
  marked_ = item;
  SetEnabled("cmdOpenItem", marked_.has_value());
}

void FrmViewFileLedgers::OnClick(Control& control) {
  if (control.name == "cmdShow") ShowFile();
  if (control.name == "cmdOpenItem") OpenMarked();
}

void FrmViewFileLedgers::OnMenu(Control& control) {
  ReportForm::OnMenu(control);
  if (control.name == "mnuFileRefresh") ShowFile();
}

bool FrmViewFileLedgers::OnKey(std::string_view key) {
  if (key == "F5") {
    ShowFile();
    return true;
  }
  if (key != "Enter" || Focus() == nullptr) return ReportForm::OnKey(key);
  const std::string control = Focus()->name;
  if (control == "txtFileNumber") {
    ShowFile();
    return true;
  }
  const bool in_grid = std::any_of(kGrids.begin(), kGrids.end(),
                                   [&](const SectionGrid& grid) { return grid.control == control; });
  if (in_grid) OpenMarked();
  return in_grid;
}

// The window that is open already shows the file that is asked for.
bool FrmViewFileLedgers::OnMode(std::string_view file_number) {
  if (Trim(file_number).empty()) return true;
  SetText("txtFileNumber", std::string(Trim(file_number)));
  ShowFile();
  return true;
}

void FrmViewFileLedgers::OpenMarked() {
  const BankLedger* bank = Bank();
  if (!marked_ || bank == nullptr) return;
  if (MaySelect(*bank)) OpenItem(RouteTo(*bank, marked_->section, marked_->row));
}

// Screens of items work on the open bank account.
bool FrmViewFileLedgers::MaySelect(const BankLedger& bank) {
  if (EqualsIgnoreCase(Trim(bank.Code()), session_.BankCode())) return true;
  const std::string question =
      "The item stands in " + bank.Name() + ", which is not the open bank account.\r\nOpen it ?";
  const BoxAnswer answer =
      Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kYes});
  return answer == BoxAnswer::kYes && SelectBank(session_, Trim(bank.Code()));
}

std::optional<ReportDocument> FrmViewFileLedgers::Report() {
  return MakeLedgerReport(reading_, OriginOf(session_));
}

}  // namespace tallwick
