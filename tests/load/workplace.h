// One workstation on a company folder: a session as the product makes it, the tables of one bank, and records
// that say by themselves whether they are whole.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "core/system_ports.h"
#include "posting/post_check.h"
#include "posting/post_deposit.h"
#include "posting/post_voucher.h"
#include "posting/post_wire.h"
#include "tests/support/office.h"

namespace tallwick::load {

inline constexpr const char* kBank = "FNB";

// What a record of this amount and file has as its payee or source: a reader sees at once when the two come
// from different writes.
inline std::string Stamp(Currency amount, std::string_view file) {
  return std::to_string(amount.TenThousandths() / 100) + "|" + std::string(file);
}
inline bool IsWhole(const CheckRecord& check) {
  return check.payee == Stamp(check.amount, check.file_number);
}
inline bool IsWhole(const VoucherRecord& voucher) {
  return voucher.payee == Stamp(voucher.amount, voucher.file_number);
}
inline bool IsWhole(const DepositRecord& deposit) {
  int used = 0;
  for (const DepositItem& item : deposit.items) {
    if (item.file_number.empty()) continue;
    if (item.source != Stamp(item.amount, item.file_number)) return false;
    ++used;
  }
  return used == deposit.item_count;
}

class Workplace {
 public:
  // `folder` in the held form. Null session where the start failed.
  explicit Workplace(const std::string& folder) {
    facts.data_path = folder;
    session = StartUp({boxes, SystemFileSystem(), SystemClock(), SystemWorkstation()}, [this] {
                return std::make_unique<testing::FakeSuite>(facts);
              }).session;
  }
  // Makes the bank where it is missing, and opens its tables.
  bool Open() {
    if (!session) return false;
    if (!session->Company().banks.SeekCode(kBank)) {
      BankRecord bank;
      bank.code = kBank;
      bank.name = "First National Trust";
      bank.accounting = {3, 0, 2024};
      if (session->Company().banks.AddBank(bank) != engine::kSuccess) return false;
    }
    tables = std::make_unique<BankTables>(session->Home());
    return tables->Open(kBank);
  }
  XrefTable& Xrefs() { return session->Company().xrefs; }
  BankTable& Banks() { return session->Company().banks; }

  testing::ScriptedBoxes boxes;
  testing::SuiteFacts facts;
  std::unique_ptr<Session> session;
  std::unique_ptr<BankTables> tables;
};

template <class Record>
Record MakeItem(const std::string& number, std::int64_t cents, const std::string& file) {
  Record item;
  item.number = number;
  item.dated = {2024, 3, 15};
  item.amount = Currency::FromCents(cents);
  item.file_number = file;
  item.payee = Stamp(item.amount, file);
  item.accounting = {3, 0, 2024};
  item.status = "O";
  return item;
}
inline CheckRecord MakeCheck(std::int64_t number, std::int64_t cents, const std::string& file) {
  return MakeItem<CheckRecord>(std::to_string(number), cents, file);
}
inline VoucherRecord MakeVoucher(std::int64_t number, std::int64_t cents, const std::string& file) {
  return MakeItem<VoucherRecord>(std::to_string(number), cents, file);
}

// Deposit `key` is one of 99 of its day.
inline constexpr int kDepositsADay = 99;
inline DepositRecord MakeDeposit(int key) {
  DepositRecord deposit;
  deposit.dated = StoredDate(DateFromJulianDay(2460000 + key / kDepositsADay));
  deposit.sequence = std::to_string(key % kDepositsADay + 1);
  deposit.accounting = {3, 0, 2024};
  return deposit;
}
inline int KeyOf(const DepositRecord& deposit) {
  const int day = JulianDay(*ParseStoredDate(deposit.dated)) - 2460000;
  return day * kDepositsADay + std::stoi(deposit.sequence) - 1;
}
inline void AddItem(DepositRecord& deposit, std::int64_t cents, const std::string& file) {
  DepositItem& item = deposit.items[static_cast<std::size_t>(deposit.item_count++)];
  item.number = std::to_string(deposit.item_count);
  item.file_number = file;
  item.amount = Currency::FromCents(cents);
  item.source = Stamp(item.amount, file);
  item.status = "O";
}

}  // namespace tallwick::load
