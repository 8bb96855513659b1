// The records of a table as rows of a register, last key first or first key first, read from a tag as they
// are shown. An order that no tag has is given as a sort value and costs a pass over the table.
//
// The rows become known in steps (RowSource::ReadOn), from the first one shown on; then what they add up to.
// Without a filter only every 64th record number is kept; a row is reached from the mark before it, and the
// rows of the last window stay decoded. With a filter or a sort value the places of all rows are kept.
// Records posted behind the tag's end stand before all others in the rows, so that a post shifts no mark.
// What other workstations post or remove is seen at the next Refresh; until then a row that is gone reads as
// empty.
#pragma once

#include <cstdint>
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
  // Looks at the table again. Cheap when nothing but a record behind the last one was added; else the rows
  // are read anew, and until that is done the register says it has as many as before.
  void Refresh();

  std::size_t RowCount() override;
  std::vector<std::string> Row(std::size_t row) override;
  std::string RowStyle(std::size_t row) override;
  std::optional<std::size_t> FindRow(std::string_view text) override;
  std::size_t RowsKnown() override;
  bool ReadOn(std::chrono::milliseconds time) override;
  int PercentRead() override;
  std::string Total() override;

 protected:
  struct Shown {
    std::vector<std::string> cells;
    std::string style;  // see RowSource::RowStyle
  };
  // `table` must outlive the register, which is its only user. Rows come in the order of `tag`.
  TableRegister(TableBase& table, std::string_view tag) : table_(table), tag_(tag) {}

  // A part of the current record as a row; records that are one row have the part 0.
  virtual Shown ReadRow(int part) = 0;
  virtual Currency Amount(int part) = 0;
  // With a filter: the parts of the current record that are shown, in order.
  virtual std::vector<int> WantedParts() { return {0}; }
  virtual bool HasFilter() const { return false; }
  // With IsSorted: rows come by amount, greatest first; equal ones stay in the tag's order.
  virtual bool IsSorted() const { return false; }
  // Where to look for a typed text, the likeliest first.
  virtual std::vector<SearchKey> KeysFor(std::string_view text) const = 0;

  // Begins anew, after the table was opened or another filter or order was chosen.
  void BeginAgain();
  void UseTag(std::string_view tag, bool ascending = false) {
    tag_ = tag;
    ascending_ = ascending;
  }
  // On the record of a row; its part, or nullopt when there is none.
  std::optional<int> GoToRow(std::size_t row);
  // The first row that shows a record; nullopt when none does.
  std::optional<std::size_t> RowOfRecord(std::int32_t record);

 private:
  struct Place {
    std::int32_t record = 0;
    int part = 0;
  };
  enum class Stage { kRows, kSum, kDone };

  bool GrewByOne();
  bool KeepsAll() const { return HasFilter() || IsSorted(); }
  void ReadToEnd();
  // Each does a small piece of work and gives true when its stage is done.
  bool ReadMarks();
  bool ReadPlaces();
  bool ReadSum();
  void EndRows();
  bool Step(std::int64_t rows) { return table_.Skip(ascending_ ? rows : -rows); }
  bool StepToNext();
  void AddParts(std::vector<Place>& places, bool backwards);
  std::size_t KnownRows() const { return front_.size() + rows_; }
  Shown At(std::size_t row);
  void ReadWindow(std::size_t window);

  TableBase& table_;
  std::string_view tag_;
  bool ascending_ = false;
  bool kept_ = false;    // as it was begun: the places of all rows are kept
  bool sorted_ = false;  // as it was begun
  Stage stage_ = Stage::kDone;
  std::int32_t resume_ = 0;     // the record that the stage has come to; 0 = it begins
  std::size_t visited_ = 0;     // records, in both stages
  std::vector<Place> front_;    // posted since it was begun, behind the tag's end; the last is the first row
  std::vector<Place> marks_;    // of the other rows: 0, 64, 128, …; all of them when kept
  std::vector<Currency> sort_;  // beside marks_ while a sorted reading goes on
  std::size_t rows_ = 0;        // known, without those of front_
  std::size_t expected_ = 0;    // rows there were before they were read anew
  Currency total_;
  std::unordered_map<std::int32_t, std::size_t> places_;  // of the marks; made when first searched
  std::int32_t last_record_ = 0;                          // at the tag's end
  std::int32_t table_records_ = 0;                        // deleted ones included
  std::vector<Shown> window_;                             // rows of the window `window_number_`
  std::size_t window_number_ = 0;
};

}  // namespace tallwick
