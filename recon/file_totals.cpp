#include "recon/file_totals.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

constexpr std::size_t kFirstPlaces = 1024;

}  // namespace

FileTotals::FileTotals() : places_(kFirstPlaces) {}

// Spellings of a number are folded into one when the totals are asked for, not for every item.
void FileTotals::Add(std::string_view file_number, Currency amount) {
  std::array<char, 16> number;
  number.fill(' ');
  std::memcpy(number.data(), file_number.data(), std::min(file_number.size(), kWidth));
  Place& place = places_[Find(number)];
  if (place.number[0] != 0) {
    place.sum += amount;
    return;
  }
  place = {number, amount};
  if (++used_ * 2 > places_.size()) Grow();
}

std::size_t FileTotals::Find(const std::array<char, 16>& number) const {
  std::array<std::uint64_t, 2> words;
  std::memcpy(words.data(), number.data(), number.size());
  std::uint64_t hash = (words[0] ^ (words[1] * 0x9E3779B97F4A7C15U)) * 0xD6E8FEB86659FD93U;
  hash ^= hash >> 32;
  const std::size_t mask = places_.size() - 1;
  std::size_t at = static_cast<std::size_t>(hash) & mask;
  while (places_[at].number[0] != 0 && places_[at].number != number) at = (at + 1) & mask;
  return at;
}

void FileTotals::Grow() {
  std::vector<Place> old(places_.size() * 2);
  old.swap(places_);
  for (const Place& place : old) {
    if (place.number[0] != 0) places_[Find(place.number)] = place;
  }
}

std::vector<FileBalance> FileTotals::Open() const {
  std::map<std::string, Currency> sums;
  for (const Place& place : places_) {
    if (place.number[0] == 0) continue;
    std::string number(Trim(std::string_view(place.number.data(), kWidth)));
    for (char& letter : number)
      letter = static_cast<char>(UpperWindows1252(static_cast<unsigned char>(letter)));
    sums[FromWindows1252(number)] += place.sum;
  }
  std::vector<FileBalance> open;
  for (const auto& [number, sum] : sums) {
    if (!sum.IsZero()) open.push_back({number, sum});
  }
  return open;
}

Currency FileTotals::Sum() const {
  Currency sum;
  for (const Place& place : places_) sum += place.sum;
  return sum;
}

}  // namespace tallwick
