// Layouts and the sheets made of them: what an office may write into its layout, and that whatever stands on
// a check is whole, inside its page and over nothing else.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "checks/check_layout.h"
#include "checks/check_sheet.h"
#include "checks/micr_line.h"

namespace tallwick {
namespace {

using ::testing::HasSubstr;

// Letters wider than those of any font that is used.
class WideLetters : public SheetMeasure {
 public:
  double Width(const SheetFont& font, std::string_view text) const override {
    return static_cast<double>(text.size()) * font.points * 0.75 * kMillimetresPerInch / 72;
  }
};

const WideLetters kWide;

CheckStationery Stationery() {
  return {"LAKESIDE TITLE AGENCY OF NORTHWESTERN OHIO",
          {"100 Harbor Boulevard, Suite 2400", "Second Floor", "Lakeside, OH 43440"},
          {"First National Trust Company of Lakeside and Marblehead", "12 Main Street", "Lakeside, OH 43440"},
          "041200050",
          "00123456",
          {}};
}

CheckOnPaper Longest(const std::string& number) {
  CheckRecord check;
  check.number = number;
  check.dated = {2024, 3, 15};
  check.payee = std::string(60, 'W');
  check.address1 = check.address2 = check.city_state = std::string(40, 'W');
  check.amount = Currency::FromCents(777'777'777'77);
  check.file_number = "24-0117-RESALE";
  std::string advice;
  for (int i = 0; i < 60; ++i) advice += "Recording of the deed and the mortgage, ";
  return MakeCheckOnPaper(check, advice);
}

BankRecord Bank(const std::string& stock = "VOUCHER", const std::string& position = "TOP") {
  BankRecord bank;
  bank.check_stock = stock;
  bank.check_position = position;
  return bank;
}

bool Overlap(const SheetRect& one, const SheetRect& other) {
  constexpr double touch = 0.01;
  return one.x < other.Right() - touch && other.x < one.Right() - touch && one.y < other.Bottom() - touch &&
         other.y < one.Bottom() - touch;
}

std::string AllText(const SheetPage& page) {
  std::string all;
  for (const SheetText& text : page.texts) all += text.text + "\n";
  return all;
}

void ExpectClean(const SheetDocument& document) {
  for (const SheetPage& page : document.pages) {
    for (std::size_t i = 0; i < page.texts.size(); ++i) {
      const SheetText& text = page.texts[i];
      EXPECT_GE(text.box.x, 0) << text.text;
      EXPECT_GE(text.box.y, 0) << text.text;
      EXPECT_LE(text.box.Right(), document.width) << text.text;
      EXPECT_LE(text.box.Bottom(), document.height) << text.text;
      EXPECT_LE(text.stretch, 1);
      EXPECT_NEAR(kWide.Width(text.font, text.text) * text.stretch, text.box.width, 0.001);
      for (std::size_t j = 0; j < i; ++j)
        EXPECT_FALSE(Overlap(text.box, page.texts[j].box)) << text.text << " over " << page.texts[j].text;
      for (const SheetRect& bar : page.bars) EXPECT_FALSE(Overlap(text.box, bar)) << text.text;
    }
  }
}

TEST(CheckSheetTest, TheLongestCheckFitsOnEveryStock) {
  const std::vector<CheckOnPaper> checks = {Longest("10452"), Longest("10453"), Longest("10454"),
                                            Longest("10455")};
  for (const BankRecord& bank :
       {Bank(), Bank("VOUCHER", "MIDDLE"), Bank("VOUCHER", "BOTTOM"), Bank("THREE")}) {
    const LayoutReading reading = ReadLayout("", bank);
    ASSERT_EQ(reading.problem, "");
    ASSERT_EQ(CheckProblem(checks, Stationery(), reading.layout, kWide), "");
    for (const SheetOffset offset : {SheetOffset{}, SheetOffset{-4, -4}, SheetOffset{4, 1.5}}) {
      const SheetDocument document = PlaceChecks(checks, Stationery(), reading.layout, 1, offset, kWide);
      EXPECT_EQ(document.pages.size(), bank.check_stock == "THREE" ? 2U : 4U);
      ExpectClean(document);
      const std::string text = AllText(document.pages.front());
      EXPECT_THAT(text, HasSubstr("\n$777,777,777.77\n"));
      EXPECT_THAT(text, HasSubstr("**Seven Hundred Seventy Seven Million"));
      EXPECT_THAT(text, HasSubstr("Seventy Seven cents **\n"));
    }
  }
}

// A bank pays what the words say: a check goes out with all of them or not at all.
TEST(CheckSheetTest, WhatACheckSaysIsNeverCut) {
  const CheckOnPaper check = Longest("10452");
  struct Case {
    CheckField field;
    const char* part;
  };
  const Case cases[] = {{CheckField::kWords, "its amount in words has no room in the field Words"},
                        {CheckField::kFigures, "its amount in figures"},
                        {CheckField::kPayee, "its payee"},
                        {CheckField::kAddress, "the payee's address"},
                        {CheckField::kNumber, "its number"}};
  for (const Case& one : cases) {
    CheckLayout layout = DefaultLayout(CheckStock::kVoucher);
    FieldPlace& place = layout.fields[static_cast<std::size_t>(one.field)];
    place.box.width = 6;
    EXPECT_THAT(CheckProblem({&check, 1}, Stationery(), layout, kWide), HasSubstr(one.part));
    place.shown = false;
    EXPECT_EQ(CheckProblem({&check, 1}, Stationery(), layout, kWide), "");
  }
}

TEST(CheckSheetTest, AdviceThatIsCutIsTold) {
  CheckOnPaper check = Longest("10452");
  const CheckLayout voucher = DefaultLayout(CheckStock::kVoucher);
  const CheckLayout three = DefaultLayout(CheckStock::kThreePerPage);
  EXPECT_EQ(
      CutNote({&check, 1}, Stationery(), three, kWide),
      "Check 10452: the field Remittance has no room for all of its text.  The end is not printed.\r\n");
  check.remittance_advice = "Recording of the deed";
  for (const CheckLayout& layout : {voucher, three})
    EXPECT_EQ(CutNote({&check, 1}, Stationery(), layout, kWide), "");
  for (int i = 0; i < 8; ++i) check.remittance_advice += check.remittance_advice;
  EXPECT_THAT(CutNote({&check, 1}, Stationery(), voucher, kWide), HasSubstr("StubRemittance"));
}

TEST(CheckSheetTest, OnlyTheMicrLineStandsInTheClearBand) {
  const CheckLayout layout = DefaultLayout(CheckStock::kThreePerPage);
  const std::vector<CheckOnPaper> checks = {Longest("10452"), Longest("10453")};
  const SheetPage page = PlaceChecks(checks, Stationery(), layout, 1, {}, kWide).pages.front();
  int in_band = 0;
  for (const double top : {layout.check_tops[0], layout.check_tops[1]}) {
    const double bottom = top + layout.panel_height;
    const SheetRect band{0, bottom - kMicrClearBand, layout.width, kMicrClearBand};
    for (const SheetText& text : page.texts) EXPECT_FALSE(Overlap(text.box, band)) << text.text;
    for (const SheetRect& bar : page.bars) {
      if (!Overlap(bar, band)) continue;
      ++in_band;
      EXPECT_GE(bar.y, bottom - 0.4375 * kMillimetresPerInch);
      EXPECT_LE(bar.Bottom(), bottom - 0.1875 * kMillimetresPerInch);
      EXPECT_LE(bar.Right(), layout.width - 0.3125 * kMillimetresPerInch + 0.001);
    }
  }
  EXPECT_GT(in_band, 100);
}

TEST(CheckSheetTest, CopiesCannotBeTakenForChecks) {
  CheckLayout layout = DefaultLayout(CheckStock::kVoucher);
  layout.lines = false;  // all bars that are left are the MICR line's
  layout.security_line = SecurityLine{true, 0, 0, 0};
  const CheckOnPaper check = Longest("10452");
  const SheetDocument document = PlaceChecks({&check, 1}, Stationery(), layout, 2, {}, kWide);
  ASSERT_EQ(document.pages.size(), 2U);
  EXPECT_EQ(document.name, "Check 10452");
  EXPECT_THAT(AllText(document.pages[0]), ::testing::Not(HasSubstr("COPY")));
  EXPECT_THAT(AllText(document.pages[1]), HasSubstr("COPY - NOT NEGOTIABLE"));
  EXPECT_FALSE(document.pages[0].bars.empty());
  EXPECT_TRUE(document.pages[1].bars.empty());
  EXPECT_EQ(document.pages[0].micro.size(), 1U);
  EXPECT_TRUE(document.pages[1].micro.empty());
  EXPECT_TRUE(document.pages[0].background.empty());
  layout.pantograph = true;
  layout.micr = false;
  const SheetPage page = PlaceChecks({&check, 1}, {}, layout, 0, {}, kWide).pages.front();
  EXPECT_FALSE(page.background.empty());
  EXPECT_TRUE(page.bars.empty());
}

TEST(CheckSheetTest, BlankStockGetsLinesAndCaptionsAndFormsKeepTheirOwn) {
  CheckLayout layout = DefaultLayout(CheckStock::kVoucher);
  layout.micr = false;
  const CheckOnPaper check = Longest("10452");
  const auto drawn = [&] { return PlaceChecks({&check, 1}, Stationery(), layout, 1, {}, kWide).pages[0]; };
  const SheetPage blank = drawn();
  EXPECT_THAT(AllText(blank), HasSubstr("REMITTANCE ADVICE\n"));
  EXPECT_THAT(AllText(blank), HasSubstr("PAY TO THE\n"));
  EXPECT_THAT(AllText(blank), HasSubstr("ESCROW ACCOUNT\n"));
  // A text stands on its rule, however small the field makes it.
  const auto payee = std::find_if(blank.texts.begin(), blank.texts.end(), [&](const SheetText& text) {
    return text.font.bold && text.text == check.check.payee;
  });
  ASSERT_NE(payee, blank.texts.end());
  const bool on_rule = std::any_of(blank.bars.begin(), blank.bars.end(), [&](const SheetRect& bar) {
    return bar.y > payee->box.Bottom() && bar.y < payee->box.Bottom() + 0.6 && bar.x <= payee->box.x;
  });
  EXPECT_TRUE(on_rule);
  layout.lines = false;
  layout.account_title = "IOLTA Trust Account";
  const SheetPage form = drawn();
  EXPECT_TRUE(form.bars.empty());
  for (const char* caption : {"REMITTANCE ADVICE", "PAY TO THE", "AUTHORIZED SIGNATURE", "AMOUNT"})
    EXPECT_THAT(AllText(form), ::testing::Not(HasSubstr(caption)));
  EXPECT_THAT(AllText(form), HasSubstr("IOLTA Trust Account\n"));
  EXPECT_THAT(AllText(form), HasSubstr("File No. 24-0117-RESALE\n"));
}

// The bank's record, in twips and degrees.
TEST(CheckSheetTest, TheSecurityLineStaysOnTheCheckAtEveryAngle) {
  const CheckOnPaper check = Longest("10452");
  BankRecord bank = Bank();
  EXPECT_FALSE(ReadLayout("", bank).layout.security_line);
  bank.print_security_line = 1;
  EXPECT_TRUE(ReadLayout("", bank).layout.security_line->at_signature);
  for (const std::int32_t angle : {0, 30, 90, 179, 200, 315, 359}) {
    bank.security_line_x = 6000;
    bank.security_line_y = 2000;
    bank.security_line_angle = angle;
    const CheckLayout layout = ReadLayout("", bank).layout;
    ASSERT_EQ(CheckProblem({&check, 1}, Stationery(), layout, kWide), "");
    const SheetText line = PlaceChecks({&check, 1}, Stationery(), layout, 1, {}, kWide).pages[0].micro.at(0);
    EXPECT_NEAR(line.box.x, 6000 * 25.4 / 1440, 0.001);
    EXPECT_NEAR(line.box.Bottom(), 2000 * 25.4 / 1440, 0.001);
    const double radians = angle * 3.14159265358979 / 180;
    const double end_x = line.box.x + line.box.width * std::cos(radians);
    const double end_y = line.box.Bottom() - line.box.width * std::sin(radians);
    EXPECT_TRUE(end_x > 0 && end_x < layout.width && end_y > 0 &&
                end_y < layout.panel_height - kMicrClearBand)
        << angle << " degrees: " << end_x << ", " << end_y;
    EXPECT_THAT(line.text, ::testing::StartsWith("LAKESIDE TITLE AGENCY OF NORTHWESTERN OHIO 10452 $777,"));
    EXPECT_LT(line.font.points, 2) << "no copier shows it";
  }
  struct Place {
    std::int32_t x, y, angle;
  };
  for (const Place& place :
       {Place{99999, 100, 0}, Place{-5, 100, 0}, Place{6000, 4800, 0}, Place{6000, 300, 90}}) {
    bank.security_line_x = place.x;
    bank.security_line_y = place.y;
    bank.security_line_angle = place.angle;
    EXPECT_THAT(CheckProblem({&check, 1}, Stationery(), ReadLayout("", bank).layout, kWide),
                HasSubstr("Correct SECLINEX, SECLINEY"));
  }
}

TEST(CheckSheetTest, AmountsThatNoCheckHasAreRefused) {
  CheckLayout layout = DefaultLayout(CheckStock::kVoucher);
  CheckOnPaper check = Longest("7");
  check.check.amount = Currency::FromCents(-1);
  EXPECT_THAT(CheckProblem({&check, 1}, Stationery(), layout, kWide),
              HasSubstr("Check 7: its amount is below zero"));
  check = Longest("7");
  check.check.status = "V";
  EXPECT_EQ(CheckProblem({&check, 1}, Stationery(), layout, kWide),
            "Check 7 is voided.  Only outstanding checks are printed.");
  check = Longest("7");
  layout.width = 120;
  EXPECT_THAT(CheckProblem({&check, 1}, Stationery(), layout, kWide), HasSubstr("wider than the paper"));
  CheckStationery stationery = Stationery();
  stationery.routing = "041200051";
  EXPECT_THAT(CheckProblem({&check, 1}, stationery, layout, kWide), HasSubstr("Check 7: The routing number"));
  layout.micr = false;
  EXPECT_EQ(CheckProblem({&check, 1}, stationery, layout, kWide), "") << "the stock carries the line";
}

TEST(CheckLayoutTest, AnOfficesFileChangesWhatItNames) {
  const LayoutReading reading = ReadLayout(
      "; ours\r\nWORDS = 10, 38, 190, 9, 9, center, bold\r\nBank=off\r\nOffset=0,0.5\r\noffset.Front "
      "desk=-1.25,0\r\n"
      "Copies=2\r\nPantograph=on\r\nLines=off\r\nAccountTitle=Trust Account\r\nSignPassword=00FF\r\n",
      Bank());
  ASSERT_EQ(reading.problem, "");
  const CheckLayout& layout = reading.layout;
  EXPECT_EQ(layout.Place(CheckField::kWords).box, (SheetRect{10, 38, 190, 9}));
  EXPECT_EQ(layout.Place(CheckField::kWords).alignment, '^');
  EXPECT_FALSE(layout.Place(CheckField::kBank).shown);
  EXPECT_EQ(layout.OffsetFor("FRONT DESK").x, -1.25);
  EXPECT_EQ(layout.OffsetFor("another").y, 0.5);
  EXPECT_EQ(layout.copies, 2);
  EXPECT_TRUE(layout.pantograph);
  EXPECT_FALSE(layout.lines);
  EXPECT_EQ(layout.account_title, "Trust Account");
  EXPECT_EQ(layout.sign_password, "00FF");
  EXPECT_EQ(LayoutText(ReadLayout(LayoutText(layout), Bank("THREE")).layout), LayoutText(layout));
  const CheckLayout three = ReadLayout("Words=off\nCopies=3", Bank(), CheckStock::kThreePerPage).layout;
  EXPECT_TRUE(three.Place(CheckField::kWords).shown) << "placed for other stock";
  EXPECT_EQ(three.copies, 3);
}

TEST(CheckLayoutTest, WrongLinesAreNamed) {
  struct Case {
    const char *line, *part;
  };
  const Case cases[] = {
      {"Wrods=off", "\"Wrods\" is none"},
      {"Words=off\nwords=off", "The line \"words=off\" is a second one of its name"},
      {"Words", "Words=x,y,width,height"},
      {"Words=9,37,198,10,10", "Words=x,y,width,height"},
      {"Words=9,37,198,10,10,middle", "Words=x,y,width,height"},
      {"Words=9,37,1e3,10,10,left", "Words=x,y,width,height"},
      {"Words=-9,37,198,10,10,left", "Words=x,y,width,height"},
      {"Words=9,37,250,10,10,left", "Words reaches beyond its check or stub"},
      {"Words=9,37,198,3,10,left", "Words is too low for a line"},
      {"Words=9,37,198,10,99,left", "4 to 36 points"},
      {"Words=9,28,198,10,10,left", "Words stands over PayTo"},
      {"FileNumber=9,70,50,4.5,8,left", "FileNumber reaches into the lowest 15.9 millimetres"},
      {"Stock=four", "Stock=voucher or Stock=three"},
      {"Lines=maybe", "Lines=on or Lines=off"},
      {"Micr=maybe", "Micr=on or Micr=off"},
      {"Copies=many", "Copies=0 to Copies=9"},
      {"Offset=1", "Offset=right,down"},
      {"Offset=1,9", "more than 6 millimetres"},
      {"CheckTops=0,60", "a check or stub stands over another"},
      {"StubTops=200", "a check or stub reaches beyond the paper"},
      {"CheckTops=0,88.9\nStubTops=177.8", "StubTops names stubs"},
      {"Paper=10,10", "the paper is smaller"},
      {"Number=172,7,43,6,12,right\nOffset=5,0", "an offset moves Number off the paper"},
  };
  for (const Case& one : cases)
    EXPECT_THAT(ReadLayout(one.line, Bank()).problem, HasSubstr(one.part)) << one.line;
}

}  // namespace
}  // namespace tallwick
