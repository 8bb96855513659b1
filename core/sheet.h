// Sheets on which everything has its place to the fraction of a millimetre, such as checks on their stock,
// and the port that shows and prints them. Lengths are millimetres from the paper's upper left corner.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tallwick {

inline constexpr double kMillimetresPerInch = 25.4;
// A line of text is this much higher than its letters' size, and stands on its baseline at this share of it.
inline constexpr double kSheetLineSpacing = 1.2;
inline constexpr double kSheetBaseline = 0.79;

struct SheetFont {
  std::string family;  // of an installed font; "" = the plain letters of the program
  double points = 10;
  bool bold = false;
  friend bool operator==(const SheetFont&, const SheetFont&) = default;
};

// Height of a line in millimetres.
constexpr double SheetLineHeight(double points) {
  return points * kSheetLineSpacing * kMillimetresPerInch / 72;
}

struct SheetRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  double Right() const { return x + width; }
  double Bottom() const { return y + height; }
  friend bool operator==(const SheetRect&, const SheetRect&) = default;
};

// One line. `box` is exactly what it covers; one with an angle is turned about the box's lower left corner.
struct SheetText {
  std::string text;  // UTF-8
  SheetRect box;
  SheetFont font;
  double stretch = 1;  // of the letters' width, 1 or less
  int grey = 0;        // 0 = black to 255 = white
  double angle = 0;    // degrees, counterclockwise
};

struct SheetPage {
  std::vector<SheetText> background;  // below everything else
  std::vector<SheetText> texts;
  std::vector<SheetText> micro;  // letters so small that they are a line to the eye; they may cross others
  std::vector<SheetRect> bars;   // filled with black
};

struct SheetDocument {
  std::string name;  // proposed as the file name, without folder and extension
  double width = 215.9;
  double height = 279.4;
  int prints = 1;  // how often each sheet stands among the pages
  std::vector<SheetPage> pages;
};

// Whoever draws tells how wide texts are, in millimetres.
class SheetMeasure {
 public:
  virtual ~SheetMeasure() = default;
  virtual double Width(const SheetFont& font, std::string_view text) const = 0;
};

// What the person has chosen.
struct SheetOrder {
  std::string printer;  // "" for a file
  int prints = 0;       // 0 = as many as whoever makes the sheets has for a rule
};

using SheetMaker = std::function<SheetDocument(const SheetMeasure& measure, const SheetOrder& order)>;

// What came of sheets that were to be printed.
enum class SheetEnd {
  kPrinted,  // every page is on paper, or in the file that stands for it
  kNothing,  // none is
  kUnknown,  // the printer has failed: some may be
};

class SheetPrinter {
 public:
  virtual ~SheetPrinter() = default;
  virtual bool HasFont(std::string_view family) = 0;
  // How wide texts will be, whichever printer is chosen.
  virtual const SheetMeasure& Measure() = 0;
  // They ask what they need to know and report their own failures; from a preview the user may print.
  virtual SheetEnd Preview(const SheetMaker& make) = 0;
  virtual SheetEnd Print(const SheetMaker& make) = 0;
};

}  // namespace tallwick
