// The printed ledger of an escrow file: bank by bank its checks, wires, deposit items and vouchers with
// running subtotals, and at the end the file's balance and condition.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "reports/ledger_reader.h"
#include "reports/report_document.h"

namespace tallwick {

// The columns of the sections, shared with the grids on screen.
inline constexpr std::string_view kCheckHeadings =
    "Check|Dated|Payee|Amount|Accounting|Statement|Stat|Ctl|Vchr";
inline constexpr std::string_view kWireHeadings = "Wire|Dated|Payee|Amount|Accounting|Statement|Stat|Control";
inline constexpr std::string_view kDepositHeadings =
    "Deposit|Seq #|Source|Amount|Accounting|Statement|Stat|By|WI";
inline constexpr std::string_view kVoucherHeadings =
    "Voucher|Dated|Payee / Reason|Amount|Accounting||Stat|Check";

std::vector<std::string> CheckCells(const CheckRecord& check);
std::vector<std::string> WireCells(const WireRecord& wire);
std::vector<std::string> DepositCells(const LedgerDeposit& deposit);
std::vector<std::string> VoucherCells(const VoucherRecord& voucher);

// The subtotal lines of one bank in their order, each with the section that it ends.
enum class LedgerSection { kChecks, kWires, kDeposits, kVouchers };
struct LedgerTotal {
  LedgerSection section;
  std::string caption;  // "Total Checks  (3)"
  Currency amount;
  std::string remark = {};  // behind the amount: the bank's name and " Balance"
};
std::vector<LedgerTotal> TotalsOf(const BankLedger& bank);

// A reading that says why there is no ledger gives a report of its message and nothing else.
ReportDocument MakeLedgerReport(const LedgerReading& reading, const ReportOrigin& origin);

}  // namespace tallwick
