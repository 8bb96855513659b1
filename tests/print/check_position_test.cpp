// The MICR line measured on the PDF: the file is made, drawn by pdftoppm at 1000 dots to the inch, and every
// character is looked for where a reader expects it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "checks/check_sheet.h"
#include "checks/micr_glyphs.h"
#include "print/sheet_files.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

constexpr int kDots = 1000;  // to the inch
constexpr int kSheetWidth = 8500;
constexpr int kCell = 13;
constexpr int kPitch = 125;
constexpr int kRightMargin = 312;  // 5/16 inch
constexpr int kBand = 625;         // the clear band's height

// A grey picture, row by row from the top.
struct Picture {
  int width = 0;
  int height = 0;
  std::string dots;
  bool IsInk(int x, int y) const {
    return static_cast<unsigned char>(dots[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                           static_cast<std::size_t>(x)]) < 128;
  }
};

Picture ReadPicture(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string magic;
  int most = 0;
  Picture picture;
  file >> magic >> picture.width >> picture.height >> most;
  file.get();
  std::ostringstream dots;
  dots << file.rdbuf();
  picture.dots = dots.str();
  return magic == "P5" ? picture : Picture();
}

// The clear band of the check whose lower edge is `bottom` dots below the sheet's upper one.
Picture DrawBand(const testing::TempFolder& folder, const std::string& pdf, int page, int bottom) {
  std::ostringstream command;
  command << "pdftoppm -gray -singlefile -r " << kDots << " -f " << page << " -x 0 -y " << bottom - kBand
          << " -W " << kSheetWidth << " -H " << kBand << " " << pdf << " " << folder.Platform("band");
  if (std::system(command.str().c_str()) != 0) return {};
  return ReadPicture(folder.Platform("band.pgm"));
}

// Edges of the ink in a character's place, in dots; right and bottom are behind the last dot.
struct Ink {
  int left = kSheetWidth, right = 0, top = kBand, bottom = 0;
};

Ink InkBetween(const Picture& band, int from, int to) {
  Ink ink;
  for (int y = 0; y < band.height; ++y) {
    for (int x = from; x < to; ++x) {
      if (!band.IsInk(x, y)) continue;
      ink = {std::min(ink.left, x), std::max(ink.right, x + 1), std::min(ink.top, y),
             std::max(ink.bottom, y + 1)};
    }
  }
  return ink;
}

// The character whose cells have their middles inked at this right edge; '?' when none has.
char CharacterAt(const Picture& band, int right) {
  const int bottom = kBand - 254;
  for (const char code : std::string_view("0123456789ABCD")) {
    bool same = true;
    for (int row = 0; row < kMicrRows; ++row) {
      for (int column = 0; column < kMicrColumns; ++column) {
        const int x = right - (kMicrColumns - column) * kCell + kCell / 2;
        const int y = bottom - (kMicrRows - row) * kCell + kCell / 2;
        same =
            same &&
            band.IsInk(x, y) ==
                ((*MicrGlyph(code))[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] == '#');
      }
    }
    if (same) return code;
  }
  return '?';
}

CheckOnPaper Check(const std::string& number) {
  CheckRecord check;
  check.number = number;
  check.dated = {2024, 3, 15};
  check.payee = "LUCAS COUNTY RECORDER";
  check.address1 = "1 Government Center";
  check.city_state = "Toledo, OH 43604";
  check.amount = Currency::FromCents(1234'56);
  check.file_number = "24-0117";
  return MakeCheckOnPaper(check, "Recording of the deed, 12 Main Street");
}

CheckStationery Stationery() {
  return {"Lakeside Title",
          {"100 Harbor Boulevard", "Lakeside, OH 43440"},
          {"First National Trust", "12 Main Street", "Lakeside, OH 43440"},
          "041200050",
          "1234567890-6",
          {}};
}

void ExpectLine(const Picture& band, const MicrLine& line) {
  ASSERT_EQ(band.width, kSheetWidth);
  ASSERT_EQ(band.height, kBand);
  for (const MicrCharacter& one : line.characters) {
    const int right = kSheetWidth - kRightMargin - (one.position - 1) * kPitch;
    EXPECT_EQ(CharacterAt(band, right), one.code) << "position " << one.position;
    const Ink ink = InkBetween(band, right - kPitch + 2, right + 2);
    const std::vector<SheetRect> bars = MicrBars(one.code, 0, 0);
    double left = 0;
    double farthest = -100;
    double lowest = -100;
    for (const SheetRect& bar : bars) {
      left = std::min(left, bar.x);
      farthest = std::max(farthest, bar.Right());
      lowest = std::max(lowest, bar.Bottom());
    }
    constexpr double dots = kDots / kMillimetresPerInch;
    EXPECT_NEAR(ink.left, right + left * dots, 2) << one.code << " at " << one.position;
    EXPECT_NEAR(ink.right, right + farthest * dots, 2) << one.code << " at " << one.position;
    EXPECT_NEAR(kBand - ink.bottom, 254 - lowest * dots, 2) << one.code << " at " << one.position;
    EXPECT_GE(kBand - ink.bottom, 187) << "3/16 inch";
    EXPECT_LE(kBand - ink.top, 438) << "7/16 inch";
  }
  // The amount's place and everything around the line stays white.
  const int leftmost = kSheetWidth - kRightMargin - line.characters.front().position * kPitch;
  EXPECT_EQ(InkBetween(band, 0, leftmost).right, 0);
  EXPECT_EQ(InkBetween(band, kSheetWidth - kRightMargin - 12 * kPitch, kSheetWidth).right, 0);
}

class CheckPositionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v pdftoppm >/dev/null 2>&1") != 0)
      GTEST_SKIP() << "pdftoppm is not installed: the MICR line was not measured";
  }
  // Page by page, the lower edges of the checks in dots.
  void Measure(CheckStock stock, const std::vector<std::vector<int>>& pages) {
    const testing::TempFolder folder;
    const CheckStationery stationery = Stationery();
    std::vector<CheckOnPaper> checks;
    for (int number = 9876543; checks.size() < 4; ++number) checks.push_back(Check(std::to_string(number)));
    SheetFilePrinter printer(folder.Platform("checks.pdf"), nullptr);
    const auto make = [&](const SheetMeasure& measure, const SheetOrder&) {
      return PlaceChecks(checks, stationery, DefaultLayout(stock), 1, {}, measure);
    };
    ASSERT_EQ(printer.Print(make), SheetEnd::kPrinted);
    std::size_t check = 0;
    for (std::size_t page = 0; page < pages.size(); ++page) {
      for (const int bottom : pages[page]) {
        SCOPED_TRACE("check " + checks[check].check.number);
        const MicrLine line =
            MakeMicrLine(stationery.routing, stationery.account, checks[check++].check.number, {});
        ExpectLine(DrawBand(folder, folder.Platform("checks.pdf"), static_cast<int>(page) + 1, bottom), line);
      }
    }
  }
};

TEST_F(CheckPositionTest, TheLineStandsWhereReadersLookOnVoucherStock) {
  Measure(CheckStock::kVoucher, {{3500}, {3500}});
}

TEST_F(CheckPositionTest, TheLineStandsWhereReadersLookOnThreePerPage) {
  Measure(CheckStock::kThreePerPage, {{3500, 7000, 10500}, {3500}});
}

TEST(SheetFilesTest, LaterPrintsLieBesideTheFirst) {
  const testing::TempFolder folder;
  const auto make = [](const SheetMeasure&, const SheetOrder&) {
    SheetDocument document;
    document.pages.resize(1);
    return document;
  };
  ASSERT_TRUE(std::filesystem::create_directory(folder.Platform("out.pdf.d")));
  for (const auto& [first, second] : std::map<std::string, std::string>{
           {"out.pdf.d/checks", "out.pdf.d/checks-2"}, {"checks.PDF", "checks-2.PDF"}}) {
    SheetFilePrinter printer(folder.Platform(first), nullptr);
    EXPECT_EQ(printer.Print(make), SheetEnd::kPrinted);
    EXPECT_EQ(printer.Print(make), SheetEnd::kPrinted);
    EXPECT_TRUE(std::filesystem::exists(folder.Platform(second))) << second;
  }
}

TEST(SheetFilesTest, WhatCannotBeWrittenIsTold) {
  const testing::TempFolder folder;
  SheetDocument document;
  document.pages.resize(2);
  EXPECT_TRUE(WriteSheetsPdf(document, folder.Platform("empty.pdf")));
  EXPECT_EQ(WriteSheetPictures(document, folder.Platform("empty"), 50), 2);
  EXPECT_FALSE(WriteSheetsPdf(document, folder.Platform("no folder/empty.pdf")));
  EXPECT_EQ(WriteSheetPictures(document, folder.Platform("no folder/empty"), 50), 0);
}

}  // namespace
}  // namespace tallwick
