// Measures our engine beside SQLite: the same checks, the same works, one after the other on the same disk. A
// work is a line of kMeasures; each is run several times, ours and SQLite by turns, and its median is
// printed.
#include <CLI/CLI.hpp>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <random>

#include "bench/check_store.h"
#include "bench/disk.h"
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
};

struct Measure {
  std::string_view name;  // for --only
  std::string_view title;
  Work work;
  bool each;  // the time printed is that of one item
  std::optional<double> goal;
};

constexpr std::array<Measure, 6> kMeasures = {{
    {"append", "append all, six tags, one unit of work", Work::kAppend, false, 2.0},
    {"find", "find by number, warm, each", Work::kFind, true, 1.0},
    {"walk", "walk in number order: number, amount, status", Work::kWalk, false, 2.0},
    {"sum", "sum over all: status and date test, amount", Work::kSum, false, 2.0},
    {"reindex", "reindex the six tags", Work::kReindex, false, 1.0},
    {"post", "one durable post: check and cross-reference, each", Work::kPost, true, std::nullopt},
}};
constexpr std::string_view kCat = "cat";

double Seconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// A folder of its own, removed at the end.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& parent)
      : path_(parent + "/tallwick-bench-" + std::to_string(std::random_device()())) {
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

class Bench {
 public:
  Bench(const Options& options, const std::string& folder)
      : options_(options), engine_folder_(folder + "/ours"), workload_(MakeWorkload(options.checks)) {
    stores_ = {MakeEngineStore(engine_folder_, workload_), MakeSqliteStore(folder + "/sqlite", workload_)};
  }

  std::vector<Row> Run() {
    std::vector<Row> rows;
    // Every other work needs the store filled.
    const Row append = RunMeasure(kMeasures.front(), Wanted("append") ? options_.runs : 1);
    if (Wanted("append")) rows.push_back(append);
    for (std::size_t i = 1; i < kMeasures.size(); ++i)
      if (Wanted(kMeasures[i].name)) rows.push_back(RunMeasure(kMeasures[i], options_.runs));
    if (Wanted(kCat)) rows.push_back(RunCat());
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
    std::array<std::vector<double>, 2> times;
    for (int run = reads ? -1 : 0; run < runs; ++run) {  // run -1 warms the caches
      std::array<std::int64_t, 2> results{};
      for (std::size_t i = 0; i < stores_.size(); ++i) {
        if (!reads || run < 0) stores_[i]->Prepare(measure.work);
        SettleDisk();
        const double seconds = Seconds([&] { results[i] = stores_[i]->Run(measure.work); });
        if (run >= 0) times[i].push_back(seconds);
      }
      if (results[0] != results[1]) Fail("the results differ: " + std::string(measure.title));
    }
    const double items = measure.each ? static_cast<double>(Items(measure.work)) : 1;
    return {std::string(measure.title), Median(times[0]) / items, Median(times[1]) / items, measure.goal};
  }

  Row RunCat() const {
    std::vector<double> times;
    for (int run = 0; run < options_.runs; ++run) {
      std::int64_t bytes = 0;
      times.push_back(Seconds([&] { bytes = ReadThrough(EngineTablePath(engine_folder_)); }));
      if (bytes == 0) Fail("the table of checks cannot be read");
    }
    return {"read the file of the checks to nothing, in 128 KiB blocks", Median(times), std::nullopt,
            std::nullopt};
  }

  Options options_;
  std::string engine_folder_;
  Workload workload_;
  std::array<std::unique_ptr<CheckStore>, 2> stores_;
};

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
  CLI11_PARSE(app, count, words);

  const TemporaryFolder folder(options.folder);
  Bench bench(options, folder.Path());
  const std::vector<Row> rows = bench.Run();
  std::cout << options.checks << " checks, medians of " << options.runs
            << " runs, ratio = time of ours / SQLite\n"
            << bench.StoreNames() << "\n\n"
            << MarkdownTable(rows);
  return 0;
}
