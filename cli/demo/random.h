// A small generator of random numbers that yields the same row for the same seed on every platform and
// compiler, which the standard library's distributions do not promise.
#pragma once

#include <cstdint>
#include <span>

namespace tallwick::cli {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  // Both ends included.
  std::int64_t Between(std::int64_t low, std::int64_t high) {
    return low + static_cast<std::int64_t>(Next() % static_cast<std::uint64_t>(high - low + 1));
  }
  int Int(int low, int high) { return static_cast<int>(Between(low, high)); }
  // True this often in a thousand.
  bool Chance(int per_thousand) { return Int(0, 999) < per_thousand; }
  template <typename T, std::size_t N>
  const T& Pick(std::span<const T, N> choices) {
    return choices[static_cast<std::size_t>(Between(0, static_cast<std::int64_t>(choices.size()) - 1))];
  }

 private:
  std::uint64_t state_;
};

}  // namespace tallwick::cli
