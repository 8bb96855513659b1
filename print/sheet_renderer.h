// Draws sheets at their exact size: nothing is scaled to what a printer can reach, as checks are read by
// machines.
#pragma once

#include <QImage>
#include <QPagedPaintDevice>
#include <vector>

#include "core/sheet.h"

namespace tallwick {

class LetterMeasure : public SheetMeasure {
 public:
  double Width(const SheetFont& font, std::string_view text) const override;
};

bool HasLetters(std::string_view family);

// The whole sheet without margins; what a printer cannot reach stays white.
void SetSheetPaper(double width, double height, QPagedPaintDevice& device);

// Draws on a device that SetSheetPaper has prepared. False when the device could not be begun or did not take
// a page.
bool DrawSheets(const SheetDocument& document, QPagedPaintDevice& device);

// The sheets as pictures, at this many dots to the inch.
std::vector<QImage> DrawSheetPictures(const SheetDocument& document, int dots_per_inch);

}  // namespace tallwick
