// Draws documents. What stands where is core's business (print_pages.h): this knows the letters, and puts the
// same pages on paper, into PDF files and into pictures. Lengths are twips, one of which is one pixel of a
// font: the same lines break at the same words on every device.
#pragma once

#include <QImage>
#include <QPagedPaintDevice>
#include <vector>

#include "core/print_document.h"

namespace tallwick {

// Letter paper with margins of half an inch, upright or across as the document says.
void SetPaper(const PrintDocument& document, QPagedPaintDevice& device);

// Which pages to draw, from 1; `last` 0 = up to the end.
struct PageRange {
  int first = 1;
  int last = 0;
};

// Draws on a device that SetPaper has prepared. False when the device could not be begun or did not take a
// page.
bool DrawDocument(const PrintDocument& document, QPagedPaintDevice& device, const PageRange& range = {});

// The pages as pictures of whole sheets, at this many dots to the inch.
std::vector<QImage> DrawPictures(const PrintDocument& document, int dots_per_inch);

}  // namespace tallwick
