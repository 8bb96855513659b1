// Dates, their texts and the accounting periods.
#include "core/date.h"

#include <gtest/gtest.h>

#include "core/period.h"
#include "core/text_format.h"
#include "tests/support/fakes.h"

namespace tallwick {

void PrintTo(const Date& date, std::ostream* out) {
  *out << date.year << '-' << date.month << '-' << date.day;
}
void PrintTo(const Period& period, std::ostream* out) {
  *out << period.month << '/' << period.day << '/' << period.year;
}

namespace {

TEST(Date, JulianDaysCountEveryDayOfTheCalendar) {
  EXPECT_EQ(JulianDay({2024, 3, 15}), 2460385);
  EXPECT_EQ(JulianDay({2023, 2, 29}), 0);
  EXPECT_EQ(JulianDay({1900, 2, 29}), 0);
  EXPECT_EQ(JulianDay({2024, 13, 1}), 0);
  EXPECT_EQ(JulianDay({}), 0);
  EXPECT_EQ(DateFromJulianDay(0), Date{});
  EXPECT_EQ(DateFromJulianDay(std::numeric_limits<std::int32_t>::min()), Date{});
  EXPECT_EQ(DayOfWeek({2024, 3, 15}), 5);

  const std::int32_t first = JulianDay({1, 1, 1});
  const std::int32_t last = JulianDay({9999, 12, 31});
  Date previous{};
  for (std::int32_t day = first; day <= last; ++day) {
    const Date date = DateFromJulianDay(day);
    ASSERT_LT(previous, date);
    ASSERT_EQ(JulianDay(date), day);
    previous = date;
  }
  EXPECT_EQ(DateFromJulianDay(first - 1), Date{});
  EXPECT_EQ(DateFromJulianDay(last + 1), Date{});
}

TEST(Date, TextsAreReadOrRefused) {
  struct Case {
    const char* text;
    std::optional<Date> date;
  };
  const Date march{2024, 3, 15};
  const Case typed[] = {
      {"03/15/2024", march},
      {"3-15-24", march},
      {" 3.15.2024 ", march},
      {"3 15 24", march},
      {"3 / 15 / 2024", march},
      {" 3/15/2024", march},
      {"031524", march},
      {"03152024", march},
      {"1/1/49", Date{2049, 1, 1}},
      {"1/1/50", Date{1950, 1, 1}},
      {"2/29/2024", Date{2024, 2, 29}},
      {"", Date{}},
      {"  /  /    ", Date{}},
      {"2/29/2023", std::nullopt},
      {"13/1/2024", std::nullopt},
      {"4/31/2024", std::nullopt},
      {"03/  /2024", std::nullopt},
      {"3/15", std::nullopt},
      {"3/15/024", std::nullopt},
      {"3/15/4", std::nullopt},
      {"3//15/2024", std::nullopt},
      {"3/15/2024x", std::nullopt},
      {"3/15/20245", std::nullopt},
      {"0315024", std::nullopt},
      {"003/15/2024", std::nullopt},
      {"March 15", std::nullopt},
      {"1/1/0000", std::nullopt},
  };
  for (const Case& c : typed) EXPECT_EQ(ParseDisplayDate(c.text), c.date) << c.text;
  const Case stored[] = {
      {"20240315", march},         {"        ", Date{}},        {"", Date{}},
      {"20240230", std::nullopt},  {"2024031 ", std::nullopt},  {"00000000", std::nullopt},
      {"202403150", std::nullopt}, {"         ", std::nullopt},
  };
  for (const Case& c : stored) EXPECT_EQ(ParseStoredDate(c.text), c.date) << c.text;
  EXPECT_EQ(StoredDate({24, 3, 5}), "00240305");
  EXPECT_EQ(StoredDate({}), "        ");
  EXPECT_EQ(DisplayDate({2024, 3, 5}), "03/05/2024");
  EXPECT_EQ(DisplayDate({}), "");
}

TEST(FormatDateTime, Patterns) {
  const DateTime afternoon{{2024, 3, 4}, 14, 7, 31};
  const std::pair<const char*, const char*> cases[] = {
      {"mmmm dd, yyyy", "March 04, 2024"},
      {"Mmm dd, CCYY", "Mar 04, 2024"},
      {"mmm dd, yyyy", "Mar 04, 2024"},
      {"MMM D,YYYY", "Mar 4,2024"},
      {"Mmmm D, YYYY", "March 4, 2024"},
      {"Dddd, Mmmm D, YYYY", "Monday, March 4, 2024"},
      {"dddd, mmmm d, yyyy @ h:mm AM/PM", "Monday, March 4, 2024 @ 2:07 PM"},
      {"h:Nn:Ss AMPM", "2:07:31 PM"},
      {"hh:mm:ss ampm", "02:07:31 PM"},
      {"HH:MM AM/PM", "02:07 PM"},
      {"H:MM AMPM", "2:07 PM"},
      {"m/d/yyyy h:n am/pm", "3/4/2024 2:7 PM"},
      {"hh:mm:ss", "14:07:31"},
      {"h:mm ampm mm/dd", "2:07 PM 03/04"},
      {"mm/dd/yyyy", "03/04/2024"},
      {"mm/dd/ccyy", "03/04/2024"},
      {"MM-DD-YYYY", "03-04-2024"},
      {"yyyymmdd", "20240304"},
      {"CCYYMMDD", "20240304"},
      {"ddd yy", "Mon 24"},
  };
  for (const auto& [pattern, text] : cases) EXPECT_EQ(FormatDateTime(afternoon, pattern), text) << pattern;
  EXPECT_EQ(FormatDateTime({{2024, 3, 4}, 0, 0, 0}, "h:mm ampm"), "12:00 AM");
  EXPECT_EQ(FormatDateTime({{2024, 3, 4}, 12, 0, 0}, "h:mm ampm"), "12:00 PM");
  EXPECT_EQ(FormatDate({}, "mm/dd/yyyy"), "");
}

TEST(Period, TypedTextsInBothForms) {
  struct Case {
    const char* text;
    Period period;     // month, day, year
    bool valid_month;  // in a bank on month-and-year periods
    bool valid_date;   // in a bank on full dates
  };
  const Case cases[] = {
      {"3/2024", {3, 0, 2024}, true, false},
      {"3-15-2024", {3, 15, 2024}, false, true},
      {"3 15 24", {3, 15, 2024}, false, true},
      {"3.15.24", {3, 15, 2024}, false, true},
      {"3,24", {3, 0, 2024}, true, false},
      {" 3 / 15 / 2024 ", {3, 15, 2024}, false, true},
      {"3/15-2024", {3, 0, 2024}, true, false},  // the "-" goes first, "3/15" is the month
      {"1/0/2024", {1, 0, 2024}, true, false},
      {"3-15-75", {3, 15, 1975}, false, true},
      {"3-15-74", {}, false, false},
      {"1-49", {1, 0, 2049}, true, false},
      {"12-31-2095", {12, 31, 2095}, false, true},
      {"1-1-2096", {}, false, false},
      {"2/28/2024", {2, 28, 2024}, false, true},
      {"2/29/2024", {}, false, false},
      {"4/30/2024", {4, 30, 2024}, false, true},
      {"4/31/2024", {}, false, false},
      {"13-2024", {}, false, false},
      {"0-2024", {}, false, false},
      {"-3-2024", {}, false, false},
      {"3-", {3, 0, 2000}, true, false},
      {"3/2024/4", {}, false, false},
      {"March 15, 2024", {}, false, false},
      {"32024", {}, false, false},
      {"3-99999999999999999999", {}, false, false},
      {"", {}, false, false},
      {"  ", {}, false, false},
  };
  for (const Case& c : cases) {
    RunState run;
    run.period_valid = true;
    EXPECT_EQ(ParsePeriod(c.text, 0, run), c.period) << c.text;
    EXPECT_EQ(run.period_valid, c.valid_month) << c.text;
    EXPECT_EQ(ParsePeriod(c.text, 31, run), c.period) << c.text;
    EXPECT_EQ(run.period_valid, c.valid_date) << c.text;
  }
}

TEST(Period, KeysAndForms) {
  EXPECT_EQ(MakeKey(2024, 3, 15), 20240315);
  EXPECT_EQ(SplitKey(20240300), (Period{3, 0, 2024}));
  EXPECT_EQ(SplitKey(MakeKey(Period{12, 31, 2095})), (Period{12, 31, 2095}));
  EXPECT_LT(MakeKey(Period{3, 0, 2024}), MakeKey(Period{3, 1, 2024}));
  EXPECT_EQ(ShortForm({3, 15, 2024}), "3-15-2024");
  EXPECT_EQ(ShortForm({3, 0, 2024}), "3-2024");
  EXPECT_EQ(LongForm({3, 15, 2024}), "March 15, 2024");
  EXPECT_EQ(LongForm({3, 0, 2024}), "March 2024");
  EXPECT_EQ(ShortForm({13, 1, 2024}), std::string(10, ' '));
  EXPECT_EQ(LongForm({}), std::string(14, ' '));
}

TEST(Period, InvalidTextIsReportedUnlessBlank) {
  testing::ScriptedBoxes boxes;
  ReportInvalidPeriod("  ", 0, boxes);
  EXPECT_TRUE(boxes.shown.empty());
  ReportInvalidPeriod("13-2024", 0, boxes);
  ReportInvalidPeriod("2/30/2024", 31, boxes);
  ASSERT_EQ(boxes.shown.size(), 2U);
  EXPECT_EQ(boxes.shown[0].icon, BoxIcon::kCritical);
  EXPECT_EQ(boxes.shown[0].title, "Escrow Accounting Date Periods");
  EXPECT_EQ(boxes.shown[0].text,
            "The escrow period 13-2024 is invalid.\rYou must specify the period as a month and year "
            "seperated by - / , . or a space.");
  EXPECT_EQ(boxes.shown[1].text,
            "The escrow period 2/30/2024 is invalid.\rYou must specify the period as a month, day and year "
            "seperated by - / , . or a space.");
}

}  // namespace
}  // namespace tallwick
