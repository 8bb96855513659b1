// Lines and pages of a printed document, with letters that are all 100 twips wide and lines 200 high.

#include "core/print_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST(PagesTest, RepeatsHeadingsKeepsGroupsTogetherAndCountsPages) {
  PrintDocument document;
  document.rows.push_back({PrintStyle::kTitle, "", {"Title"}, false});
  document.heading_at = 1;
  document.heading = {{PrintStyle::kHeading, "<+500|>+500", {"A", "B"}, false}};
  for (const char* row : {"1", "2"})
    document.rows.push_back({PrintStyle::kRow, "<+500|>+500", {row, row}, false});
  document.rows.push_back({PrintStyle::kStrong, "", {"group"}, true});
  document.rows.push_back({PrintStyle::kRow, "", {"member"}, false});
  // Seven lines: two for the foot, five for title, heading and rows.
  const std::vector<PrintPage> pages = LayOutPages(document, 1000, 1400, EvenLetters());
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_THAT(Texts(pages[0]), ElementsAre("Title", "A", "B", "1", "1", "2", "2", "Page 1 of 2"));
  EXPECT_THAT(Texts(pages[1]), ElementsAre("A", "B", "group", "member", "Page 2 of 2"));
  EXPECT_EQ(pages[0].texts[4].x, 500);
  EXPECT_EQ(pages[0].texts[4].alignment, '>');
  EXPECT_EQ(pages[0].texts.back().y, 1200);
  EXPECT_THAT(pages[1].rules, ElementsAre(200));
}

TEST(PagesTest, ARowTallerThanAPageGoesOn) {
  PrintDocument document;
  document.rows.push_back({PrintStyle::kRow, "<+500", {"aaaaa bbbbb ccccc ddddd eeeee"}, false});
  document.rows.push_back({PrintStyle::kRow, "<+500", {"end"}, false});
  const std::vector<PrintPage> pages = LayOutPages(document, 1000, 1000, EvenLetters());
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_THAT(Texts(pages[0]), ElementsAre("aaaaa", "bbbbb", "ccccc", "Page 1 of 2"));
  EXPECT_THAT(Texts(pages[1]), ElementsAre("ddddd", "eeeee", "end", "Page 2 of 2"));
  EXPECT_EQ(LayOutPages({}, 1000, 1000, EvenLetters()).size(), 1U);
}

}  // namespace
}  // namespace tallwick
