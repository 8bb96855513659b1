// Operations on a table, chosen by bytes, beside a plain model of it in memory; after each one the two must
// agree. The bytes come from a fuzzer or from a random generator.
//
// Two workstations take turns on the table, or one has it for itself. On a disk in memory a death can be
// planned: what is found afterwards must be the state before the operation or after it, and the latter when
// it was reported as done.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/text.h"
#include "store/engine/codebase.h"
#include "store/engine/verify.h"
#include "tests/support/engine_ports.h"
#include "tests/support/memory_files.h"

namespace tallwick::testing {

class EngineModel {
 public:
  struct Limits {
    std::size_t rows = 40;    // no appends beyond
    int steps = 60;           // operations
    int whole_check_at = 30;  // everything is compared, and the table verified, each time so many were done
  };

  EngineModel(engine::FileLayer& files, std::string path, Limits limits)
      : files_(files), path_(std::move(path)), limits_(limits) {}
  // On a disk in memory, where faults can be planned.
  EngineModel(MemoryFiles& disk, std::string path, Limits limits)
      : files_(disk), disk_(&disk), path_(std::move(path)), limits_(limits) {}

  // Until the choices are used up. "" or what disagreed first, and at which step.
  std::string Run(std::span<const std::uint8_t> choices) {
    choices_ = choices;
    Make();
    for (step_ = 1; step_ <= limits_.steps && !choices_.empty() && wrong_.empty(); ++step_) Step();
    if (disk_ != nullptr) disk_->Plan(Fault::kNone, 0);
    if (depth_ > 0) Rollback();
    if (wrong_.empty()) CheckWhole();
    return wrong_;
  }

 private:
  struct Row {
    std::string name, dated, note, text;
    std::int64_t cents = 0;
    bool deleted = false;
    friend bool operator==(const Row&, const Row&) = default;
  };
  using Rows = std::vector<Row>;
  struct Seat {
    EnginePorts ports;
    std::unique_ptr<engine::Code4> code;
    engine::Data4* table = nullptr;
  };

  static constexpr engine::FieldLayout kFields[] = {
      {"NAME", 'C', 12}, {"AMOUNT", 'N', 12, 2}, {"DATED", 'D', 8}, {"NOTE", 'M', 10}, {"LONG", 'C', 230}};
  static constexpr engine::TagLayout kTags[] = {
      {"NAME", "UPPER(NAME)", ".NOT. Deleted ()", true, false},
      {"AMOUNT", "AMOUNT", "AMOUNT > 100 .AND. .NOT. DELETED()", false, false},
      {"DATED", "DTOS(DATED) + UPPER (NAME)", ".NOT. DELETED()", false, true},
      {"LONG", "LONG", "", false, false},
      {"DEL4REUSE", "RECNO()", "DELETED()", false, false},
  };
  static constexpr std::size_t kTagCount = std::size(kTags);

  // --- Choices ---

  std::size_t Draw(std::size_t below) {
    std::size_t value = 0;
    for (std::size_t range = 1; range < below && !choices_.empty(); range <<= 8) {
      value = value << 8 | choices_.front();
      choices_ = choices_.subspan(1);
    }
    return below == 0 ? 0 : value % below;
  }

  std::string DrawText(std::size_t length) {
    std::uint32_t seed = static_cast<std::uint32_t>(Draw(65536)) + 1;
    std::string text;
    while (text.size() < length) {
      seed = seed * 1664525 + 1013904223;
      text += static_cast<char>('0' + (seed >> 24) % 70);
    }
    return text;
  }

  std::string DrawName() {
    std::string name;
    const std::size_t letters = 1 + Draw(4);
    for (std::size_t i = 0; i < letters; ++i) name += "ABCDabxy"[Draw(8)];
    return name;
  }

  std::string DrawMemo() {
    const std::size_t length = Draw(4) == 0 ? Draw(2000) : Draw(70);
    return std::string(length, static_cast<char>('a' + length % 26));
  }

  // Some keys as long and as unlike each other as they get, so that a page holds one or two.
  Row DrawRow() {
    Row row;
    row.name = DrawName();
    row.cents = static_cast<std::int64_t>(Draw(40000)) - 10000;
    if (Draw(5) != 0) row.dated = StoredDate(DateFromJulianDay(2460000 + static_cast<int>(Draw(200))));
    if (Draw(3) == 0) row.note = DrawMemo();
    if (Draw(2) == 0) {
      const std::size_t letters = 1 + Draw(5);
      row.text = std::string(letters, static_cast<char>('A' + Draw(20)));
    } else {
      row.text = DrawText(230);
    }
    return row;
  }

  // --- Agreement ---

  bool Dead() const { return disk_ != nullptr && disk_->IsDead(); }
  // Once a planned fault has struck, nothing counts that is said until its end.
  bool Struck() const { return disk_ != nullptr && disk_->HasStruck(); }

  void Agree(bool same, std::string_view what) {
    if (!same && wrong_.empty() && !Struck())
      wrong_ = "step " + std::to_string(step_) + ": " + std::string(what);
  }
  void Expect(int got, int wanted, std::string_view what) {
    if (got != wanted) {
      Agree(false, std::string(what) + " gave " + std::to_string(got) + " and not " + std::to_string(wanted));
    }
  }
  // The result of an operation's one change.
  void ExpectChange(int got, int wanted, std::string_view what) {
    Expect(got, wanted, what);
    done_ = got == engine::kSuccess && !Dead();  // the dead report nothing
  }

  // --- Workstations ---

  engine::Data4& Table() { return *seats_[seat_].table; }
  engine::Code4& Code() { return *seats_[seat_].code; }
  engine::Field4& Field(std::string_view name) { return *engine::d4field(Table(), name); }

  void Make() {
    for (Seat& seat : seats_) seat.ports.workstation.boot = "first";
    Seat& seat = seats_[0];
    seat.code = engine::code4initVB(seat.ports.Over(files_));
    seat.table = engine::d4create(*seat.code, path_, kFields, kTags);
    Agree(seat.table != nullptr, "the table was not made");
    if (seat.table != nullptr) OpenSeats();
  }

  void OpenSeats() {
    for (Seat& seat : seats_) {
      if (seat.table != nullptr || (exclusive_ && &seat != &seats_[0])) continue;
      seat.code = engine::code4initVB(seat.ports.Over(files_));
      engine::code4accessMode(*seat.code, exclusive_ ? 1 : 0);
      seat.table = engine::d4open(*seat.code, path_);
      if (seat.table == nullptr) {
        Expect(engine::code4errorCode(*seat.code, 0), engine::kSuccess, "the open");
        if (wrong_.empty()) seat.code.reset();  // dead
      }
    }
  }

  void Leave(Seat& seat) {
    if (seat.code) engine::code4initUndo(*seat.code);
    seat.table = nullptr;
    seat.code.reset();
  }

  // Who still works goes on first: what the dead one left is theirs to finish.
  void Revive(const Rows& before) {
    depth_ = 0;
    Leave(seats_[seat_]);
    for (Seat& seat : seats_) {
      if (power_cut_) Leave(seat);
    }
    disk_->Restart(power_cut_);
    if (power_cut_) {
      for (Seat& seat : seats_) seat.ports.workstation.boot += "'";
    }
    const bool alone = seats_[1 - seat_].table == nullptr;
    if (!alone) seat_ = 1 - seat_;
    if (alone) OpenSeats();
    if (!wrong_.empty() || seats_[seat_].table == nullptr) return;
    TakeStock(before);
    OpenSeats();
  }

  // After a fault that the workstation survived: what was not committed is given up. Who packs a table does
  // not write on when it fails.
  void GoOn(const Rows& before) {
    disk_->Plan(Fault::kNone, 0);
    if (depth_ > 0) engine::code4unitRollback(Code());
    depth_ = 0;
    if (exclusive_) Leave(seats_[0]);
    OpenSeats();
    if (wrong_.empty()) TakeStock(before);
  }

  void TakeStock(const Rows& before) {
    // Cached pages may stand for a little longer; whoever takes the index lock, as this does, finishes what
    // was left.
    std::vector<engine::TableProblem> of_no_account;
    engine::d4verify(Table(), &of_no_account);
    Rows found = ReadRows();
    Agree(found == committed_ || (!done_ && found == before), "after a fault something else was found");
    rows_ = committed_ = std::move(found);
    if (wrong_.empty()) CheckWhole();
  }

  // --- Operations ---

  void Step() {
    const Rows before = committed_;
    done_ = false;
    Operate(Draw(24));
    if (depth_ == 0) committed_ = rows_;
    if (wrong_.empty() && !Struck()) {
      CheckOrder(static_cast<std::size_t>(step_) % kTagCount);
      if (step_ % limits_.whole_check_at == 0) CheckWhole();
    }
    if (Dead()) {
      Revive(before);
    } else if (Struck()) {
      GoOn(before);
    }
  }

  void Operate(std::size_t kind) {
    if (kind < 8) return rows_.size() < limits_.rows ? Append() : Change(false);
    if (kind < 10) return Change(false);
    if (kind < 12) return Change(true);
    switch (kind) {
      case 12:
        return WriteMemo();
      case 13:
        return CheckSkip();
      case 14:
        return CheckSeek();
      case 15:
        return CheckSeekNumber();
      case 16:
        return Begin();
      case 17:
      case 18:
        return Commit();
      case 19:
        return Rollback();
      case 20:
        return Pack();
      case 21:
        return Reopen();
      case 22:
        return TakeTurns();
      default:
        return PlanFault();
    }
  }

  void Assign(const Row& row) {
    Expect(engine::f4assignNVB(Field("NAME"), row.name), engine::kSuccess, "NAME");
    Expect(engine::f4assignCurrency(Field("AMOUNT"), Currency::FromCents(row.cents)), engine::kSuccess,
           "AMOUNT");
    Expect(engine::f4assignNVB(Field("DATED"), row.dated), engine::kSuccess, "DATED");
    Expect(engine::f4assignNVB(Field("LONG"), row.text), engine::kSuccess, "LONG");
    Expect(engine::f4memoAssign(Field("NOTE"), row.note), engine::kSuccess, "NOTE");
  }

  bool NameTaken(const std::string& name, std::size_t except) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (i != except && !rows_[i].deleted && EqualsIgnoreCase(rows_[i].name, name)) return true;
    }
    return false;
  }

  void Append() {
    Row row = DrawRow();
    Expect(engine::d4appendStart(Table()), engine::kSuccess, "a blank record");
    Assign(row);
    const bool taken = NameTaken(row.name, rows_.size());
    ExpectChange(engine::d4append(Table()), taken ? engine::kUnique : engine::kSuccess, "the append");
    engine::d4changed(Table(), 0);
    if (!taken) rows_.push_back(std::move(row));
  }

  // Goes to a record, locks it, lets it be changed, writes and unlocks it.
  template <class Edit>
  void ChangeRow(Edit edit) {
    if (rows_.empty()) return;
    const std::size_t i = Draw(rows_.size());
    const auto number = static_cast<std::uint32_t>(i + 1);
    Expect(engine::d4goLow(Table(), number), engine::kSuccess, "the move");
    Expect(engine::d4lockVB(Table(), number), engine::kSuccess, "the lock");
    Row row = rows_[i];
    edit(&row);
    const bool taken = !row.deleted && NameTaken(row.name, i);
    ExpectChange(engine::d4flush(Table()), taken ? engine::kUnique : engine::kSuccess, "the change");
    engine::d4changed(Table(), 0);
    engine::d4unlock(Table());
    if (!taken) rows_[i] = std::move(row);
  }

  void Change(bool only_mark) {
    ChangeRow([&](Row* row) {
      const bool deleted = only_mark ? !row->deleted : row->deleted;
      if (!only_mark) {
        *row = DrawRow();
        Assign(*row);
      }
      row->deleted = deleted;
      deleted ? engine::d4delete(Table()) : engine::d4recall(Table());
    });
  }

  void WriteMemo() {
    ChangeRow([&](Row* row) {
      row->note = DrawMemo();
      Expect(engine::f4memoAssign(Field("NOTE"), row->note), engine::kSuccess, "NOTE");
    });
  }

  void Begin() {
    if (depth_ == 3) return;
    Expect(engine::code4unitBegin(Code()), engine::kSuccess, "the begin of a unit");
    ++depth_;
  }

  void Commit() {
    if (depth_ == 0) return;
    ExpectChange(engine::code4unitCommit(Code()), engine::kSuccess, "the commit");
    --depth_;
  }

  void Rollback() {
    if (depth_ == 0) return;
    Expect(engine::code4unitRollback(Code()), engine::kSuccess, "the rollback");
    depth_ = 0;
    rows_ = committed_;
  }

  void Pack() {
    const bool refused = !exclusive_ || depth_ > 0;
    const bool only_index = Draw(3) == 0;
    const int wanted =
        refused ? static_cast<int>(engine::kErrorOpenRefused) : static_cast<int>(engine::kSuccess);
    ExpectChange(only_index ? engine::d4reindex(Table()) : engine::d4pack(Table()), wanted, "the pack");
    engine::code4errorCode(Code(), 0);
    if (!refused && !only_index) std::erase_if(rows_, [](const Row& row) { return row.deleted; });
  }

  // What was not committed goes with the instance.
  void Reopen() {
    if (depth_ > 0) rows_ = committed_;
    depth_ = 0;
    for (Seat& seat : seats_) Leave(seat);
    exclusive_ = Draw(3) == 0;
    seat_ = 0;
    OpenSeats();
    if (!Struck() && wrong_.empty()) CheckWhole();
  }

  void TakeTurns() {
    if (depth_ == 0 && !exclusive_) seat_ = 1 - seat_;
  }

  void PlanFault() {
    if (disk_ == nullptr) return;
    constexpr Fault kFaults[] = {Fault::kDie, Fault::kTear, Fault::kFail, Fault::kShort, Fault::kFull};
    power_cut_ = Draw(2) == 0;
    const Fault fault = kFaults[Draw(std::size(kFaults))];
    disk_->Plan(fault, 1 + static_cast<int>(Draw(64)));
  }

  // --- Comparing ---

  // A row's key in a tag, in a form that sorts as the tag does (the descending one walks backwards).
  static std::optional<std::string> KeyOf(std::size_t tag, const Row& row, std::uint32_t number) {
    char sorted[24];
    switch (tag) {
      case 0:
        return row.deleted ? std::nullopt : std::optional(ToUpper(PadRight(row.name, 12)));
      case 1:
        if (row.deleted || row.cents <= 10000) return std::nullopt;
        std::snprintf(sorted, sizeof sorted, "%020lld", static_cast<long long>(row.cents));
        return sorted;
      case 2:
        return row.deleted ? std::nullopt
                           : std::optional(PadRight(row.dated, 8) + ToUpper(PadRight(row.name, 12)));
      case 3:
        return PadRight(row.text, 230);
      default:
        std::snprintf(sorted, sizeof sorted, "%010u", number);
        return row.deleted ? std::optional(std::string(sorted)) : std::nullopt;
    }
  }

  std::vector<std::uint32_t> Expected(std::size_t tag) {
    std::vector<std::pair<std::string, std::uint32_t>> keys;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const auto number = static_cast<std::uint32_t>(i + 1);
      if (auto key = KeyOf(tag, rows_[i], number)) keys.emplace_back(std::move(*key), number);
    }
    std::sort(keys.begin(), keys.end());
    if (kTags[tag].descending) std::reverse(keys.begin(), keys.end());
    std::vector<std::uint32_t> order;
    order.reserve(keys.size());
    for (const auto& [key, number] : keys) order.push_back(number);
    return order;
  }

  void Select(std::size_t tag) { engine::d4tagSelect(Table(), engine::d4tag(Table(), kTags[tag].name)); }

  void CheckOrder(std::size_t tag) {
    const auto expected = Expected(tag);
    Select(tag);
    std::vector<std::uint32_t> walked;
    for (int rc = engine::d4top(Table()); rc == engine::kSuccess; rc = engine::d4skip(Table(), 1))
      walked.push_back(engine::d4recNoLow(Table()));
    Agree(walked == expected, "another order in " + std::string(kTags[tag].name));
    walked.clear();
    for (int rc = engine::d4bottom(Table()); rc == engine::kSuccess; rc = engine::d4skip(Table(), -1))
      walked.push_back(engine::d4recNoLow(Table()));
    std::reverse(walked.begin(), walked.end());
    Agree(walked == expected, "another order backwards in " + std::string(kTags[tag].name));
    engine::d4tagSelect(Table(), nullptr);
  }

  Rows ReadRows() {
    Rows rows(engine::d4recCountDo(Table()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      Expect(engine::d4goLow(Table(), static_cast<std::uint32_t>(i + 1)), engine::kSuccess, "the move");
      const auto text = [&](std::string_view field) {
        const std::string bytes(engine::f4ptr(Field(field)),
                                static_cast<std::size_t>(engine::f4len(Field(field))));
        return std::string(TrimRight(bytes));
      };
      rows[i] = {text("NAME"),
                 text("DATED"),
                 engine::f4memoPtr(Field("NOTE")),
                 text("LONG"),
                 engine::f4currency(Field("AMOUNT")).TenThousandths() / 100,
                 engine::d4deleted(Table())};
    }
    return rows;
  }

  void CheckWhole() {
    for (std::size_t tag = 0; tag < kTagCount; ++tag) CheckOrder(tag);
    Agree(ReadRows() == rows_, "other records");
    if (depth_ == 0) CheckVerify();
  }

  void CheckVerify() {
    std::vector<engine::TableProblem> problems;
    Expect(engine::d4verify(Table(), &problems), engine::kSuccess, "the verify");
    Agree(problems.empty(), problems.empty() ? std::string() : problems[0].problem);
  }

  // From a record of a tag's order some steps on, perhaps beyond an end.
  void CheckSkip() {
    const std::size_t tag = Draw(kTagCount);
    const auto order = Expected(tag);
    if (order.empty()) return;
    Select(tag);
    const auto from = static_cast<int>(Draw(order.size()));
    const int steps = static_cast<int>(Draw(20)) - 10;
    Expect(engine::d4goLow(Table(), order[static_cast<std::size_t>(from)]), engine::kSuccess, "the move");
    const int to = from + steps;
    const bool behind = to >= static_cast<int>(order.size());
    Expect(engine::d4skip(Table(), steps),
           to < 0   ? engine::kBof
           : behind ? engine::kEof
                    : engine::kSuccess,
           "the skip");
    if (behind) Expect(engine::d4skip(Table(), -1), engine::kSuccess, "the skip back from the end");
    const std::uint32_t wanted = behind ? order.back() : order[static_cast<std::size_t>(std::max(to, 0))];
    Agree(engine::d4recNoLow(Table()) == wanted, "the skip went to another record");
    engine::d4tagSelect(Table(), nullptr);
  }

  // What a seek finds: the first row of a tag whose key is not below the one sought. `partial` says that a
  // key which begins with it will do.
  void ExpectFound(std::size_t tag, int rc, const std::string& least, bool partial) {
    std::optional<std::pair<std::string, std::uint32_t>> best;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const auto number = static_cast<std::uint32_t>(i + 1);
      auto key = KeyOf(tag, rows_[i], number);
      if (key && *key >= least && (!best || std::pair(*key, number) < *best)) best = std::pair(*key, number);
    }
    const bool exact = best && (partial ? best->first.starts_with(least) : best->first == least);
    Expect(rc, !best ? engine::kEof : exact ? engine::kSuccess : engine::kAfter, "the seek");
    if (best) Agree(engine::d4recNoLow(Table()) == best->second, "the seek went to another record");
    engine::d4tagSelect(Table(), nullptr);
  }

  void CheckSeek() {
    const std::string key = ToUpper(DrawName());
    Select(0);
    ExpectFound(0, engine::d4seek(Table(), key), key, true);
  }

  void CheckSeekNumber() {
    const std::int64_t cents = rows_.empty() || Draw(2) == 0
                                   ? static_cast<std::int64_t>(Draw(40000))
                                   : std::max<std::int64_t>(0, rows_[Draw(rows_.size())].cents);
    char sorted[24];
    std::snprintf(sorted, sizeof sorted, "%020lld", static_cast<long long>(cents));
    Select(1);
    ExpectFound(1, engine::d4seekDouble(Table(), static_cast<double>(cents) / 100), sorted, false);
  }

  engine::FileLayer& files_;
  MemoryFiles* disk_ = nullptr;
  std::string path_;
  Limits limits_;
  std::span<const std::uint8_t> choices_;
  std::string wrong_;
  int step_ = 0;

  std::array<Seat, 2> seats_;
  std::size_t seat_ = 0;
  bool exclusive_ = false;

  Rows rows_;       // as the workstation at work sees them
  Rows committed_;  // as they stand for everyone
  int depth_ = 0;   // of nested units
  bool done_ = false;
  bool power_cut_ = false;
};

}  // namespace tallwick::testing
