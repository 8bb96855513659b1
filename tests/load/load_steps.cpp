#include "tests/load/load_steps.h"

#include <functional>

namespace tallwick::load {
namespace {

int AsOneUnit(clsKVRData& data, std::initializer_list<std::function<int()>> pieces) {
  if (const int code = data.BeginUnit(); code != engine::kSuccess) return code;
  for (const auto& piece : pieces) {
    if (const int code = piece(); code != engine::kSuccess) {
      data.RollbackUnit();
      return code;
    }
  }
  return data.CommitUnit();
}

// Locks the record that was found, when it is still as it was read.
template <class Table, class Record>
int Hold(Table& table, bool found, const Record& before) {
  if (!found) return kChangedElsewhere;
  const int code = table.Lock(true);
  if (code != engine::kSuccess) return code == engine::kNoRecord ? kChangedElsewhere : code;
  return table.Read() == before ? engine::kSuccess : kChangedElsewhere;
}

int AddReferences(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                  const DepositRecord& deposit) {
  for (const XrefRecord& one : CompanyReferences(deposit, bank_code)) {
    if (const int code = xrefs.Add(one, true); code != engine::kSuccess) return code;
  }
  for (const DepositXrefRecord& one : BankReferences(deposit)) {
    if (const int code = bank.deposit_xrefs.Add(one, true); code != engine::kSuccess) return code;
  }
  return engine::kSuccess;
}

int RemoveReferences(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                     const DepositRecord& deposit) {
  for (const XrefRecord& one : CompanyReferences(deposit, bank_code)) {
    if (!xrefs.SeekReference(one)) return engine::kNoRecord;
    if (const int code = xrefs.Delete(); code != engine::kSuccess) return code;
  }
  for (const DepositXrefRecord& one : BankReferences(deposit)) {
    if (!bank.deposit_xrefs.SeekItem(one)) return engine::kNoRecord;
    if (const int code = bank.deposit_xrefs.Delete(); code != engine::kSuccess) return code;
  }
  return engine::kSuccess;
}

int RaiseCounter(BankTable& banks, std::string_view bank_code, const std::string& number) {
  if (!banks.SeekCode(bank_code)) return engine::kNoRecord;
  if (const int code = banks.Lock(true); code != engine::kSuccess) return code;
  BankRecord bank = banks.Read();
  bank.last_voucher = std::max<std::int64_t>(bank.last_voucher, std::stoll(number));
  const int code = banks.Update(bank);
  banks.Unlock();
  return code;
}

template <class Use>
void ForItems(const DepositRecord& deposit, Use use) {
  for (int item = 1; item <= kDepositItems; ++item) {
    const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
    if (!file.empty()) use(file, item);
  }
}

}  // namespace

std::vector<XrefRecord> CompanyReferences(const DepositRecord& deposit, std::string_view bank_code) {
  std::vector<XrefRecord> references;
  ForItems(deposit, [&](const std::string& file, int item) {
    references.push_back(DepositItemXref(file, bank_code, deposit.dated, deposit.sequence, item));
  });
  return references;
}

std::vector<DepositXrefRecord> BankReferences(const DepositRecord& deposit) {
  std::vector<DepositXrefRecord> references;
  ForItems(deposit, [&](const std::string& file, int item) {
    references.push_back({file, deposit.dated, deposit.sequence, std::to_string(item)});
  });
  return references;
}

int PostDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                const DepositRecord& deposit) {
  return AsOneUnit(xrefs.Data(), {[&] { return bank.deposits.Add(deposit, true); },
                                  [&] { return AddReferences(bank, xrefs, bank_code, deposit); }});
}

int RewriteDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                   const DepositRecord& before, const DepositRecord& after) {
  const auto found = [&] { return bank.deposits.SeekDeposit(before.dated, before.sequence); };
  const int code = AsOneUnit(xrefs.Data(), {[&] { return Hold(bank.deposits, found(), before); },
                                            [&] { return bank.deposits.Update(after); },
                                            [&] { return RemoveReferences(bank, xrefs, bank_code, before); },
                                            [&] { return AddReferences(bank, xrefs, bank_code, after); }});
  bank.deposits.Unlock();
  return code;
}

int RemoveDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                  const DepositRecord& deposit) {
  const auto found = [&] { return bank.deposits.SeekDeposit(deposit.dated, deposit.sequence); };
  const int code =
      AsOneUnit(xrefs.Data(), {[&] { return Hold(bank.deposits, found(), deposit); },
                               [&] { return bank.deposits.Delete(); },
                               [&] { return RemoveReferences(bank, xrefs, bank_code, deposit); }});
  bank.deposits.Unlock();
  return code;
}

int PostVoucher(BankTables& bank, BankTable& banks, XrefTable& xrefs, std::string_view bank_code,
                const VoucherRecord& voucher) {
  const XrefRecord xref = VoucherXref(voucher.file_number, bank_code, voucher.number);
  return AsOneUnit(xrefs.Data(),
                   {[&] { return bank.vouchers.Add(voucher, true); }, [&] { return xrefs.Add(xref, true); },
                    [&] { return RaiseCounter(banks, bank_code, voucher.number); }});
}

int RewriteVoucher(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                   const VoucherRecord& before, const VoucherRecord& after) {
  const XrefRecord old_xref = VoucherXref(before.file_number, bank_code, before.number);
  const XrefRecord new_xref = VoucherXref(after.file_number, bank_code, after.number);
  const int code = AsOneUnit(
      xrefs.Data(), {[&] { return Hold(bank.vouchers, bank.vouchers.SeekNumber(before.number), before); },
                     [&] { return bank.vouchers.Update(after); },
                     [&] { return xrefs.SeekReference(old_xref) ? xrefs.Delete() : engine::kNoRecord; },
                     [&] { return xrefs.Add(new_xref, true); }});
  bank.vouchers.Unlock();
  return code;
}

}  // namespace tallwick::load
