// A fault at every change of a check's posting, rewriting and removal: check, cross-reference and voucher
// have changed together or not at all.
#include "posting/post_check.h"
#include "tests/support/fault_sweep.h"
#include "tests/support/memory_company.h"

namespace tallwick {
namespace {

using testing::MemoryFiles;

// The tables that a check touches, on a disk in memory.
struct Office : testing::MemoryCompany {
  explicit Office(MemoryFiles& disk) : MemoryCompany(disk), bank(home), xrefs(home) {}
  bool Open() {
    if (!files.FileExists("\\data\\ESCROW_XRFS.DBF") && xrefs.Create() != 0) return false;
    return bank.Open("FNB") && xrefs.Open() > 0;
  }
  CheckRecord Check(std::string_view number) {
    EXPECT_TRUE(bank.checks.SeekNumber(number));
    return bank.checks.Read();
  }
  // All live records.
  std::string Picture() {
    std::string text;
    for (bool on = bank.checks.Top("CHXNUMBER"); on; on = bank.checks.Skip()) {
      const CheckRecord check = bank.checks.Read();
      text += check.number + " " + check.payee + " " + check.file_number + " " + check.voucher_number + "\n";
    }
    for (bool on = bank.vouchers.Top("VCHRNUMBER"); on; on = bank.vouchers.Skip())
      text += bank.vouchers.Read().number + " by " + bank.vouchers.Read().check_number + "\n";
    for (bool on = xrefs.Top("XRFSFILEBK"); on; on = xrefs.Skip())
      text += xrefs.Read().file_number + " " + xrefs.Read().reference + "\n";
    return text;
  }
  std::string AllProblems() {
    std::string text = Problems(xrefs);
    for (const TableBase* table : bank.All()) text += Problems(*table);
    return text;
  }

  BankTables bank;
  XrefTable xrefs;
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

struct Work {
  const char* name;
  std::function<int(Office&)> run;
};

const Work kWorks[] = {
    {"post", [](Office& o) { return PostCheck(o.bank, o.xrefs, "FNB", MakeCheck("900", "24-1", "1")).code; }},
    {"rewrite",
     [](Office& o) {
       CheckRecord after = o.Check("20");
       after.file_number = "24-9";
       after.voucher_number = "3";
       after.payee = "Another";
       return RewriteCheck(o.bank, o.xrefs, "FNB", o.Check("20"), after).code;
     }},
    {"remove", [](Office& o) { return RemoveCheck(o.bank, o.xrefs, "FNB", o.Check("20")).code; }},
};

TEST(PostingSweep, CheckReferenceAndVoucherGoTogether) {
  MemoryFiles base;
  std::string before;
  {
    Office office(base);
    ASSERT_TRUE(office.Open());
    for (const char* number : {"1", "2", "3"}) {
      VoucherRecord voucher;
      voucher.number = number;
      ASSERT_EQ(office.bank.vouchers.Add(voucher), 0);
    }
    for (int number = 10; number < 40; ++number) {
      const CheckRecord check =
          MakeCheck(std::to_string(number), "24-" + std::to_string(number % 5), number == 20 ? "2" : "");
      ASSERT_TRUE(PostCheck(office.bank, office.xrefs, "FNB", check).Done());
    }
    before = office.Picture();
  }
  for (const Work& work : kWorks) {
    std::string after;
    {
      auto disk = base.Clone();
      Office office(*disk);
      ASSERT_TRUE(office.Open());
      ASSERT_EQ(work.run(office), 0) << work.name;
      after = office.Picture();
      ASSERT_NE(after, before);
    }
    const auto run = [&](MemoryFiles& disk, const auto& arm) {
      Office office(disk);
      EXPECT_TRUE(office.Open());
      arm();
      return work.run(office);
    };
    testing::SweepFaults(base, work.name, run, [&](MemoryFiles& disk, int code, const std::string& where) {
      Office office(disk);
      ASSERT_TRUE(office.Open()) << where;
      EXPECT_EQ(office.AllProblems(), "") << where;
      const std::string picture = office.Picture();
      EXPECT_TRUE(picture == after || (code != 0 && picture == before)) << where << " gave " << code;
    });
  }
}

}  // namespace
}  // namespace tallwick
