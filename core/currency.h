// Money: a 64-bit count of ten-thousandths. No binary floating point takes part in any sum or conversion.
//
// A sum that leaves the range does not wrap: the value becomes Overflow(), stays so through further
// arithmetic, and is refused by every writer. A stored amount that is no number is read as Overflow() too, so
// that it spoils every sum that it is part of. Check IsValid() before money is stored or printed.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tallwick {

class Currency {
 public:
  constexpr Currency() = default;
  static constexpr Currency FromTenThousandths(std::int64_t count) { return Currency(count); }
  static constexpr Currency FromCents(std::int64_t cents) {
    if (cents > kMaximum / 100 || cents < -(kMaximum / 100)) return Overflow();
    return Currency(cents * 100);
  }
  static constexpr Currency Overflow() { return Currency(kOverflow); }

  // Exact reading of a plain decimal ("-12.5", ".50", "1250"): an optional sign, digits, at most one ".".
  // Digits beyond the fourth decimal must be zero. nullopt for anything else or when out of range.
  static std::optional<Currency> Parse(std::string_view text);

  // Reading of an amount as a person types it: blanks around it, a "$", thousands separators in their proper
  // places, a leading or trailing minus or parentheses for negative. nullopt when it is no amount or has more
  // than two decimals that are not zero.
  static std::optional<Currency> ParseTyped(std::string_view text);

  constexpr std::int64_t TenThousandths() const { return count_; }
  constexpr bool IsValid() const { return count_ != kOverflow; }
  constexpr bool IsZero() const { return count_ == 0; }
  constexpr bool IsNegative() const { return count_ < 0 && IsValid(); }

  // Plain decimal text: at least `decimals` decimals (0 to 4), more only where they are not zero: "1234.56",
  // "-0.01". An overflow gives "overflow", which no reader takes for a number.
  std::string ToText(int decimals = 2) const;

  friend Currency operator+(Currency left, Currency right) { return Sum(left, right.count_); }
  friend Currency operator-(Currency left, Currency right) { return left + -right; }
  constexpr Currency operator-() const { return IsValid() ? Currency(-count_) : *this; }
  Currency& operator+=(Currency other) { return *this = *this + other; }
  Currency& operator-=(Currency other) { return *this = *this - other; }
  Currency Abs() const { return IsNegative() ? -*this : *this; }
  // NOLINTNEXTLINE(modernize-use-nullptr): the check mistakes the comparison's own 0
  friend constexpr auto operator<=>(Currency, Currency) = default;

 private:
  static constexpr std::int64_t kOverflow = std::numeric_limits<std::int64_t>::min();
  static constexpr std::int64_t kMaximum = std::numeric_limits<std::int64_t>::max();
  constexpr explicit Currency(std::int64_t count) : count_(count) {}
  static constexpr Currency Sum(Currency left, std::int64_t right) {
    if (!left.IsValid() || right == kOverflow) return Overflow();
    const bool leaves = right > 0 ? left.count_ > kMaximum - right : left.count_ < -kMaximum - right;
    return leaves ? Overflow() : Currency(left.count_ + right);
  }

  std::int64_t count_ = 0;
};

}  // namespace tallwick
