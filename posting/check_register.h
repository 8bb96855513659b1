// The checks of a bank as rows, highest number first, read from the number tag as they are shown.
//
// Only every 64th record number is kept; a row is reached from the mark before it, and the rows of the last
// window stay decoded. Positions are counted from the tag's beginning, so that a check posted behind the last
// one shifts no mark. What other workstations post or remove is seen at the next Refresh; until then a row
// that is gone reads as empty.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"
#include "tables/check_table.h"

namespace tallwick {

class CheckRegister : public RowSource {
 public:
  explicit CheckRegister(const TableHome& home) : checks_(home) {}
  // False after a message when the bank's check table cannot be opened.
  bool Open(std::string_view bank_code);

  // Looks at the table again. Cheap when nothing but a check with the highest number was added.
  void Refresh();

  std::vector<std::string> Headings() const override;
  std::size_t RowCount() override { return count_; }
  std::vector<std::string> Row(std::size_t row) override;
  std::string RowStyle(std::size_t row) override;
  bool IsNumeric(std::size_t column) const override;

  // The number of the check in a row, "" when it is gone.
  std::string NumberAt(std::size_t row);

 private:
  struct Shown {
    std::vector<std::string> cells;
    std::string style;
  };

  bool GrewByOne();
  void Count();
  const Shown* At(std::size_t row);
  void ReadWindow(std::size_t window);
  Shown ReadRow();

  CheckTable checks_;
  std::vector<std::int32_t> marks_;  // record numbers at the positions 0, 64, 128, …
  std::size_t count_ = 0;
  std::int32_t last_record_ = 0;    // at the tag's end when it was counted
  std::int32_t table_records_ = 0;  // deleted ones included
  std::vector<Shown> window_;       // rows of the window `window_number_`, in tag order
  std::size_t window_number_ = 0;
};

}  // namespace tallwick
