#include "reports/ledger_reader.h"

#include <charconv>
#include <optional>

#include "core/text.h"
#include "posting/deposit_facts.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"
#include "tables/record_pass.h"

namespace tallwick {
namespace {

// A reference and its deposit are read one behind the other, and another desk may change both in between. So
// what does not fit together is looked at again.
constexpr int kLooks = 3;

// The item number of a cross-reference, 0 when it is none.
int ItemNumber(std::string_view text) {
  text = Trim(text);
  int item = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), item);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() ? item : 0;
}

// Each of these says why the ledger would not be complete; "" when nothing is wrong.

std::string AmountProblem(const TableBase& table, Currency amount) {
  return amount.IsValid() ? std::string() : NoNumberText(table, table.RecordNumber());
}

// Gives `add` every record of the file.
template <class Table, class Add>
std::string Walk(Table& table, std::string_view file_number, Add add) {
  for (bool on = table.FirstOfFile(file_number); on; on = table.NextOfFile(file_number)) {
    const auto record = table.Read();
    if (!SameKey(record.file_number, file_number))
      return table.Name() + " and its index do not agree and need a reindex";
    if (std::string problem = add(record); !problem.empty()) return problem;
  }
  return {};
}

std::string AddDeposit(DepositTable& deposits, const DepositXrefRecord& xref, BankLedger* ledger) {
  const int item = ItemNumber(xref.item);
  if (item < 1 || item > kDepositItems || !deposits.SeekDeposit(xref.dated, xref.sequence)) return {};
  const DepositRecord deposit = deposits.Read();
  const DepositItem& named = deposit.items[static_cast<std::size_t>(item) - 1];
  if (!IsUsed(named)) return {};
  const std::string& file = named.file_number;
  if (!SameKey(file, xref.file_number))
    return "Item " + std::to_string(item) + " of deposit " + DepositName(xref.dated, xref.sequence) +
           " is of " + (file.empty() ? "no file" : "file " + Quoted(file)) +
           " by now, and the cross-references of its bank need to be checked";
  return AmountProblem(deposits, ledger->AddDepositItem(deposit, item));
}

std::string ReadBank(BankTables& tables, std::string_view file_number, BankLedger* ledger) {
  std::string problem = Walk(tables.checks, file_number, [&](const CheckRecord& check) {
    ledger->AddCheck(check);
    return AmountProblem(tables.checks, check.amount);
  });
  if (!problem.empty()) return problem;
  problem = Walk(tables.wires, file_number, [&](const WireRecord& wire) {
    ledger->AddWire(wire);
    return AmountProblem(tables.wires, wire.amount);
  });
  if (!problem.empty()) return problem;
  problem = Walk(tables.deposit_xrefs, file_number,
                 [&](const DepositXrefRecord& xref) { return AddDeposit(tables.deposits, xref, ledger); });
  if (!problem.empty()) return problem;
  return Walk(tables.vouchers, file_number, [&](const VoucherRecord& voucher) {
    ledger->AddVoucher(voucher);
    return AmountProblem(tables.vouchers, voucher.amount);
  });
}

LedgerReading Incomplete(LedgerReading reading, const std::string& why) {
  reading.message = why + ", so the ledger would not be complete.";
  reading.complete = false;
  return reading;
}

}  // namespace

LedgerReading ReadFileLedger(Session& session, std::string_view file_number) {
  const std::string file = UpperKey(Trim(file_number));
  LedgerReading reading{FileLedger(file), {}, true};
  if (file.empty()) {
    reading.message = "A ledger needs a file number.";
    return reading;
  }
  const std::vector<BankRecord> banks = session.Company().banks.InNameOrder();
  for (const BankRecord& bank : banks) {
    BankTables tables(session.Home());
    if (!tables.Open(bank.code))
      return Incomplete(reading, "The tables of bank " + Quoted(bank.code) + " could not be opened");
    std::optional<BankLedger> ledger;
    std::string problem;
    for (int look = 0; look < kLooks && (look == 0 || !problem.empty()); ++look) {
      ledger.emplace(bank.code, bank.name);
      problem = ReadBank(tables, file, &*ledger);
    }
    if (!problem.empty()) return Incomplete(reading, problem);
    reading.ledger.AddBank(*ledger);
  }
  if (banks.empty()) {
    reading.message = "No banks have been created.";
  } else if (reading.ledger.Banks().empty()) {
    reading.message = file + " does NOT have any transactions posted.";
  }
  return reading;
}

}  // namespace tallwick
