#include "posting/table_register.h"

#include <algorithm>
#include <numeric>

#include "posting/entry_problems.h"

namespace tallwick {
namespace {

constexpr std::size_t kWindow = 64;
constexpr int kStepsBetweenLooks = 64;  // at the clock
constexpr std::size_t kMostInFront = 4096;
// Small tables are read at once after a change, so that their list does not flicker.
constexpr std::chrono::milliseconds kFirstSlice{8};

}  // namespace

// --- Reading the rows, and what they add up to ---

void TableRegister::BeginAgain() {
  kept_ = KeepsAll();
  sorted_ = IsSorted();
  window_.clear();
  front_.clear();
  marks_.clear();
  sort_.clear();
  places_.clear();
  rows_ = 0;
  expected_ = 0;
  resume_ = 0;
  visited_ = 0;
  total_ = Currency();
  stage_ = Stage::kRows;
  table_records_ = table_.RecordCount();
  last_record_ = table_.Bottom(tag_) ? table_.RecordNumber() : 0;
}

void TableRegister::Refresh() {
  window_.clear();
  if (front_.size() < kMostInFront && GrewByOne()) return;
  const std::size_t before = RowsKnown();
  BeginAgain();
  if (!sorted_) expected_ = before;
  ReadOn(kFirstSlice);
}

bool TableRegister::GrewByOne() {
  const bool same_way = kept_ == KeepsAll() && !sorted_ && !ascending_;
  if (!same_way || table_.RecordCount() != table_records_ + 1 || !table_.Bottom(tag_)) return false;
  const std::int32_t last = table_.RecordNumber();
  const bool behind_last = table_.Skip(-1) ? table_.RecordNumber() == last_record_ : last_record_ == 0;
  if (!behind_last || !table_.GoTo(last)) return false;
  last_record_ = last;
  ++table_records_;
  if (stage_ == Stage::kRows && resume_ == 0) return true;  // the reading will come to it
  if (kept_) {
    AddParts(front_, false);
  } else {
    front_.push_back({last, 0});
    if (stage_ == Stage::kDone) total_ += Amount(0);  // else the sum comes to it
  }
  return true;
}

bool TableRegister::ReadOn(std::chrono::milliseconds time) {
  if (stage_ == Stage::kDone) return false;
  const auto until = std::chrono::steady_clock::now() + time;
  const bool every_record = kept_ || stage_ == Stage::kSum;
  if (every_record) table_.Data().SetReadAhead(table_.Handle(), true);
  table_.Data().SelectTag(table_.Handle(), stage_ == Stage::kSum ? "" : tag_);
  if (resume_ != 0) table_.GoTo(resume_);
  const Stage stage = stage_;
  bool done = false;
  do {
    for (int steps = 0; !done && steps < kStepsBetweenLooks; ++steps)
      done = stage == Stage::kSum ? ReadSum() : kept_ ? ReadPlaces() : ReadMarks();
  } while (!done && std::chrono::steady_clock::now() < until);
  if (every_record) table_.Data().SetReadAhead(table_.Handle(), false);
  if (done) {
    resume_ = 0;
    if (stage == Stage::kRows) EndRows();
    stage_ = stage == Stage::kRows && !kept_ ? Stage::kSum : Stage::kDone;
  }
  return stage_ != Stage::kDone;
}

void TableRegister::ReadToEnd() {
  while (stage_ == Stage::kRows) ReadOn(std::chrono::hours(1));
}

// To the next record of the rows, or the first one.
bool TableRegister::StepToNext() {
  const bool first = resume_ == 0;
  const bool on = !first ? Step(1) : ascending_ ? table_.Top(tag_) : table_.GoTo(last_record_);
  if (on) resume_ = table_.RecordNumber();
  return on && resume_ != 0;
}

bool TableRegister::ReadMarks() {
  if (resume_ == 0) {
    if (last_record_ == 0 || !StepToNext()) return true;
  } else if (Step(static_cast<std::int64_t>(kWindow))) {
    resume_ = table_.RecordNumber();
    rows_ += kWindow;
    visited_ += kWindow;
  } else {
    // The rest of the last window.
    for (bool on = table_.GoTo(marks_.back().record); on; on = Step(1)) ++rows_;
    return true;
  }
  marks_.push_back({resume_, 0});
  return false;
}

bool TableRegister::ReadPlaces() {
  if (last_record_ == 0 || !StepToNext()) return true;
  ++visited_;
  AddParts(marks_, true);
  if (!sorted_) rows_ = marks_.size();
  return false;
}

void TableRegister::AddParts(std::vector<Place>& places, bool backwards) {
  std::vector<int> parts = WantedParts();
  if (backwards) std::reverse(parts.begin(), parts.end());
  for (const int part : parts) {
    const Currency amount = Amount(part);
    total_ += amount;
    places.push_back({table_.RecordNumber(), part});
    if (sorted_) sort_.push_back(amount);
  }
}

void TableRegister::EndRows() {
  expected_ = 0;
  if (!sorted_) return;
  std::vector<std::uint32_t> order(marks_.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(),
                   [this](std::uint32_t left, std::uint32_t right) { return sort_[left] > sort_[right]; });
  std::vector<Place> sorted;
  sorted.reserve(order.size());
  for (const std::uint32_t at : order) sorted.push_back(marks_[at]);
  marks_ = std::move(sorted);
  sort_ = {};
  rows_ = marks_.size();
}

bool TableRegister::ReadSum() {
  const bool on = resume_ == 0 ? table_.Top("") : table_.Skip();
  if (!on) return true;
  resume_ = table_.RecordNumber();
  ++visited_;
  if (!table_.Data().IsRecordDeleted(table_.Handle())) total_ += Amount(0);
  return false;
}

int TableRegister::PercentRead() {
  if (stage_ == Stage::kDone) return 100;
  const std::size_t work =
      std::max<std::size_t>(static_cast<std::size_t>(table_records_) * (kept_ ? 1 : 2), 1);
  return static_cast<int>(std::min<std::size_t>(visited_ * 100 / work, 99));
}

std::string TableRegister::Total() {
  return stage_ == Stage::kDone ? AmountText(total_) : "";
}

// --- The rows ---

std::size_t TableRegister::RowCount() {
  ReadToEnd();
  return KnownRows();
}

std::size_t TableRegister::RowsKnown() {
  return std::max(KnownRows(), expected_);
}

TableRegister::Shown TableRegister::At(std::size_t row) {
  while (row >= KnownRows() && stage_ == Stage::kRows) ReadOn(kFirstSlice);
  if (row >= KnownRows()) return {};
  if (row < front_.size()) {
    const std::optional<int> part = GoToRow(row);
    return part ? ReadRow(*part) : Shown{};
  }
  const std::size_t position = row - front_.size();
  if (window_.empty() || window_number_ != position / kWindow || position % kWindow >= window_.size())
    ReadWindow(position / kWindow);
  const std::size_t place = position % kWindow;
  return place < window_.size() ? window_[place] : Shown{};
}

void TableRegister::ReadWindow(std::size_t window) {
  window_.clear();
  window_number_ = window;
  const std::size_t first = window * kWindow;
  table_.Data().SelectTag(table_.Handle(), tag_);
  if (kept_) {
    for (std::size_t at = first; at < rows_ && window_.size() < kWindow; ++at) {
      const bool there = table_.GoTo(marks_[at].record) && !table_.Data().IsRecordDeleted(table_.Handle());
      window_.push_back(there ? ReadRow(marks_[at].part) : Shown{});
    }
    return;
  }
  for (bool on = table_.GoTo(marks_[window].record); on && window_.size() < kWindow; on = Step(1)) {
    window_.push_back(ReadRow(0));
  }
}

std::optional<int> TableRegister::GoToRow(std::size_t row) {
  while (row >= KnownRows() && stage_ == Stage::kRows) ReadOn(kFirstSlice);
  if (row >= KnownRows()) return std::nullopt;
  const bool in_front = row < front_.size();
  const std::size_t position = in_front ? 0 : row - front_.size();
  const std::size_t ahead = in_front || kept_ ? 0 : position % kWindow;
  const Place place = in_front ? front_[front_.size() - 1 - row]
                      : kept_  ? marks_[position]
                               : marks_[position / kWindow];
  table_.Data().SelectTag(table_.Handle(), tag_);
  if (!table_.GoTo(place.record)) return std::nullopt;
  const bool there =
      ahead == 0 ? !table_.Data().IsRecordDeleted(table_.Handle()) : Step(static_cast<std::int64_t>(ahead));
  return there ? std::optional(place.part) : std::nullopt;
}

std::vector<std::string> TableRegister::Row(std::size_t row) {
  return At(row).cells;
}

std::string TableRegister::RowStyle(std::size_t row) {
  return At(row).style;
}

std::optional<std::size_t> TableRegister::FindRow(std::string_view text) {
  for (const SearchKey& search : KeysFor(text)) {
    if (!table_.Seek(search.tag, search.key)) continue;
    if (const std::optional<std::size_t> row = RowOfRecord(table_.RecordNumber())) return row;
  }
  return std::nullopt;
}

// Back to the mark before the record, counting the steps.
std::optional<std::size_t> TableRegister::RowOfRecord(std::int32_t record) {
  ReadToEnd();
  for (std::size_t row = 0; row < front_.size(); ++row) {
    if (front_[front_.size() - 1 - row].record == record) return row;
  }
  if (places_.empty()) {
    for (std::size_t place = 0; place < marks_.size(); ++place) places_.emplace(marks_[place].record, place);
  }
  table_.Data().SelectTag(table_.Handle(), tag_);
  if (!table_.GoTo(record)) return std::nullopt;
  const std::size_t window = kept_ ? 1 : kWindow;
  for (std::size_t back = 0; back < window; ++back) {
    if (const auto mark = places_.find(table_.RecordNumber()); mark != places_.end()) {
      const std::size_t position = mark->second * window + back;
      return position < rows_ ? std::optional(front_.size() + position) : std::nullopt;
    }
    if (!Step(-1)) break;
  }
  return std::nullopt;
}

}  // namespace tallwick
