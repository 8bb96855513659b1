#include "core/currency.h"

#include <algorithm>

#include "core/text.h"

namespace tallwick {

namespace {

constexpr int kDecimals = 4;
constexpr std::int64_t kUnit = 10'000;
constexpr std::int64_t kCent = 100;

// False, with `count` as it was, when the digit would lead out of range.
bool AppendDigit(std::int64_t& count, int digit) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  if (count >= kMost / 10 && count > (kMost - digit) / 10) return false;
  count = count * 10 + digit;
  return true;
}

// Takes the first or last character away where it is the one given, with the blanks behind it.
bool TakeFront(std::string_view& text, char character) {
  if (text.empty() || text.front() != character) return false;
  text = Trim(text.substr(1));
  return true;
}

bool TakeBack(std::string_view& text, char character) {
  if (text.empty() || text.back() != character) return false;
  text = Trim(text.substr(0, text.size() - 1));
  return true;
}

// The figure without its thousands separators; nullopt where one does not stand before three digits.
std::optional<std::string> WithoutSeparators(std::string_view figure) {
  const std::size_t point = std::min(figure.find('.'), figure.size());
  const std::vector<std::string> groups = Split(figure.substr(0, point), ',');
  std::string plain = groups.front();
  if (groups.size() > 1 && (plain.empty() || plain.size() > 3)) return std::nullopt;
  for (std::size_t i = 1; i < groups.size(); ++i) {
    if (groups[i].size() != 3) return std::nullopt;
    plain += groups[i];
  }
  return plain.append(figure.substr(point));
}

}  // namespace

std::optional<Currency> Currency::Parse(std::string_view text) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view whole = text.substr(0, point);
  const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
  if (whole.empty() && decimals.empty()) return std::nullopt;

  std::int64_t count = 0;
  for (const char digit : whole) {
    if (!IsDigit(digit) || !AppendDigit(count, digit - '0')) return std::nullopt;
  }
  for (std::size_t i = 0; i < std::max<std::size_t>(decimals.size(), kDecimals); ++i) {
    const char digit = i < decimals.size() ? decimals[i] : '0';
    if (!IsDigit(digit)) return std::nullopt;
    if (i >= kDecimals && digit != '0') return std::nullopt;
    if (i < kDecimals && !AppendDigit(count, digit - '0')) return std::nullopt;
  }
  return Currency(negative ? -count : count);
}

std::optional<Currency> Currency::ParseTyped(std::string_view text) {
  text = Trim(text);
  bool negative = false;
  if (text.size() > 1 && text.front() == '(' && text.back() == ')') {
    negative = TakeFront(text, '(') && TakeBack(text, ')');
  } else {
    negative = TakeFront(text, '-') || TakeBack(text, '-');
  }
  if (TakeFront(text, '$') && !negative) negative = TakeFront(text, '-');
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;
  const std::optional<std::string> plain = WithoutSeparators(text);
  const std::optional<Currency> amount = plain ? Parse(*plain) : std::nullopt;
  if (!amount || amount->count_ % kCent != 0) return std::nullopt;
  return negative ? -*amount : *amount;
}

std::string Currency::ToText(int decimals) const {
  if (!IsValid()) return "overflow";
  const std::int64_t magnitude = count_ < 0 ? -count_ : count_;
  std::string fraction = ZeroPadded(magnitude % kUnit, kDecimals);
  while (fraction.size() > static_cast<std::size_t>(std::max(decimals, 0)) && fraction.back() == '0')
    fraction.pop_back();
  std::string text = (count_ < 0 ? "-" : "") + std::to_string(magnitude / kUnit);
  if (!fraction.empty()) text += '.' + fraction;
  return text;
}

}  // namespace tallwick
