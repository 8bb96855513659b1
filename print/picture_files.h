// Pictures of pages as PNG files.
#pragma once

#include <QImage>
#include <string>
#include <vector>

namespace tallwick {

// Picture n goes to `stem` + "-n.png", `stem` in the platform's form. How many were written, 0 when one could
// not be.
int WritePictureFiles(const std::vector<QImage>& pictures, const std::string& stem);

}  // namespace tallwick
