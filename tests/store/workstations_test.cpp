// Several workstations on one folder: locks between instances, and real processes that post, walk and are
// killed.
#include <gtest/gtest.h>
#include <poll.h>

#include <random>
#include <set>

#include "core/text.h"
#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/processes.h"
#include "tests/support/small_company.h"
#include "tests/support/temp_folder.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::ExitOf;
using tallwick::testing::MemoryFiles;
using tallwick::testing::Setting;
using tallwick::testing::Spawn;
using tallwick::testing::TempFolder;

// TALLWICK_POSTS and TALLWICK_KILLS ask for a longer run.
constexpr std::chrono::minutes kPatience{20};

void ExpectClean(Company& company) {
  for (Data4* table : {company.checks, company.xrefs}) {
    std::vector<TableProblem> problems;
    ASSERT_EQ(d4verify(*table, &problems), kSuccess);
    for (const auto& problem : problems) ADD_FAILURE() << problem.record << " " << problem.problem;
  }
}

class TwoInstances : public ::testing::Test {
 protected:
  void SetUp() override {
    first_.Make();
    ASSERT_EQ(first_.AddCheck("     1", "24-1"), kSuccess);
    ASSERT_TRUE(second_.Open());
  }
  MemoryFiles disk_;
  Company first_{disk_};
  Company second_{disk_};
};

TEST_F(TwoInstances, RecordLocksExcludeEachOther) {
  EXPECT_EQ(d4lockVB(*first_.checks, 1), kSuccess);
  EXPECT_EQ(d4lockVB(*second_.checks, 1), kLocked);
  Data4* clone = d4openClone(*first_.checks);
  EXPECT_EQ(d4lockVB(*clone, 1), kLocked);
  // Closing another handle on the table keeps the lock.
  d4close(clone);
  EXPECT_EQ(d4lockVB(*second_.checks, 1), kLocked);
  EXPECT_EQ(d4lockFile(*second_.checks), kLocked);
  // A change by the other finds the record locked and leaves it alone.
  ASSERT_EQ(second_.Find(second_.checks, "CHXNUMBER", "     1"), kSuccess);
  Company::Set(second_.checks, "CHXPAYEE", "OTHER");
  EXPECT_EQ(d4flush(*second_.checks), kLocked);
  d4changed(*second_.checks, 0);
  EXPECT_EQ(d4unlock(*first_.checks), kSuccess);
  EXPECT_EQ(d4lockVB(*second_.checks, 1), kSuccess);
}

TEST_F(TwoInstances, ExclusiveAccessIsRefusedWhileOthersAreIn) {
  code4accessMode(*second_.code, 1);
  d4close(second_.checks);
  EXPECT_EQ(d4open(*second_.code, "/data/checks.dbf"), nullptr);
  EXPECT_EQ(code4errorCode(*second_.code, 0), kErrorOpenRefused);
  d4close(first_.checks);
  Data4* alone = d4open(*second_.code, "/data/checks.dbf");
  ASSERT_NE(alone, nullptr);
  EXPECT_EQ(d4open(*first_.code, "/data/checks.dbf"), nullptr);
  EXPECT_EQ(code4errorCode(*first_.code, 0), kErrorOpenRefused);
  // Nor does one's own second open slip in beside it.
  code4accessMode(*second_.code, 0);
  EXPECT_EQ(d4open(*second_.code, "/data/checks.dbf"), nullptr);
  d4close(alone);
  EXPECT_NE(d4open(*first_.code, "/data/checks.dbf"), nullptr);
}

TEST_F(TwoInstances, ChangesShowInTheOtherOnlyWhenCommitted) {
  EXPECT_EQ(second_.Find(second_.checks, "CHXNUMBER", "     2"), kEof);
  code4unitBegin(*first_.code);
  ASSERT_EQ(first_.AddCheck("     2", "24-1"), kSuccess);
  EXPECT_EQ(first_.Find(first_.checks, "CHXNUMBER", "     2"), kSuccess);
  EXPECT_EQ(d4recCountDo(*second_.checks), 1U);
  ASSERT_EQ(code4unitCommit(*first_.code), kSuccess);
  EXPECT_EQ(second_.Find(second_.checks, "CHXNUMBER", "     2"), kSuccess);
  // The lost race for a number.
  EXPECT_EQ(second_.AddCheck("     2", "24-2"), kUnique);
  ASSERT_EQ(second_.AddCheck("     3", "24-2"), kSuccess);
  EXPECT_EQ(first_.Find(first_.checks, "CHXNUMBER", "     3"), kSuccess);
}

TEST_F(TwoInstances, AWalkGoesOnThroughTheOthersChanges) {
  for (int i = 2; i < 200; ++i)
    ASSERT_EQ(first_.AddCheck(PadLeft(std::to_string(i * 2), 6), "24-1"), kSuccess);
  d4tagSelect(*second_.checks, d4tag(*second_.checks, "CHXNUMBER"));
  std::string last;
  int seen = 0;
  int odd = 1;
  for (int rc = d4top(*second_.checks); rc == kSuccess; rc = d4skip(*second_.checks, 1)) {
    const std::string number(f4ptr(*d4field(*second_.checks, "CHXNUMBER")), 6);
    EXPECT_LT(last, number);
    last = number;
    ++seen;
    if (seen % 10 == 0) {
      // Before and behind the walker; the one it stands on goes away under it.
      ASSERT_EQ(first_.AddCheck(PadLeft(std::to_string(odd += 2), 6), "24-1"), kSuccess);
      ASSERT_EQ(first_.Find(first_.checks, "CHXNUMBER", number), kSuccess);
      ASSERT_EQ(first_.DeleteFound(first_.checks), kSuccess);
    }
  }
  EXPECT_GE(seen, 199);
  ExpectClean(second_);
}

// --- Processes ---

// A workstation's clock waits for real.
struct RealCompany : Company {
  explicit RealCompany(const std::string& path) : Company(SystemFiles(), path, &SystemClock()) {}
};

// Posts under the next free number, as clerks do: a number lost to another is tried again with the next one.
int PostNext(Company& company, const std::string& file) {
  for (int tries = 0; tries < 1000; ++tries) {
    d4tagSelect(*company.checks, d4tag(*company.checks, "CHXNUMBER"));
    long next = 1;
    if (d4bottom(*company.checks) == kSuccess) next = f4long(*d4field(*company.checks, "CHXNUMBER")) + 1;
    code4unitBegin(*company.code);
    const int rc = company.EndUnit(company.AddCheck(PadLeft(std::to_string(next), 12), file));
    if (rc == kSuccess) return static_cast<int>(next);
    if (rc != kUnique && rc != kLocked) return rc;
    if (rc == kLocked) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return kLocked;
}

// Walks the register until the file "stop" appears; each walk sees every number once, in order.
int WalkUntilStopped(const std::string& folder) {
  RealCompany company(folder);
  if (!company.Open()) return 10;
  long before = 0;
  while (!SystemFiles().Exists(folder + "/stop")) {
    d4tagSelect(*company.checks, d4tag(*company.checks, "CHXNUMBER"));
    long last = 0;
    long seen = 0;
    for (int rc = d4top(*company.checks); rc != kEof; rc = d4skip(*company.checks, 1)) {
      if (rc != kSuccess) return 11;
      const long number = f4long(*d4field(*company.checks, "CHXNUMBER"));
      if (number != last + 1) return 12;
      if (std::string(f4ptr(*d4field(*company.checks, "CHXPAYEE")), 11) != "SMITH TITLE") return 13;
      last = number;
      ++seen;
    }
    if (seen < before) return 14;
    before = seen;
  }
  return 0;
}

TEST(Workstations, PostAtOnceWithoutLosingANumber) {
  TempFolder folder;
  const std::string path = folder.Platform();
  const int posts = Setting("TALLWICK_POSTS", 25);
  {
    RealCompany company(path);
    company.Make();
  }
  std::vector<pid_t> walkers = {Spawn([&] { return WalkUntilStopped(path); })};
  std::vector<pid_t> clerks;
  for (int c = 0; c < 4; ++c) {
    clerks.push_back(Spawn([&] {
      RealCompany company(path);
      if (!company.Open()) return 20;
      for (int i = 0; i < posts; ++i) {
        if (PostNext(company, "24-" + std::to_string(i % 7)) < 0) return 21;
      }
      return 0;
    }));
  }
  for (const pid_t clerk : clerks) EXPECT_EQ(ExitOf(clerk, kPatience), 0);
  SystemFileSystem().Write(folder.Held("stop"), "");
  for (const pid_t walker : walkers) EXPECT_EQ(ExitOf(walker, kPatience), 0);

  RealCompany company(path);
  ASSERT_TRUE(company.Open());
  ExpectClean(company);
  EXPECT_EQ(d4recCountDo(*company.checks), static_cast<std::uint32_t>(4 * posts));
  EXPECT_EQ(d4recCountDo(*company.xrefs), static_cast<std::uint32_t>(4 * posts));
}

TEST(Workstations, AKilledOneLosesNothingAcknowledged) {
  TempFolder folder;
  const std::string path = folder.Platform();
  {
    RealCompany company(path);
    company.Make();
  }
  std::mt19937 random(7);
  std::set<int> acknowledged;
  for (int round = 0; round < Setting("TALLWICK_KILLS", 30); ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t clerk = Spawn([&] {
      RealCompany company(path);
      if (!company.Open()) return 30;
      for (;;) {
        const int number = PostNext(company, "24-1");
        if (number < 0 || write(ends[1], &number, sizeof number) != sizeof number) return 31;
      }
    });
    close(ends[1]);
    // Every other one dies behind its first post, however busy the machine is.
    pollfd posted{ends[0], POLLIN, 0};
    if (round % 2 == 1) poll(&posted, 1, 10000);
    std::this_thread::sleep_for(std::chrono::microseconds(2000 + random() % 25000));
    kill(clerk, SIGKILL);
    int number = 0;
    while (read(ends[0], &number, sizeof number) == sizeof number) acknowledged.insert(number);
    close(ends[0]);
    int status = 0;
    waitpid(clerk, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "ended by itself with " << WEXITSTATUS(status);
  }
  RealCompany company(path);
  ASSERT_TRUE(company.Open());
  ExpectClean(company);
  EXPECT_EQ(d4recCountDo(*company.checks), d4recCountDo(*company.xrefs));
  EXPECT_FALSE(acknowledged.empty());
  for (const int number : acknowledged) {
    EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", PadLeft(std::to_string(number), 12)), kSuccess)
        << number;
  }
}

}  // namespace
}  // namespace tallwick::engine
