// The MICR line: what stands at which position, what is refused, and that a reading head can tell the
// characters apart.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

#include "checks/micr_glyphs.h"
#include "checks/micr_line.h"

namespace tallwick {
namespace {

constexpr std::string_view kCharacters = "0123456789ABCD";

// The line from position 1 on to the left, blanks where nothing stands.
std::string FromTheRight(const MicrLine& line) {
  std::string text;
  for (const MicrCharacter& one : line.characters) {
    text.resize(std::max(text.size(), static_cast<std::size_t>(one.position)), ' ');
    text[static_cast<std::size_t>(one.position) - 1] = one.code;
  }
  return text;
}

TEST(MicrLineTest, FieldsStandAtTheirPositions) {
  MicrSettings settings;
  const MicrLine line = MakeMicrLine("041200050", "0012 3456", "  10452", settings);
  ASSERT_EQ(line.problem, "");
  EXPECT_EQ(line.characters.front().position, 52);
  //                                 1...........12 14 on-us          32 transit     45 auxiliary
  EXPECT_EQ(FromTheRight(line), "             C65432100          A050002140A C254010C");
  settings.on_us = "{account} C {number}";
  settings.auxiliary_on_us = "";
  settings.number_digits = 0;
  EXPECT_EQ(FromTheRight(MakeMicrLine("041200050", "12-34", "7", settings)),
            "             7C43D21            A050002140A");
}

TEST(MicrLineTest, RefusalsSayWhatToDo) {
  struct Case {
    const char *routing, *account, *number, *on_us, *part;
  };
  const Case cases[] = {
      {"", "1", "1", "", "has no routing number.  Enter it"},
      {"04120005", "1", "1", "", "is not nine digits"},
      {"04120005O", "1", "1", "", "is not nine digits"},
      {"041200051", "1", "1", "", "its last digit does not fit"},
      {"014200050", "1", "1", "", "its last digit does not fit"},  // two digits swapped
      {"000000000", "1", "1", "", "begins like this"},
      {"990000006", "1", "1", "", "begins like this"},  // no such district
      {"041200050", "", "1", "", "has no account number"},
      {"041200050", "-", "1", "", "digits and dashes"},
      {"041200050", "12A4", "1", "", "digits and dashes"},
      {"041200050", "1", "A7", "", "The check number \"A7\""},
      {"041200050", "123456789012345678", "1", "", "19 characters long; 18 have room"},
      {"041200050", "1", "1", "x{account}", "\"x1\""},
  };
  for (const Case& one : cases) {
    MicrSettings settings;
    if (*one.on_us != '\0') settings.on_us = one.on_us;
    const MicrLine line = MakeMicrLine(one.routing, one.account, one.number, settings);
    EXPECT_NE(line.problem.find(one.part), std::string::npos) << one.part << ": " << line.problem;
    EXPECT_TRUE(line.characters.empty());
  }
}

// How many cells of each column are ink, from the right edge on.
std::vector<int> ColumnsOf(char code) {
  std::vector<int> columns(kMicrColumns);
  for (const std::string_view row : *MicrGlyph(code)) {
    EXPECT_EQ(row.size(), static_cast<std::size_t>(kMicrColumns));
    for (std::size_t column = 0; column < row.size(); ++column)
      columns[columns.size() - 1 - column] += row[column] == '#' ? 1 : 0;
  }
  return columns;
}

TEST(MicrGlyphsTest, CharactersHaveTheWidthsAndHeightsOfTheType) {
  const std::map<char, int> widths = {{'0', 7}, {'1', 4}, {'2', 4}, {'3', 5}, {'4', 7}, {'5', 5}, {'6', 6},
                                      {'7', 5}, {'8', 7}, {'9', 6}, {'A', 7}, {'B', 7}, {'C', 7}, {'D', 7}};
  for (const char code : kCharacters) {
    const std::vector<int> columns = ColumnsOf(code);
    EXPECT_GT(columns.front(), 0) << code << " does not stand at the right edge";
    const auto last = std::find_if(columns.rbegin(), columns.rend(), [](int ink) { return ink > 0; });
    EXPECT_EQ(columns.rend() - last, widths.at(code)) << code;
    const bool digit = code >= '0' && code <= '9';
    const auto inked = [](std::string_view row) { return row.find('#') != std::string_view::npos; };
    EXPECT_TRUE(!digit || (inked(MicrGlyph(code)->front()) && inked(MicrGlyph(code)->back()))) << code;
  }
  EXPECT_EQ(MicrGlyph('E'), nullptr);
}

// A magnetic head feels by how much the ink changes from column to column, and nothing else.
TEST(MicrGlyphsTest, TheSignalTellsTheCharactersApart) {
  std::map<char, std::vector<int>> signals;
  for (const char code : kCharacters) {
    int before = 0;
    for (const int ink : ColumnsOf(code)) {
      signals[code].push_back(ink - before);
      before = ink;
    }
    signals[code].push_back(-before);
  }
  constexpr int least = 12;  // cells by which any two differ
  for (const auto& [one, signal] : signals) {
    for (const auto& [other, other_signal] : signals) {
      int difference = 0;
      for (std::size_t i = 0; i < signal.size(); ++i) difference += std::abs(signal[i] - other_signal[i]);
      EXPECT_TRUE(one == other || difference >= least) << one << " and " << other << ": " << difference;
    }
  }
}

TEST(MicrGlyphsTest, BarsCoverTheCellsAndNothingElse) {
  for (const char code : kCharacters) {
    const std::vector<SheetRect> bars = MicrBars(code, 100, 50);
    for (int row = 0; row < kMicrRows; ++row) {
      for (int column = 0; column < kMicrColumns; ++column) {
        const double x = 100 - (kMicrColumns - column - 0.5) * kMicrCell;
        const double y = 50 - (kMicrRows - row - 0.5) * kMicrCell;
        const bool inked = std::any_of(bars.begin(), bars.end(), [&](const SheetRect& bar) {
          return x > bar.x && x < bar.Right() && y > bar.y && y < bar.Bottom();
        });
        EXPECT_EQ(inked,
                  (*MicrGlyph(code))[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] == '#')
            << code << row << column;
      }
    }
  }
}

}  // namespace
}  // namespace tallwick
