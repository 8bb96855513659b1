// The arithmetic of the reconciliation beside a second one that is slow and obvious: whole lists, plain
// integers, one step of the office's procedure after the other. Banks are made at random from few dates and
// statuses, so that every rule meets every other. TALLWICK_RANDOM_BANKS sets how many.
#include "recon/reconciliation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace tallwick {
namespace {

struct Day {
  int year = 0, month = 0, day = 0;
};

struct Paper {  // a check, a wire or one item of a deposit
  long long amount = 0;
  std::string status;
  Day posted, stamped;
};

struct Bank {
  Day statement, last;
  int mode = 0;
  bool month_rule = false;
  long long balance = 0, adjustments = 0, beginning = 0, credits = 0, charges = 0;
  std::vector<Paper> checks, wires;
  std::vector<std::vector<Paper>> deposits;
};

// --- The slow one ---

struct Sheet {
  long long check[5] = {}, check_in[7] = {};
  long long wire[3] = {}, wire_in[5] = {};
  long long item[3] = {}, item_in[4] = {};
};

int Number(const Day& day) {
  return day.year * 10000 + day.month * 100 + day.day;
}

bool Inside(const Bank& bank, int p) {
  const int s = Number(bank.statement);
  const int l = Number(bank.last);
  if (bank.mode == 0) return p == s;
  if (p <= l) return false;
  if (p > s) return false;
  return true;
}

int Stamp(const Bank& bank, const Paper& paper) {
  Day day = paper.stamped;
  if (bank.mode == 1) {
    if (bank.month_rule) {
      if (day.year == bank.statement.year && day.month == bank.statement.month) day.day = bank.statement.day;
    }
  }
  return Number(day);
}

void DoChecks(const Bank& bank, Sheet& sheet) {
  const int s = Number(bank.statement);
  for (const Paper& check : bank.checks) {
    const int p = Number(check.posted);
    if (p > s) continue;
    bool flag = Inside(bank, p);
    int c = Stamp(bank, check);
    std::string status = check.status;
    if (bank.mode == 1 && status == "V" && c > s) {
      status = "H";
      c = 0;
    }
    int bucket = 1;  // an unknown status is taken as outstanding
    if (status == "O") bucket = 1;
    if (status == "H") bucket = 1;
    if (status == "C") bucket = 2;
    if (status == "V") bucket = 3;
    if (status == "S") bucket = 4;
    if (bucket != 1 && c > s) bucket = 1;
    sheet.check[bucket] += check.amount;
    if (c == s && bucket == 2) {
      sheet.check_in[5] += check.amount;
      sheet.check_in[6] += 1;
    }
    if (bucket == 3 || bucket == 4) {
      if (flag) sheet.check_in[1] += check.amount;
      flag = Inside(bank, c);
    }
    if (flag) sheet.check_in[bucket] += check.amount;
  }
}

void DoWires(const Bank& bank, Sheet& sheet) {
  const int s = Number(bank.statement);
  for (const Paper& wire : bank.wires) {
    const int p = Number(wire.posted);
    if (p > s) continue;
    const bool flag = Inside(bank, p);
    const int c = Stamp(bank, wire);
    int bucket = 1;
    if (wire.status == "C" || wire.status.empty()) bucket = 2;
    if (c > s) bucket = 1;
    sheet.wire[bucket] += wire.amount;
    if (c == s && bucket == 2) {
      sheet.wire_in[3] += wire.amount;
      sheet.wire_in[4] += 1;
    }
    if (flag) sheet.wire_in[bucket] += wire.amount;
  }
}

void DoDeposits(const Bank& bank, Sheet& sheet) {
  const int s = Number(bank.statement);
  for (const std::vector<Paper>& deposit : bank.deposits) {
    const int p = Number(deposit[0].posted);
    if (p > s) continue;
    const bool flag = Inside(bank, p);
    for (const Paper& item : deposit) {
      const int c = Stamp(bank, item);
      int bucket = 0;
      if (item.status == "O") bucket = 1;
      if (item.status == "C") bucket = 2;
      if (bucket == 0) continue;
      if (c > s) bucket = 1;
      sheet.item[bucket] += item.amount;
      if (flag) sheet.item_in[bucket] += item.amount;
      if (c == s && bucket == 2) sheet.item_in[3] += item.amount;
    }
  }
}

// Every figure on the screen, in the order of the screen.
std::vector<long long> SlowFigures(const Bank& bank) {
  Sheet sheet;
  DoChecks(bank, sheet);
  DoWires(bank, sheet);
  DoDeposits(bank, sheet);
  const long long adjusted =
      bank.balance + sheet.item[1] - (sheet.check[1] + sheet.wire[1]) + bank.adjustments;
  const long long deposits = sheet.item_in[1] + sheet.item_in[2];
  const long long voided = sheet.check_in[3] + sheet.check_in[4];
  const long long disbursed = sheet.check_in[1] + sheet.check_in[2] + sheet.wire_in[1] + sheet.wire_in[2];
  const long long ending = bank.beginning + (deposits + voided) - disbursed + bank.credits - bank.charges;
  const long long difference = ending > adjusted ? ending - adjusted : adjusted - ending;
  return {sheet.item[1],     sheet.check[1],
          sheet.wire[1],     adjusted,
          deposits,          voided,
          disbursed,         ending,
          difference,        sheet.check_in[5],
          sheet.check_in[6], sheet.wire_in[3],
          sheet.wire_in[4],  sheet.item_in[3]};
}

// --- The one under test ---

Period AsPeriod(const Day& day) {
  return {day.month, day.day, day.year};
}

void AddTo(Reconciliation& recon, ReconKind kind, const Paper& paper) {
  recon.Add({kind, paper.status.empty() ? ' ' : paper.status[0], Currency::FromTenThousandths(paper.amount),
             MakeKey(AsPeriod(paper.posted)), AsPeriod(paper.stamped)});
}

std::vector<long long> Figures(const Bank& bank) {
  Reconciliation recon({AsPeriod(bank.statement), MakeKey(AsPeriod(bank.last)), bank.mode, bank.month_rule});
  // Kinds mixed: the order of the stream must not matter.
  for (const std::vector<Paper>& deposit : bank.deposits) {
    for (const Paper& item : deposit) AddTo(recon, ReconKind::kDeposit, item);
  }
  for (const Paper& check : bank.checks) AddTo(recon, ReconKind::kCheck, check);
  for (const Paper& wire : bank.wires) AddTo(recon, ReconKind::kWire, wire);
  const auto money = [](long long amount) { return Currency::FromTenThousandths(amount); };
  const ReconResults results =
      recon.ResultsFor({money(bank.balance), money(bank.adjustments), money(bank.beginning),
                        money(bank.credits), money(bank.charges)});
  const auto number = [](Currency amount) { return static_cast<long long>(amount.TenThousandths()); };
  return {number(results.outstanding_deposits),
          number(results.outstanding_checks),
          number(results.outstanding_wires),
          number(results.adjusted_balance),
          number(results.deposits),
          number(results.voided_checks),
          number(results.disbursements),
          number(results.ending_balance),
          number(results.difference),
          number(results.cleared_checks),
          static_cast<long long>(results.cleared_check_count),
          number(results.cleared_wires),
          static_cast<long long>(results.cleared_wire_count),
          number(results.cleared_deposits)};
}

// --- Random banks ---

class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}
  int To(int most) { return std::uniform_int_distribution<int>(0, most)(engine_); }
  long long Amount() { return std::uniform_int_distribution<long long>(-999999, 99999999)(engine_) * 100; }
  Day Any(bool with_days) {
    const int month = 11 + To(4);  // November 2023 to March 2024
    return {month > 12 ? 2024 : 2023, month > 12 ? month - 12 : month, with_days ? 14 + To(2) : 0};
  }

 private:
  std::mt19937 engine_;
};

Paper AnyPaper(Dice& dice, bool with_days, const std::vector<std::string>& statuses) {
  Paper paper{dice.Amount(),
              statuses[static_cast<std::size_t>(dice.To(static_cast<int>(statuses.size()) - 1))],
              dice.Any(with_days),
              {}};
  // Now and then a form of date that is not the bank's own.
  if (dice.To(3) > 0) paper.stamped = dice.Any(dice.To(9) == 0 ? !with_days : with_days);
  return paper;
}

Bank AnyBank(unsigned seed) {
  Dice dice(seed);
  Bank bank;
  bank.mode = dice.To(1);
  const bool with_days = dice.To(3) == 0 ? bank.mode == 0 : bank.mode == 1;
  bank.month_rule = dice.To(1) == 1;
  bank.statement = dice.Any(with_days);
  if (dice.To(4) > 0) bank.last = dice.Any(with_days);
  for (long long* figure : {&bank.balance, &bank.adjustments, &bank.beginning, &bank.credits, &bank.charges})
    *figure = dice.Amount();
  for (int i = dice.To(30); i > 0; --i)
    bank.checks.push_back(AnyPaper(dice, with_days, {"H", "O", "C", "C", "V", "S", "", "X"}));
  for (int i = dice.To(12); i > 0; --i) bank.wires.push_back(AnyPaper(dice, with_days, {"O", "C", "", "V"}));
  for (int i = dice.To(8); i > 0; --i) {
    std::vector<Paper> items;
    for (int n = dice.To(14); n >= 0; --n) items.push_back(AnyPaper(dice, with_days, {"O", "C", "", "V"}));
    for (Paper& item : items) item.posted = items[0].posted;
    bank.deposits.push_back(items);
  }
  return bank;
}

TEST(Reconciliation, AgreesWithTheSlowOneOnRandomBanks) {
  const char* wanted = std::getenv("TALLWICK_RANDOM_BANKS");
  const unsigned banks = wanted == nullptr ? 500 : static_cast<unsigned>(std::stoul(wanted));
  for (unsigned seed = 1; seed <= banks; ++seed) {
    const Bank bank = AnyBank(seed);
    ASSERT_EQ(Figures(bank), SlowFigures(bank)) << "bank " << seed;
  }
}

TEST(Reconciliation, ASumOutOfRangeNeverPassesForBalanced) {
  Reconciliation recon({{3, 0, 2024}, 0, 0, false});
  const Currency most = Currency::FromTenThousandths(9'000'000'000'000'000'000);
  for (int i = 0; i < 2; ++i) recon.Add({ReconKind::kCheck, 'O', most, 20240300, {}});
  const ReconResults results = recon.ResultsFor({});
  EXPECT_FALSE(results.outstanding_checks.IsValid());
  EXPECT_FALSE(results.IsBalanced());
}

// An item stands in the lists behind the figures that it is part of.
TEST(Reconciliation, SaysWhichFiguresAnItemIsPartOf) {
  const ReconTerms terms{{3, 15, 2024}, 20240215, 1, true};
  const struct {
    ReconKind kind;
    char status;
    std::int32_t posted;
    Period stamped;
    unsigned figures;
  } kCases[] = {
      {ReconKind::kCheck, 'O', 20240301, {}, kFigureOutstanding | kFigureBooked},
      {ReconKind::kCheck, 'C', 20240301, {3, 2, 2024}, kFigureCleared | kFigureBooked},
      {ReconKind::kCheck, 'C', 20240101, {2, 2, 2024}, 0},
      {ReconKind::kCheck, 'V', 20240301, {3, 9, 2024}, kFigureBooked | kFigureReturned},
      {ReconKind::kCheck, 'S', 20240101, {3, 9, 2024}, kFigureReturned},
      {ReconKind::kCheck, 'V', 20240101, {4, 1, 2024}, kFigureOutstanding},
      {ReconKind::kCheck, 'O', 20240316, {}, 0},
      {ReconKind::kDeposit, ' ', 20240301, {}, 0},
      {ReconKind::kWire, ' ', 20240301, {}, kFigureBooked},
  };
  for (const auto& one : kCases) {
    const ReconPlace place = Reconciliation(terms).Add({one.kind, one.status, {}, one.posted, one.stamped});
    EXPECT_EQ(FiguresOf(place), one.figures) << one.status << ' ' << one.posted;
  }
}

}  // namespace
}  // namespace tallwick
