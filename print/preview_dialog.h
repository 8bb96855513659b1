// A preview with its commands in sight: "Print" and "Page setup" in words, all of them in a window that is wide
// enough for its tool bar, and Ctrl+P for "Print".
#pragma once

#include <QPrintPreviewDialog>
#include <functional>
#include <string>

namespace tallwick {

// Dresses the toolkit's dialog, with the title. Where `save_pdf` is given, a button that calls it stands beside
// "Print".
void DressPreview(QPrintPreviewDialog& dialog, const std::string& title,
                  const std::function<void()>& save_pdf = {});

}  // namespace tallwick
