// Lays a document out on pages: long cells are broken into lines between words, a row stays whole where a
// page can hold it, headings are repeated, and every page ends with "Page 1 of 3". All lengths are twips
// (1/1440 inch), from the printable area's upper left corner.
//
// Invariant: no text reaches the text of another column. One too wide for a narrow column takes the room of
// an empty cell before it; without such a cell it is set a little smaller; a word that still is wider than
// its column is set smaller, then narrower, and then broken. A text for the right, such as a number, is never
// broken, only made as small as its column needs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/column_format.h"
#include "core/print_document.h"

namespace tallwick {

// Whoever draws tells how large texts are.
class TextMeasure {
 public:
  virtual ~TextMeasure() = default;
  virtual int Width(PrintStyle style, std::string_view text) const = 0;
  virtual int LineHeight(PrintStyle style) const = 0;
};

// How much smaller a text is set so that its words fit.
struct TextFit {
  double size = 1;     // of the style's size
  double stretch = 1;  // of the letters' width, beside the size
  double Scale() const { return size * stretch; }
  friend bool operator==(const TextFit&, const TextFit&) = default;
};

// Between the texts of two columns, half of it on either side.
inline constexpr int kColumnGap = 80;

// The fit of a text whose lines break between words in `width`; one for the right (">") breaks nowhere.
TextFit FitText(std::string_view text, int width, char alignment, PrintStyle style,
                const TextMeasure& measure);

// Whether the cell's text, too wide for its narrow column, takes the room of the empty cell before it; it
// then stands at the right.
bool TakesCellBefore(const std::vector<ColumnFormat>& columns, const std::vector<std::string>& cells,
                     std::size_t place, PrintStyle style, const TextMeasure& measure);

struct PlacedText {
  int x = 0;  // of the cell's left edge
  int y = 0;  // of the line's upper edge
  int width = 0;
  char alignment = '<';
  PrintStyle style = PrintStyle::kText;
  std::string text;
  TextFit fit = {};
};

struct PrintPage {
  std::vector<PlacedText> texts;
  std::vector<int> rules;  // heights of lines across the page
};

// At least one page.
std::vector<PrintPage> LayOutPages(const PrintDocument& document, int width, int height,
                                   const TextMeasure& measure);

// The text in lines no wider than `width`; at least one. A word wider than that is broken within.
std::vector<std::string> BreakLines(std::string_view text, int width, PrintStyle style,
                                    const TextMeasure& measure);

}  // namespace tallwick
