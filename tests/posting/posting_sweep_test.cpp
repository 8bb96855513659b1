// A fault at every change of every kind of post: the item, its cross-references, the voucher it uses and the
// bank's counter have changed together or not at all.
#include "posting/post_check.h"
#include "posting/post_deposit.h"
#include "posting/post_voucher.h"
#include "posting/post_wire.h"
#include "tests/support/fault_sweep.h"
#include "tests/support/memory_company.h"

namespace tallwick {
namespace {

using testing::MemoryFiles;

constexpr const char* kBank = "FNB";
constexpr const char* kDay = "20240315";

// The tables that posts touch, on a disk in memory.
struct Office : testing::MemoryCompany {
  explicit Office(MemoryFiles& disk) : MemoryCompany(disk), bank(home), xrefs(home), banks(home) {}
  bool Open() {
    if (!files.FileExists("\\data\\ESCROW_XRFS.DBF") && (xrefs.Create() != 0 || banks.Create() != 0))
      return false;
    return bank.Open(kBank) && xrefs.Open() > 0 && banks.Open() > 0;
  }
  CheckRecord Check(std::string_view number) {
    EXPECT_TRUE(bank.checks.SeekNumber(number));
    return bank.checks.Read();
  }
  VoucherRecord Voucher(std::string_view number) {
    EXPECT_TRUE(bank.vouchers.SeekNumber(number));
    return bank.vouchers.Read();
  }
  WireRecord Wire(std::string_view number) {
    EXPECT_TRUE(bank.wires.SeekNumber(number));
    return bank.wires.Read();
  }
  DepositRecord Deposit(std::string_view sequence) {
    EXPECT_TRUE(bank.deposits.SeekDeposit(kDay, sequence));
    return bank.deposits.Read();
  }
  PostOutcome Change(const CheckRecord& before, const std::function<void(CheckRecord&)>& change) {
    CheckRecord after = before;
    change(after);
    return RewriteCheck(bank, xrefs, kBank, before, after);
  }
  // All live records.
  std::string Picture() {
    std::string text;
    for (bool on = bank.checks.Top("CHXNUMBER"); on; on = bank.checks.Skip()) {
      const CheckRecord check = bank.checks.Read();
      text += check.number + " " + check.payee + " " + check.file_number + " " + check.voucher_number + " " +
              check.status + check.reason + ShortForm(check.statement) + "\n";
    }
    for (bool on = bank.wires.Top("WIRENUMBER"); on; on = bank.wires.Skip())
      text += bank.wires.Read().number + " " + bank.wires.Read().file_number + "\n";
    for (bool on = bank.deposits.Top("DEPODATED"); on; on = bank.deposits.Skip()) {
      const DepositRecord deposit = bank.deposits.Read();
      text += deposit.dated + " " + deposit.sequence;
      for (const DepositItem& item : deposit.items) text += "," + item.file_number + item.status;
      text += "\n";
    }
    for (bool on = bank.vouchers.Top("VCHRNUMBER"); on; on = bank.vouchers.Skip()) {
      const VoucherRecord voucher = bank.vouchers.Read();
      text += voucher.number + " " + voucher.file_number + " by " + voucher.check_number + "\n";
    }
    for (bool on = xrefs.Top("XRFSFILEBK"); on; on = xrefs.Skip())
      text += xrefs.Read().file_number + " " + xrefs.Read().kind + xrefs.Read().reference + "\n";
    for (bool on = bank.deposit_xrefs.Top("DXRFFILENO"); on; on = bank.deposit_xrefs.Skip())
      text += bank.deposit_xrefs.Read().file_number + " item " + bank.deposit_xrefs.Read().item + "\n";
    return text + "counter " + std::to_string(banks.Find(kBank).value_or(BankRecord{}).last_voucher);
  }
  std::string AllProblems() {
    std::string text = Problems(xrefs) + Problems(banks);
    for (const TableBase* table : bank.All()) text += Problems(*table);
    return text;
  }

  BankTables bank;
  XrefTable xrefs;
  BankTable banks;
};

CheckRecord MakeCheck(const std::string& number, const std::string& file, const std::string& voucher) {
  CheckRecord check;
  check.number = number;
  check.payee = "Harbor County Recorder";
  check.amount = Currency::FromCents(2500);
  check.status = "O";
  check.file_number = file;
  check.voucher_number = voucher;
  return check;
}

VoucherRecord MakeVoucher(const std::string& number) {
  VoucherRecord voucher;
  voucher.number = number;
  voucher.file_number = "24-1";
  voucher.status = "O";
  return voucher;
}

WireRecord MakeWire(const std::string& number, const std::string& file) {
  WireRecord wire;
  wire.number = number;
  wire.file_number = file;
  wire.status = "O";
  return wire;
}

DepositRecord MakeDeposit(const std::string& sequence, std::initializer_list<const char*> files) {
  DepositRecord deposit;
  deposit.dated = kDay;
  deposit.sequence = sequence;
  for (const char* file : files) {
    DepositItem& item = deposit.items[static_cast<std::size_t>(deposit.item_count++)];
    item.number = std::to_string(deposit.item_count);
    item.file_number = file;
    item.amount = Currency::FromCents(100);
    item.status = "O";
  }
  return deposit;
}

// Checks 10 to 39, the 20th of which uses voucher 2; vouchers 1 to 3, wires A and B, deposits 1 and 2.
void Fill(Office& office) {
  BankRecord bank;
  bank.code = kBank;
  ASSERT_EQ(office.banks.Add(bank), 0);
  for (const char* number : {"1", "2", "3"})
    ASSERT_TRUE(PostVoucher(office.bank, office.banks, office.xrefs, kBank, MakeVoucher(number)).Done());
  for (int number = 10; number < 40; ++number) {
    const CheckRecord check =
        MakeCheck(std::to_string(number), "24-" + std::to_string(number % 5), number == 20 ? "2" : "");
    ASSERT_TRUE(PostCheck(office.bank, office.xrefs, kBank, check).Done());
  }
  for (const char* number : {"A", "B"})
    ASSERT_TRUE(PostWire(office.bank, office.xrefs, kBank, MakeWire(number, "24-3")).Done());
  for (const char* sequence : {"1", "2"})
    ASSERT_TRUE(PostDeposit(office.bank, office.xrefs, kBank, MakeDeposit(sequence, {"24-1", "24-2", "24-1"}))
                    .Done());
}

struct Work {
  const char* name;
  std::function<PostOutcome(Office&)> run;
};

const Work kWorks[] = {
    {"post a check",
     [](Office& o) { return PostCheck(o.bank, o.xrefs, kBank, MakeCheck("900", "24-1", "1")); }},
    {"change a check",
     [](Office& o) {
       return o.Change(o.Check("20"), [](CheckRecord& check) {
         check.file_number = "24-9";
         check.voucher_number = "3";
         check.payee = "Another";
       });
     }},
    {"renumber a check",
     [](Office& o) { return o.Change(o.Check("20"), [](CheckRecord& check) { check.number = "901"; }); }},
    {"void a check",
     [](Office& o) {
       return o.Change(o.Check("20"), [](CheckRecord& check) {
         check.status = "V";
         check.reason = "Lost";
         check.statement = {3, 0, 2024};
       });
     }},
    {"stop a check",
     [](Office& o) { return o.Change(o.Check("20"), [](CheckRecord& check) { check.status = "S"; }); }},
    {"remove a check", [](Office& o) { return RemoveCheck(o.bank, o.xrefs, kBank, o.Check("20")); }},
    {"post a deposit",
     [](Office& o) {
       return PostDeposit(o.bank, o.xrefs, kBank, MakeDeposit("3", {"24-1", "24-2", "24-3", "24-1", "24-9"}));
     }},
    {"move the lines of a deposit",
     [](Office& o) {
       return RewriteDeposit(o.bank, o.xrefs, kBank, o.Deposit("1"), MakeDeposit("7", {"24-2", "24-1"}));
     }},
    {"clear a deposit's line",
     [](Office& o) {
       DepositRecord after = o.Deposit("1");
       after.items[1].status = "C";
       after.items[1].statement = {3, 0, 2024};
       return RewriteDeposit(o.bank, o.xrefs, kBank, o.Deposit("1"), after);
     }},
    {"remove a deposit", [](Office& o) { return RemoveDeposit(o.bank, o.xrefs, kBank, o.Deposit("1")); }},
    {"post a wire", [](Office& o) { return PostWire(o.bank, o.xrefs, kBank, MakeWire("C", "24-1")); }},
    {"change a wire",
     [](Office& o) { return RewriteWire(o.bank, o.xrefs, kBank, o.Wire("A"), MakeWire("A", "24-8")); }},
    {"remove a wire", [](Office& o) { return RemoveWire(o.bank, o.xrefs, kBank, o.Wire("A")); }},
    {"remove a voucher", [](Office& o) { return RemoveVoucher(o.bank, o.xrefs, kBank, o.Voucher("1")); }},
    {"post a voucher",
     [](Office& o) { return PostVoucher(o.bank, o.banks, o.xrefs, kBank, MakeVoucher("4")); }},
    {"change a voucher",
     [](Office& o) {
       VoucherRecord after = o.Voucher("1");
       after.file_number = "24-7";
       return RewriteVoucher(o.bank, o.xrefs, kBank, o.Voucher("1"), after);
     }},
};

class PostingSweep : public ::testing::TestWithParam<Work> {};

TEST_P(PostingSweep, IsDoneWholeOrNotAtAll) {
  const Work& work = GetParam();
  MemoryFiles base;
  std::string before;
  std::string after;
  {
    Office office(base);
    ASSERT_TRUE(office.Open());
    ASSERT_NO_FATAL_FAILURE(Fill(office));
    before = office.Picture();
  }
  {
    auto disk = base.Clone();
    Office office(*disk);
    ASSERT_TRUE(office.Open());
    ASSERT_EQ(work.run(office).code, 0);
    after = office.Picture();
    ASSERT_NE(after, before);
  }
  const auto run = [&](MemoryFiles& disk, const auto& arm) {
    Office office(disk);
    EXPECT_TRUE(office.Open());
    arm();
    return work.run(office).code;
  };
  testing::SweepFaults(base, work.name, run, [&](MemoryFiles& disk, int code, const std::string& where) {
    Office office(disk);
    ASSERT_TRUE(office.Open()) << where;
    EXPECT_EQ(office.AllProblems(), "") << where;
    const std::string picture = office.Picture();
    EXPECT_TRUE(picture == after || (code != 0 && picture == before)) << where << " gave " << code;
  });
}

INSTANTIATE_TEST_SUITE_P(Posts, PostingSweep, ::testing::ValuesIn(kWorks), [](const auto& one) {
  std::string name;
  for (const char c : std::string_view(one.param.name)) name += std::isalpha(c) != 0 ? c : '_';
  return name;
});

}  // namespace
}  // namespace tallwick
