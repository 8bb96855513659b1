// Documents in files: PDF, and PNG pictures of their pages. Works in a program without Qt's application
// object too, as long as no other thread makes one.
#pragma once

#include <string>

#include "core/print_document.h"

namespace tallwick {

// `path` in the platform's form. False when the file could not be written; an older one is then as it was.
bool WritePdf(const PrintDocument& document, const std::string& path);

// Page n goes to `stem` + "-n.png". The number of pages written, 0 when one could not be.
int WritePictures(const PrintDocument& document, const std::string& stem, int dots_per_inch);

}  // namespace tallwick
