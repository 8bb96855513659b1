// A PDF file around whatever is drawn into it.
#pragma once

#include <QPdfWriter>
#include <functional>
#include <string>

namespace tallwick {

// `path` in the platform's form, `title` for the file's properties. False when `draw` failed or the file
// could not be written; what was there before is then as it was.
bool WritePdfFile(const std::string& path, const std::string& title,
                  const std::function<bool(QPdfWriter&)>& draw);

}  // namespace tallwick
