// The balance of every escrow file of a bank, as a pass over its items collects it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/currency.h"
#include "tables/file_sums.h"

namespace tallwick {

struct FileBalance {
  std::string file_number;  // UTF-8, trimmed, upper case; "" = charged to no file
  Currency balance;
  friend bool operator==(const FileBalance&, const FileBalance&) = default;
};

class FileTotals {
 public:
  // The number as a table holds it.
  void Add(std::string_view file_number, Currency amount) { sums_.Add(file_number, amount); }
  // By file number, files with a balance of zero left out.
  std::vector<FileBalance> Open() const;
  // Of all files.
  Currency Sum() const { return sums_.Total(); }

 private:
  FileSums<Currency> sums_;
};

}  // namespace tallwick
