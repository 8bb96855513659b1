// A fault at every change of a rebuild: afterwards the old table or the new one stands whole, and the next
// rebuild brings everything back.
#include "tables/notes_table.h"
#include "tests/support/fault_sweep.h"
#include "tests/support/memory_company.h"

namespace tallwick {
namespace {

using testing::MemoryCompany;
using testing::MemoryFiles;

class RebuildSweep : public ::testing::Test {
 protected:
  void SetUp() override {
    MemoryCompany company(disk_);
    NotesTable notes(company.home);
    ASSERT_EQ(notes.Create(), 0);
    ASSERT_GT(notes.Open(), 0);
    for (int i = 10; i < 40; ++i) {
      const std::string text(static_cast<std::size_t>(i) * 20, static_cast<char>('a' + i % 26));
      ASSERT_EQ(notes.Add({"F" + std::to_string(i), "A", text}), 0);
    }
    for (std::string_view file : {"F12", "F13", "F39"}) {
      ASSERT_TRUE(notes.SeekNote(file, "A"));
      ASSERT_EQ(notes.Delete(), 0);
    }
    live_ = Live(notes);
    ASSERT_EQ(live_.size(), 27U);
  }

  static std::vector<std::string> Live(NotesTable& notes) {
    std::vector<std::string> texts;
    for (bool on = notes.Top("NOTETYPE"); on; on = notes.Skip()) texts.push_back(notes.Read().text);
    return texts;
  }

  // Every note is there, in order, and table, index and memos agree.
  void ExpectWhole(MemoryCompany& company, NotesTable& notes, const std::string& where) {
    EXPECT_EQ(Live(notes), live_) << where;
    EXPECT_EQ(company.Problems(notes), "") << where;
  }

  static int Rebuild(MemoryFiles& disk, const std::function<void()>& arm) {
    MemoryCompany company(disk);
    NotesTable notes(company.home);
    arm();
    return notes.Rebuild();
  }

  // The next to come sees the records; where the index is missing yet, after the rebuild that is offered.
  void Look(MemoryFiles& disk, int code, bool index_was_missing, const std::string& where) {
    MemoryCompany company(disk);
    NotesTable notes(company.home);
    company.boxes.answers = {BoxAnswer::kYes};
    ASSERT_GT(notes.Open(), 0) << where << ": " << company.boxes.LastText();
    EXPECT_TRUE(index_was_missing || company.boxes.shown.empty())
        << where << ": " << company.boxes.LastText();
    ExpectWhole(company, notes, where);
    if (code == 0) {
      EXPECT_EQ(notes.RecordCount(), static_cast<std::int32_t>(live_.size())) << where;
    }
    notes.Close();
    ASSERT_EQ(notes.Rebuild(), 0) << where;
    for (std::string_view left : {".SAV", ".SAV.FPT", ".DBF~", ".CDX~", ".FPT~", ".SWP~"})
      EXPECT_FALSE(company.files.FileExists("\\data\\ESCROW_NOTES" + std::string(left))) << where << left;
    ASSERT_GT(notes.Open(), 0) << where;
    ExpectWhole(company, notes, where);
  }

  MemoryFiles disk_;
  std::vector<std::string> live_;
};

TEST_F(RebuildSweep, OldOrNewTableStandsWhole) {
  testing::SweepFaults(disk_, "rebuild", Rebuild, [&](MemoryFiles& disk, int code, const std::string& where) {
    Look(disk, code, false, where);
  });
}

TEST_F(RebuildSweep, AMissingIndexIsMadeOrStillMissing) {
  ASSERT_EQ(disk_.Remove("/data/ESCROW_NOTES.CDX"), 0);
  testing::SweepFaults(
      disk_, "rebuild without index", Rebuild,
      [&](MemoryFiles& disk, int code, const std::string& where) { Look(disk, code, true, where); });
}

// Whoever reads "the disk may be full" looks for the wrong thing first.
TEST_F(RebuildSweep, AFullDiskIsCalledSo) {
  int failed = 0;
  for (int at = 1; at <= 60; ++at) {
    const auto disk = disk_.Clone();
    const int code = Rebuild(*disk, [&] { disk->Plan(testing::Fault::kFull, at); });
    if (code == 0) continue;
    ++failed;
    EXPECT_EQ(code, engine::kErrorDiskFull) << at;
  }
  EXPECT_GT(failed, 5);
}

}  // namespace
}  // namespace tallwick
