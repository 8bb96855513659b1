#include "core/text_format.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/text.h"

namespace tallwick {

namespace {

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kWeekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                    "Thursday", "Friday", "Saturday"};

// A figure by its digits: the integer part without leading zeros, and as many decimals as its type keeps.
struct Figure {
  bool negative = false;
  std::string whole;
  std::string decimals;
};

Figure MakeFigure(std::string text) {
  Figure figure;
  figure.negative = text.front() == '-';
  if (figure.negative) text.erase(0, 1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t first = std::min(text.find_first_not_of('0'), point);
  figure.whole = text.substr(first, point - first);
  if (point < text.size()) figure.decimals = text.substr(point + 1);
  return figure;
}

// Rounds half away from zero to the given number of decimals, filling up with zeros.
void Round(Figure& figure, std::size_t decimals) {
  const bool up = figure.decimals.size() > decimals && figure.decimals[decimals] >= '5';
  figure.decimals.resize(decimals, '0');
  std::string digits = figure.whole + figure.decimals;
  if (up) {
    std::size_t i = digits.size();
    while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
    if (i > 0) {
      ++digits[i - 1];
    } else {
      digits.insert(0, 1, '1');
    }
  }
  figure.whole = digits.substr(0, digits.size() - decimals);
  figure.decimals = digits.substr(digits.size() - decimals);
  if (digits.find_first_not_of('0') == std::string::npos) figure.negative = false;
}

struct NumberPattern {
  std::string_view prefix;
  std::string_view suffix;
  std::size_t whole_places = 0;  // digits that always stand before the point
  bool grouped = false;
  bool has_point = false;
  std::size_t decimals = 0;
};

NumberPattern ReadPattern(std::string_view pattern) {
  constexpr std::string_view kPlaces = "#0,.";
  NumberPattern result;
  const std::size_t start = std::min(pattern.find_first_of(kPlaces), pattern.size());
  const std::size_t end = std::min(pattern.find_first_not_of(kPlaces, start), pattern.size());
  const std::string_view places = pattern.substr(start, end - start);
  const std::size_t point = std::min(places.find('.'), places.size());
  const std::string_view whole = places.substr(0, point);
  result.prefix = pattern.substr(0, start);
  result.suffix = pattern.substr(end);
  result.whole_places = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '0'));
  result.grouped = whole.find(',') != std::string_view::npos;
  result.has_point = point < places.size();
  if (result.has_point) result.decimals = places.size() - point - 1;
  return result;
}

std::string FormatFigure(Figure figure, std::string_view pattern_text) {
  const NumberPattern pattern = ReadPattern(pattern_text);
  Round(figure, pattern.decimals);
  std::string whole = figure.whole;
  if (whole.size() < pattern.whole_places) whole.insert(0, pattern.whole_places - whole.size(), '0');
  if (pattern.grouped) {
    for (std::size_t i = whole.size(); i > 3; i -= 3) whole.insert(i - 3, 1, ',');
  }
  std::string text = figure.negative ? "-" : "";
  text.append(pattern.prefix).append(whole);
  if (pattern.has_point) text.append(".").append(figure.decimals);
  return text.append(pattern.suffix);
}

// The signs of a date pattern, one at a time. "m" means minutes right behind an hour.
class DatePattern {
 public:
  DatePattern(const DateTime& when, std::string_view pattern)
      : when_(when), pattern_(pattern), lower_(ToLower(pattern)) {
    twelve_hours_ = lower_.find("ampm") != std::string::npos || lower_.find("am/pm") != std::string::npos;
  }

  std::string Format() {
    std::string text;
    while (position_ < lower_.size()) text += Next();
    return text;
  }

 private:
  // True, and past it, where the pattern goes on with `sign`.
  bool Take(std::string_view sign) {
    if (lower_.compare(position_, sign.size(), sign) != 0) return false;
    position_ += sign.size();
    after_hour_ = false;
    return true;
  }

  std::string Next() {
    if (Take("ampm") || Take("am/pm")) return when_.hour < 12 ? "AM" : "PM";
    if (Take("yyyy") || Take("ccyy")) return ZeroPadded(when_.date.year, 4);
    if (Take("yy")) return ZeroPadded(when_.date.year % 100, 2);
    const char letter = lower_[position_];
    switch (letter) {
      case 'd':
        return Named(letter, when_.date.day, kWeekdays[static_cast<std::size_t>(DayOfWeek(when_.date))]);
      case 'm':
        return after_hour_ ? Counted(letter, when_.minute)
                           : Named(letter, when_.date.month, MonthName(when_.date.month));
      case 'h':
        return Counted(letter, twelve_hours_ ? (when_.hour + 11) % 12 + 1 : when_.hour);
      case 'n':
        return Counted(letter, when_.minute);
      case 's':
        return Counted(letter, when_.second);
      default:
        return std::string(1, pattern_[position_++]);
    }
  }

  std::size_t TakeRun(char letter, std::size_t longest) {
    std::size_t length = 0;
    while (length < longest && position_ < lower_.size() && lower_[position_] == letter) {
      ++length;
      ++position_;
    }
    after_hour_ = letter == 'h';
    return length;
  }

  std::string Counted(char letter, int value) { return ZeroPadded(value, TakeRun(letter, 2)); }

  std::string Named(char letter, int value, std::string_view name) {
    const std::size_t length = TakeRun(letter, 4);
    if (length == 4) return std::string(name);
    return length == 3 ? std::string(name.substr(0, 3)) : ZeroPadded(value, length);
  }

  const DateTime& when_;
  std::string_view pattern_;
  std::string lower_;
  std::size_t position_ = 0;
  bool twelve_hours_ = false;
  bool after_hour_ = false;
};

}  // namespace

std::string FormatNumber(Currency value, std::string_view pattern) {
  if (!value.IsValid()) return value.ToText();
  return FormatFigure(MakeFigure(value.ToText()), pattern);
}

std::string FormatNumber(long long value, std::string_view pattern) {
  return FormatFigure(MakeFigure(std::to_string(value)), pattern);
}

std::string FormatDateTime(const DateTime& when, std::string_view pattern) {
  return IsValidDate(when.date) ? DatePattern(when, pattern).Format() : std::string();
}

std::string FormatDate(const Date& date, std::string_view pattern) {
  return FormatDateTime({.date = date}, pattern);
}

std::string_view MonthName(int month) {
  return month >= 1 && month <= 12 ? kMonths[static_cast<std::size_t>(month - 1)] : std::string_view{};
}

std::string VersionText(int major, int minor, int revision) {
  return FormatNumber(major, "#0.") + FormatNumber(minor, "00.") + FormatNumber(revision, "0000");
}

}  // namespace tallwick
