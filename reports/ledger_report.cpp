#include "reports/ledger_report.h"

#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::string_view kCheckFormat = ">+1000|^+1280|<+3160|>+1440|>+1120|>+1120|^+480|<+620|>+580";
constexpr std::string_view kCheckTotalFormat = ">+1000|^+1280|>+3160|>+1440|>+1120|>+1120|^+480|<+620|>+580";
constexpr std::string_view kWireFormat = ">+1000|^+1280|<+3160|>+1440|>+1120|>+1120|^+480|<+1200";
constexpr std::string_view kItemTotalFormat = ">+1000|^+1280|>+3160|>+1440|>+1120|>+1120|^+480|<+1200";
constexpr std::string_view kDepositFormat = "^+1560|^+720|<+3160|>+1440|>+1120|>+1120|^+480|^+800|^+400";
constexpr std::string_view kDepositTotalFormat = "^+1560|^+720|>+3160|>+1440|>+1120|>+1120|^+480|^+1200";
// The same columns; the caption of the balance has what is behind the amount.
constexpr std::string_view kBalanceTotalFormat = "^+1560|^+720|>+3160|>+1440|<+3920";
constexpr std::string_view kVoucherFormat = ">+1000|^+1280|<+3160|>+1440|>+1120|>+1120|^+480|^+1200";
constexpr std::string_view kAdjustedFormat = ">+3600|>+3280|>+3920";
constexpr std::string_view kFileFormat = "^+2160|^+2160|^+2160|>+4320";

std::string Stat(std::string_view status) {
  return std::string(Trim(LedgerStatusText(status)));
}

std::string PayeeAndReason(const VoucherRecord& voucher) {
  if (voucher.payee.empty() || voucher.reason.empty()) return voucher.payee + voucher.reason;
  return voucher.payee + " / " + voucher.reason;
}

struct SectionLook {
  LedgerSection section;
  std::string_view headings;
  std::string_view format;
  std::string_view total_format;
};
constexpr SectionLook kSections[] = {
    {LedgerSection::kChecks, kCheckHeadings, kCheckFormat, kCheckTotalFormat},
    {LedgerSection::kWires, kWireHeadings, kWireFormat, kItemTotalFormat},
    {LedgerSection::kDeposits, kDepositHeadings, kDepositFormat, kDepositTotalFormat},
    {LedgerSection::kVouchers, kVoucherHeadings, kVoucherFormat, kItemTotalFormat}};

std::vector<std::vector<std::string>> RowsOf(const BankLedger& bank, LedgerSection section) {
  std::vector<std::vector<std::string>> rows;
  switch (section) {
    case LedgerSection::kChecks:
      for (const CheckRecord& check : bank.Checks()) rows.push_back(CheckCells(check));
      break;
    case LedgerSection::kWires:
      for (const WireRecord& wire : bank.Wires()) rows.push_back(WireCells(wire));
      break;
    case LedgerSection::kDeposits:
      for (const LedgerDeposit& deposit : bank.Deposits()) rows.push_back(DepositCells(deposit));
      break;
    case LedgerSection::kVouchers:
      for (const VoucherRecord& voucher : bank.Vouchers()) rows.push_back(VoucherCells(voucher));
      break;
  }
  return rows;
}

void AddTotals(const BankLedger& bank, const SectionLook& look, ReportTable& table) {
  for (const LedgerTotal& total : TotalsOf(bank)) {
    if (total.section != look.section) continue;
    std::vector<std::string> cells{"", "", total.caption, ReportAmount(total.amount)};
    if (!total.remark.empty()) cells.push_back(total.remark);
    table.AddSubtotal(std::move(cells), total.remark.empty() ? look.total_format : kBalanceTotalFormat);
  }
}

// A section without rows has its totals only, since those below build on them.
void AddBank(const BankLedger& bank, ReportDocument& report) {
  const std::string name = bank.Name() + " (" + bank.Code() + ")";
  std::string caption = name;  // of the first section
  for (const SectionLook& look : kSections) {
    std::vector<std::vector<std::string>> rows = RowsOf(bank, look.section);
    ReportTable& table = report.AddTable(rows.empty() ? "" : look.headings, look.format, caption);
    if (caption.empty()) table.page_caption = name;
    caption.clear();
    for (std::vector<std::string>& row : rows) table.Add(std::move(row));
    AddTotals(bank, look, table);
  }
  const std::string adjusted = bank.Name() + " Adjusted Balance";
  ReportTable& balance = report.AddTable("Bank Balance|less Net Vouchers|" + adjusted, kAdjustedFormat);
  balance.page_caption = name;
  balance.AddSubtotal({ReportAmount(bank.BankBalance()), ReportAmount(bank.TotalVouchers()),
                       ReportAmount(bank.AdjustedBalance())});
}

void AddFile(const FileLedger& ledger, ReportDocument& report) {
  report
      .AddTable("Escrow Condition|Status|Multiple Banks|" + ledger.FileNumber() + " File Balance",
                kFileFormat)
      .AddSubtotal({std::string(ledger.Condition()), std::string(ledger.Status()),
                    std::string(ledger.MultipleBanks()), ReportAmount(ledger.FileBalance())});
}

}  // namespace

std::vector<std::string> CheckCells(const CheckRecord& check) {
  return {check.number,
          ReportDate(check.dated),
          check.payee,
          ReportAmount(check.amount),
          ShownPeriod(check.accounting),
          ShownPeriod(check.statement),
          Stat(check.status),
          check.control,
          check.voucher_number};
}

std::vector<std::string> WireCells(const WireRecord& wire) {
  return {wire.number,
          ReportDate(wire.dated),
          wire.payee,
          ReportAmount(wire.amount),
          ShownPeriod(wire.accounting),
          ShownPeriod(wire.statement),
          Stat(wire.status),
          wire.control};
}

std::vector<std::string> DepositCells(const LedgerDeposit& deposit) {
  const std::string date = ReportDate(ParseStoredDate(deposit.dated).value_or(Date()));
  return {date + " - " + deposit.sequence,
          std::to_string(deposit.item),
          deposit.source,
          ReportAmount(deposit.amount),
          ShownPeriod(deposit.accounting),
          ShownPeriod(deposit.statement),
          Stat(deposit.status),
          "",
          deposit.wire_in ? "X" : ""};
}

std::vector<std::string> VoucherCells(const VoucherRecord& voucher) {
  return {voucher.number,
          ReportDate(voucher.dated),
          PayeeAndReason(voucher),
          ReportAmount(voucher.amount),
          ShownPeriod(voucher.accounting),
          "",
          Stat(voucher.status),
          voucher.check_number};
}

std::vector<LedgerTotal> TotalsOf(const BankLedger& bank) {
  using enum LedgerSection;
  return {{kChecks, CountedCaption("Total Checks", bank.TotalChecksCount()), bank.TotalChecks()},
          {kChecks, CountedCaption("less Void Checks", bank.VoidChecksCount()), bank.VoidChecks()},
          {kChecks, "Net Checks", bank.NetChecks()},
          {kWires, CountedCaption("Total Wire Transfers", bank.TotalWiresCount()), bank.TotalWires()},
          {kWires, "Net Disbursements", bank.NetDisbursements()},
          {kDeposits, CountedCaption("Total Deposits", bank.TotalDepositsCount()), bank.TotalDeposits()},
          {kDeposits, "less Net Disbursements", bank.NetDisbursements()},
          {kDeposits, "equals", bank.BankBalance(), bank.Name() + " Balance"},
          {kVouchers, "Total Vouchers", bank.TotalVouchers()}};
}

ReportDocument MakeLedgerReport(const LedgerReading& reading, const ReportOrigin& origin) {
  const FileLedger& ledger = reading.ledger;
  ReportDocument report;
  report.group = "ESCROW REPORTS";
  report.title = "Escrow Ledger for File: " + ledger.FileNumber();
  report.name = "Ledger " + ledger.FileNumber() + " " + FormatDate(origin.when.date, "yyyy-mm-dd");
  report.origin = origin;
  if (!reading.message.empty()) {
    report.AddText(reading.message);
    return report;
  }
  for (const BankLedger& bank : ledger.Banks()) AddBank(bank, report);
  AddFile(ledger, report);
  return report;
}

}  // namespace tallwick
