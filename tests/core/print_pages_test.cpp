// Lines and pages of a printed document, with letters that are all 100 twips wide and lines 200 high.

#include "core/print_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/column_format.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;

class EvenLetters : public TextMeasure {
 public:
  int Width(PrintStyle, std::string_view text) const override {
    int width = 0;
    for (char c : text) width += (static_cast<unsigned char>(c) & 0xC0) == 0x80 ? 0 : 100;
    return width;
  }
  int LineHeight(PrintStyle) const override { return 200; }
};

TEST(BreakLinesTest, BreaksBetweenWordsAndWithinLongOnes) {
  const EvenLetters measure;
  struct Case {
    const char* text;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {"", {""}},
      {"ten twips", {"ten twips"}},
      {"was: one now: two", {"was: one", "now: two"}},
      {"exactly10c next", {"exactly10c", "next"}},
      {"unbreakableword", {"unbreakabl", "eword"}},
      {"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9",
       {"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", "\xC3\xA9"}},
      {"a    b", {"a    b"}}};
  for (const Case& one : cases)
    EXPECT_EQ(BreakLines(one.text, 1000, PrintStyle::kRow, measure), one.lines) << one.text;
  EXPECT_THAT(BreakLines("ab", 1, PrintStyle::kRow, measure),
              ElementsAre("a", "b"));  // narrower than a letter
}

std::vector<std::string> Texts(const PrintPage& page) {
  std::vector<std::string> texts;
  for (const PlacedText& text : page.texts) texts.push_back(text.text);
  return texts;
}

PrintRow Row(std::vector<std::string> cells, bool with_next = false) {
  return {PrintStyle::kRow, cells.size() == 2 ? "<+500|>+500" : "", std::move(cells), with_next};
}

TEST(PagesTest, RepeatsHeadsAndHeadingsKeepsGroupsTogetherAndCountsPages) {
  PrintDocument document;
  document.header = {{PrintStyle::kHeader, "", {"Head"}, false}};
  document.footer = "Foot";
  const std::vector<PrintRow> heading = {{PrintStyle::kHeading, "<+500|>+500", {"A", "B"}, true}};
  document.sections = {
      {{}, {Row({"Title"})}},
      {heading, {Row({"1", "1"}), Row({"2", "2"}, true), Row({"3", "3"}, true), Row({"4", "4"})}},
      {heading, {}},
      {heading, {Row({"5", "5"})}}};
  // Eight lines: two for the foot, six for head, title, headings and rows.
  const std::vector<PrintPage> pages = LayOutPages(document, 1000, 1600, EvenLetters());
  ASSERT_EQ(pages.size(), 3U);
  EXPECT_THAT(Texts(pages[0]), ElementsAre("Head", "Title", "A", "B", "1", "1", "Foot", "Page 1 of 3"));
  EXPECT_THAT(Texts(pages[1]),
              ElementsAre("Head", "A", "B", "2", "2", "3", "3", "4", "4", "A", "B", "Foot", "Page 2 of 3"));
  EXPECT_THAT(Texts(pages[2]), ElementsAre("Head", "A", "B", "5", "5", "Foot", "Page 3 of 3"));
  EXPECT_EQ(pages[0].texts[5].x, 500 + kColumnGap / 2);
  EXPECT_EQ(pages[0].texts[5].alignment, '>');
  EXPECT_EQ(pages[0].texts.back().y, 1400);
  EXPECT_THAT(pages[1].rules, ElementsAre(400, 1200));
}

TEST(PagesTest, ARowTallerThanAPageGoesOn) {
  PrintDocument document;
  document.sections = {{{},
                        {{PrintStyle::kRow, "<+500|<+500", {"aaaaa bbbbb ccccc ddddd eeeee", "x"}, false},
                         {PrintStyle::kRow, "<+500", {"end"}, false}}}};
  const std::vector<PrintPage> pages = LayOutPages(document, 1000, 1000, EvenLetters());
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_THAT(Texts(pages[0]), ElementsAre("aaaaa", "x", "bbbbb", "ccccc", "Page 1 of 2"));
  EXPECT_THAT(Texts(pages[1]), ElementsAre("ddddd", "eeeee", "end", "Page 2 of 2"));
  EXPECT_EQ(LayOutPages({}, 1000, 1000, EvenLetters()).size(), 1U);
}

// Whatever stands in a cell, its lines stay inside the cell, and numbers stay whole.
TEST(PagesTest, NoTextReachesIntoTheNextColumn) {
  const char* texts[] = {"fits",
                         "Outstanding",
                         "Stop Payment",
                         "123,456,789,012.34",
                         "unbreakableword and more",
                         "-1,234,567,890,123,456,789.00"};
  for (const char* format : {"<+480|<+480|<+480", "^+480|^+480|^+480", ">+480|>+480|>+480"}) {
    for (const char* text : texts) {
      PrintDocument document;
      document.sections = {{{}, {{PrintStyle::kRow, format, {"a", text, "b"}, false}}}};
      const PrintPage page = LayOutPages(document, 1440, 9000, EvenLetters()).front();
      for (std::size_t i = 1; i + 1 < page.texts.size(); ++i) {
        const PlacedText& line = page.texts[i];
        if (line.text == "b") continue;
        const double width = EvenLetters().Width(line.style, line.text) * line.fit.Scale();
        EXPECT_GE(line.x, 480 + kColumnGap / 2);
        EXPECT_LE(line.x + width, 960 - kColumnGap / 2 + 0.5) << format << " " << text;
      }
      if (format[0] == '>') {
        EXPECT_EQ(page.texts[1].text, text);
      }
    }
  }
  PrintDocument spilling;
  spilling.sections = {{{}, {{PrintStyle::kRow, ">+1400|^+480|<+480", {"", "Outstanding", "x"}, false}}}};
  const PlacedText spilled = LayOutPages(spilling, 2360, 9000, EvenLetters()).front().texts.front();
  EXPECT_EQ(spilled.fit, TextFit{});
  EXPECT_EQ(spilled.x + spilled.width, 1880 - kColumnGap / 2);
  EXPECT_EQ(FitText("MARY K", 480, '<', PrintStyle::kRow, EvenLetters()), (TextFit{0.8, 1}));
  EXPECT_EQ(FitText("Stop Payment", 700, '<', PrintStyle::kRow, EvenLetters()), TextFit{});
  EXPECT_DOUBLE_EQ(FitText("Outstanding", 880, '^', PrintStyle::kRow, EvenLetters()).size, 0.8);
}

TEST(ColumnFormatTest, ReadsAlignmentAndTwips) {
  EXPECT_THAT(ParseColumnFormats(">+1000|^+1280|<+3160||9"),
              ElementsAre(ColumnFormat{'>', 1000}, ColumnFormat{'^', 1280}, ColumnFormat{'<', 3160},
                          ColumnFormat{'<', 0}, ColumnFormat{'<', 9}));
  EXPECT_LE(ParseColumnFormats("<+99999999999").front().width, 14 * 1440);
}

}  // namespace
}  // namespace tallwick
