#include "cli/demo/writer.h"

#include "posting/payee_book.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"

namespace tallwick::cli {

namespace {

constexpr int kTransactionsPerUnit = 1000;

class Writer {
 public:
  Writer(Session& session, DemoCounts* counts) : session_(session), data_(session.Data()), counts_(*counts) {}

  int Write(const DemoCompany& company) {
    // The banks come first: making their tables is no part of a unit of work.
    for (const DemoBank& bank : company.banks)
      if (!Done(session_.Company().banks.AddBank(bank.bank))) return code_;
    counts_.banks = static_cast<int>(company.banks.size());
    if (!WriteUsers(company)) return code_;
    if (!Done(data_.BeginUnit())) return code_;
    bool written = WriteSides(company);
    for (const DemoBank& bank : company.banks) written = written && WriteBank(bank);
    if (written) return data_.CommitUnit();
    data_.RollbackUnit();
    return code_;
  }

 private:
  bool Done(int code) {
    code_ = code;
    return code == engine::kSuccess;
  }
  // After each transaction: a full unit is written and the next one begun.
  bool Step() {
    if (++in_unit_ < kTransactionsPerUnit) return true;
    in_unit_ = 0;
    return Done(data_.CommitUnit()) && Done(data_.BeginUnit());
  }
  bool AddXref(const XrefRecord& xref) { return Done(session_.Company().xrefs.Add(xref)); }

  bool WriteUsers(const DemoCompany& company);
  bool WriteSides(const DemoCompany& company);
  bool WriteBank(const DemoBank& bank);
  bool WriteChecks(const DemoBank& bank, BankTables& tables);
  bool WriteDeposits(const DemoBank& bank, BankTables& tables);
  bool WriteWires(const DemoBank& bank, BankTables& tables);
  bool WriteVouchers(const DemoBank& bank, BankTables& tables);

  Session& session_;
  clsKVRData& data_;
  DemoCounts& counts_;
  int code_ = 0;
  int in_unit_ = 0;
};

bool Writer::WriteUsers(const DemoCompany& company) {
  for (clsSecurity user : company.users) {
    if (!Done(user.SaveUserSecurity(session_.Home(), session_.TheClock().Now()))) return false;
    ++counts_.users;
  }
  return true;
}

bool Writer::WriteSides(const DemoCompany& company) {
  CompanyTables& tables = session_.Company();
  if (!Done(tables.agent.Save(company.agent))) return false;
  for (const NoteRecord& note : company.notes) {
    if (!Done(tables.notes.Save(note))) return false;
    ++counts_.notes;
  }
  return true;
}

bool Writer::WriteBank(const DemoBank& bank) {
  BankTables tables(session_.Home());
  if (!tables.Open(bank.bank.code)) return Done(engine::kErrorOpen);
  const bool written = WriteVouchers(bank, tables) && WriteChecks(bank, tables) &&
                       WriteDeposits(bank, tables) && WriteWires(bank, tables);
  return written && Done(data_.CommitUnit()) && Done(data_.BeginUnit());
}

bool Writer::WriteChecks(const DemoBank& bank, BankTables& tables) {
  PayeeBook payees(session_.Company().agent);
  for (const CheckRecord& check : bank.checks) {
    payees.Keep({check.payee, check.address1, check.address2, check.city_state});
    if (!Done(tables.checks.Add(check)) ||
        !AddXref(CheckXref(check.file_number, bank.bank.code, check.number)) || !Step())
      return false;
    ++counts_.checks;
  }
  return true;
}

bool Writer::WriteDeposits(const DemoBank& bank, BankTables& tables) {
  for (const DepositRecord& deposit : bank.deposits) {
    if (!Done(tables.deposits.Add(deposit))) return false;
    for (int item = 1; item <= deposit.item_count; ++item) {
      const DepositItem& line = deposit.items[static_cast<std::size_t>(item) - 1];
      const DepositXrefRecord xref{line.file_number, deposit.dated, deposit.sequence, line.number};
      if (!Done(tables.deposit_xrefs.Add(xref)) ||
          !AddXref(DepositItemXref(line.file_number, bank.bank.code, deposit.dated, deposit.sequence, item)))
        return false;
      ++counts_.deposit_items;
    }
    if (!Step()) return false;
    ++counts_.deposits;
  }
  return true;
}

bool Writer::WriteWires(const DemoBank& bank, BankTables& tables) {
  for (const WireRecord& wire : bank.wires) {
    if (!Done(tables.wires.Add(wire)) || !AddXref(WireXref(wire.file_number, bank.bank.code, wire.number)) ||
        !Step())
      return false;
    ++counts_.wires;
  }
  return true;
}

bool Writer::WriteVouchers(const DemoBank& bank, BankTables& tables) {
  for (const VoucherRecord& voucher : bank.vouchers) {
    if (!Done(tables.vouchers.Add(voucher)) ||
        !AddXref(VoucherXref(voucher.file_number, bank.bank.code, voucher.number)) || !Step())
      return false;
    ++counts_.vouchers;
  }
  return true;
}

}  // namespace

int WriteDemoCompany(Session& session, const DemoCompany& company, DemoCounts* counts) {
  return Writer(session, counts).Write(company);
}

}  // namespace tallwick::cli
