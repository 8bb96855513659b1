// Text formats of numbers, dates and times, in the pattern notation that the messages and reports use.
#pragma once

#include <string>
#include <string_view>

#include "core/currency.h"
#include "core/date.h"

namespace tallwick {

// Numbers: "#" a digit where there is one, "0" a digit always, "," in the integer part = thousands
// separators, "." the decimal point (rounded half away from zero to the decimals given), "$" and other text
// before the first digit place as it stands, after the sign. Known patterns: "##,###,###,###",
// "$###,###.00", "$##,###,###,###.00", "#,###,###,###.00", "###,##0", "###########.00", "#0.", "00.", "0000".
// The sign falls away where the rounded value is zero. An overflow gives "overflow".
std::string FormatNumber(Currency value, std::string_view pattern);
std::string FormatNumber(long long value, std::string_view pattern);

// Dates and times, letters in any case: d, dd, ddd (Mon), dddd (Monday), m, mm, mmm (Mar), mmmm (March), yy,
// yyyy, ccyy, h, hh, n or (after h) m, mm, nn, s, ss, "ampm", "am/pm". An hour is of the 12-hour clock where
// the pattern has a marker for it. Anything else stands as it is. The markers give "AM" or "PM". A date that
// does not exist, the empty one included, gives "".
std::string FormatDateTime(const DateTime& when, std::string_view pattern);
std::string FormatDate(const Date& date, std::string_view pattern);

// "January" to "December"; "" outside 1 to 12.
std::string_view MonthName(int month);

// Version text: major "#0." minor "00." revision "0000": "3.05.0123".
std::string VersionText(int major, int minor, int revision);

}  // namespace tallwick
