// Other xBase programs beside ours: what they keep locked, and records that they changed without our index.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "store/engine/instance.h"
#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::MemoryFiles;

constexpr std::int64_t kIndexOrAppend = 0x7FFFFFFE;
constexpr std::int64_t kWhole = 0x7FFFFFFE - 0x07FFFFFF;
constexpr std::int64_t kWholeLength = 0x07FFFFFF;

class ForeignPrograms : public ::testing::Test {
 protected:
  void SetUp() override {
    company_.Make();
    for (int number = 1; number <= kChecks; ++number)
      ASSERT_EQ(company_.AddCheck("     " + std::to_string(number), "24-1"), kSuccess);
  }
  std::unique_ptr<File> Raw(const std::string& path) {
    int rc = kSuccess;
    return disk_.Open(path, OpenMode::kReadWrite, &rc);
  }
  void Patch(std::uint32_t record, const char* field, const std::string& value) {
    const TableHeader& header = company_.checks->table.Header();
    const auto file = Raw("/data/checks.dbf");
    const std::int64_t at = header.header_length + std::int64_t{record - 1} * header.record_length;
    ASSERT_EQ(file->WriteAt(at + d4field(*company_.checks, field)->info.offset, value.data(), value.size()),
              kSuccess);
  }
  static constexpr int kChecks = 7;
  MemoryFiles disk_;
  Company company_{disk_};
};

// A record whose key is not its entry's stops no walk, and no walk steps over it or past it.
TEST_F(ForeignPrograms, AWalkComesToRecordsThatLeftTheirPlace) {
  for (const std::uint32_t record : {1U, 4U, 7U}) {
    for (const std::int64_t step : {1, 2, 3}) {
      SCOPED_TRACE(std::to_string(record) + " by " + std::to_string(step));
      Patch(record, "CHXNUMBER", "    99");
      Data4* checks = company_.checks;
      d4tagSelect(*checks, d4tag(*checks, "CHXNUMBER"));
      std::vector<std::uint32_t> met;
      for (int rc = d4top(*checks); rc == kSuccess; rc = d4skip(*checks, step))
        met.push_back(d4recNoLow(*checks));
      std::vector<std::uint32_t> expected;
      for (std::int64_t at = 1; at <= kChecks; at += step) expected.push_back(static_cast<std::uint32_t>(at));
      EXPECT_EQ(met, expected);
      met.clear();
      for (int rc = d4bottom(*checks); rc == kSuccess; rc = d4skip(*checks, -step))
        met.push_back(d4recNoLow(*checks));
      expected.clear();
      for (std::int64_t at = kChecks; at >= 1; at -= step) expected.push_back(static_cast<std::uint32_t>(at));
      EXPECT_EQ(met, expected);
      Patch(record, "CHXNUMBER", "     " + std::to_string(record));
    }
  }
}

// "Locked" would pass for "not found" or for the end of a list.
TEST_F(ForeignPrograms, AReaderThatCannotGetAnIndexIsToldSo) {
  Company other(disk_);
  ASSERT_TRUE(other.Open());
  ASSERT_EQ(company_.AddCheck("     8", "24-1"), kSuccess);  // the other's pages are old now
  const auto foreign = Raw("/data/checks.cdx");
  ASSERT_EQ(foreign->Lock(kIndexOrAppend, 1, LockKind::kExclusive), kSuccess);
  EXPECT_EQ(other.Find(other.checks, "CHXNUMBER", "     8"), kErrorLock);
  EXPECT_EQ(d4top(*other.checks), kErrorLock);
  EXPECT_EQ(d4goLow(*other.checks, 2), kSuccess);
  EXPECT_EQ(d4skip(*other.checks, 1), kErrorLock);
}

// All banks wait for the writer's lock: who waits for another program first lets go of it.
TEST_F(ForeignPrograms, WhoMeetsALockFirstKeepsNobodyFromWriting) {
  struct Case {
    const char* path;
    std::int64_t at;
    std::int64_t length;
  };
  for (const Case& held :
       {Case{"/data/checks.dbf", kIndexOrAppend, 1}, Case{"/data/checks.cdx", kIndexOrAppend, 1},
        Case{"/data/checks.dbf", kWhole, kWholeLength}}) {
    SCOPED_TRACE(std::string(held.path) + " " + std::to_string(held.length));
    Company other(disk_);
    ASSERT_TRUE(other.Open());
    auto foreign = Raw(held.path);
    ASSERT_EQ(foreign->Lock(held.at, held.length, LockKind::kExclusive), kSuccess);
    const std::string file = std::string(held.path).substr(12) + std::to_string(held.length % 100);
    code4unitBegin(*company_.code);
    EXPECT_EQ(company_.AddCheckAlone("    50", "24-1", "Remark"), kLocked);
    EXPECT_EQ(other.AddXref("    51", file), kSuccess);
    foreign.reset();
    EXPECT_EQ(company_.AddCheckAlone("    50", "24-1", "Remark"), kSuccess);
    EXPECT_EQ(other.AddXref("    52", file), kLocked);
    code4unitRollback(*company_.code);
    EXPECT_EQ(other.AddXref("    52", file), kSuccess);
    EXPECT_EQ(company_.Find(company_.checks, "CHXNUMBER", "    50"), kEof);
  }
}

// An append of ours and a lock on the whole file exclude each other, also when the append came first.
TEST_F(ForeignPrograms, NobodyLocksAFileThatIsAppendedTo) {
  const auto foreign = Raw("/data/checks.dbf");
  code4unitBegin(*company_.code);
  ASSERT_EQ(company_.AddCheckAlone("    50", "24-1", "Remark"), kSuccess);
  EXPECT_EQ(foreign->Lock(kWhole, kWholeLength, LockKind::kExclusive), kLocked);
  code4unitRollback(*company_.code);
  EXPECT_EQ(foreign->Lock(kWhole, kWholeLength, LockKind::kExclusive), kSuccess);
}

// A second record of a number, appended without keys, must be one that can be taken out.
TEST_F(ForeignPrograms, ARecordWithoutKeysCanBeDeleted) {
  Data4* checks = company_.checks;
  const std::int32_t length = checks->table.Header().record_length;
  const std::int64_t first = checks->table.Header().header_length;
  std::vector<std::uint8_t> record(static_cast<std::size_t>(length));
  const auto file = Raw("/data/checks.dbf");
  ASSERT_EQ(file->ReadAt(first, record.data(), record.size()), length);
  ASSERT_EQ(file->WriteAt(first + std::int64_t{kChecks} * length, record.data(), record.size()), kSuccess);
  const std::uint8_t count = kChecks + 1;
  ASSERT_EQ(file->WriteAt(4, &count, 1), kSuccess);
  ASSERT_EQ(d4goLow(*checks, kChecks + 1), kSuccess);
  EXPECT_EQ(company_.DeleteFound(checks), kSuccess);
  std::vector<TableProblem> problems;
  ASSERT_EQ(d4verify(*checks, &problems), kSuccess);
  EXPECT_EQ(problems.size(), 0U) << problems.front().problem;
  EXPECT_EQ(company_.Find(checks, "CHXNUMBER", "     1"), kSuccess);
}

}  // namespace
}  // namespace tallwick::engine
