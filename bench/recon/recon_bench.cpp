// Times the passes of a reconciliation over a large bank beside reading its three tables to nothing, as cat
// does: by turns, since the machine's speed wanders, and the medians count.
#include <CLI/CLI.hpp>
#include <functional>
#include <iostream>
#include <stdexcept>

#include "bench/checks.h"
#include "bench/machine.h"
#include "bench/report.h"
#include "core/system_ports.h"
#include "recon/recon_pass.h"
#include "store/engine/file.h"

namespace tallwick::bench {
namespace {

constexpr std::string_view kBank = "BENCH";
constexpr double kCatGoal = 3;
constexpr std::uint32_t kRecordsPerUnit = 100000;

struct Size {
  std::uint32_t checks = 1000000;
  std::uint32_t deposits = 100000;
  std::uint32_t wires = 50000;
};

Period PeriodOf(const PeriodNumbers& numbers) {
  return {numbers.month, numbers.day, numbers.year};
}

void Require(bool done, const char* what) {
  if (!done) throw std::runtime_error(what);
}

// Adds `count` records, in units of work of a bounded size.
template <class Record>
void Fill(TypedTable<Record>& table, std::uint32_t count,
          const std::function<Record(std::uint32_t)>& record) {
  for (std::uint32_t done = 0; done < count;) {
    Require(table.Data().BeginUnit() == engine::kSuccess, "no unit of work");
    for (const std::uint32_t end = std::min(count, done + kRecordsPerUnit); done < end; ++done)
      Require(table.Add(record(done), true) == engine::kSuccess, "a record was not added");
    Require(table.Data().CommitUnit() == engine::kSuccess, "a unit of work was not committed");
  }
}

void FillTables(BankTables& tables, const Size& size) {
  const std::vector<Check> checks = MakeChecks(1, size.checks);
  const auto any = [&](std::uint32_t index, std::uint32_t of) -> const Check& {
    return checks[std::uint64_t{index} * checks.size() / of];
  };
  Fill<CheckRecord>(tables.checks, size.checks, [&](std::uint32_t index) {
    const Check& check = checks[index];
    CheckRecord record;
    record.number = check.number;
    record.payee = check.payee;
    record.address1 = check.address1;
    record.city_state = check.city;
    record.amount = Currency::FromCents(check.cents);
    record.accounting = PeriodOf(check.accounting);
    record.statement = PeriodOf(check.statement);
    record.status = check.status;
    record.file_number = check.file_number;
    return record;
  });
  Fill<WireRecord>(tables.wires, size.wires, [&](std::uint32_t index) {
    const Check& check = any(index, size.wires);
    WireRecord record;
    record.number = std::to_string(index + 1);
    record.file_number = check.file_number;
    record.payee = check.payee;
    record.amount = Currency::FromCents(check.cents);
    record.accounting = PeriodOf(check.accounting);
    record.statement = PeriodOf(check.statement);
    record.status = check.status == "C" ? "C" : "O";
    return record;
  });
  Fill<DepositRecord>(tables.deposits, size.deposits, [&](std::uint32_t index) {
    DepositRecord record;
    // The key is date and sequence: a date of its own for every 99 deposits.
    record.dated = StoredDate(DateFromJulianDay(2459216 + static_cast<std::int32_t>(index / 99)));
    record.sequence = std::to_string(index % 99 + 1);
    record.accounting = PeriodOf(any(index, size.deposits).accounting);
    record.item_count = static_cast<std::int32_t>(index % kDepositItems) + 1;
    for (std::int32_t i = 0; i < record.item_count; ++i) {
      const Check& check = any((index + static_cast<std::uint32_t>(i)) % size.deposits, size.deposits);
      record.items[static_cast<std::size_t>(i)] = {std::to_string(i + 1),
                                                   check.file_number,
                                                   check.payee,
                                                   Currency::FromCents(check.cents),
                                                   PeriodOf(check.statement),
                                                   check.status == "C" ? "C" : "O"};
    }
    return record;
  });
}

// Nobody is there to answer.
class SpokenBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const Box& box) override {
    std::cerr << box.title << ": " << box.text << '\n';
    return SafeAnswer(box);
  }
};

void Compute(BankTables& tables) {
  ReconFindings findings({{12, 28, 2024}, 20241128, 1, true});
  Require(RunReconPasses(tables, {}, findings) == PassEnd::kDone, "the passes were not done");
  Require(!findings.recon.ResultsFor({}).outstanding_checks.IsZero(), "nothing was counted");
}

void Measure(const Size& size, int runs, const std::string& folder) {
  SpokenBoxes boxes;
  clsKVRData data({SystemClock(), SystemWorkstation(), SystemFileSystem(), boxes, engine::SystemFiles()});
  Require(data.InitializeCodebase(), "the engine did not start");
  BankTables tables(
      {data, SystemFileSystem(), boxes, WithBackslash(SystemFileSystem().HeldPath(folder)), {}});
  Require(tables.CreateMissing(kBank) == engine::kSuccess && tables.Open(kBank), "the tables were not made");
  FillTables(tables, size);
  std::vector<std::string> paths;
  for (const TableBase* table :
       {static_cast<TableBase*>(&tables.checks), static_cast<TableBase*>(&tables.wires),
        static_cast<TableBase*>(&tables.deposits)})
    paths.push_back(SystemFileSystem().PlatformPath(table->Path()));
  std::vector<double> ours;
  std::vector<double> cat;
  for (int run = -1; run < runs; ++run) {  // run -1 warms the caches
    const double read = Seconds([&] {
      for (const std::string& path : paths) Require(ReadThrough(path) > 0, "a table cannot be read");
    });
    const double computed = Seconds([&] { Compute(tables); });
    if (run < 0) continue;
    cat.push_back(read);
    ours.push_back(computed);
  }
  std::cout << size.checks << " checks, " << size.deposits << " deposits, " << size.wires
            << " wires, medians of " << runs << " runs\n\n"
            << MarkdownTable("reading the files", {{"compute", Median(ours), Median(cat), kCatGoal}});
}

}  // namespace
}  // namespace tallwick::bench

int main(int count, char** words) {
  using namespace tallwick::bench;
  Size size;
  int runs = 9;
  std::string parent = "/var/tmp";
  CLI::App app("Times a reconciliation's passes beside reading the bank's tables to nothing.");
  app.add_option("--checks", size.checks, "how many checks")->check(CLI::Range(100, 5000000));
  app.add_option("--deposits", size.deposits, "how many deposits")->check(CLI::Range(100, 1000000));
  app.add_option("--wires", size.wires, "how many wires")->check(CLI::Range(100, 1000000));
  app.add_option("--runs", runs, "runs; the median counts")->check(CLI::Range(1, 100));
  app.add_option("--dir", parent, "parent of the temporary folder")->check(CLI::ExistingDirectory);
  CLI11_PARSE(app, count, words);
  try {
    const TemporaryFolder folder(parent);
    Measure(size, runs, folder.Path());
  } catch (const std::exception& failure) {
    std::cerr << "tallwick_recon_bench: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}
