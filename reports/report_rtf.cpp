#include "reports/report_rtf.h"

#include <cmath>

#include "core/encoding.h"
#include "core/print_pages.h"
#include "core/text.h"

namespace tallwick {
namespace {

constexpr int kShortSide = 12240;  // letter paper
constexpr int kLongSide = 15840;
constexpr int kMargin = 720;
constexpr int kHalfPoints = 20;  // of the text in rows: 10 points
constexpr int kHeadingHalfPoints = 18;
constexpr int kSmallHalfPoints = 16;
constexpr int kTwipsPerHalfPoint = 10;

// Widths of the bold serif letters from blank to "~", in thousandths of the size; the plain ones are no
// wider.
constexpr short kLetterWidths[] = {
    250, 333, 555, 500, 500, 1000, 833, 278,  333, 333, 500, 570, 250, 333, 250, 278,  //
    500, 500, 500, 500, 500, 500,  500, 500,  500, 500, 333, 333, 570, 570, 570, 500,  //
    930, 722, 667, 722, 722, 667,  611, 778,  778, 389, 500, 778, 667, 944, 722, 778,  //
    611, 778, 722, 556, 667, 722,  722, 1000, 722, 722, 667, 333, 278, 333, 581, 500,  //
    333, 500, 556, 444, 556, 444,  333, 500,  556, 278, 333, 556, 278, 833, 556, 500,  //
    556, 556, 444, 389, 333, 556,  500, 722,  500, 500, 444, 394, 220, 394, 520};
constexpr int kOtherLetter = 722;
constexpr double kSansSerif = 1.1;  // how much wider the headings' letters are

// A word processor breaks lines itself; what it must be told is how small a word has to be.
class LetterTable : public TextMeasure {
 public:
  int Width(PrintStyle style, std::string_view text) const override {
    double thousandths = 0;
    for (const char c : text) {
      const auto letter = static_cast<unsigned char>(c);
      if ((letter & 0xC0) == 0x80) continue;
      const bool known = letter >= ' ' && letter <= '~';
      thousandths += known ? kLetterWidths[letter - ' '] : kOtherLetter;
    }
    const bool heading = style == PrintStyle::kHeading;
    const double size = (heading ? kHeadingHalfPoints * kSansSerif : kHalfPoints) * kTwipsPerHalfPoint;
    return static_cast<int>(std::ceil(thousandths * size / 1000));
  }
  int LineHeight(PrintStyle) const override { return 0; }
};

std::string Escaped(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string readable(text);
  for (std::string odd = FirstCharacterOutside1252(readable); !odd.empty();
       odd = FirstCharacterOutside1252(readable)) {
    const std::size_t at = readable.find(odd);
    if (at == std::string::npos) return {};
    readable.replace(at, odd.size(), "?");
  }
  std::string escaped;
  for (const char c : ToWindows1252(readable).value_or("")) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\' || c == '{' || c == '}') {
      escaped += '\\';
      escaped += c;
    } else if (c == '\n') {
      escaped += "\\line ";
    } else if (byte >= 0x80) {
      escaped += std::string("\\'") + kHex[byte >> 4] + kHex[byte & 15];
    } else if (byte >= ' ') {
      escaped += c;
    }
  }
  return escaped;
}

std::string Word(std::string_view word, int number) {
  return "\\" + std::string(word) + std::to_string(number);
}

struct RowLook {
  PrintStyle style = PrintStyle::kRow;
  const char* letters = "";
  int half_points = kHalfPoints;
  const char* row_words = "";
  const char* cell_words = "";
  bool with_next = false;
};

RowLook LookOf(ReportRow::Kind kind) {
  switch (kind) {
    case ReportRow::Kind::kSubtotal:
      return {PrintStyle::kTotal, "\\f0\\b", kHalfPoints};
    case ReportRow::Kind::kRemark:
      return {PrintStyle::kSmall, "\\f1", kSmallHalfPoints};
    case ReportRow::Kind::kPlain:
      break;
  }
  return {PrintStyle::kRow, "\\f0", kHalfPoints};
}

const char* AlignmentWord(char alignment) {
  return alignment == '>' ? "\\qr" : alignment == '^' ? "\\qc" : "\\ql";
}

class RtfWriter {
 public:
  explicit RtfWriter(const ReportDocument& report) : report_(report) {}

  std::string Run() {
    AddHead();
    AddPageHead();
    AddPageFoot();
    for (std::size_t i = 0; i < report_.tables.size(); ++i) {
      if (i > 0) text_ += "\\pard\\plain\\fs16\\par\n";
      AddTable(report_.tables[i]);
    }
    // A document does not end in a table.
    text_ += "\\pard\\plain\\fs4\\par\n}\n";
    return std::move(text_);
  }

 private:
  int LineWidth() const { return (report_.landscape ? kLongSide : kShortSide) - 2 * kMargin; }

  void AddHead() {
    text_ =
        "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\n"
        "{\\fonttbl{\\f0\\froman\\fcharset0 Times New Roman;}{\\f1\\fswiss\\fcharset0 Arial;}}\n"
        "{\\info{\\title " +
        Escaped(report_.title) + "}{\\author " + Escaped(report_.origin.user) + "}{\\*\\category " +
        Escaped(report_.group) + "}{\\*\\company " + Escaped(report_.origin.company) + "}}\n";
    const bool across = report_.landscape;
    text_ +=
        Word("paperw", across ? kLongSide : kShortSide) + Word("paperh", across ? kShortSide : kLongSide);
    if (across) text_ += "\\landscape";
    text_ += Word("margl", kMargin) + Word("margr", kMargin) + Word("margt", 2 * kMargin) +
             Word("margb", 2 * kMargin) + Word("headery", kMargin) + Word("footery", kMargin) + "\n";
  }

  void AddPageHead() {
    text_ += "{\\header\\pard\\plain\\f1\\fs24\\b " + Escaped(HeadLine(report_)) + "\\par\n" +
             "\\pard\\plain\\tqr" + Word("tx", LineWidth()) + "\\f1" + Word("fs", kSmallHalfPoints) + " " +
             Escaped(VersionLine(report_)) + "\\tab " + Escaped(report_.group) +
             "\\par\\pard\\plain\\fs16\\par}\n";
  }

  void AddPageFoot() {
    const std::string page_field = "{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}";
    const std::string pages_field = "{\\field{\\*\\fldinst NUMPAGES}{\\fldrslt 1}}";
    text_ += "{\\footer\\pard\\plain\\tqr" + Word("tx", LineWidth()) + "\\f1" + Word("fs", kSmallHalfPoints) +
             " " + Escaped(report_.origin.company) + "\\tab\\f0\\fs20 Page " + page_field + " of " +
             pages_field + "\\par}\n";
  }

  void AddTable(const ReportTable& table) {
    if (!table.caption.empty())
      text_ += "\\pard\\plain\\keepn\\f1\\b\\fs20 " + Escaped(table.caption) + "\\par\n";
    if (!table.headings.empty())
      AddRow(table.format, Split(table.headings, '|'),
             {PrintStyle::kHeading, "\\f1\\b", kHeadingHalfPoints, "\\trhdr", "\\clbrdrb\\brdrs\\brdrw10",
              true});
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
      const ReportRow& row = table.rows[i];
      RowLook look = LookOf(row.kind);
      look.with_next = i + 1 < table.rows.size() && table.rows[i + 1].kind == ReportRow::Kind::kSubtotal;
      AddRow(row.format.empty() ? table.format : row.format, row.cells, look);
    }
  }

  void AddRow(const std::string& format, std::vector<std::string> cells, const RowLook& look) {
    std::vector<ColumnFormat> columns = ParseColumnFormats(format);
    cells.resize(columns.size());
    JoinCells(columns, cells, look.style);
    text_ += "\\trowd" + Word("trgaph", kColumnGap / 2) + "\\trleft0\\trkeep";
    text_ += look.row_words;
    int edge = 0;
    for (const ColumnFormat& column : columns) {
      edge += column.width;
      text_ += look.cell_words + Word("cellx", edge);
    }
    text_ += "\n";
    for (std::size_t i = 0; i < columns.size(); ++i) AddCell(columns[i], cells[i], look);
    text_ += "\\row\n";
  }

  // A text that takes the room of the cell before it has one cell of both.
  void JoinCells(std::vector<ColumnFormat>& columns, std::vector<std::string>& cells,
                 PrintStyle style) const {
    for (std::size_t place = columns.size(); place-- > 1;) {
      if (!TakesCellBefore(columns, cells, place, style, letters_)) continue;
      const auto before = static_cast<std::ptrdiff_t>(place) - 1;
      columns[place] = {'>', columns[place - 1].width + columns[place].width};
      columns.erase(columns.begin() + before);
      cells.erase(cells.begin() + before);
      --place;
    }
  }

  void AddCell(const ColumnFormat& column, const std::string& cell, const RowLook& look) {
    const TextFit fit = FitText(cell, column.width - kColumnGap, column.alignment, look.style, letters_);
    text_ += "\\pard\\plain\\intbl";
    text_ += AlignmentWord(column.alignment);
    if (look.with_next) text_ += "\\keepn";
    text_ += look.letters + Word("fs", static_cast<int>(look.half_points * fit.size));
    if (fit.stretch < 1) text_ += Word("charscalex", static_cast<int>(100 * fit.stretch));
    text_ += " " + Escaped(cell) + "\\cell\n";
  }

  const ReportDocument& report_;
  const LetterTable letters_;
  std::string text_;
};

}  // namespace

std::string MakeRtf(const ReportDocument& report) {
  return RtfWriter(report).Run();
}

}  // namespace tallwick
