#include "checks/micr_glyphs.h"

#include <algorithm>

namespace tallwick {
namespace {

using Rows = std::array<std::string_view, kMicrRows>;

struct Glyph {
  char code;
  Rows rows;
};

constexpr Glyph kGlyphs[] = {
    {'0',
     {"#######",  //
      "#.....#",  //
      "#.....#",  //
      "#.....#",  //
      "#.....#",  //
      "#.....#",  //
      "#.....#",  //
      "#.....#",  //
      "#######"}},
    {'1',
     {"...###.",  //
      "....##.",  //
      "....##.",  //
      "....##.",  //
      "....##.",  //
      "...####",  //
      "...####",  //
      "...####",  //
      "...####"}},
    {'2',
     {"...####",  //
      "......#",  //
      "......#",  //
      "......#",  //
      "...####",  //
      "...#...",  //
      "...#...",  //
      "...#...",  //
      "...####"}},
    {'3',
     {"..####.",  //
      ".....#.",  //
      ".....#.",  //
      ".....#.",  //
      "..#####",  //
      ".....##",  //
      ".....##",  //
      ".....##",  //
      "..#####"}},
    {'4',
     {"##.....",  //
      "##.....",  //
      "##.....",  //
      "##.....",  //
      "##...##",  //
      "#######",  //
      ".....##",  //
      ".....##",  //
      ".....##"}},
    {'5',
     {"..#####",  //
      "..#....",  //
      "..#....",  //
      "..#....",  //
      "..#####",  //
      "......#",  //
      "......#",  //
      "......#",  //
      "..#####"}},
    {'6',
     {".##....",  //
      ".#.....",  //
      ".#.....",  //
      ".#.....",  //
      ".######",  //
      ".#....#",  //
      ".#....#",  //
      ".#....#",  //
      ".######"}},
    {'7',
     {"..#####",  //
      "..#...#",  //
      "......#",  //
      "......#",  //
      "....###",  //
      "....#..",  //
      "....#..",  //
      "....#..",  //
      "....#.."}},
    {'8',
     {".#####.",  //
      ".#...#.",  //
      ".#...#.",  //
      ".#...#.",  //
      "#######",  //
      "##...##",  //
      "##...##",  //
      "##...##",  //
      "#######"}},
    {'9',
     {".######",  //
      ".#....#",  //
      ".#....#",  //
      ".#....#",  //
      ".######",  //
      ".....##",  //
      ".....##",  //
      ".....##",  //
      ".....##"}},
    {'A',
     {"....###",  //
      "##..###",  //
      "##..###",  //
      "##.....",  //
      "##.....",  //
      "##.....",  //
      "##..###",  //
      "##..###",  //
      "....###"}},
    {'B',
     {".......",  //
      ".....##",  //
      ".....##",  //
      "...#.##",  //
      "...#...",  //
      "...#...",  //
      "##.#...",  //
      "##.....",  //
      "##....."}},
    {'C',
     {".....##",  //
      "#.#..##",  //
      "#.#..##",  //
      "#.#....",  //
      "#.#....",  //
      "#.#....",  //
      "#.#....",  //
      "#.#....",  //
      "#.#...."}},
    {'D',
     {".......",  //
      ".......",  //
      ".......",  //
      "##.##.#",  //
      "##.##.#",  //
      "##.##.#",  //
      ".......",  //
      ".......",  //
      "......."}},
};

struct Cells {
  int row, column, rows, columns;
  friend bool operator==(const Cells&, const Cells&) = default;
};

bool IsInk(const Rows& rows, const Cells& cells) {
  if (cells.row + cells.rows > kMicrRows || cells.column + cells.columns > kMicrColumns) return false;
  for (int row = cells.row; row < cells.row + cells.rows; ++row) {
    const std::string_view ink = rows[static_cast<std::size_t>(row)].substr(
        static_cast<std::size_t>(cells.column), static_cast<std::size_t>(cells.columns));
    if (ink.find('.') != std::string_view::npos) return false;
  }
  return true;
}

void Grow(const Rows& rows, Cells& cells, int Cells::*side) {
  while (IsInk(rows, cells)) ++(cells.*side);
  --(cells.*side);
}

bool Covers(const Cells& one, const Cells& other) {
  return one.row <= other.row && one.column <= other.column && one.row + one.rows >= other.row + other.rows &&
         one.column + one.columns >= other.column + other.columns;
}

// Adds the rectangle of ink that grows from a cell to the right and down, unless a known one covers it.
void AddGrown(const Rows& rows, Cells cells, bool wide_first, std::vector<Cells>* grown) {
  Grow(rows, cells, wide_first ? &Cells::columns : &Cells::rows);
  Grow(rows, cells, wide_first ? &Cells::rows : &Cells::columns);
  const bool covered =
      std::any_of(grown->begin(), grown->end(), [&](const Cells& known) { return Covers(known, cells); });
  if (!covered) grown->push_back(cells);
}

// The rectangles that grow from each cell, first to the right and first down. Together they cover all ink.
std::vector<Cells> InkRectangles(const Rows& rows) {
  std::vector<Cells> grown;
  for (int row = 0; row < kMicrRows; ++row) {
    for (int column = 0; column < kMicrColumns; ++column) {
      const Cells cells{row, column, 1, 1};
      if (!IsInk(rows, cells)) continue;
      for (const bool wide_first : {true, false}) AddGrown(rows, cells, wide_first, &grown);
    }
  }
  return grown;
}

}  // namespace

const Rows* MicrGlyph(char code) {
  const auto* found = std::find_if(std::begin(kGlyphs), std::end(kGlyphs),
                                   [code](const Glyph& glyph) { return glyph.code == code; });
  return found == std::end(kGlyphs) ? nullptr : &found->rows;
}

std::vector<SheetRect> MicrBars(char code, double right, double baseline) {
  const Rows* rows = MicrGlyph(code);
  if (rows == nullptr) return {};
  const std::vector<Cells> grown = InkRectangles(*rows);
  std::vector<SheetRect> bars;
  bars.reserve(grown.size());
  for (const Cells& cells : grown) {
    bars.push_back({right - (kMicrColumns - cells.column) * kMicrCell,
                    baseline - (kMicrRows - cells.row) * kMicrCell, cells.columns * kMicrCell,
                    cells.rows * kMicrCell});
  }
  return bars;
}

}  // namespace tallwick
