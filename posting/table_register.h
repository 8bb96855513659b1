// The records of a table as rows of a register, last key first or first key first, read from a tag as they
// are shown. An order that no tag has is given as a sort value and costs a pass over the table.
//
// Without a filter only every 64th record number is kept; a row is reached from the mark before it, and the
// rows of the last window stay decoded. With a filter or a sort value the record numbers of all rows are
// kept. Positions are counted from the tag's beginning, so that a record posted behind the last one shifts no
// mark. What other workstations post or remove is seen at the next Refresh; until then a row that is gone
// reads as empty.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/currency.h"
#include "core/form.h"
#include "tables/table_base.h"

namespace tallwick {

// Where a text that is searched for can stand: the key that a tag has for it, in full or as its beginning.
struct SearchKey {
  std::string_view tag;
  std::string key;
};

class TableRegister : public RowSource {
 public:
  // Looks at the table again. Cheap when nothing but a record behind the last one was added.
  void Refresh();

  std::size_t RowCount() override { return count_; }
  std::vector<std::string> Row(std::size_t row) override;
  std::string RowStyle(std::size_t row) override;
  std::optional<std::size_t> FindRow(std::string_view text) override;

 protected:
  struct Shown {
    std::vector<std::string> cells;
    std::string style;  // see RowSource::RowStyle
  };
  // `table` must outlive the register, which is its only user. Rows come in the order of `tag`.
  TableRegister(TableBase& table, std::string_view tag) : table_(table), tag_(tag) {}

  // The current record as a row.
  virtual Shown ReadRow() = 0;
  // With a filter: whether the current record is shown.
  virtual bool IsWanted() { return true; }
  virtual bool HasFilter() const { return false; }
  // With IsSorted: what the current record is sorted by, greatest first; equal ones stay in the tag's order.
  virtual bool IsSorted() const { return false; }
  virtual Currency SortValue() { return {}; }
  // Where to look for a typed text, the likeliest first.
  virtual std::vector<SearchKey> KeysFor(std::string_view text) const = 0;

  // Counts anew, after another filter or order was chosen.
  void CountAgain() { Count(); }
  void UseTag(std::string_view tag, bool ascending = false) {
    tag_ = tag;
    ascending_ = ascending;
  }
  // On the record of a row; false when there is none.
  bool GoToRow(std::size_t row);
  // The row that shows a record; nullopt when none does.
  std::optional<std::size_t> RowOfRecord(std::int32_t record);

 private:
  bool GrewByOne();
  void Count();
  void CountAll();
  void CountWanted();
  bool KeepsAll() const { return HasFilter() || IsSorted(); }
  // Row and position in the tag, either from the other.
  std::size_t Turned(std::size_t row) const { return ascending_ ? row : count_ - 1 - row; }
  const Shown* At(std::size_t row);
  void ReadWindow(std::size_t window);
  std::size_t Step() const;

  TableBase& table_;
  std::string_view tag_;
  bool ascending_ = false;
  bool filtered_ = false;  // as it was counted: all record numbers are kept
  bool sorted_ = false;    // as it was counted
  std::vector<std::int32_t>
      marks_;  // record numbers at the positions 0, 64, 128, …; of all rows when filtered
  std::unordered_map<std::int32_t, std::size_t> places_;  // of the marks; made when first searched
  std::size_t count_ = 0;
  std::int32_t last_record_ = 0;    // at the tag's end when it was counted
  std::int32_t table_records_ = 0;  // deleted ones included
  std::vector<Shown> window_;       // rows of the window `window_number_`, in tag order
  std::size_t window_number_ = 0;
};

}  // namespace tallwick
