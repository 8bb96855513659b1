#include "posting/check_register.h"

#include "core/text.h"
#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

constexpr std::string_view kTag = "CHXNUMBER";
constexpr std::size_t kWindow = 64;

}  // namespace

bool CheckRegister::Open(std::string_view bank_code) {
  if (checks_.Open(bank_code) <= 0) return false;
  Count();
  return true;
}

void CheckRegister::Refresh() {
  window_.clear();
  if (!GrewByOne()) Count();
}

bool CheckRegister::GrewByOne() {
  if (checks_.RecordCount() != table_records_ + 1 || !checks_.Bottom(kTag)) return false;
  const std::int32_t last = checks_.RecordNumber();
  const bool behind_last = checks_.Skip(-1) ? checks_.RecordNumber() == last_record_ : count_ == 0;
  if (!behind_last) return false;
  if (count_ % kWindow == 0) marks_.push_back(last);
  ++count_;
  last_record_ = last;
  ++table_records_;
  return true;
}

void CheckRegister::Count() {
  marks_.clear();
  count_ = 0;
  last_record_ = 0;
  table_records_ = checks_.RecordCount();
  for (bool on = checks_.Top(kTag); on; on = checks_.Skip(static_cast<std::int64_t>(kWindow))) {
    marks_.push_back(checks_.RecordNumber());
  }
  if (marks_.empty()) return;
  count_ = (marks_.size() - 1) * kWindow;
  for (bool on = checks_.GoTo(marks_.back()); on; on = checks_.Skip()) {
    last_record_ = checks_.RecordNumber();
    ++count_;
  }
}

const CheckRegister::Shown* CheckRegister::At(std::size_t row) {
  if (row >= count_) return nullptr;
  const std::size_t position = count_ - 1 - row;
  if (window_.empty() || window_number_ != position / kWindow) ReadWindow(position / kWindow);
  const std::size_t place = position % kWindow;
  return place < window_.size() ? &window_[place] : nullptr;
}

void CheckRegister::ReadWindow(std::size_t window) {
  window_.clear();
  window_number_ = window;
  checks_.Data().SelectTag(checks_.Handle(), kTag);
  for (bool on = checks_.GoTo(marks_[window]); on && window_.size() < kWindow; on = checks_.Skip()) {
    window_.push_back(ReadRow());
  }
}

CheckRegister::Shown CheckRegister::ReadRow() {
  clsKVRData& data = checks_.Data();
  const DataHandle table = checks_.Handle();
  const auto text = [&](std::string_view field) {
    return data.GetStringFieldValueByPointer(table, checks_.Field(field));
  };
  const std::string status = text("CHXSTATUS");
  return {
      {text("CHXNUMBER"), DisplayDate(data.GetDateByPointer(table, checks_.Field("CHXDATED"))),
       text("CHXPAYEE"), AmountText(data.GetCurrencyFieldValueByPointer(table, checks_.Field("CHXAMOUNT"))),
       text("CHXFILENO"), CheckStatusText(status)},
      StatusStyle(status)};
}

std::vector<std::string> CheckRegister::Headings() const {
  return {"Number", "Dated", "Payee", "Amount", "File", "Status"};
}

std::vector<std::string> CheckRegister::Row(std::size_t row) {
  const Shown* shown = At(row);
  return shown != nullptr ? shown->cells : std::vector<std::string>();
}

std::string CheckRegister::RowStyle(std::size_t row) {
  const Shown* shown = At(row);
  return shown != nullptr ? shown->style : "";
}

bool CheckRegister::IsNumeric(std::size_t column) const {
  return column == 0 || column == 3;
}

std::string CheckRegister::NumberAt(std::size_t row) {
  const Shown* shown = At(row);
  return shown != nullptr ? shown->cells.front() : "";
}

}  // namespace tallwick
