#include "reports/ledger_reader.h"

#include <charconv>

#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"

namespace tallwick {
namespace {

// The item number of a cross-reference, 0 when it is none.
int ItemNumber(std::string_view text) {
  text = Trim(text);
  int item = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), item);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() ? item : 0;
}

void AddDeposits(BankTables& tables, std::string_view file_number, BankLedger* ledger) {
  for (bool on = tables.deposit_xrefs.FirstOfFile(file_number); on;
       on = tables.deposit_xrefs.NextOfFile(file_number)) {
    const DepositXrefRecord xref = tables.deposit_xrefs.Read();
    if (!tables.deposits.SeekDeposit(xref.dated, xref.sequence)) continue;
    ledger->AddDepositItem(tables.deposits.Read(), ItemNumber(xref.item));
  }
}

BankLedger ReadBank(BankTables& tables, const BankRecord& bank, std::string_view file_number) {
  BankLedger ledger(bank.code, bank.name);
  for (bool on = tables.checks.FirstOfFile(file_number); on; on = tables.checks.NextOfFile(file_number)) {
    ledger.AddCheck(tables.checks.Read());
  }
  for (bool on = tables.wires.FirstOfFile(file_number); on; on = tables.wires.NextOfFile(file_number)) {
    ledger.AddWire(tables.wires.Read());
  }
  AddDeposits(tables, file_number, &ledger);
  for (bool on = tables.vouchers.FirstOfFile(file_number); on; on = tables.vouchers.NextOfFile(file_number)) {
    ledger.AddVoucher(tables.vouchers.Read());
  }
  return ledger;
}

}  // namespace

LedgerReading ReadFileLedger(Session& session, std::string_view file_number) {
  const std::string file(Trim(file_number));
  LedgerReading reading{FileLedger(file), {}, true};
  if (file.empty()) {
    reading.message = "A ledger needs a file number.";
    return reading;
  }
  const std::vector<BankRecord> banks = session.Company().banks.InNameOrder();
  for (const BankRecord& bank : banks) {
    BankTables tables(session.Home());
    if (!tables.Open(bank.code)) {
      reading.message = "The tables of bank " + Quoted(bank.code) +
                        " could not be opened, so the ledger would not be complete.";
      reading.complete = false;
      return reading;
    }
    reading.ledger.AddBank(ReadBank(tables, bank, file));
  }
  if (banks.empty()) {
    reading.message = "No banks have been created.";
  } else if (reading.ledger.Banks().empty()) {
    reading.message = file + " does NOT have any transactions posted.";
  }
  return reading;
}

}  // namespace tallwick
