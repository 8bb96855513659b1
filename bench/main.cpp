// Measures our engine beside SQLite: the same checks, the same works, one after the other on the same disk. A
// work is a line of kMeasures; each is run several times, ours and SQLite by turns, and its median is
// printed.
#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "bench/check_store.h"
#include "bench/machine.h"
#include "bench/report.h"

namespace tallwick::bench {

void Fail(std::string_view what) {
  std::cerr << "tallwick_bench: " << what << '\n';
  std::exit(1);
}

namespace {

struct Options {
  std::uint32_t checks = 200000;
  int runs = 5;
  std::string folder = "/var/tmp";  // on a disk also where /tmp is memory
  std::string only;
  std::uint32_t growth = 0;
};

struct Measure {
  std::string_view name;  // for --only
  std::string_view title;
  Work work;
  bool each;                       // the time printed is that of one item
  std::optional<double> goal;      // as a part of SQLite's time
  std::optional<double> cat_goal;  // as a multiple of reading the file to nothing
};

constexpr std::array<Measure, 6> kMeasures = {{
    {"append", "append all, six tags, one unit of work", Work::kAppend, false, 1.0 / 3, {}},
    {"find", "find by number, warm, each", Work::kFind, true, 1.0 / 3, {}},
    {"walk", "walk in number order: number, amount, status", Work::kWalk, false, {}, 2.5},
    {"sum", "sum over all: status and date test, amount", Work::kSum, false, {}, 1.5},
    {"reindex", "reindex the six tags", Work::kReindex, false, 1.0 / 3, {}},
    {"post", "one durable post: check and cross-reference, each", Work::kPost, true, 1.0, {}},
}};
constexpr std::string_view kCat = "cat";
constexpr double kGrowthGoal = 1.3;

// Works on a table that is there already, whose memory is looked at, and what they may take in MiB.
struct MemoryGoal {
  const Measure& measure;
  double mebibytes;
};
constexpr std::array<MemoryGoal, 2> kMemoryGoals = {{{kMeasures[2], 64}, {kMeasures[4], 256}}};

class Bench {
 public:
  // Ours alone, or beside SQLite.
  Bench(const Options& options, std::uint32_t checks, const std::string& folder, bool beside)
      : options_(options), engine_folder_(folder + "/ours"), workload_(MakeWorkload(checks)) {
    stores_.push_back(MakeEngineStore(engine_folder_, workload_));
    if (beside) stores_.push_back(MakeSqliteStore(folder + "/sqlite", workload_));
  }

  std::vector<Row> Run() {
    std::vector<Row> rows;
    // Every other work needs the store filled.
    const Row append = RunMeasure(kMeasures.front(), Wanted("append") ? options_.runs : 1);
    if (Wanted("append")) rows.push_back(append);
    for (std::size_t i = 1; i < kMeasures.size(); ++i)
      if (Wanted(kMeasures[i].name)) rows.push_back(RunMeasure(kMeasures[i], options_.runs));
    return rows;
  }

  // Works beside reading the file of the checks to nothing. Both are timed by turns, as the machine's speed
  // wanders.
  std::vector<Row> RunBesideCat() {
    std::vector<Row> rows;
    for (const Measure& measure : kMeasures) {
      if (!measure.cat_goal || !(Wanted(measure.name) || Wanted(kCat))) continue;
      stores_[0]->Prepare(measure.work);
      stores_[0]->Run(measure.work);
      std::vector<double> ours;
      std::vector<double> cat;
      for (int run = 0; run < options_.runs; ++run) {
        ours.push_back(Seconds([&] { stores_[0]->Run(measure.work); }));
        cat.push_back(Seconds([&] { ReadFile(); }));
      }
      rows.push_back({std::string(measure.title), Median(ours), Median(cat), measure.cat_goal});
    }
    return rows;
  }

  std::string StoreNames() const { return stores_[0]->Name() + " | " + stores_[1]->Name(); }

 private:
  static constexpr std::size_t kMostNumbers = 200000;
  static constexpr std::uint32_t kPosts = 200;

  static Workload MakeWorkload(std::uint32_t checks) {
    Workload workload;
    workload.checks = MakeChecks(1, checks);
    workload.numbers = ShuffledNumbers(workload.checks, kMostNumbers);
    workload.last_period = workload.checks[workload.checks.size() * 2 / 3].accounting.Key();
    workload.posts = kPosts;
    return workload;
  }

  bool Wanted(std::string_view name) const { return options_.only.empty() || options_.only == name; }

  std::size_t Items(Work work) const {
    return work == Work::kPost ? workload_.posts : workload_.numbers.size();
  }

  Row RunMeasure(const Measure& measure, int runs) {
    std::cerr << "  " << measure.title << " ...\n";
    const bool reads =
        measure.work == Work::kFind || measure.work == Work::kWalk || measure.work == Work::kSum;
    std::vector<std::vector<double>> times(stores_.size());
    for (int run = reads ? -1 : 0; run < runs; ++run) {  // run -1 warms the caches
      std::vector<std::int64_t> results;
      for (std::size_t i = 0; i < stores_.size(); ++i) {
        if (!reads || run < 0) stores_[i]->Prepare(measure.work);
        SettleDisk();
        const double seconds = Seconds([&] { results.push_back(stores_[i]->Run(measure.work)); });
        if (run >= 0) times[i].push_back(seconds);
      }
      if (results.front() != results.back()) Fail("the results differ: " + std::string(measure.title));
    }
    const double items = measure.each ? static_cast<double>(Items(measure.work)) : 1;
    Row row{std::string(measure.title), Median(times[0]) / items, {}, measure.goal};
    if (stores_.size() > 1) row.theirs = Median(times[1]) / items;
    return row;
  }

  void ReadFile() const {
    if (ReadThrough(EngineTablePath(engine_folder_)) == 0) Fail("the table of checks cannot be read");
  }

  Options options_;
  std::string engine_folder_;
  Workload workload_;
  std::vector<std::unique_ptr<CheckStore>> stores_;
};

// The same works on more checks; a work's time per check may grow by kGrowthGoal at most.
std::vector<Row> Growth(const std::vector<Row>& small, std::uint32_t checks, const std::vector<Row>& large,
                        std::uint32_t more_checks) {
  std::vector<Row> rows;
  for (std::size_t i = 0; i < small.size(); ++i) {
    const bool each = small[i].work.ends_with("each");
    rows.push_back({small[i].work + (each ? "" : ", per check"), large[i].ours / (each ? 1 : more_checks),
                    small[i].ours / (each ? 1 : checks), kGrowthGoal});
  }
  return rows;
}

// One work on the tables of a folder, in a process of its own; prints the most memory that it took, in bytes.
int MeasureMemory(const std::string& name, const std::string& folder) {
  for (const MemoryGoal& goal : kMemoryGoals) {
    if (goal.measure.name != name) continue;
    const Workload none;
    const auto store = MakeEngineStore(folder, none);
    store->Prepare(goal.measure.work);
    store->Run(goal.measure.work);
  }
  std::cout << PeakMemory() << '\n';
  return 0;
}

void PrintMemory(const std::string& program, const std::string& folder) {
  std::cout << "\n| work | most memory | goal | ok |\n| --- | ---: | ---: | --- |\n";
  for (const MemoryGoal& goal : kMemoryGoals) {
    std::string command = program;
    command.append(" --memory-of ").append(goal.measure.name).append(" --dir '").append(folder).append("'");
    const std::string bytes = OutputOf(command);
    if (bytes.empty()) Fail("the memory cannot be measured");
    std::cout << MemoryRow(std::string(goal.measure.title), std::stod(bytes) / (1 << 20), goal.mebibytes);
  }
}

}  // namespace
}  // namespace tallwick::bench

int main(int count, char** words) {
  using namespace tallwick::bench;
  Options options;
  CLI::App app("Times our engine beside SQLite on the same checks and prints one table.");
  app.add_option("--checks", options.checks, "how many checks")->check(CLI::Range(100, 5000000));
  app.add_option("--runs", options.runs, "runs of each work; the median counts")->check(CLI::Range(1, 100));
  app.add_option("--dir", options.folder, "parent of the temporary folder; should be on a disk")
      ->check(CLI::ExistingDirectory);
  std::vector<std::string> names(1, std::string(kCat));
  for (const Measure& measure : kMeasures) names.emplace_back(measure.name);
  app.add_option("--only", options.only, "one work alone")->check(CLI::IsMember(names));
  app.add_option("--growth", options.growth, "measure ours at this number of checks too, and its memory")
      ->check(CLI::Range(100, 5000000));
  std::string memory_of;
  app.add_option("--memory-of", memory_of)->group("");  // for PrintMemory
  CLI11_PARSE(app, count, words);
  if (!memory_of.empty()) return MeasureMemory(memory_of, options.folder);

  const TemporaryFolder folder(options.folder);
  std::vector<Row> rows;
  {
    Bench bench(options, options.checks, folder.Path() + "/small", true);
    rows = bench.Run();
    std::cout << options.checks << " checks, medians of " << options.runs
              << " runs, ratio = time of ours / SQLite\n"
              << bench.StoreNames() << "\n\n"
              << MarkdownTable("SQLite", rows) << '\n'
              << MarkdownTable("reading the file", bench.RunBesideCat());
  }
  if (options.growth == 0) return 0;
  {
    Bench large(options, options.growth, folder.Path() + "/large", false);
    const std::vector<Row> grown = Growth(rows, options.checks, large.Run(), options.growth);
    std::cout << '\n'
              << options.growth << " checks beside " << options.checks << "\n\n"
              << MarkdownTable("at " + std::to_string(options.checks), grown);
  }
  PrintMemory(words[0], folder.Path() + "/large/ours");
  return 0;
}
