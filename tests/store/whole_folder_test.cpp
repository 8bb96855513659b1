// A folder as a whole: having it alone, keeping writers off it, and putting other files in the place of its
// own with a fault at every step.
#include <gtest/gtest.h>

#include "store/engine/folder_gate.h"
#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::Fault;
using tallwick::testing::MemoryFiles;

const std::vector<std::string> kTables = {"/data/checks.dbf", "/data/xrefs.dbf"};
const std::vector<std::string> kFiles = {"checks.dbf", "checks.cdx", "checks.fpt", "xrefs.dbf", "xrefs.cdx"};

void Fill(MemoryFiles& disk, const std::string& folder, int first, int last) {
  Company company(disk, folder);
  company.Make();
  for (int i = first; i < last; ++i) company.AddCheck("   " + std::to_string(i), "24-" + std::to_string(i));
}

// The case of the names that the engine gives its files.
std::string NameOn(MemoryFiles& disk, const std::string& folder, const std::string& name) {
  const std::string upper = name.substr(0, name.size() - 3) + (name.ends_with("cdx") ? "CDX" : "FPT");
  return !name.ends_with("dbf") && disk.Exists(folder + "/" + upper) ? upper : name;
}

int Stage(MemoryFiles& disk, const std::string& from, const std::string& to) {
  int rc = kSuccess;
  const auto file = disk.Open(to, OpenMode::kCreate, &rc);
  if (!file) return rc;
  const std::string bytes = disk.Get(from);
  rc = file->WriteAt(0, bytes.data(), bytes.size());
  return rc == kSuccess ? file->Flush() : rc;
}

// What a restore does: the files of /new take the place of those in /data, and /data/stray.cdx goes.
int Restore(MemoryFiles& disk, Company& company) {
  int rc = code4takeFolder(*company.code, "/data", kTables);
  FolderChange change;
  for (const std::string& file : kFiles) {
    change.replaced.push_back(NameOn(disk, "/data", file));
    const std::string from = "/new/" + NameOn(disk, "/new", file);
    if (rc == kSuccess) rc = Stage(disk, from, "/data/" + change.replaced.back() + "~");
  }
  change.removed.emplace_back("stray.cdx");
  if (rc == kSuccess) rc = code4replaceFiles(*company.code, change);
  code4releaseFolder(*company.code);
  return rc;
}

class WholeFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    Fill(disk_, "/data", 100, 130);
    Fill(disk_, "/new", 100, 118);
    // The last writer of /data died: its journal holds entries for the old tables, which may be applied again
    // after a power cut.
    {
      Company company(disk_);
      ASSERT_TRUE(company.Open());
      ASSERT_EQ(company.AddCheck("   500", "24-0500"), kSuccess);
      old_ = company.Picture();
      disk_.Plan(Fault::kDie, 1);
    }
    disk_.Restart(false);
    disk_.Put("/data/stray.cdx", "stray");
    Company fresh(disk_, "/new");
    ASSERT_TRUE(fresh.Open());
    new_ = fresh.Picture();
  }

  MemoryFiles disk_;
  std::string old_;
  std::string new_;
};

TEST_F(WholeFolder, FilesAreReplacedAllOrNone) {
  int changes = 0;
  {
    auto disk = disk_.Clone();
    Company company(*disk);
    disk->Plan(Fault::kNone, 0);
    ASSERT_EQ(Restore(*disk, company), kSuccess);
    changes = disk->Changes();
  }
  ASSERT_GT(changes, 20);
  const std::pair<Fault, bool> kFaults[] = {{Fault::kFail, false}, {Fault::kShort, false},
                                            {Fault::kFull, false}, {Fault::kDie, false},
                                            {Fault::kDie, true},   {Fault::kTear, true}};
  for (const auto& [fault, power_cut] : kFaults) {
    for (int n = 1; n <= changes + 1; ++n) {
      const std::string where = "fault " + std::to_string(static_cast<int>(fault)) +
                                (power_cut ? ", power cut" : "") + " at " + std::to_string(n);
      auto disk = disk_.Clone();
      int rc = 0;
      {
        Company company(*disk);
        disk->Plan(fault, n);
        rc = Restore(*disk, company);
      }
      disk->Restart(power_cut && disk->IsDead());
      Company company(*disk);
      ASSERT_TRUE(company.Open()) << where << " code " << code4errorCode(*company.code, 0);
      const std::string picture = company.Picture();
      EXPECT_TRUE(picture == new_ || (rc != kSuccess && picture == old_)) << where << " gave " << rc;
      EXPECT_EQ(disk->Exists("/data/stray.cdx"), picture == old_) << where;
      std::vector<TableProblem> problems;
      for (Data4* table : {company.checks, company.xrefs}) d4verify(*table, &problems);
      ASSERT_TRUE(problems.empty()) << where << ": " << problems.front().problem;
      ASSERT_EQ(company.AddCheck("   700", "24-0700"), kSuccess) << where;
    }
  }
}

TEST_F(WholeFolder, OneWorkstationAtATimeHasItAlone) {
  Company alone(disk_);
  Company other(disk_);
  ASSERT_TRUE(other.Open());
  EXPECT_EQ(code4takeFolder(*alone.code, "/data", kTables), kErrorOpenRefused);
  code4close(*other.code);
  ASSERT_EQ(code4takeFolder(*alone.code, "/data", kTables), kSuccess);
  EXPECT_FALSE(other.Open());
  EXPECT_EQ(code4errorCode(*other.code, 0), kErrorOpenRefused);
  EXPECT_EQ(code4mayEnter(*other.code, "/data"), kErrorOpenRefused);
  EXPECT_EQ(code4lockUserId(*other.code), "FRONTDESK2 (process 4711)");
  EXPECT_EQ(code4takeFolder(*other.code, "/data", {}), kErrorOpenRefused);
  EXPECT_EQ(d4create(*other.code, "/data/fresh.dbf", tallwick::testing::kXrefFields, {}), nullptr);
  EXPECT_TRUE(alone.Open(1));  // the one who has it works on
  code4close(*alone.code);
  code4releaseFolder(*alone.code);
  EXPECT_EQ(code4mayEnter(*other.code, "/data"), kSuccess);
  EXPECT_TRUE(other.Open());
}

TEST_F(WholeFolder, AGateWhoseOwnerDiedIsTakenAway) {
  for (const char* list : {"", "+checks.dbf\n"}) {  // nothing, or a list that was never finished
    const std::string gate = "/data/" + std::string(FolderGate::kFileName);
    disk_.Put(gate, list);
    Company next(disk_);
    EXPECT_TRUE(next.Open());
    EXPECT_FALSE(disk_.Exists(gate));
    EXPECT_EQ(next.Picture(), old_);
  }
}

TEST_F(WholeFolder, HeldWritersWaitAndReadersGoOn) {
  Company copier(disk_);
  Company clerk(disk_);
  ASSERT_TRUE(clerk.Open());
  ASSERT_EQ(code4holdWriters(*copier.code, "/data"), kSuccess);
  EXPECT_EQ(clerk.AddCheck("   600", "24-0600"), kErrorCopying);
  EXPECT_EQ(code4lockUserId(*clerk.code), "FRONTDESK2 (process 4711)");
  EXPECT_EQ(code4holdWriters(*clerk.code, "/data"), kErrorCopying);
  EXPECT_EQ(clerk.Picture(), old_);
  code4releaseWriters(*copier.code);
  EXPECT_EQ(clerk.AddCheck("   600", "24-0600"), kSuccess);
}

}  // namespace
}  // namespace tallwick::engine
