// Corners of the engine where something once went wrong or easily could: handles after a rollback, locks
// within units, pages whose record numbers outgrow their entries, hostile heads, the first post of a folder.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <functional>

#include "core/text.h"
#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"
#include "tests/support/temp_folder.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::EnginePorts;
using tallwick::testing::Fault;
using tallwick::testing::MemoryFiles;

void ExpectClean(Data4* table) {
  std::vector<TableProblem> problems;
  ASSERT_EQ(d4verify(*table, &problems), kSuccess);
  for (const auto& problem : problems) ADD_FAILURE() << problem.record << " " << problem.problem;
}

std::string Payee(Data4* checks) {
  return std::string(Trim(std::string_view(f4ptr(*d4field(*checks, "CHXPAYEE")), 60)));
}

class Corners : public ::testing::Test {
 protected:
  void SetUp() override {
    company_.Make();
    for (const char* number : {"     1", "     2", "     3"})
      ASSERT_EQ(company_.AddCheck(number, "24-1"), kSuccess);
  }
  void Edit(Data4* checks, std::uint32_t record, const std::string& payee) {
    ASSERT_EQ(d4goLow(*checks, record), kSuccess);
    Company::Set(checks, "CHXPAYEE", payee);
    ASSERT_EQ(d4flush(*checks), kSuccess);
  }
  MemoryFiles disk_;
  Company company_{disk_};
};

TEST_F(Corners, AHandleShowsNothingThatWasRolledBack) {
  Data4* clone = d4openClone(*company_.checks);
  code4unitBegin(*company_.code);
  Edit(company_.checks, 2, "NEVER");
  ASSERT_EQ(d4goLow(*clone, 2), kSuccess);
  EXPECT_EQ(Payee(clone), "NEVER");
  code4unitRollback(*company_.code);
  EXPECT_EQ(Payee(clone), "SMITH TITLE      2");
  d4tagSelect(*company_.checks, d4tag(*company_.checks, "CHXPAYEE"));
  EXPECT_EQ(d4skip(*company_.checks, 1), kSuccess);
  EXPECT_EQ(d4recNoLow(*company_.checks), 3U);
}

TEST_F(Corners, AWalkThatReadsAheadSeesItsOwnChanges) {
  d4readAhead(*company_.checks, true);
  code4unitBegin(*company_.code);
  Edit(company_.checks, 1, "FIRST EDIT");
  ASSERT_EQ(d4goLow(*company_.checks, 2), kSuccess);
  ASSERT_EQ(d4goLow(*company_.checks, 1), kSuccess);
  EXPECT_EQ(Payee(company_.checks), "FIRST EDIT");
  ASSERT_EQ(code4unitCommit(*company_.code), kSuccess);
  EXPECT_EQ(d4refreshRecord(*company_.checks), kSuccess);
  EXPECT_EQ(Payee(company_.checks), "FIRST EDIT");
}

TEST_F(Corners, AtTheEndThereIsNothingToWrite) {
  Company other(disk_);
  ASSERT_TRUE(other.Open());
  ASSERT_EQ(company_.Find(company_.checks, "CHXNUMBER", "     9"), kEof);
  ASSERT_EQ(other.AddCheck("     4", "24-1"), kSuccess);
  Company::Set(company_.checks, "CHXPAYEE", "LOST");
  EXPECT_EQ(d4flush(*company_.checks), kNoRecord);
  d4changed(*company_.checks, 0);
  EXPECT_EQ(other.Find(other.checks, "CHXNUMBER", "     4"), kSuccess);
}

TEST_F(Corners, AUnitKeepsTheLocksOfItsCaller) {
  Company other(disk_);
  ASSERT_TRUE(other.Open());
  ASSERT_EQ(d4lockVB(*company_.checks, 1), kSuccess);
  code4unitBegin(*company_.code);
  Edit(company_.checks, 2, "EDITED");
  Data4* clone = d4openClone(*company_.checks);
  ASSERT_EQ(d4lockVB(*clone, 3), kSuccess);
  Edit(clone, 3, "CLONE");
  d4close(clone);
  EXPECT_EQ(d4lockVB(*other.checks, 3), kLocked);  // changed, and not yet committed
  ASSERT_EQ(code4unitCommit(*company_.code), kSuccess);
  EXPECT_EQ(d4lockVB(*other.checks, 3), kSuccess);
  EXPECT_EQ(d4lockVB(*other.checks, 1), kLocked);
}

TEST_F(Corners, ADurableUnitIsReportedAsDoneWhateverFollows) {
  // The journal has its length already, so the entry is change 1 and its flush 2; then come the word to
  // readers that it is on its way, and the first table write.
  for (const int change : {3, 4}) {
    const std::string number = "     " + std::to_string(change + 1);
    code4unitBegin(*company_.code);
    ASSERT_EQ(company_.AddCheck(number, "24-1"), kSuccess);
    disk_.Plan(Fault::kFail, change);
    EXPECT_EQ(code4unitCommit(*company_.code), kSuccess);
    disk_.Plan(Fault::kNone, 0);
    EXPECT_EQ(company_.AddCheck(number, "24-1"), kUnique);
    EXPECT_EQ(company_.Find(company_.checks, "CHXNUMBER", number), kSuccess);
    ExpectClean(company_.checks);
  }
}

TEST(Engine, TheFirstPostOfAFolderSurvivesAPowerCut) {
  MemoryFiles disk;
  {
    Company company(disk);
    company.Make();
    ASSERT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
    disk.Plan(Fault::kDie, 1);
  }
  Company dead(disk);
  dead.Open();
  disk.Restart(true);
  Company company(disk);
  ASSERT_TRUE(company.Open());
  EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", "     1"), kSuccess);
}

TEST(Engine, AForeignChangeOutlivesOurClosing) {
  MemoryFiles disk;
  {
    Company company(disk);
    company.Make();
    ASSERT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
    std::string bytes = disk.Get("/data/checks.dbf");
    bytes.replace(bytes.find("SMITH"), 5, "JONES");
    int code = 0;
    ASSERT_EQ(
        disk.Open("/data/checks.dbf", OpenMode::kReadWrite, &code)->WriteAt(0, bytes.data(), bytes.size()),
        0);
  }
  EXPECT_NE(disk.Get("/data/checks.dbf").find("JONES"), std::string::npos);
}

// Entries of a page grow by a byte where record numbers pass 65,535 (keys up to 15 bytes).
TEST(Engine, PagesHoldRecordNumbersOfAnyWidth) {
  constexpr FieldLayout kFields[] = {{"NUMBER", 'C', 12}, {"SAME", 'C', 3}};
  constexpr TagLayout kTags[] = {{"NUMBER", "NUMBER", ".NOT. DELETED()", true, false},
                                 {"SAME", "SAME", ".NOT. DELETED()", false, false}};
  MemoryFiles disk;
  EnginePorts ports;
  const auto code = code4initVB(ports.Over(disk));
  code4accessMode(*code, 1);
  Data4* table = d4create(*code, "/data/wide.dbf", kFields, kTags);
  ASSERT_NE(table, nullptr);
  const auto append = [&](int from, int to) {
    code4unitBegin(*code);
    for (int i = from; i < to; ++i) {
      d4appendStart(*table);
      f4assignNVB(*d4field(*table, "NUMBER"), PadLeft(std::to_string((i * 7919) % 1000003), 12));
      f4assignNVB(*d4field(*table, "SAME"), "X");
      ASSERT_EQ(d4append(*table), kSuccess);
    }
    ASSERT_EQ(code4unitCommit(*code), kSuccess);
  };
  append(0, 66000);
  ExpectClean(table);
  ASSERT_EQ(d4reindex(*table), kSuccess);
  ExpectClean(table);
  // Thin pages on both sides of the step, so that neighbours join.
  code4unitBegin(*code);
  for (std::uint32_t record = 64000; record < 66000; ++record) {
    if (record % 5 == 0) continue;
    ASSERT_EQ(d4goLow(*table, record), kSuccess);
    d4delete(*table);
    ASSERT_EQ(d4flush(*table), kSuccess);
  }
  ASSERT_EQ(code4unitCommit(*code), kSuccess);
  ExpectClean(table);
  append(66000, 67000);
  ExpectClean(table);
}

// Many keys for an empty tree are packed page by page; the trees are as if they had come one by one, within
// the unit and after it.
TEST(Engine, ABatchIntoAnEmptyTableIsFoundWithinItsUnitAndAfterIt) {
  MemoryFiles disk;
  Company company(disk);
  company.Make();
  constexpr int kCount = 3001;  // a prime: multiples of 7 reach every number once
  const auto number = [](int i) { return PadLeft(std::to_string(i * 7 % kCount + 1), 12); };
  code4unitBegin(*company.code);
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(company.AddCheck(number(i), "24-" + std::to_string(i % 40)), kSuccess);
    if (i == 1500) {
      ASSERT_EQ(company.AddCheck(number(7), "24-7"), kUnique);
    }
  }
  const auto expect_all = [&] {
    d4tagSelect(*company.checks, d4tag(*company.checks, "CHXNUMBER"));
    ASSERT_EQ(d4top(*company.checks), kSuccess);
    int seen = 0;
    for (int rc = kSuccess; rc == kSuccess; rc = d4skip(*company.checks, 1)) {
      ++seen;
      ASSERT_EQ(std::string(f4ptr(*d4field(*company.checks, "CHXNUMBER")), 12),
                PadLeft(std::to_string(seen), 12));
    }
    EXPECT_EQ(seen, kCount);
  };
  expect_all();
  // Packed pages are changed before they are in the file.
  ASSERT_EQ(company.Find(company.checks, "CHXNUMBER", number(20)), kSuccess);
  Company::Set(company.checks, "CHXPAYEE", "AARDVARK ABSTRACT");
  ASSERT_EQ(d4flush(*company.checks), kSuccess);
  ASSERT_EQ(code4unitCommit(*company.code), kSuccess);
  expect_all();
  EXPECT_EQ(company.Find(company.checks, "CHXPAYEE", "AARDVARK"), kSuccess);
  ExpectClean(company.checks);
  ExpectClean(company.xrefs);
}

TEST(Engine, ATableWhoseFieldsCannotHoldTheirTypesIsRefused) {
  constexpr FieldLayout kFields[] = {{"RATE", 'B', 8}, {"NAME", 'C', 12}};
  for (const int width : {1, 4, 9}) {
    MemoryFiles disk;
    EnginePorts ports;
    const auto code = code4initVB(ports.Over(disk));
    Data4* table = d4create(*code, "/data/odd.dbf", kFields, {});
    ASSERT_NE(table, nullptr);
    d4close(table);
    std::string bytes = disk.Get("/data/odd.dbf");
    bytes[32 + 16] = static_cast<char>(width);
    bytes[10] = static_cast<char>(1 + width + 12);
    disk.Put("/data/odd.dbf", bytes);
    EXPECT_EQ(d4open(*code, "/data/odd.dbf"), nullptr);
    EXPECT_EQ(code4errorCode(*code, 0), kErrorDataStructure) << width;
  }
}

// A head that is too long by a byte would shift every record; a version without a memo file would hide every
// text.
TEST(Engine, ATableWhoseHeadDoesNotFitItsFieldsIsRefused) {
  constexpr FieldLayout kFields[] = {{"NAME", 'C', 12}, {"TEXT", 'M', 10}};
  constexpr std::size_t kEnd = 32 + 2 * 32;  // of the field list, where its mark stands
  const struct {
    std::function<void(std::string&)> change;
    bool opens;
  } cases[] = {
      {[](std::string&) {}, true},
      {[](std::string& bytes) { ++bytes[8]; }, false},
      {[](std::string& bytes) { bytes[8] = static_cast<char>(bytes[8] + 23); }, false},
      {[](std::string& bytes) { bytes[0] = '\x03'; }, false},
      // As some programs write it.
      {[](std::string& bytes) {
         bytes.insert(kEnd + 1, 1, '\0');
         ++bytes[8];
       },
       true},
  };
  for (const auto& one : cases) {
    MemoryFiles disk;
    EnginePorts ports;
    const auto code = code4initVB(ports.Over(disk));
    Data4* table = d4create(*code, "/data/odd.dbf", kFields, {});
    ASSERT_NE(table, nullptr);
    for (int i = 0; i < 3; ++i) {
      d4appendStart(*table);
      ASSERT_EQ(d4append(*table), kSuccess);
    }
    d4close(table);
    std::string bytes = disk.Get("/data/odd.dbf");
    one.change(bytes);
    disk.Put("/data/odd.dbf", bytes);
    EXPECT_EQ(d4open(*code, "/data/odd.dbf") != nullptr, one.opens) << &one - cases;
  }
}

// Another program that has the table open, without a lock, would go on with the old file.
TEST(Engine, ATableThatIsOpenElsewhereIsNotReplaced) {
  constexpr FieldLayout kFields[] = {{"NAME", 'C', 12}};
  tallwick::testing::TempFolder folder;
  const std::string path = folder.Platform("held.dbf");
  EnginePorts ports;
  const auto code = code4initVB(ports.Over(SystemFiles()));
  code4accessMode(*code, 1);
  Data4* table = d4create(*code, path, kFields, {});
  ASSERT_NE(table, nullptr);
  d4close(table);
  table = d4open(*code, path);
  ASSERT_NE(table, nullptr);
  int rc = kSuccess;
  auto foreign = SystemFiles().Open(path, OpenMode::kReadOnly, &rc);
  const int lease = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool leases = ::fcntl(lease, F_SETLEASE, F_WRLCK) != 0 && errno == EAGAIN;
  ::close(lease);
  if (!leases) GTEST_SKIP() << "this file system knows no leases";
  EXPECT_EQ(d4pack(*table), kErrorOpenRefused);
  foreign.reset();
  EXPECT_EQ(d4pack(*table), kSuccess);
}

// In a shared folder a table that one person packs must stay open to the others.
TEST(Engine, AReplacedFileKeepsItsRights) {
  constexpr FieldLayout kFields[] = {{"NAME", 'C', 12}};
  tallwick::testing::TempFolder folder;
  const std::string path = folder.Platform("shared.dbf");
  EnginePorts ports;
  const auto code = code4initVB(ports.Over(SystemFiles()));
  code4accessMode(*code, 1);
  d4close(d4create(*code, path, kFields, {}));
  ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
  Data4* table = d4open(*code, path);
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(d4pack(*table), kSuccess);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0666U);
}

// A sparse file of two gibibytes costs nothing, and its append must be refused until large files are on.
TEST(Engine, ATableStopsAtTwoGibibytesUnlessLargeFilesAreOn) {
  constexpr FieldLayout kFields[] = {{"TEXT", 'C', 65000}};
  tallwick::testing::TempFolder folder;
  EnginePorts ports;
  const std::string path = folder.Platform("big.dbf");
  {
    const auto code = code4initVB(ports.Over(SystemFiles()));
    ASSERT_NE(d4create(*code, path, kFields, {}), nullptr);
  }
  const std::int64_t header = 32 + 32 + 1;
  const std::uint32_t count = static_cast<std::uint32_t>((0x7FFFFFFF - header) / 65001);
  int opened = 0;
  {
    const auto file = SystemFiles().Open(path, OpenMode::kReadWrite, &opened);
    ASSERT_EQ(file->WriteAt(4, &count, sizeof count), kSuccess);
    ASSERT_EQ(file->Truncate(header + static_cast<std::int64_t>(count) * 65001 + 1), kSuccess);
  }
  for (const bool large : {false, true}) {
    const auto code = code4initVB(ports.Over(SystemFiles()));
    if (large) code4largeOn(*code);
    Data4* table = d4open(*code, path);
    ASSERT_NE(table, nullptr);
    d4appendStart(*table);
    EXPECT_EQ(d4append(*table), large ? kSuccess : kErrorTooLarge);
    EXPECT_EQ(d4recCountDo(*table), large ? count + 1 : count);
    d4changed(*table, 0);
  }
}

TEST(Engine, WhatACreationCutShortLeftIsMadeAnew) {
  MemoryFiles disk;
  disk.Put("/data/checks.cdx", "half an index");
  disk.Put("/data/checks.fpt", "");
  Company company(disk);
  company.Make();
  ASSERT_NE(company.checks, nullptr);
  EXPECT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
}

}  // namespace
}  // namespace tallwick::engine
