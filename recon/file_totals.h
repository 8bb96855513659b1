// What the items of a bank add up to for each escrow file. Made for passes over millions of items: an item
// costs one look into a table of fixed places, and no memory of its own.
//
// File numbers come as a table holds them, in Windows-1252 and blank-padded. Files are told apart as their
// index keys are: without regard to case.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/currency.h"

namespace tallwick {

struct FileBalance {
  std::string file_number;  // UTF-8, trimmed; "" = charged to no file
  Currency balance;
  friend bool operator==(const FileBalance&, const FileBalance&) = default;
};

class FileTotals {
 public:
  FileTotals();
  // At most the first 14 characters of the number count.
  void Add(std::string_view file_number, Currency amount);
  // By file number, files with a balance of zero left out.
  std::vector<FileBalance> Open() const;
  // Of all files.
  Currency Sum() const;

 private:
  static constexpr std::size_t kWidth = 14;
  struct Place {
    std::array<char, 16> number{};  // zeros: the place is free
    Currency sum;
  };
  std::size_t Find(const std::array<char, 16>& number) const;
  void Grow();

  std::vector<Place> places_;  // a power of two, at most half of them used
  std::size_t used_ = 0;
};

}  // namespace tallwick
