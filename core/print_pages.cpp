#include "core/print_pages.h"

#include <algorithm>
#include <cstdlib>

#include "core/text.h"

namespace tallwick {
namespace {

constexpr int kCellGap = 120;  // between the text of a cell and the next cell

struct Cell {
  char alignment = '<';
  int width = 0;
};

std::vector<Cell> CellsOf(const std::string& columns, int page_width) {
  if (columns.empty()) return {{'<', page_width}};
  std::vector<Cell> cells;
  for (const std::string& format : Split(columns, '|')) {
    const std::size_t plus = format.find('+');
    const int width = plus == std::string::npos ? 0 : std::atoi(format.c_str() + plus + 1);
    cells.push_back({format.empty() ? '<' : format.front(), std::max(width, 0)});
  }
  return cells;
}

// The bytes of the UTF-8 character that a text begins with.
std::size_t CharacterLength(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) ++length;
  return length;
}

// A row ready to be placed: its texts relative to its upper left corner.
struct Block {
  std::vector<PlacedText> texts;
  int height = 0;
  bool with_next = false;
};

Block BlockOf(const PrintRow& row, int page_width, const TextMeasure& measure) {
  Block block;
  const std::vector<Cell> cells = CellsOf(row.columns, page_width);
  const int line_height = measure.LineHeight(row.style);
  block.height = line_height;
  block.with_next = row.with_next;
  int x = 0;
  for (std::size_t i = 0; i < cells.size() && i < row.cells.size(); ++i) {
    const int room = std::max(cells[i].width - (i + 1 < cells.size() ? kCellGap : 0), 1);
    int y = 0;
    for (std::string& line : BreakLines(row.cells[i], room, row.style, measure)) {
      block.texts.push_back({x, y, room, cells[i].alignment, row.style, std::move(line)});
      y += line_height;
    }
    block.height = std::max(block.height, y);
    x += cells[i].width;
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
    pages_.emplace_back();
    for (std::size_t i = 0; i <= document_.rows.size(); ++i) {
      if (i == document_.heading_at) PlaceHeading();
      if (i < document_.rows.size()) PlaceRow(i);
    }
    for (std::size_t i = 0; i < pages_.size(); ++i) PlaceFooter(i);
    return std::move(pages_);
  }

 private:
  void PlaceRow(std::size_t place) {
    const Block block = BlockOf(document_.rows[place], width_, measure_);
    int needed = block.height;
    if (block.with_next && place + 1 < document_.rows.size())
      needed += BlockOf(document_.rows[place + 1], width_, measure_).height;
    if (y_ + needed > bottom_ && y_ > top_) StartPage(place);
    Place(block);
  }

  void StartPage(std::size_t place) {
    pages_.emplace_back();
    y_ = 0;
    if (place >= document_.heading_at) PlaceHeading();
    top_ = y_;
  }

  void PlaceHeading() {
    for (const PrintRow& row : document_.heading) Place(BlockOf(row, width_, measure_));
    if (!document_.heading.empty()) pages_.back().rules.push_back(y_);
  }

  // A block taller than what is left goes on over the next pages, line by line.
  void Place(const Block& block) {
    int offset = y_;
    for (PlacedText text : block.texts) {
      const int line_height = measure_.LineHeight(text.style);
      if (offset + text.y + line_height > bottom_ && offset + text.y > 0) {
        pages_.emplace_back();
        offset = -text.y;
      }
      text.y += offset;
      pages_.back().texts.push_back(std::move(text));
    }
    y_ = offset + block.height;
  }

  void PlaceFooter(std::size_t page) {
    const std::string text = "Page " + std::to_string(page + 1) + " of " + std::to_string(pages_.size());
    pages_[page].texts.push_back({0, height_ - footer_height_, width_, '^', PrintStyle::kText, text});
  }

  const PrintDocument& document_;
  int width_;
  int height_ = 0;
  int bottom_ = 0;
  int footer_height_ = 0;
  const TextMeasure& measure_;
  std::vector<PrintPage> pages_;
  int y_ = 0;
  int top_ = 0;  // where rows begin on this page
};

}  // namespace

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
