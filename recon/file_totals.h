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
  static constexpr std::size_t kWaiting = 16;
  // `first` and `second` are the number's first and last eight bytes.
  struct alignas(32) Place {
    std::uint64_t first = 0;  // 0: the place is free
    std::uint64_t second = 0;
    Currency sum;
  };
  struct Item {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::size_t hash = 0;
    Currency amount;
  };
  static std::string TextOf(const Place& place);
  static std::size_t HashOf(std::uint64_t first, std::uint64_t second);
  Place& Find(std::uint64_t first, std::uint64_t second, std::size_t hash);
  void Count(const Item& item);
  void Grow();
  void CountWaiting();

  std::vector<Place> places_;  // a power of two, at most two thirds of them used
  std::size_t used_ = 0;
  // Items wait a little, until their places have come from memory.
  std::array<Item, kWaiting> waiting_;
  std::size_t waiting_count_ = 0;
};

}  // namespace tallwick
