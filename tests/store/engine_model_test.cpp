// Random operations on a table, compared with a plain model in memory: records, every tag's order, seeks,
// steps, locks and rollbacks. After each round the table is verified and opened again.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <random>

#include "core/system_ports.h"
#include "core/text.h"
#include "store/engine/codebase.h"
#include "store/engine/verify.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tallwick::engine {
namespace {

constexpr FieldLayout kFields[] = {
    {"NAME", 'C', 12}, {"AMOUNT", 'N', 12, 2}, {"DATED", 'D', 8}, {"NOTE", 'M', 10}, {"LONG", 'C', 230}};
constexpr TagLayout kTags[] = {
    {"NAME", "UPPER(NAME)", ".NOT. Deleted ()", true, false},
    {"AMOUNT", "AMOUNT", ".NOT. DELETED()", false, false},
    {"DATED", "DTOS(DATED) + UPPER (NAME)", ".NOT. DELETED()", false, true},
    {"LONG", "LONG", "", false, false},
    {"DEL4REUSE", "RECNO()", "DELETED()", false, false},
};

struct Row {
  std::string name, amount, dated, note, long_text;
  bool deleted = false;
};

class EngineModel : public ::testing::TestWithParam<unsigned> {
 protected:
  void SetUp() override {
    Start();
    table_ = d4create(*code_, Path(), kFields, kTags);
    ASSERT_NE(table_, nullptr) << code4errorCode(*code_, 0);
  }

  std::string Path() { return folder_.Held() + "model.dbf"; }

  void Start() { code_ = code4initVB({clock_, workstation_, SystemFileSystem(), SystemFiles()}); }

  void Reopen() {
    code4initUndo(*code_);
    Start();
    table_ = d4open(*code_, Path());
    ASSERT_NE(table_, nullptr) << code4errorCode(*code_, 0);
  }

  std::size_t Draw(std::size_t below) { return below == 0 ? 0 : random_() % below; }

  Row RandomRow() {
    Row row;
    const std::size_t letters = 1 + Draw(11);
    for (std::size_t i = 0; i < letters; ++i) row.name += static_cast<char>('A' + Draw(4));
    row.amount = std::to_string(static_cast<int>(Draw(2000)) - 1000) + "." + std::to_string(10 + Draw(90));
    if (Draw(5) != 0) row.dated = StoredDate(DateFromJulianDay(2460000 + static_cast<int>(Draw(400))));
    if (Draw(3) == 0) row.note = std::string(Draw(400), static_cast<char>('a' + Draw(26)));
    // Some keys as long and as unlike each other as they get, so that a page holds one or two.
    row.long_text =
        Draw(2) == 0 ? std::string(1 + Draw(5), static_cast<char>('A' + Draw(20))) : RandomText(230);
    return row;
  }

  std::string RandomText(std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('0' + Draw(70));
    return text;
  }

  void Assign(const Row& row) {
    EXPECT_EQ(f4assignNVB(*d4field(*table_, "NAME"), row.name), kSuccess);
    EXPECT_EQ(f4assignNVB(*d4field(*table_, "AMOUNT"), row.amount), kSuccess);
    EXPECT_EQ(f4assignNVB(*d4field(*table_, "DATED"), row.dated), kSuccess);
    EXPECT_EQ(f4assignNVB(*d4field(*table_, "LONG"), row.long_text), kSuccess);
    EXPECT_EQ(f4memoAssign(*d4field(*table_, "NOTE"), row.note), kSuccess);
  }

  bool NameTaken(const std::string& name, std::size_t except) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (i != except && !rows_[i].deleted && rows_[i].name == name) return true;
    }
    return false;
  }

  void Append() {
    const Row row = RandomRow();
    d4appendStart(*table_);
    Assign(row);
    const bool taken = NameTaken(row.name, rows_.size());
    ASSERT_EQ(d4append(*table_), taken ? kUnique : kSuccess);
    if (taken) {
      d4changed(*table_, 0);
    } else {
      rows_.push_back(row);
    }
  }

  void Change() {
    if (rows_.empty()) return;
    const std::size_t i = Draw(rows_.size());
    ASSERT_EQ(d4goLow(*table_, static_cast<std::uint32_t>(i + 1)), kSuccess);
    Row row = Draw(3) == 0 ? rows_[i] : RandomRow();
    row.deleted = Draw(4) == 0;
    ASSERT_EQ(d4lockVB(*table_, static_cast<std::uint32_t>(i + 1)), kSuccess);
    Assign(row);
    if (row.deleted) {
      d4delete(*table_);
    } else {
      d4recall(*table_);
    }
    const bool taken = !row.deleted && NameTaken(row.name, i);
    ASSERT_EQ(d4flush(*table_), taken ? kUnique : kSuccess);
    if (taken) {
      d4changed(*table_, 0);
    } else {
      rows_[i] = row;
    }
    d4unlock(*table_);
  }

  // The record numbers in a tag's order, from the model.
  std::vector<std::uint32_t> Expected(const std::string& tag) {
    std::vector<std::pair<std::string, std::uint32_t>> keys;
    std::vector<std::pair<double, std::uint32_t>> numbers;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const Row& row = rows_[i];
      const auto number = static_cast<std::uint32_t>(i + 1);
      if (tag == "AMOUNT" && !row.deleted) numbers.emplace_back(std::stod(row.amount), number);
      if (tag == "DEL4REUSE" && row.deleted) numbers.emplace_back(number, number);
      if (tag == "NAME" && !row.deleted) keys.emplace_back(PadRight(row.name, 12), number);
      if (tag == "LONG") keys.emplace_back(PadRight(row.long_text, 230), number);
      if (tag == "DATED" && !row.deleted)
        keys.emplace_back(PadRight(row.dated, 8) + PadRight(row.name, 12), number);
    }
    std::sort(keys.begin(), keys.end());
    std::sort(numbers.begin(), numbers.end());
    if (tag == "DATED") std::reverse(keys.begin(), keys.end());
    std::vector<std::uint32_t> order;
    for (const auto& [key, number] : keys) order.push_back(number);
    for (const auto& [key, number] : numbers) order.push_back(number);
    return order;
  }

  void CheckOrders() {
    for (const TagLayout& layout : kTags) {
      const auto expected = Expected(std::string(layout.name));
      d4tagSelect(*table_, d4tag(*table_, layout.name));
      std::vector<std::uint32_t> walked;
      for (int rc = d4top(*table_); rc == kSuccess; rc = d4skip(*table_, 1))
        walked.push_back(d4recNoLow(*table_));
      ASSERT_EQ(walked, expected) << layout.name;
      walked.clear();
      for (int rc = d4bottom(*table_); rc == kSuccess; rc = d4skip(*table_, -1))
        walked.push_back(d4recNoLow(*table_));
      std::reverse(walked.begin(), walked.end());
      ASSERT_EQ(walked, expected) << layout.name << " backwards";
    }
    d4tagSelect(*table_, nullptr);
  }

  void CheckRecords() {
    ASSERT_EQ(d4recCountDo(*table_), rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      ASSERT_EQ(d4goLow(*table_, static_cast<std::uint32_t>(i + 1)), kSuccess);
      EXPECT_EQ(d4deleted(*table_), rows_[i].deleted);
      EXPECT_EQ(f4memoPtr(*d4field(*table_, "NOTE")), rows_[i].note);
      const Currency amount = f4currency(*d4field(*table_, "AMOUNT"));
      EXPECT_EQ(amount, Currency::Parse(rows_[i].amount));
    }
  }

  void CheckSeek() {
    d4tagSelect(*table_, d4tag(*table_, "NAME"));
    std::string key;
    for (std::size_t i = 0; i < 1 + Draw(5); ++i) key += static_cast<char>('A' + Draw(4));
    std::optional<std::string> best;
    for (const Row& row : rows_) {
      const std::string name = PadRight(row.name, 12);
      if (!row.deleted && name.substr(0, key.size()) >= key && (!best || name < *best)) best = name;
    }
    const int rc = d4seek(*table_, key);
    ASSERT_EQ(rc, !best ? kEof : best->substr(0, key.size()) == key ? kSuccess : kAfter) << key;
    if (best) {
      EXPECT_EQ(std::string(f4ptr(*d4field(*table_, "NAME")), 12), *best);
    }
    d4tagSelect(*table_, nullptr);
  }

  // From a record reached by its number, one step in a tag's order; and back from the ends.
  void CheckSteps() {
    const TagLayout& layout = kTags[Draw(std::size(kTags))];
    const auto order = Expected(std::string(layout.name));
    if (order.empty()) return;
    d4tagSelect(*table_, d4tag(*table_, layout.name));
    const std::size_t i = Draw(order.size());
    ASSERT_EQ(d4goLow(*table_, order[i]), kSuccess);
    const bool forward = Draw(2) == 0;
    const bool at_end = forward ? i + 1 == order.size() : i == 0;
    ASSERT_EQ(d4skip(*table_, forward ? 1 : -1), !at_end ? kSuccess : forward ? kEof : kBof) << layout.name;
    if (!at_end) {
      ASSERT_EQ(d4recNoLow(*table_), order[forward ? i + 1 : i - 1]) << layout.name;
    } else if (forward) {
      ASSERT_EQ(d4skip(*table_, -1), kSuccess);
      ASSERT_EQ(d4recNoLow(*table_), order.back());
    } else {
      ASSERT_EQ(d4recNoLow(*table_), order.front());
    }
    const auto steps = static_cast<std::int64_t>(Draw(order.size()));
    ASSERT_EQ(d4top(*table_), kSuccess);
    ASSERT_EQ(d4skip(*table_, steps), kSuccess);
    ASSERT_EQ(d4recNoLow(*table_), order[static_cast<std::size_t>(steps)]);
    d4tagSelect(*table_, nullptr);
  }

  void CheckVerify() {
    std::vector<TableProblem> problems;
    ASSERT_EQ(d4verify(*table_, &problems), kSuccess);
    for (const auto& problem : problems) ADD_FAILURE() << problem.record << ": " << problem.problem;
  }

  std::mt19937 random_{GetParam()};
  tallwick::testing::TempFolder folder_;
  tallwick::testing::FakeClock clock_;
  tallwick::testing::FakeWorkstation workstation_;
  std::unique_ptr<Code4> code_;
  Data4* table_ = nullptr;
  std::vector<Row> rows_;
};

TEST_P(EngineModel, AgreesWithThePlainModel) {
  for (int round = 0; round < 6; ++round) {
    const bool unit = round % 2 == 1;
    const bool rollback = unit && Draw(2) == 0;
    const auto saved = rows_;
    if (unit) code4unitBegin(*code_);
    for (int i = 0; i < 120; ++i) {
      const std::size_t kind = Draw(10);
      ASSERT_NO_FATAL_FAILURE(kind < 5   ? Append()
                              : kind < 8 ? Change()
                              : kind < 9 ? CheckSteps()
                                         : CheckSeek());
    }
    if (unit) {
      ASSERT_NO_FATAL_FAILURE(CheckOrders());
      ASSERT_EQ(rollback ? code4unitRollback(*code_) : code4unitCommit(*code_), kSuccess);
      if (rollback) rows_ = saved;
    }
    ASSERT_NO_FATAL_FAILURE(CheckOrders());
    ASSERT_NO_FATAL_FAILURE(CheckVerify());
    if (Draw(2) == 0) {
      ASSERT_NO_FATAL_FAILURE(Reopen());
    }
    ASSERT_NO_FATAL_FAILURE(CheckRecords());
  }
}

TEST_P(EngineModel, PackAndReindexKeepTheLiveRecords) {
  for (int i = 0; i < 150; ++i) ASSERT_NO_FATAL_FAILURE(Draw(3) != 0 ? Append() : Change());
  code4initUndo(*code_);
  Start();
  code4accessMode(*code_, 1);
  table_ = d4open(*code_, Path());
  ASSERT_NE(table_, nullptr);
  ASSERT_EQ(d4reindex(*table_), kSuccess);
  ASSERT_NO_FATAL_FAILURE(CheckOrders());
  ASSERT_EQ(d4pack(*table_), kSuccess);
  std::erase_if(rows_, [](const Row& row) { return row.deleted; });
  ASSERT_NO_FATAL_FAILURE(CheckOrders());
  ASSERT_NO_FATAL_FAILURE(CheckVerify());
  for (int i = 0; i < 50; ++i) ASSERT_NO_FATAL_FAILURE(Append());
  ASSERT_NO_FATAL_FAILURE(Reopen());
  ASSERT_NO_FATAL_FAILURE(CheckRecords());
  ASSERT_NO_FATAL_FAILURE(CheckVerify());
}

INSTANTIATE_TEST_SUITE_P(Seeds, EngineModel, ::testing::Range(1U, 9U));

}  // namespace
}  // namespace tallwick::engine
