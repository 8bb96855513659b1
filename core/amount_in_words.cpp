// The words are cut by position from four tables of slots of one width, from the rightmost digit leftwards.
// The widths belong to the tables: a blank more or less shifts every word behind it.
#include "core/amount_in_words.h"

#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {

namespace {

struct SlotTable {
  std::size_t width;
  std::string_view slots;

  std::string_view operator[](std::size_t slot) const { return TrimRight(slots.substr(slot * width, width)); }
};

constexpr SlotTable kUnits{5, "One  Two  ThreeFour Five Six  SevenEightNine Ten"};
constexpr SlotTable kTeens{
    10, "Eleven    Twelve    Thirteen  Fourteen  Fifteen   Sixteen   Seventeen Eighteen  Nineteen"};
constexpr SlotTable kTens{8, "Ten     Twenty  Thirty  Forty   Fifty   Sixty   Seventy Eighty  Ninety"};
constexpr SlotTable kScales{9, "Thousand Million  Billion  Trillion"};

constexpr std::size_t kLongestFigure = 15;
constexpr std::string_view kFiguresPattern = "###########.00";

// True when the group of three that ends at `last` has a digit other than "0"; a sign at its head counts as
// one.
bool GroupHasDigits(std::string_view figure, std::size_t last) {
  const std::size_t first = last < 2 ? 0 : last - 2;
  return figure.substr(first, last - first + 1).find_first_not_of("0-") != std::string_view::npos;
}

void Prepend(std::string& words, std::string_view word) {
  if (!word.empty()) words.insert(0, std::string(word) + ' ');
}

}  // namespace

std::string NumberToWords(std::string_view text) {
  text = Trim(text);
  const std::string_view figure = text.substr(0, text.find('.'));
  if (figure.size() > kLongestFigure) return {};

  std::string words;
  for (std::size_t i = figure.size(); i-- > 0;) {
    const std::size_t place = figure.size() - 1 - i;
    const bool counts = figure[i] >= '1' && figure[i] <= '9';
    const std::size_t slot = counts ? static_cast<std::size_t>(figure[i] - '1') : 0;
    if (place % 3 == 0) {
      if (place > 0 && GroupHasDigits(figure, i)) Prepend(words, kScales[place / 3 - 1]);
      if (counts && i > 0 && figure[i - 1] == '1') {
        Prepend(words, kTeens[slot]);
        --i;  // the word took in the tens digit
      } else if (counts) {
        Prepend(words, kUnits[slot]);
      }
    } else if (counts) {
      Prepend(words, place % 3 == 1 ? std::string(kTens[slot]) : std::string(kUnits[slot]) + " Hundred");
    }
    if (i == 0 && figure[i] == '-') Prepend(words, "Negative");
  }
  return std::string(TrimRight(words));
}

std::string AmountInWords(Currency amount) {
  if (!amount.IsValid()) return {};
  if (amount.IsZero()) return "Zero dollars and no cents";
  std::string figures = FormatNumber(amount, kFiguresPattern);
  // Less than half a cent is written as zero, and keeps its sign here.
  if (amount.IsNegative() && figures.front() != '-') figures.insert(0, 1, '-');
  const std::string cents = NumberToWords(std::string_view(figures).substr(figures.find('.') + 1));
  return NumberToWords(figures) + " dollars" + (cents.empty() ? " & no cents" : " & " + cents + " cents ");
}

}  // namespace tallwick
