#include "posting/table_register.h"

#include <algorithm>

namespace tallwick {
namespace {

constexpr std::size_t kWindow = 64;

}  // namespace

std::size_t TableRegister::Step() const {
  return filtered_ ? 1 : kWindow;
}

void TableRegister::Refresh() {
  window_.clear();
  if (filtered_ != KeepsAll() || sorted_ || !GrewByOne()) Count();
}

bool TableRegister::GrewByOne() {
  if (table_.RecordCount() != table_records_ + 1 || !table_.Bottom(tag_)) return false;
  const std::int32_t last = table_.RecordNumber();
  const bool behind_last = table_.Skip(-1) ? table_.RecordNumber() == last_record_ : last_record_ == 0;
  if (!behind_last) return false;
  last_record_ = last;
  ++table_records_;
  if (HasFilter() && !(table_.GoTo(last) && IsWanted())) return true;
  if (count_ % Step() == 0) {
    if (!places_.empty()) places_[last] = marks_.size();
    marks_.push_back(last);
  }
  ++count_;
  return true;
}

void TableRegister::Count() {
  filtered_ = KeepsAll();
  sorted_ = IsSorted();
  window_.clear();
  marks_.clear();
  places_.clear();
  count_ = 0;
  last_record_ = 0;
  table_records_ = table_.RecordCount();
  if (filtered_) {
    CountWanted();
  } else {
    CountAll();
  }
}

void TableRegister::CountAll() {
  for (bool on = table_.Top(tag_); on; on = table_.Skip(static_cast<std::int64_t>(kWindow))) {
    marks_.push_back(table_.RecordNumber());
  }
  if (marks_.empty()) return;
  count_ = (marks_.size() - 1) * kWindow;
  for (bool on = table_.GoTo(marks_.back()); on; on = table_.Skip()) {
    last_record_ = table_.RecordNumber();
    ++count_;
  }
}

void TableRegister::CountWanted() {
  std::vector<std::pair<Currency, std::int32_t>> wanted;
  table_.Data().SetReadAhead(table_.Handle(), true);
  for (bool on = table_.Top(tag_); on; on = table_.Skip()) {
    last_record_ = table_.RecordNumber();
    if (HasFilter() && !IsWanted()) continue;
    wanted.emplace_back(sorted_ ? SortValue() : Currency(), last_record_);
  }
  table_.Data().SetReadAhead(table_.Handle(), false);
  // Shown from the last one on.
  if (sorted_) {
    std::stable_sort(wanted.begin(), wanted.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
  }
  marks_.reserve(wanted.size());
  for (const auto& [value, record] : wanted) marks_.push_back(record);
  count_ = marks_.size();
}

const TableRegister::Shown* TableRegister::At(std::size_t row) {
  if (row >= count_) return nullptr;
  const std::size_t position = Turned(row);
  if (window_.empty() || window_number_ != position / kWindow) ReadWindow(position / kWindow);
  const std::size_t place = position % kWindow;
  return place < window_.size() ? &window_[place] : nullptr;
}

void TableRegister::ReadWindow(std::size_t window) {
  window_.clear();
  window_number_ = window;
  table_.Data().SelectTag(table_.Handle(), tag_);
  if (filtered_) {
    for (std::size_t at = window * kWindow; at < count_ && window_.size() < kWindow; ++at) {
      const bool there = table_.GoTo(marks_[at]) && !table_.Data().IsRecordDeleted(table_.Handle());
      window_.push_back(there ? ReadRow() : Shown{});
    }
    return;
  }
  for (bool on = table_.GoTo(marks_[window]); on && window_.size() < kWindow; on = table_.Skip()) {
    window_.push_back(ReadRow());
  }
}

bool TableRegister::GoToRow(std::size_t row) {
  if (row >= count_) return false;
  const std::size_t position = Turned(row);
  table_.Data().SelectTag(table_.Handle(), tag_);
  if (!table_.GoTo(marks_[position / Step()])) return false;
  const auto ahead = static_cast<std::int64_t>(position % Step());
  return ahead == 0 ? !table_.Data().IsRecordDeleted(table_.Handle()) : table_.Skip(ahead);
}

std::vector<std::string> TableRegister::Row(std::size_t row) {
  const Shown* shown = At(row);
  return shown != nullptr ? shown->cells : std::vector<std::string>();
}

std::string TableRegister::RowStyle(std::size_t row) {
  const Shown* shown = At(row);
  return shown != nullptr ? shown->style : "";
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
  if (places_.empty()) {
    for (std::size_t place = 0; place < marks_.size(); ++place) places_[marks_[place]] = place;
  }
  table_.Data().SelectTag(table_.Handle(), tag_);
  if (!table_.GoTo(record)) return std::nullopt;
  for (std::size_t back = 0; back < Step(); ++back) {
    const auto mark = places_.find(table_.RecordNumber());
    if (mark != places_.end()) {
      const std::size_t position = mark->second * Step() + back;
      return position < count_ ? std::optional(Turned(position)) : std::nullopt;
    }
    if (!table_.Skip(-1)) break;
  }
  return std::nullopt;
}

}  // namespace tallwick
