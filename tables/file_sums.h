// What the items of a bank add up to for each escrow file. Made for passes over millions of items: an item
// costs one look into a table of fixed places, and no memory of its own.
//
// File numbers come as a table holds them, in Windows-1252 and blank-padded. Files are told apart as their
// index keys are: without regard to case.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {

// `Sums` is what an item brings and a file collects: it begins as nothing and has +=.
template <class Sums>
class FileSums {
 public:
  FileSums() : places_(kFirstPlaces) {}

  // At most the first 14 characters of the number count.
  void Add(std::string_view file_number, const Sums& part) {
    std::array<char, kWidth> padded;
    const char* text = file_number.data();
    if (file_number.size() != kWidth) {
      padded.fill(' ');
      std::memcpy(padded.data(), text, std::min(file_number.size(), kWidth));
      text = padded.data();
    }
    // Zeros, which mark a free place, are no number: what begins with them is charged to no file.
    const bool is_number = WordAt(text) != 0;
    const std::uint64_t first = is_number ? WordAt(text) : kBlanks;
    const std::uint64_t second = is_number ? WordAt(text + kWidth - 8) : kBlanks;
    Item& item = waiting_[waiting_count_++];
    item = {first, second, HashOf(first, second), part};
    Fetch(&places_[item.hash & (places_.size() - 1)]);
    if (waiting_count_ == kWaiting) CountWaiting();
  }

  // By file number, trimmed and in upper case, still in Windows-1252; "" = charged to no file. Spellings of a
  // number are folded into one here, and not for every item.
  std::map<std::string, Sums> ByFile() const {
    FileSums all = *this;
    all.CountWaiting();
    std::map<std::string, Sums> sums;
    for (const Place& place : all.places_) {
      if (place.first == 0) continue;
      std::string number = TextOf(place);
      for (char& letter : number)
        letter = static_cast<char>(UpperWindows1252(static_cast<unsigned char>(letter)));
      sums[number] += place.sums;
    }
    return sums;
  }

  // Of all files.
  Sums Total() const {
    FileSums all = *this;
    all.CountWaiting();
    Sums total{};
    for (const Place& place : all.places_) total += place.sums;
    return total;
  }

 private:
  static constexpr std::size_t kWidth = 14;
  static constexpr std::size_t kWaiting = 32;
  static constexpr std::size_t kFirstPlaces = 1024;
  static constexpr std::uint64_t kBlanks = 0x2020202020202020U;

  // `first` and `second` are the number's first and last eight bytes.
  struct alignas(32) Place {
    std::uint64_t first = 0;  // 0: the place is free
    std::uint64_t second = 0;
    Sums sums{};
  };
  struct Item {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::size_t hash = 0;
    Sums part{};
  };

  static std::uint64_t WordAt(const char* text) {
    std::uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
  }
  // Has memory brought near that is written to soon.
  static void Fetch([[maybe_unused]] const void* memory) {
#ifdef __GNUC__
    __builtin_prefetch(memory, 1);
#endif
  }
  static std::string TextOf(const Place& place) {
    std::array<char, kWidth> text;
    std::memcpy(text.data(), &place.first, 8);
    std::memcpy(text.data() + kWidth - 8, &place.second, 8);
    return std::string(Trim(std::string_view(text.data(), text.size())));
  }
  // 24 bits, which every bit of the number reaches.
  static std::size_t HashOf(std::uint64_t first, std::uint64_t second) {
    const std::uint64_t hash = first ^ (second * 0x9E3779B97F4A7C15U);
    return static_cast<std::size_t>(((hash ^ (hash >> 32)) * 0xD6E8FEB86659FD93U) >> 40);
  }

  Place& Find(std::uint64_t first, std::uint64_t second, std::size_t hash) {
    const std::size_t mask = places_.size() - 1;
    std::size_t at = hash & mask;
    while (places_[at].first != 0 && (places_[at].first != first || places_[at].second != second))
      at = (at + 1) & mask;
    return places_[at];
  }
  void Count(const Item& item) {
    Place& place = Find(item.first, item.second, item.hash);
    place.sums += item.part;
    if (place.first != 0) return;
    place.first = item.first;
    place.second = item.second;
    if (++used_ * 3 > places_.size() * 2) Grow();
  }
  void CountWaiting() {
    for (std::size_t i = 0; i < waiting_count_; ++i) Count(waiting_[i]);
    waiting_count_ = 0;
  }
  void Grow() {
    std::vector<Place> old(places_.size() * 2);
    old.swap(places_);
    for (const Place& place : old) {
      if (place.first != 0) Find(place.first, place.second, HashOf(place.first, place.second)) = place;
    }
  }

  std::vector<Place> places_;  // a power of two, at most two thirds of them used
  std::size_t used_ = 0;
  // Items wait until there are some, so that their places come from memory at the same time.
  std::array<Item, kWaiting> waiting_;
  std::size_t waiting_count_ = 0;
};

}  // namespace tallwick
