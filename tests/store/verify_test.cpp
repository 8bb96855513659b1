// Damage done to the files of a table and to the journal, and what the examination says of it.
#include <gtest/gtest.h>

#include "core/text.h"
#include "store/engine/byte_order.h"
#include "store/engine/instance.h"
#include "store/engine/verify.h"
#include "tests/support/memory_files.h"
#include "tests/support/small_company.h"

namespace tallwick::engine {
namespace {

using tallwick::testing::Company;
using tallwick::testing::EnginePorts;
using tallwick::testing::MemoryFiles;

constexpr std::string_view kIndex = "/data/checks.cdx";
constexpr std::string_view kData = "/data/checks.dbf";

// The files of a table of 400 checks, as bytes that a test damages.
struct Bytes {
  std::string index;
  std::string data;
  std::size_t number_head = 0;  // of tag CHXNUMBER
  std::size_t payee_head = 0;

  std::uint8_t* At(std::size_t offset) { return reinterpret_cast<std::uint8_t*>(&index[offset]); }
  std::uint32_t Root(std::size_t head) { return Load32(At(head)); }
  // The child of an entry of an interior page with keys of 12 bytes.
  std::uint8_t* Child(std::uint32_t page, std::size_t entry) { return At(page + 12 + entry * 20 + 16); }
  std::uint32_t FirstLeaf() { return Load32Big(Child(Root(number_head), 0)); }
  std::size_t Record(std::size_t number) { return Load16(At16(8)) + (number - 1) * Load16(At16(10)); }
  const std::uint8_t* At16(std::size_t offset) {
    return reinterpret_cast<const std::uint8_t*>(&data[offset]);
  }
};

class Damage : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    Company company(sound);
    company.Make();
    code4unitBegin(*company.code);
    for (int i = 1; i <= 400; ++i) company.AddCheck(PadLeft(std::to_string(i), 12), "24-1");
    code4unitCommit(*company.code);
    for (const auto& tag : company.checks->tags) {
      if (tag->tag->name == "CHXNUMBER") whole.number_head = tag->tag->header_offset;
      if (tag->tag->name == "CHXPAYEE") whole.payee_head = tag->tag->header_offset;
    }
    d4close(company.checks);
    whole.index = sound.Get(std::string(kIndex));
    whole.data = sound.Get(std::string(kData));
  }
  // Everything that is said of the table, line by line.
  static std::vector<TableProblem> Examine(const Bytes& bytes) {
    const auto disk = sound.Clone();
    disk->Put(std::string(kIndex), bytes.index);
    disk->Put(std::string(kData), bytes.data);
    Company company(*disk);
    std::vector<TableProblem> problems;
    if (!company.Open()) return {{0, "does not open"}};
    EXPECT_EQ(d4verify(*company.checks, &problems), kSuccess);
    return problems;
  }

  static inline MemoryFiles sound{std::int64_t{1} << 30};
  static inline Bytes whole;
};

TEST_F(Damage, IsNamedByWhatItIs) {
  const struct {
    const char* text;
    ProblemKind kind;
    void (*harm)(Bytes&);
  } kHarms[] = {
      {"Nothing leads to 2 pages of the index", ProblemKind::kIndex,
       [](Bytes& b) { b.index.append(1024, '\0'); }},
      {"Tag CHXNUMBER: the page at", ProblemKind::kIndex,  // "... is reached twice"
       [](Bytes& b) {
         std::memcpy(b.Child(b.Root(b.number_head), 1), b.Child(b.Root(b.number_head), 0), 4);
       }},
      {"belongs to tag CHXNUMBER too", ProblemKind::kIndex,
       [](Bytes& b) { std::memcpy(b.At(b.payee_head), b.At(b.number_head), 4); }},
      {"belongs to tag CHXNUMBER too", ProblemKind::kIndex,  // on the list of free pages
       [](Bytes& b) { Store32(b.At(4), b.FirstLeaf()); }},
      {"The index's list of free pages", ProblemKind::kIndex, [](Bytes& b) { Store32(b.At(4), 0x7FFFFE00); }},
      {"do not name each other as neighbours", ProblemKind::kIndex,
       [](Bytes& b) { Store32(b.At(b.FirstLeaf() + 8), kNoPage); }},
      {"has a wrong root mark", ProblemKind::kIndex, [](Bytes& b) { *b.At(b.FirstLeaf()) ^= 1; }},
      {"is not the highest key of the page below it", ProblemKind::kIndex,
       [](Bytes& b) { Store32Big(b.Child(b.Root(b.number_head), 0) - 4, 7); }},
      {"is damaged", ProblemKind::kIndex, [](Bytes& b) { Store16(b.At(b.FirstLeaf() + 2), 9999); }},
      {"Tag CHXNUMBER: the key is not the record's", ProblemKind::kIndex,
       [](Bytes& b) { b.data[b.Record(7) + 12] = 'X'; }},
      {"the record has a key although the filter leaves it out", ProblemKind::kIndex,
       [](Bytes& b) { b.data[b.Record(7)] = '*'; }},
      {"The deletion mark is neither", ProblemKind::kRecord, [](Bytes& b) { b.data[b.Record(7)] = 'x'; }},
      {"Field CHXAMOUNT holds zero bytes", ProblemKind::kRecord,
       [](Bytes& b) { b.data[b.Record(7) + 90] = '\0'; }},
      {"Tag CHXNUMBER: the record has the same key as record 6",
       ProblemKind::kRecord,  // foreign, not in the index
       [](Bytes& b) {
         b.data.insert(b.Record(401), b.data.substr(b.Record(6), b.Record(7) - b.Record(6)));
         Store32(reinterpret_cast<std::uint8_t*>(&b.data[4]), 401);
       }},
      {"lies outside the memo file", ProblemKind::kMemo,
       [](Bytes& b) { b.data.replace(b.Record(7) + 99, 10, "   9999999"); }},
      {"shares blocks with the memo of record 6", ProblemKind::kMemo,
       [](Bytes& b) { b.data.replace(b.Record(7) + 99, 10, b.data.substr(b.Record(6) + 99, 10)); }},
  };
  EXPECT_TRUE(Examine(whole).empty());
  for (const auto& harm : kHarms) {
    Bytes bytes = whole;
    harm.harm(bytes);
    std::string said;
    bool found = false;
    for (const TableProblem& problem : Examine(bytes)) {
      found = found || (problem.problem.find(harm.text) != std::string::npos && problem.kind == harm.kind);
      said += problem.problem + "\n";
    }
    EXPECT_TRUE(found) << harm.text << "\n" << said;
  }
}

TEST_F(Damage, ToManyRecordsIsCutShortAndCounted) {
  Bytes bytes = whole;
  for (std::size_t record = 1; record <= 400; ++record) bytes.data[bytes.Record(record)] = '*';
  const std::vector<TableProblem> problems = Examine(bytes);
  ASSERT_EQ(problems.size(), 1001U);
  EXPECT_EQ(problems.back().problem, "200 more problems are not listed");
}

// A journal that cannot be used is never overwritten; out of the way, work goes on.
TEST(JournalExamination, TellsTheStatesApart) {
  const std::string path = "/data/" + std::string(kJournalFileName);
  MemoryFiles disk;
  EnginePorts ports;
  const auto look = [&] { return Journal(ports.Over(disk), "/data").Examine(); };
  const auto state = [&] { return look().state; };
  EXPECT_EQ(state(), JournalState::kNone);
  std::string before;
  std::string after;
  {
    Company company(disk);
    company.Make();
    ASSERT_EQ(company.AddCheck("     1", "24-1"), kSuccess);
    EXPECT_EQ(state(), JournalState::kSettled);
    before = disk.Get(path);
    ASSERT_EQ(company.AddCheck("     2", "24-1"), kSuccess);
    after = disk.Get(path);
  }
  EXPECT_EQ(state(), JournalState::kSettled);

  std::string waits = after;
  waits.replace(8, 16, before.substr(8, 16));  // as if the last two units had not been marked
  disk.Put(path, waits);
  EXPECT_EQ(state(), JournalState::kWaiting);
  EXPECT_EQ(look().waiting, 2U);

  // A unit that was begun to be applied, and whose entry is gone.
  std::string lost = waits;
  lost.replace(88, 8, lost.substr(16, 8));
  const std::size_t second = lost.rfind("TWKE");
  const std::size_t first = lost.rfind("TWKE", second - 1);
  lost[first + 40] ^= 1;
  disk.Put(path, lost);
  EXPECT_EQ(state(), JournalState::kDamaged);
  {
    Company company(disk);
    EXPECT_FALSE(company.Open());
    EXPECT_EQ(code4errorCode(*company.code, 0), kErrorJournal);
  }

  std::string damaged = after;
  damaged[150] ^= 1;
  disk.Put(path, damaged);
  EXPECT_EQ(state(), JournalState::kDamaged);

  for (const std::string& unusable : {damaged, std::string("Dear reader, this is a letter ") + after}) {
    disk.Put(path, unusable);
    Company company(disk);
    EXPECT_FALSE(company.Open());
    EXPECT_EQ(code4errorCode(*company.code, 0), kErrorJournal);
    EXPECT_EQ(disk.Get(path), unusable);
    EXPECT_EQ(Journal(ports.Over(disk), "/data").SetAside("ESCROW_UNITS.BAD", {"CHECKS.DBF"}), kSuccess);
    EXPECT_EQ(disk.Get("/data/ESCROW_UNITS.BAD"), unusable);
    disk.Remove("/data/ESCROW_UNITS.BAD");
    EXPECT_TRUE(company.Open());
  }
}

// Notes live and die with the locks they speak of.
TEST(LockHolder, IsNamedAsLongAsItHoldsTheLock) {
  MemoryFiles disk;
  Company first(disk);
  first.Make();
  ASSERT_EQ(first.AddCheck("     1", "24-1"), kSuccess);
  ASSERT_EQ(first.AddCheck("     2", "24-1"), kSuccess);
  Company second(disk);
  ASSERT_TRUE(second.Open());
  const auto holder = [&](std::uint32_t record) {
    EXPECT_EQ(d4lockVB(*second.checks, record), kLocked);
    return code4lockUserId(*second.code);
  };
  ASSERT_EQ(d4lockVB(*first.checks, 1), kSuccess);
  ASSERT_EQ(d4lockVB(*first.checks, 2), kSuccess);
  EXPECT_EQ(holder(2), "FRONTDESK2 (process 4711)");
  EXPECT_EQ(d4lockFile(*second.checks), kLocked);
  EXPECT_EQ(code4lockUserId(*second.code), "FRONTDESK2 (process 4711)");
  d4unlock(*first.checks);
  ASSERT_EQ(d4lockFile(*first.checks), kSuccess);
  EXPECT_EQ(holder(2), "FRONTDESK2 (process 4711)");
  d4unlock(*first.checks);
  EXPECT_EQ(d4lockVB(*second.checks, 1), kSuccess);

  // A lock without a note, as other programs take it, beside a note of before.
  int rc = kSuccess;
  const auto foreign = disk.Open(std::string(kData), OpenMode::kReadWrite, &rc);
  ASSERT_EQ(foreign->Lock(0x7FFFFFFE - 2, 1, LockKind::kExclusive), kSuccess);
  EXPECT_EQ(holder(2), "");
}

}  // namespace
}  // namespace tallwick::engine
