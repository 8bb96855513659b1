// Conversion of numbers from and to their decimal text.
#include "store/engine/expression_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>

#include "core/text.h"

namespace tallwick::engine {
namespace {

// The significant digits of a positive number: 0.d1 d2 d3 ... x 10^exponent, shortest form.
struct Decimal {
  std::array<char, 32> digits{};
  int count = 0;
  int exponent = 0;
};

Decimal ShortestDecimal(double number) {
  std::array<char, 40> text{};
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::scientific).ptr;
  Decimal decimal;
  const char* at = text.data();
  for (; *at != 'e'; ++at) {
    if (*at != '.') decimal.digits[static_cast<std::size_t>(decimal.count++)] = *at;
  }
  at += at[1] == '+' ? 2 : 1;
  std::from_chars(at, end, decimal.exponent);
  ++decimal.exponent;
  return decimal;
}

// Cuts to the first `keep` digits, halves up. A carry
// beyond the first digit gives "1" and raises the exponent.
void RoundTo(Decimal* decimal, int keep) {
  if (keep >= decimal->count) return;
  const bool up = keep >= 0 && decimal->digits[static_cast<std::size_t>(keep)] >= '5';
  decimal->count = std::max(keep, 0);
  if (!up) return;
  while (decimal->count > 0 && decimal->digits[static_cast<std::size_t>(decimal->count - 1)] == '9')
    --decimal->count;
  if (decimal->count > 0) {
    ++decimal->digits[static_cast<std::size_t>(decimal->count - 1)];
  } else {
    decimal->digits[0] = '1';
    decimal->count = 1;
    ++decimal->exponent;
  }
}

}  // namespace

double NumberFromText(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != end && *at == ' ') ++at;
  const bool negative = at != end && *at == '-';
  if (negative || (at != end && *at == '+')) ++at;
  // from_chars would also take "inf" and "nan".
  if (at == end || !(IsDigit(*at) || *at == '.')) return 0;
  double number = 0;
  const auto result = std::from_chars(at, end, number, std::chars_format::fixed);
  if (result.ec != std::errc()) return 0;
  return negative && number != 0 ? -number : number;
}

void FormatNumber(double number, int width, int decimals, std::uint8_t* text) {
  std::memset(text, ' ', static_cast<std::size_t>(width));
  Decimal decimal;
  if (number != 0) {
    decimal = ShortestDecimal(std::fabs(number));
    RoundTo(&decimal, decimal.exponent + decimals);
  }
  const bool negative = number < 0 && decimal.count > 0;
  const int whole = decimal.count > 0 ? std::max(decimal.exponent, 1) : 1;
  if (whole + (decimals > 0 ? decimals + 1 : 0) + (negative ? 1 : 0) > width) {
    std::memset(text, '*', static_cast<std::size_t>(width));
    return;
  }
  // Place p counts digits from the decimal point: 0 is the ones, -1 the tenths.
  const auto digit = [&decimal](int place) {
    const int index = decimal.exponent - 1 - place;
    return index >= 0 && index < decimal.count ? decimal.digits[static_cast<std::size_t>(index)] : '0';
  };
  std::uint8_t* at = text + width;
  for (int place = -decimals; place < 0; ++place) *--at = static_cast<std::uint8_t>(digit(place));
  if (decimals > 0) *--at = '.';
  for (int place = 0; place < whole; ++place) *--at = static_cast<std::uint8_t>(digit(place));
  if (negative) *--at = '-';
}

}  // namespace tallwick::engine
