// A fault at every change of every kind of work: afterwards the tables are whole, and the work happened or
// did not.
#include <gtest/gtest.h>

#include <functional>

#include "store/engine/byte_order.h"
#include "store/engine/codebase.h"
#include "store/engine/verify.h"
#include "tests/support/fault_sweep.h"
#include "tests/support/small_company.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::Fault;
using tallwick::testing::MemoryFiles;

struct Work {
  const char* name;
  int access_mode;
  std::function<int(Company&)> run;
};

int Renumber(Company& c) {
  code4unitBegin(*c.code);
  int rc = c.Find(c.checks, "CHXNUMBER", "   105");
  if (rc == kSuccess) rc = c.DeleteFound(c.checks);
  if (rc == kSuccess) rc = c.Find(c.xrefs, "XRFSFILEBK", "24-0105       ");
  if (rc == kSuccess) rc = c.DeleteFound(c.xrefs);
  if (rc == kSuccess) rc = c.AddCheck("   905", "24-0105");
  return c.EndUnit(rc);
}

int Edit(Company& c) {
  int rc = c.Find(c.checks, "CHXNUMBER", "   110");
  if (rc != kSuccess) return rc;
  d4lockVB(*c.checks, d4recNoLow(*c.checks));
  Company::Set(c.checks, "CHXPAYEE", "AARDVARK ABSTRACT");
  Company::Set(c.checks, "CHXAMOUNT", "99.01");
  rc = d4flush(*c.checks);
  d4unlock(*c.checks);
  return rc;
}

int RewriteMemo(Company& c) {
  const int rc = c.Find(c.checks, "CHXNUMBER", "   111");
  if (rc != kSuccess) return rc;
  f4memoAssign(*d4field(*c.checks, "REMARK"), std::string(700, 'x'));
  return d4flush(*c.checks);
}

// The check stays, worth nothing, and its cross-reference goes to the file of voided checks.
int Void(Company& c) {
  code4unitBegin(*c.code);
  int rc = c.Find(c.checks, "CHXNUMBER", "   113");
  if (rc == kSuccess) rc = d4lockVB(*c.checks, d4recNoLow(*c.checks));
  Company::Set(c.checks, "CHXFILENO", "VOID");
  Company::Set(c.checks, "CHXAMOUNT", "0.00");
  if (rc == kSuccess) rc = d4flush(*c.checks);
  if (rc == kSuccess) rc = c.Find(c.xrefs, "XRFSFILEBK", "24-0113");
  if (rc == kSuccess) rc = d4lockVB(*c.xrefs, d4recNoLow(*c.xrefs));
  Company::Set(c.xrefs, "XRFSFILENO", "VOID");
  if (rc == kSuccess) rc = d4flush(*c.xrefs);
  return c.EndUnit(rc);
}

// Long remarks make the unit large enough to be written ahead of its commit, the first of it while it runs.
// The cross-references come after that, so their table is noted later than the checks.
int AddBatch(Company& c) {
  int rc = kSuccess;
  for (int i = 300; i < 340 && rc == kSuccess; ++i) {
    rc = c.AddCheckAlone("   " + std::to_string(i), "24-0" + std::to_string(i), std::string(120000, 'r'));
  }
  for (int i = 300; i < 340 && rc == kSuccess; ++i) {
    rc = c.AddXref("   " + std::to_string(i), "24-0" + std::to_string(i));
  }
  return rc;
}

const Work kWorks[] = {
    {"post", 0,
     [](Company& c) {
       code4unitBegin(*c.code);
       return c.EndUnit(c.AddCheck("   500", "24-0500"));
     }},
    {"batch", 0,
     [](Company& c) {
       code4unitBegin(*c.code);
       return c.EndUnit(AddBatch(c));
     }},
    {"batch taken back", 0,
     [](Company& c) {
       code4unitBegin(*c.code);
       const int rc = AddBatch(c);
       code4unitRollback(*c.code);
       return rc;
     }},
    {"edit", 0, Edit},
    {"renumber", 0, Renumber},
    {"void", 0, Void},
    {"delete", 0,
     [](Company& c) {
       code4unitBegin(*c.code);
       int rc = c.Find(c.checks, "CHXNUMBER", "   112");
       if (rc == kSuccess) rc = c.DeleteFound(c.checks);
       if (rc == kSuccess) rc = c.Find(c.xrefs, "XRFSFILEBK", "24-0112");
       if (rc == kSuccess) rc = c.DeleteFound(c.xrefs);
       return c.EndUnit(rc);
     }},
    {"memo", 0, RewriteMemo},
    {"pack", 1, [](Company& c) { return d4pack(*c.checks); }},
    {"reindex", 1, [](Company& c) { return d4reindex(*c.checks); }},
};

class CrashSweep : public ::testing::Test {
 protected:
  void SetUp() override {
    Company company(disk_);
    company.Make();
    ASSERT_NE(company.xrefs, nullptr);
    code4unitBegin(*company.code);
    for (int i = 100; i < 150; ++i) {
      ASSERT_EQ(company.AddCheck("   " + std::to_string(i), "24-0" + std::to_string(i)), kSuccess);
    }
    ASSERT_EQ(code4unitCommit(*company.code), kSuccess);
    ASSERT_EQ(company.Find(company.checks, "CHXNUMBER", "   101"), kSuccess);
    ASSERT_EQ(company.DeleteFound(company.checks), kSuccess);
    before_ = company.Picture();
  }

  static void ExpectWhole(Company& company, const std::string& where) {
    for (Data4* table : {company.checks, company.xrefs}) {
      std::vector<TableProblem> problems;
      ASSERT_EQ(d4verify(*table, &problems), kSuccess) << where;
      for (const auto& problem : problems)
        ADD_FAILURE() << where << ": " << problem.record << " " << problem.problem;
    }
  }

  MemoryFiles disk_;
  std::string before_;
};

TEST_F(CrashSweep, EveryWorkIsWholeOrNothing) {
  for (const Work& work : kWorks) {
    std::string after;
    {
      auto disk = disk_.Clone();
      Company company(*disk);
      ASSERT_TRUE(company.Open(work.access_mode));
      ASSERT_EQ(work.run(company), kSuccess) << work.name;
      after = company.Picture();
    }
    const auto run = [&](MemoryFiles& disk, const auto& arm) {
      Company company(disk);
      EXPECT_TRUE(company.Open(work.access_mode));
      arm();
      return work.run(company);
    };
    const auto look = [&](MemoryFiles& disk, int rc, const std::string& where) {
      Company company(disk);
      ASSERT_TRUE(company.Open()) << where << " code " << code4errorCode(*company.code, 0);
      for (const char* stray : {"checks.dbf~", "checks.cdx~", "checks.fpt~"})
        EXPECT_FALSE(disk.Exists(company.folder + "/" + stray)) << where << ", " << stray;
      ASSERT_NO_FATAL_FAILURE(ExpectWhole(company, where));
      const std::string picture = company.Picture();
      EXPECT_TRUE(picture == after || (rc != kSuccess && picture == before_)) << where << " gave " << rc;
      // And the work can go on.
      code4unitBegin(*company.code);
      ASSERT_EQ(company.EndUnit(company.AddCheck("   700", "24-0700")), kSuccess) << where;
      ASSERT_NO_FATAL_FAILURE(ExpectWhole(company, where));
    };
    ASSERT_NO_FATAL_FAILURE(tallwick::testing::SweepFaults(disk_, work.name, run, look));
  }
}

// New files of a pack whose maker died go when the table is next opened by someone who is alone with it.
TEST_F(CrashSweep, StrayNewFilesGoOnlyWhenNobodyCanBeMakingThem) {
  const std::string stray = "/data/checks.dbf~";
  {
    Company first(disk_);
    ASSERT_TRUE(first.Open());
    disk_.Put(stray, "half a table");
    Company second(disk_);
    ASSERT_TRUE(second.Open()) << "others work with the table";
    EXPECT_TRUE(disk_.Exists(stray));
  }
  Company later(disk_);
  ASSERT_TRUE(later.Open());
  EXPECT_FALSE(disk_.Exists(stray));
  EXPECT_EQ(later.Picture(), before_);
}

// A program that knows nothing of the journal may be the first behind the death of a workstation that wrote
// ahead. What it appends stays, and the rest of the tail goes.
TEST_F(CrashSweep, AForeignAppendOverATailStays) {
  constexpr const char* kPath = "/data/xrefs.dbf";
  std::string record;
  {
    Company company(disk_);
    ASSERT_TRUE(company.Open());
    code4unitBegin(*company.code);
    for (int i = 0; i < 90000; ++i) {
      const std::string number = std::to_string(100000 + i);
      ASSERT_EQ(company.AddXref(number, number), kSuccess);
    }
    disk_.Plan(Fault::kDie, 1);
    EXPECT_NE(code4unitCommit(*company.code), kSuccess);
  }
  disk_.Restart(false);
  std::string table = disk_.Get(kPath);
  constexpr std::size_t kRecord = 1 + 14 + 12;
  const std::size_t end = Load16(reinterpret_cast<const std::uint8_t*>(&table[8])) + 50 * kRecord;
  ASSERT_GT(table.size(), end + 1000 * kRecord) << "nothing was written ahead";
  record = " 24-9999       FOREIGN     ";
  table.replace(end, kRecord + 1, record + "\x1A");
  table[4] = 51;
  disk_.Put(kPath, table);

  Company later(disk_);
  ASSERT_TRUE(later.Open());
  EXPECT_EQ(disk_.Get(kPath).size(), end + kRecord + 1);
  EXPECT_NE(later.Picture().find(record.substr(1)), std::string::npos);
}

TEST_F(CrashSweep, APostTakesOneFlush) {
  Company company(disk_);
  ASSERT_TRUE(company.Open());
  const int before = disk_.Flushes();
  code4unitBegin(*company.code);
  ASSERT_EQ(company.EndUnit(company.AddCheck("   600", "24-0600")), kSuccess);
  EXPECT_EQ(disk_.Flushes() - before, 1);
}

// A table is there whole or not at all, so that it can be made again.
TEST(CreationSweep, ATableCutShortCanBeMadeAgain) {
  for (const bool power_cut : {false, true}) {
    for (int change = 1, steps = 2; change < steps; ++change) {
      MemoryFiles disk;
      auto company = std::make_unique<Company>(disk);
      disk.Plan(Fault::kDie, change);
      company->Make();
      steps = std::max(steps, disk.Changes() + 1);
      company.reset();
      disk.Restart(power_cut);
      company = std::make_unique<Company>(disk);
      company->Make();
      EXPECT_TRUE(company->checks != nullptr || company->Open()) << change;
      company = std::make_unique<Company>(disk);
      ASSERT_TRUE(company->Open()) << "change " << change << (power_cut ? ", power cut" : "");
      EXPECT_EQ(company->AddCheck("     1", "24-1"), kSuccess);
    }
  }
}

}  // namespace
}  // namespace tallwick::engine
