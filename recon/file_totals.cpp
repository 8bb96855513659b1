#include "recon/file_totals.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

constexpr std::size_t kFirstPlaces = 1024;
constexpr std::uint64_t kBlanks = 0x2020202020202020U;

// Has memory brought near that is written to soon.
void Fetch([[maybe_unused]] const void* memory) {
#ifdef __GNUC__
  __builtin_prefetch(memory, 1);
#endif
}

std::uint64_t WordAt(const char* text) {
  std::uint64_t word = 0;
  std::memcpy(&word, text, sizeof word);
  return word;
}

}  // namespace

FileTotals::FileTotals() : places_(kFirstPlaces) {}

std::string FileTotals::TextOf(const Place& place) {
  std::array<char, kWidth> text;
  std::memcpy(text.data(), &place.first, 8);
  std::memcpy(text.data() + kWidth - 8, &place.second, 8);
  return std::string(Trim(std::string_view(text.data(), text.size())));
}

// Spellings of a number are folded into one when the totals are asked for, not for every item.
void FileTotals::Add(std::string_view file_number, Currency amount) {
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
  Item& item = waiting_[waiting_count_ % kWaiting];
  if (waiting_count_ >= kWaiting) Count(item);
  ++waiting_count_;
  item = {first, second, HashOf(first, second), amount};
  Fetch(&places_[item.hash & (places_.size() - 1)]);
}

std::size_t FileTotals::HashOf(std::uint64_t first, std::uint64_t second) {
  // Every bit of the number reaches the low ones.
  std::uint64_t hash = first ^ (second * 0x9E3779B97F4A7C15U);
  hash = (hash ^ (hash >> 32)) * 0xD6E8FEB86659FD93U;
  hash = (hash ^ (hash >> 32)) * 0xD6E8FEB86659FD93U;
  hash ^= hash >> 32;
  return static_cast<std::size_t>(hash);
}

FileTotals::Place& FileTotals::Find(std::uint64_t first, std::uint64_t second, std::size_t hash) {
  const std::size_t mask = places_.size() - 1;
  std::size_t at = hash & mask;
  while (places_[at].first != 0 && (places_[at].first != first || places_[at].second != second))
    at = (at + 1) & mask;
  return places_[at];
}

void FileTotals::Count(const Item& item) {
  Place& place = Find(item.first, item.second, item.hash);
  place.sum += item.amount;
  if (place.first != 0) return;
  place.first = item.first;
  place.second = item.second;
  if (++used_ * 3 > places_.size() * 2) Grow();
}

void FileTotals::CountWaiting() {
  const std::size_t waiting = std::min(waiting_count_, kWaiting);
  for (std::size_t i = 0; i < waiting; ++i) Count(waiting_[i]);
  waiting_count_ = 0;
}

void FileTotals::Grow() {
  std::vector<Place> old(places_.size() * 2);
  old.swap(places_);
  for (const Place& place : old) {
    if (place.first != 0) Find(place.first, place.second, HashOf(place.first, place.second)) = place;
  }
}

std::vector<FileBalance> FileTotals::Open() const {
  FileTotals all = *this;
  all.CountWaiting();
  std::map<std::string, Currency> sums;
  for (const Place& place : all.places_) {
    if (place.first == 0) continue;
    std::string number = TextOf(place);
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
  FileTotals all = *this;
  all.CountWaiting();
  Currency sum;
  for (const Place& place : all.places_) sum += place.sum;
  return sum;
}

}  // namespace tallwick
