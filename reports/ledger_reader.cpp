#include "reports/ledger_reader.h"

#include <charconv>

#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

// The item number of a cross-reference, 0 when it is none.
int ItemNumber(std::string_view text) {
  text = Trim(text);
  int item = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), item);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() ? item : 0;
}

// Gives `add` every record of the file. False where the index led to a record of another file.
template <class Table, class Add>
bool Walk(Table& table, std::string_view file_number, Add add) {
  for (bool on = table.FirstOfFile(file_number); on; on = table.NextOfFile(file_number)) {
    const auto record = table.Read();
    if (!SameKey(record.file_number, file_number)) return false;
    add(record);
  }
  return true;
}

void AddDeposit(DepositTable& deposits, const DepositXrefRecord& xref, BankLedger* ledger) {
  if (!deposits.SeekDeposit(xref.dated, xref.sequence)) return;
  ledger->AddDepositItem(deposits.Read(), ItemNumber(xref.item));
}

// Null when every sum is whole, else the table whose index does not agree with its records.
const TableBase* ReadBank(BankTables& tables, std::string_view file_number, BankLedger* ledger) {
  if (!Walk(tables.checks, file_number, [&](const CheckRecord& check) { ledger->AddCheck(check); }))
    return &tables.checks;
  if (!Walk(tables.wires, file_number, [&](const WireRecord& wire) { ledger->AddWire(wire); }))
    return &tables.wires;
  if (!Walk(tables.deposit_xrefs, file_number,
            [&](const DepositXrefRecord& xref) { AddDeposit(tables.deposits, xref, ledger); }))
    return &tables.deposit_xrefs;
  if (!Walk(tables.vouchers, file_number, [&](const VoucherRecord& voucher) { ledger->AddVoucher(voucher); }))
    return &tables.vouchers;
  return nullptr;
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
    BankLedger ledger(bank.code, bank.name);
    if (const TableBase* damaged = ReadBank(tables, file, &ledger))
      return Incomplete(reading, damaged->Name() + " and its index do not agree and need a reindex");
    reading.ledger.AddBank(ledger);
  }
  if (banks.empty()) {
    reading.message = "No banks have been created.";
  } else if (reading.ledger.Banks().empty()) {
    reading.message = file + " does NOT have any transactions posted.";
  }
  return reading;
}

}  // namespace tallwick
