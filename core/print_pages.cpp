#include "core/print_pages.h"

#include <algorithm>
#include <cmath>

#include "core/text.h"

namespace tallwick {
namespace {

constexpr double kSmallest = 0.65;   // of the style's size; below that letters are made narrower
constexpr double kNarrowest = 0.6;   // of the letters' width
constexpr int kNarrowColumn = 1500;  // here a text is rather set smaller than broken between words

// The bytes of the UTF-8 character that a text begins with.
std::size_t CharacterLength(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) ++length;
  return length;
}

// The widest piece that no line break falls into.
int WidestPiece(std::string_view text, char alignment, PrintStyle style, const TextMeasure& measure) {
  if (alignment == '>') return measure.Width(style, text);
  int widest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (end > 0) widest = std::max(widest, measure.Width(style, text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return widest;
}

// The outer edges of a table need no gap.
int LeftGap(std::size_t place) {
  return place > 0 ? kColumnGap / 2 : 0;
}

// What a column has for its text.
int RoomOf(const std::vector<ColumnFormat>& columns, std::size_t place) {
  const int right = place + 1 < columns.size() ? kColumnGap / 2 : 0;
  return std::max(columns[place].width - LeftGap(place) - right, 1);
}

// Where the text of a cell may stand.
PlacedText CellOf(const std::vector<ColumnFormat>& columns, const PrintRow& row, std::size_t place, int x,
                  const TextMeasure& measure) {
  PlacedText cell{x + LeftGap(place), 0, RoomOf(columns, place), columns[place].alignment, row.style, {}};
  if (TakesCellBefore(columns, row.cells, place, row.style, measure)) {
    cell.x -= columns[place - 1].width;
    cell.width += columns[place - 1].width;
    cell.alignment = '>';
  }
  return cell;
}

// A row ready to be placed: its texts relative to its upper left corner.
struct Block {
  std::vector<PlacedText> texts;
  int height = 0;
  bool with_next = false;
};

void PlaceCell(Block& block, PlacedText cell, std::string_view text, int line_height,
               const TextMeasure& measure) {
  cell.fit = FitText(text, cell.width, cell.alignment, cell.style, measure);
  const int room = static_cast<int>(std::lround(cell.width / cell.fit.Scale()));
  std::vector<std::string> lines{std::string(text)};
  if (cell.alignment != '>') lines = BreakLines(text, room, cell.style, measure);
  for (std::string& line : lines) {
    cell.text = std::move(line);
    block.texts.push_back(cell);
    cell.y += line_height;
  }
  block.height = std::max(block.height, cell.y);
}

Block BlockOf(const PrintRow& row, int page_width, const TextMeasure& measure) {
  Block block;
  const std::vector<ColumnFormat> columns =
      row.columns.empty() ? std::vector<ColumnFormat>{{'<', page_width}} : ParseColumnFormats(row.columns);
  const int line_height = measure.LineHeight(row.style);
  block.height = line_height;
  block.with_next = row.with_next;
  int x = 0;
  for (std::size_t i = 0; i < columns.size() && i < row.cells.size(); ++i) {
    if (!row.cells[i].empty())
      PlaceCell(block, CellOf(columns, row, i, x, measure), row.cells[i], line_height, measure);
    x += columns[i].width;
  }
  return block;
}

class Paginator {
 public:
  Paginator(const PrintDocument& document, int width, int height, const TextMeasure& measure)
      : document_(document), width_(width), measure_(measure) {
    footer_height_ = measure.LineHeight(PrintStyle::kText);
    height_ = height;
    bottom_ = height - 2 * footer_height_;
  }

  std::vector<PrintPage> Run() {
    BeginPage();
    for (const PrintSection& section : document_.sections) {
      section_ = &section;
      PlaceSection();
    }
    for (std::size_t i = 0; i < pages_.size(); ++i) PlaceFooter(i);
    return std::move(pages_);
  }

 private:
  // Headings stay with the first row, and every row with those after it that it is tied to.
  void PlaceSection() {
    std::vector<Block> rows;
    for (std::size_t first = 0; first == 0 || first < section_->rows.size(); first += rows.size()) {
      rows.clear();
      int needed = first == 0 ? HeadingHeight() : 0;
      for (std::size_t i = first; i < section_->rows.size(); ++i) {
        rows.push_back(BlockOf(section_->rows[i], width_, measure_));
        needed += rows.back().height;
        if (!rows.back().with_next) break;
      }
      if (y_ + needed > bottom_ && y_ > top_) {
        BeginPage();
        if (first > 0) PlaceHeading();
      }
      if (first == 0) PlaceHeading();
      for (const Block& block : rows) Place(block);
      if (rows.empty()) return;
    }
  }

  int HeadingHeight() const {
    int height = 0;
    for (const PrintRow& row : section_->heading) height += BlockOf(row, width_, measure_).height;
    return height;
  }

  void PlaceHeading() {
    if (pages_.back().texts.size() == header_texts_) {
      for (const PrintRow& row : section_->page_heading) Place(BlockOf(row, width_, measure_));
    }
    for (const PrintRow& row : section_->heading) Place(BlockOf(row, width_, measure_));
    if (!section_->heading.empty()) pages_.back().rules.push_back(y_);
  }

  void BeginPage() {
    pages_.emplace_back();
    y_ = 0;
    for (const PrintRow& row : document_.header) {
      Block block = BlockOf(row, width_, measure_);
      for (PlacedText& text : block.texts) {
        text.y += y_;
        pages_.back().texts.push_back(std::move(text));
      }
      y_ += block.height;
    }
    top_ = y_;
    header_texts_ = pages_.back().texts.size();
  }

  // Rows that no page can hold together go on over the next pages, line by line.
  void Place(const Block& block) {
    if (block.texts.empty() && y_ + block.height > bottom_) return;
    int offset = y_;
    int broken_at = 0;  // lines from here on stand on the page begun last
    for (const PlacedText& line : LinesInOrder(block)) {
      PlacedText text = line;
      const int line_height = measure_.LineHeight(text.style);
      if (text.y >= broken_at && offset + text.y + line_height > bottom_ && offset + text.y > top_) {
        BeginPage();
        offset = top_ - text.y;
        broken_at = text.y;
      }
      text.y += offset;
      pages_.back().texts.push_back(std::move(text));
    }
    y_ = offset + block.height;
  }

  static std::vector<PlacedText> LinesInOrder(const Block& block) {
    std::vector<PlacedText> lines = block.texts;
    std::stable_sort(lines.begin(), lines.end(),
                     [](const PlacedText& left, const PlacedText& right) { return left.y < right.y; });
    return lines;
  }

  void PlaceFooter(std::size_t page) {
    const std::string number = "Page " + std::to_string(page + 1) + " of " + std::to_string(pages_.size());
    const int y = height_ - footer_height_;
    const bool centred = document_.footer.empty();
    if (!centred) {
      Block block;
      PlaceCell(block, {0, y, width_ * 3 / 4, '<', PrintStyle::kSmall, {}}, document_.footer, footer_height_,
                measure_);
      pages_[page].texts.push_back(block.texts.front());
    }
    pages_[page].texts.push_back({0, y, width_, centred ? '^' : '>', PrintStyle::kText, number});
  }

  const PrintDocument& document_;
  int width_;
  int height_ = 0;
  int bottom_ = 0;
  int footer_height_ = 0;
  const TextMeasure& measure_;
  const PrintSection* section_ = nullptr;
  std::vector<PrintPage> pages_;
  int y_ = 0;
  int top_ = 0;                   // where rows begin on this page, headings included
  std::size_t header_texts_ = 0;  // of the page
};

}  // namespace

bool TakesCellBefore(const std::vector<ColumnFormat>& columns, const std::vector<std::string>& cells,
                     std::size_t place, PrintStyle style, const TextMeasure& measure) {
  return place > 0 && columns[place].alignment != '<' && cells[place - 1].empty() &&
         columns[place].width < kNarrowColumn && measure.Width(style, cells[place]) > RoomOf(columns, place);
}

TextFit FitText(std::string_view text, int width, char alignment, PrintStyle style,
                const TextMeasure& measure) {
  if (width < kNarrowColumn) {
    const int whole = measure.Width(style, text);
    if (whole > width && width >= kSmallest * whole) return {static_cast<double>(width) / whole, 1};
  }
  const int widest = WidestPiece(text, alignment, style, measure);
  if (widest <= width || width <= 0) return {};
  const double scale = static_cast<double>(width) / widest;
  if (scale >= kSmallest) return {scale, 1};
  if (scale >= kSmallest * kNarrowest) return {kSmallest, scale / kSmallest};
  if (alignment == '>') return {scale / kNarrowest, kNarrowest};
  return {kSmallest, kNarrowest};
}

std::vector<std::string> BreakLines(std::string_view text, int width, PrintStyle style,
                                    const TextMeasure& measure) {
  std::vector<std::string> lines;
  while (!text.empty() && measure.Width(style, text) > width) {
    std::size_t fits = 0;   // bytes that fit
    std::size_t blank = 0;  // where the last blank among them is
    while (fits < text.size()) {
      const std::size_t next = fits + CharacterLength(text.substr(fits));
      if (measure.Width(style, text.substr(0, next)) > width) break;
      if (text[fits] == ' ') blank = fits;
      fits = next;
    }
    if (fits < text.size() && text[fits] == ' ') blank = fits;
    const std::size_t end = blank > 0 ? blank : std::max(fits, CharacterLength(text));
    lines.emplace_back(TrimRight(text.substr(0, end)));
    text.remove_prefix(end);
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  }
  if (!text.empty() || lines.empty()) lines.emplace_back(text);
  return lines;
}

std::vector<PrintPage> LayOutPages(const PrintDocument& document, int width, int height,
                                   const TextMeasure& measure) {
  return Paginator(document, width, height, measure).Run();
}

}  // namespace tallwick
