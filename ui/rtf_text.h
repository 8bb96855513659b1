// The little of RTF that the program's own texts use, for widgets that speak HTML: paragraphs, bold, and the
// escapes.
#pragma once

#include <QString>
#include <string_view>

namespace tallwick {

bool IsRtf(std::string_view text);
// The text as HTML. Control words beyond \b, \b0, \par and \'hh, and what stands in groups within, are left
// out.
QString HtmlOfRtf(std::string_view rtf);

}  // namespace tallwick
