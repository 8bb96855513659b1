// A folder that may only be read: everything can be looked at, nothing is written, and each attempt says why.
#include <gtest/gtest.h>

#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::Fault;
using tallwick::testing::MemoryFiles;

class ReadOnlyFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    Company company(disk_);
    company.Make();
    for (int i = 101; i < 140; ++i)
      ASSERT_EQ(company.AddCheck("   " + std::to_string(i), "24-1", std::string(90, 'r')), kSuccess);
    picture_ = company.Picture();
  }

  MemoryFiles disk_;
  std::string picture_;
};

TEST_F(ReadOnlyFolder, IsReadAndRefusesEveryChange) {
  disk_.SetReadOnly(true);
  Company company(disk_);
  ASSERT_TRUE(company.Open());
  const int changes = disk_.Changes();
  EXPECT_TRUE(d4readOnly(*company.checks));
  EXPECT_EQ(company.Picture(), picture_);
  EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", "   120"), kSuccess);
  std::vector<TableProblem> problems;
  EXPECT_EQ(d4verify(*company.checks, &problems), kSuccess);
  EXPECT_TRUE(problems.empty());

  EXPECT_EQ(d4lockVB(*company.checks, 3), kErrorReadOnly);
  EXPECT_EQ(company.AddCheck("   900", "24-2"), kErrorReadOnly);
  d4goLow(*company.checks, 5);
  EXPECT_EQ(company.DeleteFound(company.checks), kErrorReadOnly);
  d4changed(*company.checks, 0);
  EXPECT_EQ(code4holdWriters(*company.code, company.folder), kErrorReadOnly);
  Company alone(disk_);
  EXPECT_FALSE(alone.Open(1));
  EXPECT_EQ(code4errorCode(*alone.code, 0), kErrorReadOnly);
  EXPECT_EQ(company.Picture(), picture_);
  EXPECT_EQ(disk_.Changes(), changes);
}

// Tables that lack a finished unit would show old balances.
TEST_F(ReadOnlyFolder, IsNotOpenedWhileUnitsWait) {
  {
    Company company(disk_);
    ASSERT_TRUE(company.Open());
    code4unitBegin(*company.code);
    ASSERT_EQ(company.AddCheck("   500", "24-5"), kSuccess);
    disk_.Plan(Fault::kDie, 4);  // the entry is flushed, the tables are not written
    code4unitCommit(*company.code);
  }
  disk_.Restart(false);
  disk_.SetReadOnly(true);
  Company company(disk_);
  EXPECT_FALSE(company.Open());
  EXPECT_EQ(code4errorCode(*company.code, 0), kErrorReadOnly);
  disk_.SetReadOnly(false);
  EXPECT_TRUE(company.Open());
  EXPECT_EQ(company.Find(company.checks, "CHXNUMBER", "   500"), kSuccess);
}

TEST_F(ReadOnlyFolder, IsNotOpenedBesideAJournalThatIsNone) {
  disk_.Put("/data/ESCROW_UNITS.JNL", std::string(200, 'x'));
  disk_.SetReadOnly(true);
  Company company(disk_);
  EXPECT_FALSE(company.Open());
  EXPECT_EQ(code4errorCode(*company.code, 0), kErrorJournal);
}

// Who reads beside a writer sees the writer's units.
TEST_F(ReadOnlyFolder, ReadsBesideAWriter) {
  Company writer(disk_);
  ASSERT_TRUE(writer.Open());
  disk_.SetReadOnly(true);
  Company reader(disk_);
  ASSERT_TRUE(reader.Open());
  ASSERT_EQ(writer.AddCheck("   700", "24-7"), kSuccess);
  EXPECT_EQ(reader.Find(reader.checks, "CHXNUMBER", "   700"), kSuccess);
  EXPECT_EQ(reader.Picture(), writer.Picture());
}

}  // namespace
}  // namespace tallwick::engine
