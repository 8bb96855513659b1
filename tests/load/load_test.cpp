// Eleven workstations on one bank: eight clerks, two who walk the register, one who computes ledgers. For a
// few seconds, or as many as TALLWICK_LOAD_SECONDS says; then the figures of the run are printed.
#include <gtest/gtest.h>

#include "tests/load/company_check.h"
#include "tests/load/watchers.h"
#include "tests/support/processes.h"

namespace tallwick::load {
namespace {

using testing::ExitOf;
using testing::Setting;
using testing::Spawn;

using Time = std::chrono::steady_clock::time_point;

constexpr int kClerks = 8;
constexpr int kWalkers = 2;
constexpr std::chrono::seconds kPatience{60};  // for one operation and the leaving of the folder

// A process that works until it is time, or until any process has failed.
template <class Role, class... Arguments>
pid_t SpawnRole(const std::string& folder, Tally& tally, Time until, Arguments... arguments) {
  return Spawn([&, arguments...] {
    Workplace place(folder);
    if (!place.Open()) return 1;
    Role role(place, tally, arguments...);
    while (std::chrono::steady_clock::now() < until && tally.failures == 0) role.Work();
    return 0;
  });
}

void Print(const Tally& tally, int seconds) {
  const auto line = [](const char* what, const std::atomic<std::int64_t>& count) {
    std::printf("  %-34s %10lld\n", what, static_cast<long long>(count.load()));
  };
  std::printf("%d clerks, %d walkers, 1 ledger reader, %d seconds\n", kClerks, kWalkers, seconds);
  line("posts", tally.posts);
  line("edits", tally.edits);
  line("voids", tally.voids);
  line("deletes", tally.deletes);
  line("numbers that another took first", tally.number_taken);
  line("refused, record locked", tally.locked);
  line("refused, changed elsewhere", tally.changed_elsewhere);
  line("walks", tally.walks);
  line("records walked", tally.walked_records);
  line("ledgers", tally.ledgers);
  line("clerks' time in all, microseconds", tally.total_us);
  line("slowest operation, microseconds", tally.slowest_us);
  line("operations over a second", tally.over_a_second);
}

TEST(Load, ElevenWorkstationsOnOneBank) {
  const int seconds = Setting("TALLWICK_LOAD_SECONDS", 4);
  Tally* tally = SharedTally();
  ASSERT_NE(tally, nullptr);
  testing::TempFolder folder;
  {
    Workplace place(folder.Held());
    ASSERT_TRUE(place.Open());
    ASSERT_TRUE(MakePillars(place, *tally));
  }
  const Time until = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
  std::vector<pid_t> children;
  for (unsigned seed = 1; seed <= kClerks; ++seed)
    children.push_back(SpawnRole<Clerk>(folder.Held(), *tally, until, seed));
  for (int i = 0; i < kWalkers; ++i)
    children.push_back(SpawnRole<RegisterWalker>(folder.Held(), *tally, until));
  children.push_back(SpawnRole<LedgerReader>(folder.Held(), *tally, until));
  for (const pid_t child : children) EXPECT_EQ(ExitOf(child, std::chrono::seconds(seconds) + kPatience), 0);
  Print(*tally, seconds);

  EXPECT_EQ(tally->failures, 0) << tally->first_failure;
  EXPECT_GT(tally->walks, 0);
  EXPECT_GT(tally->ledgers, 0);
  Workplace place(folder.Held());
  ASSERT_TRUE(place.Open());
  EXPECT_EQ(WrongInTables(place), "");
  EXPECT_EQ(WrongInReferences(place), "");
  EXPECT_EQ(WrongAgainst(place, *tally), "");
}

}  // namespace
}  // namespace tallwick::load
