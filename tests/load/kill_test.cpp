// kill -9 at random moments: nothing acknowledged is lost, nothing is half there, and the next to come goes
// on. TALLWICK_KILLS says how often, for a longer run.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "tests/load/company_check.h"
#include "tests/support/processes.h"

namespace tallwick::load {
namespace {

using testing::Setting;
using testing::Spawn;

// Runs `work` in a process of its own, kills it a random while after it has called the function handed to it,
// and returns what it has written into its pipe.
template <class Work>
std::vector<int> KillAtRandom(std::mt19937& random, unsigned most_us, Work work) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = Spawn([&] { return work(ends[1]); });
  close(ends[1]);
  int word = 0;
  std::vector<int> words;
  if (read(ends[0], &word, sizeof word) == sizeof word) words.push_back(word);
  std::this_thread::sleep_for(std::chrono::microseconds(random() % most_us));
  kill(child, SIGKILL);
  while (read(ends[0], &word, sizeof word) == sizeof word) words.push_back(word);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status)) << "ended by itself with " << WEXITSTATUS(status);
  return words;
}

void Say(int pipe, int word) {
  if (write(pipe, &word, sizeof word) != sizeof word) _exit(9);
}

// --- A clerk with deposits: three tables in one unit ---

// The keys of deposits that a killed clerk posted or removed: what he was about to do is told before, and
// done after.
enum Word { kReady = 0, kPosting = 1, kPosted = 2, kRemoving = 3, kRemoved = 4 };
constexpr int kKeys = 10'000'000;  // a word is its kind times this, and the deposit's key
constexpr int kMostDeposits = 400;

int PostAndRemoveDeposits(const std::string& folder, unsigned seed, int pipe) {
  Workplace place(folder);
  if (!place.Open()) return 1;
  std::mt19937 random(seed);
  Say(pipe, kReady);
  for (;;) {
    const int key = static_cast<int>(random() % kMostDeposits);
    DepositRecord deposit = MakeDeposit(key);
    DepositTable& deposits = place.tables->deposits;
    const bool stands = deposits.SeekDeposit(deposit.dated, deposit.sequence);
    if (stands) deposit = deposits.Read();
    Say(pipe, (stands ? kRemoving : kPosting) * kKeys + key);
    for (unsigned item = 0; !stands && item < 1 + random() % 5; ++item)
      AddItem(deposit, 100 + item, "24-100");
    const PostOutcome outcome = stands ? RemoveDeposit(*place.tables, place.Xrefs(), kBank, deposit)
                                       : PostDeposit(*place.tables, place.Xrefs(), kBank, deposit);
    if (!outcome.Done()) return 2;
    Say(pipe, (stands ? kRemoved : kPosted) * kKeys + key);
  }
}

TEST(Kills, AClerkWithDepositsLosesNothingAcknowledged) {
  testing::TempFolder folder;
  ASSERT_TRUE(Workplace(folder.Held()).Open());
  std::mt19937 random(11);
  std::map<int, bool> stands;
  for (int round = 0; round < Setting("TALLWICK_KILLS", 20); ++round) {
    const auto words = KillAtRandom(random, 25'000, [&](int pipe) {
      return PostAndRemoveDeposits(folder.Held(), static_cast<unsigned>(round) + 1, pipe);
    });
    ASSERT_FALSE(words.empty());
    for (const int word : words) {
      if (word / kKeys == kPosted || word / kKeys == kRemoved) stands[word % kKeys] = word / kKeys == kPosted;
    }
    Workplace place(folder.Held());
    ASSERT_TRUE(place.Open());
    // What was under way may have happened or not.
    const int last = words.back() / kKeys;
    if (last == kPosting || last == kRemoving) {
      const DepositRecord open = MakeDeposit(words.back() % kKeys);
      stands[words.back() % kKeys] = place.tables->deposits.SeekDeposit(open.dated, open.sequence);
    }
    for (const auto& [key, there] : stands) {
      const DepositRecord deposit = MakeDeposit(key);
      ASSERT_EQ(place.tables->deposits.SeekDeposit(deposit.dated, deposit.sequence), there) << key;
    }
    ASSERT_EQ(WrongInTables(place), "") << "round " << round;
    ASSERT_EQ(WrongInReferences(place), "") << "round " << round;
  }
}

// --- Packs and rebuilds: a table of notes with deleted records, over and over ---

std::vector<std::string> LiveNotes(NotesTable& notes) {
  std::vector<std::string> texts;
  for (bool on = notes.Top("NOTETYPE"); on; on = notes.Skip()) texts.push_back(notes.Read().text);
  return texts;
}

// Leaves one more deleted record for the next pack.
bool MakeWork(NotesTable& notes) {
  const bool done = notes.Add({"GONE", "A", "gone"}) == engine::kSuccess && notes.SeekNote("GONE", "A") &&
                    notes.Delete() == engine::kSuccess;
  notes.Close();
  return done;
}

int RebuildForEver(const std::string& folder, bool rebuild, int pipe) {
  Workplace place(folder);
  if (!place.session) return 1;
  NotesTable notes(place.session->Home());
  place.session->Company().notes.Close();
  Say(pipe, kReady);
  for (;;) {
    if (notes.Open() <= 0 || !MakeWork(notes)) return 2;
    if (rebuild) {
      if (notes.Rebuild() != engine::kSuccess) return 3;
      continue;
    }
    if (notes.OpenExclusive() <= 0) return 4;
    if (notes.Data().PackDatabase(notes.Handle()) != engine::kSuccess) return 5;
    notes.Close();
  }
}

TEST(Kills, APackOrRebuildLeavesTheOldTableOrTheNew) {
  for (const bool rebuild : {false, true}) {
    testing::TempFolder folder;
    std::vector<std::string> live;
    {
      Workplace place(folder.Held());
      ASSERT_TRUE(place.session);
      NotesTable& notes = place.session->Company().notes;
      for (std::size_t i = 1000; i < 1400; ++i) {
        live.push_back(std::string(i, static_cast<char>('a' + i % 26)));
        ASSERT_EQ(notes.Add({"F" + std::to_string(i), "A", live.back()}), 0);
      }
    }
    std::mt19937 random(13);
    for (int round = 0; round < Setting("TALLWICK_KILLS", 20); ++round) {
      KillAtRandom(random, 40'000, [&](int pipe) { return RebuildForEver(folder.Held(), rebuild, pipe); });
      Workplace place(folder.Held());
      ASSERT_TRUE(place.session) << "round " << round << ": " << place.boxes.LastText();
      NotesTable& notes = place.session->Company().notes;
      std::vector<std::string> found = LiveNotes(notes);
      if (!found.empty() && notes.SeekNote("GONE", "A")) std::erase(found, "gone");
      ASSERT_EQ(found, live) << "round " << round;
      std::vector<engine::TableProblem> problems;
      ASSERT_EQ(notes.Data().VerifyDatabase(notes.Handle(), &problems), 0);
      for (const auto& problem : problems) ADD_FAILURE() << problem.record << ": " << problem.problem;
      if (notes.SeekNote("GONE", "A")) {
        ASSERT_EQ(notes.Delete(), 0);
      }
      for (std::string_view stray : {".DBF~", ".CDX~", ".FPT~", ".SWP~"})
        EXPECT_FALSE(SystemFileSystem().FileExists(folder.Held("ESCROW_NOTES") + std::string(stray)))
            << stray;
    }
  }
}

}  // namespace
}  // namespace tallwick::load
