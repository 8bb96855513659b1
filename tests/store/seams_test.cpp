// The seams between workstations and disks: making tables, coming in, emptying the journal, files that are
// gone, and disks that forget what a failed flush should have kept.

#include <gtest/gtest.h>

#include <functional>

#include "store/engine/byte_order.h"
#include "store/engine/journal.h"
#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"

namespace tallwick {
namespace {

using namespace testing;  // NOLINT: as the fixture
using namespace engine;   // NOLINT

// A disk on which something happens just after a file was first asked for.
class WatchedFiles : public MemoryFiles {
 public:
  bool Exists(const std::string& path) override {
    const bool exists = MemoryFiles::Exists(path);
    if (path == watched) {
      watched.clear();
      then();
    }
    return exists;
  }
  std::string watched;
  std::function<void()> then;
};

std::vector<TableProblem> Problems(Data4* data) {
  std::vector<TableProblem> problems;
  EXPECT_EQ(d4verify(*data, &problems), kSuccess);
  return problems;
}

// Everybody dies, and the power goes with them.
template <class... Companies>
void CutPower(MemoryFiles& disk, Companies&... companies) {
  disk.Plan(Fault::kDie, 1);
  disk.Remove("/data/none");
  (companies.reset(), ...);
  disk.Restart(true);
}

// A company of check 1, and check 2 in a unit whose writer died: its entry is flushed, the tables are not
// written.
void LeaveAUnitBehind(MemoryFiles& disk) {
  {
    Company company(disk);
    company.Make();
    ASSERT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
    code4unitBegin(*company.code);
    ASSERT_EQ(company.AddCheck("     2", "24-1"), kSuccess);
    disk.Plan(Fault::kDie, 3);
    code4unitCommit(*company.code);
  }
  disk.Restart(false);
}

TEST(Seams, TheSecondToMakeATableFindsTheFirstOnesPosts) {
  WatchedFiles disk;
  Company first(disk);
  Company second(disk);
  int posted = 0;
  disk.watched = "/data/checks.dbf";
  disk.then = [&] {
    second.Make();
    for (const char* number : {"     1", "     2"})
      if (second.checks != nullptr && second.AddCheckAlone(number, "24-1", "r") == kSuccess) ++posted;
  };
  first.Make();
  ASSERT_TRUE(first.checks != nullptr || first.Open());
  if (first.AddCheckAlone("     3", "24-1", "r") == kSuccess) ++posted;
  EXPECT_GE(posted, 1);
  EXPECT_EQ(d4recCountDo(*first.checks), posted);
  EXPECT_TRUE(Problems(first.checks).empty());
}

// After the harm nobody may work, and the journal stays as it is.
void ExpectKept(MemoryFiles& disk, const std::function<void()>& harm) {
  const std::string journal = disk.Get("/data/" + std::string(kJournalFileName));
  harm();
  EnginePorts ports;
  const JournalFindings findings = Journal(ports.Over(disk), "/data").Examine();
  EXPECT_EQ(findings.state, JournalState::kFileMissing);
  EXPECT_EQ(findings.missing, "checks.dbf");
  Company company(disk);
  EXPECT_FALSE(company.Open());
  EXPECT_EQ(code4errorCode(*company.code, 0), kErrorJournal);
  EXPECT_TRUE(disk.Get("/data/" + std::string(kJournalFileName)) == journal);
}

// An index can be built anew, and what a unit wrote to a table that is gone can not.
TEST(Seams, AUnitOfATableThatIsGoneIsKept) {
  MemoryFiles disk;
  LeaveAUnitBehind(disk);
  const std::string table = disk.Get("/data/checks.dbf");
  ExpectKept(disk, [&] { disk.Remove("/data/checks.dbf"); });
  disk.Put("/data/checks.dbf", table);
  Company company(disk);
  ASSERT_TRUE(company.Open());
  EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", "     2"), kSuccess);
  EXPECT_TRUE(Problems(company.checks).empty());
}

// Written to an older table its records would stand behind a hole.
TEST(Seams, AUnitOfAnotherTableIsKept) {
  MemoryFiles disk;
  {
    Company company(disk);
    company.Make();
  }
  const std::string older = disk.Get("/data/checks.dbf");
  {
    Company company(disk);
    ASSERT_TRUE(company.Open());
    ASSERT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
  }
  {
    Company company(disk);
    ASSERT_TRUE(company.Open());
    disk.Plan(Fault::kDie, 6);
    company.AddCheck("     2", "24-1");
  }
  disk.Restart(false);
  ExpectKept(disk, [&] { disk.Put("/data/checks.dbf", older); });
  EXPECT_EQ(disk.Get("/data/checks.dbf"), older);
}

// After a power cut the journal is all there is of the last posts. What is damaged in it must not pass for
// its end, nor for a journal in which nothing was ever written.
TEST(Seams, ADamagedJournalIsNotTakenForAShorterOne) {
  constexpr std::size_t kFirstEntry = 96;
  constexpr std::size_t kHead = 28;
  const auto entry_behind = [](const std::string& journal, std::size_t at) {
    return at + kHead + Load64(reinterpret_cast<const std::uint8_t*>(journal.data()) + at + 4);
  };
  const std::function<void(std::string&)> damages[] = {
      [](std::string& journal) { journal.replace(0, kFirstEntry, kFirstEntry, '\0'); },
      [](std::string& journal) { journal.replace(0, 512, 512, '\0'); },
      [&](std::string& journal) {
        auto* head = reinterpret_cast<std::uint8_t*>(journal.data());
        Store64(head + 8, kFirstEntry);  // as if no mark had reached the disk
        Store64(head + 16, Load64(head + 24));
        journal[entry_behind(journal, kFirstEntry) + kHead + 5] ^= 1;
      },
  };
  for (const auto& damage : damages) {
    MemoryFiles disk;
    auto company = std::make_unique<Company>(disk);
    company->ports.workstation.boot = "one run";
    company->Make();
    for (const char* number : {"     1", "     2", "     3"})
      ASSERT_EQ(company->AddCheck(number, "24-1"), kSuccess);
    disk.FlushFolder("/data");
    CutPower(disk, company);
    const std::string path = "/data/" + std::string(kJournalFileName);
    std::string journal = disk.Get(path);
    damage(journal);
    disk.Put(path, journal);
    EnginePorts ports;
    ports.workstation.boot = "another run";
    EXPECT_NE(Journal(ports.Over(disk), "/data").Examine().state, JournalState::kSettled);
    Company late(disk);
    late.ports.workstation.boot = "another run";
    EXPECT_FALSE(late.Open());
    EXPECT_EQ(code4errorCode(*late.code, 0), kErrorJournal);
    EXPECT_TRUE(disk.Get(path).substr(kFirstEntry) == journal.substr(kFirstEntry));
  }
}

// Applied entries are applied again after a power cut: then the way out of a missing table must be known too.
TEST(Seams, ATableThatWentAfterItsPostsCanBeGivenUp) {
  MemoryFiles disk;
  auto company = std::make_unique<Company>(disk);
  company->ports.workstation.boot = "one run";
  company->Make();
  ASSERT_EQ(company->AddCheck("     1", "24-1"), kSuccess);
  disk.FlushFolder("/data");
  CutPower(disk, company);
  ASSERT_EQ(disk.Rename("/data/checks.dbf", "/data/away"), kSuccess);
  EnginePorts ports;
  ports.workstation.boot = "another run";
  const auto journal = [&] { return std::make_unique<Journal>(ports.Over(disk), "/data"); };
  EXPECT_EQ(journal()->Examine().state, JournalState::kFileMissing);
  Company late(disk);
  late.ports.workstation.boot = "another run";
  EXPECT_EQ(d4open(*late.code, "/data/xrefs.dbf"), nullptr);
  disk.Put("/data/ESCROW_UNITS.BAD", "an earlier one");
  EXPECT_EQ(journal()->SetAside("ESCROW_UNITS.BAD", {"xrefs.dbf"}), kSuccess);
  EXPECT_EQ(disk.Get("/data/ESCROW_UNITS.BAD"), "an earlier one");
  EXPECT_TRUE(disk.Exists("/data/ESCROW_UNITS.BAD2"));
  late.xrefs = d4open(*late.code, "/data/xrefs.dbf");
  ASSERT_NE(late.xrefs, nullptr);
  EXPECT_EQ(d4recCountDo(*late.xrefs), 1);
  EXPECT_TRUE(Problems(late.xrefs).empty());
}

// A program that knows nothing of the journal may just be appending when a dead writer's unit is finished.
TEST(Seams, ADeadWritersUnitWaitsForAForeignAppend) {
  MemoryFiles disk;
  LeaveAUnitBehind(disk);
  int rc = kSuccess;
  auto foreign = disk.Open("/data/checks.dbf", OpenMode::kReadWrite, &rc);
  ASSERT_EQ(foreign->Lock(0x7FFFFFFE, 1, LockKind::kExclusive), kSuccess);
  const std::string before = disk.Get("/data/checks.dbf");
  Company company(disk);
  EXPECT_FALSE(company.Open());
  EXPECT_EQ(disk.Get("/data/checks.dbf"), before);
  foreign.reset();
  ASSERT_TRUE(company.Open());
  EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", "     2"), kSuccess);
}

// The journal may not be emptied by a flush that has nothing left to write.
TEST(Seams, WhatAFailedFlushForgotIsWrittenAgain) {
  for (int change = 1, steps = 2; change < steps; ++change) {
    MemoryFiles disk;
    auto company = std::make_unique<Company>(disk);
    company->Make();
    ASSERT_EQ(company->AddCheck("     1", "24-1"), kSuccess);
    disk.Plan(Fault::kFail, change);
    company.reset();  // flushes the tables and empties the journal
    steps = std::max(steps, disk.Changes() + 1);
    disk.Plan(Fault::kNone, 0);
    company = std::make_unique<Company>(disk);
    ASSERT_TRUE(company->Open()) << change;
    company.reset();
    disk.Restart(true);
    company = std::make_unique<Company>(disk);
    ASSERT_TRUE(company->Open()) << change;
    EXPECT_EQ(company->Find(company->checks, "CHXNUMBER", "     1"), kSuccess) << change;
    EXPECT_TRUE(Problems(company->checks).empty()) << change;
  }
}

// While others are in, the flush that failed on one workstation must not be believed on another.
TEST(Seams, AFailedFlushIsRememberedAmongWorkstations) {
  for (int change = 1, steps = 2; change < steps; ++change) {
    MemoryFiles disk;
    auto first = std::make_unique<Company>(disk);
    auto second = std::make_unique<Company>(disk);
    for (auto* company : {&first, &second}) (*company)->ports.workstation.boot = "one run";
    first->Make();
    ASSERT_TRUE(second->Open());
    // Enough that later posts do not write the same sectors again.
    for (char number = 'A'; number <= 'P'; ++number)
      ASSERT_EQ(first->AddCheck(std::string("     ") + number, "24-1"), kSuccess);
    disk.Plan(Fault::kFail, change);
    code4holdWriters(*first->code, "/data");
    code4releaseWriters(*first->code);
    steps = std::max(steps, disk.Changes() + 1);
    disk.Plan(Fault::kNone, 0);
    ASSERT_EQ(second->AddCheck("     2", "24-1"), kSuccess) << change;
    ASSERT_EQ(code4holdWriters(*second->code, "/data"), kSuccess) << change;
    code4releaseWriters(*second->code);
    ASSERT_EQ(first->AddCheck("     3", "24-1"), kSuccess) << change;
    EXPECT_TRUE(Problems(first->checks).empty()) << change;
    CutPower(disk, first, second);
    Company company(disk);
    company.ports.workstation.boot = "another run";
    ASSERT_TRUE(company.Open()) << change;
    for (const char* number : {"     A", "     H", "     P", "     2", "     3"})
      EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", number), kSuccess) << number << change;
    EXPECT_TRUE(Problems(company.checks).empty()) << change;
  }
}

// Somebody emptied the journal and died, or failed, before that was durable: the entries of the old table
// must not come back over the new one.
TEST(Seams, AnEmptiedJournalIsDurableBeforeATableIsReplaced) {
  for (int change = 1, steps = 2; change < steps; ++change) {
    MemoryFiles disk;
    auto reader = std::make_unique<Company>(disk);
    auto packer = std::make_unique<Company>(disk);
    for (auto* company : {&reader, &packer}) (*company)->ports.workstation.boot = "one run";
    packer->Make();
    reader->xrefs = d4open(*reader->code, "/data/xrefs.dbf");
    ASSERT_NE(reader->xrefs, nullptr);
    for (const char* number : {"     1", "     2", "     3"})
      ASSERT_EQ(packer->AddCheck(number, "24-1"), kSuccess);
    ASSERT_EQ(packer->Find(packer->checks, "CHXNUMBER", "     1"), kSuccess);
    ASSERT_EQ(packer->DeleteFound(packer->checks), kSuccess);
    disk.Plan(Fault::kFail, change);
    code4holdWriters(*packer->code, "/data");
    code4releaseWriters(*packer->code);
    steps = std::max(steps, disk.Changes() + 1);
    disk.Plan(Fault::kNone, 0);
    d4close(packer->checks);
    code4accessMode(*packer->code, 1);
    packer->checks = d4open(*packer->code, "/data/checks.dbf");
    ASSERT_NE(packer->checks, nullptr);
    ASSERT_EQ(d4pack(*packer->checks), kSuccess) << change;
    CutPower(disk, reader, packer);
    Company company(disk);
    company.ports.workstation.boot = "another run";
    ASSERT_TRUE(company.Open()) << change;
    EXPECT_EQ(d4recCountDo(*company.checks), 2) << change;
    EXPECT_TRUE(Problems(company.checks).empty()) << change;
  }
}

// A writer who finds that the journal was moved away would write where nobody else reads.
TEST(Seams, NobodyWritesIntoAJournalThatWasMovedAway) {
  MemoryFiles disk;
  Company company(disk);
  company.Make();
  ASSERT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
  const std::string journal = "/data/" + std::string(kJournalFileName);
  ASSERT_EQ(disk.Rename(journal, "/data/away"), kSuccess);
  EXPECT_EQ(company.AddCheck("     2", "24-1"), kErrorJournal);
  ASSERT_EQ(disk.Rename("/data/away", journal), kSuccess);
  EXPECT_EQ(company.AddCheck("     2", "24-1"), kSuccess);
}

// Programs that know no presences show by the format's locks that they are at work.
TEST(Seams, ATableIsNotReplacedUnderAForeignLock) {
  constexpr std::int64_t kAppend = 0x7FFFFFFE;
  constexpr std::int64_t kRecordTwo = 0x7FFFFFFE - 2;
  MemoryFiles disk;
  Company company(disk);
  company.Make();
  for (const char* number : {"     1", "     2"}) ASSERT_EQ(company.AddCheck(number, "24-1"), kSuccess);
  code4close(*company.code);
  ASSERT_TRUE(company.Open(1));
  for (const std::int64_t at : {kAppend, kRecordTwo}) {
    int rc = kSuccess;
    const auto foreign = disk.Open("/data/checks.dbf", OpenMode::kReadWrite, &rc);
    ASSERT_EQ(foreign->Lock(at, 1, LockKind::kExclusive), kSuccess);
    EXPECT_EQ(d4pack(*company.checks), kErrorOpenRefused) << at;
    EXPECT_EQ(d4reindex(*company.checks), kErrorOpenRefused) << at;
  }
  EXPECT_EQ(d4pack(*company.checks), kSuccess);
  EXPECT_EQ(d4reindex(*company.checks), kSuccess);
  EXPECT_EQ(company.AddCheck("     3", "24-1"), kSuccess);
}

}  // namespace
}  // namespace tallwick
