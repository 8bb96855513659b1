// UTF-8 in memory, Windows-1252 on disk.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallwick {

// Windows-1252 bytes of a UTF-8 text; nullopt when the text is no UTF-8 or holds a character that the code
// page lacks.
std::optional<std::string> ToWindows1252(std::string_view utf8);
// UTF-8 of Windows-1252 bytes. The five bytes without a character become U+FFFD, which
// ToWindows1252 refuses. Never fails.
std::string FromWindows1252(std::string_view bytes);
// The bytes behind the mark that some editors put in front of UTF-8, where nobody sees it.
std::string_view WithoutTextMark(std::string_view bytes);
// UTF-8 of a text file's bytes, which any editor may have saved: UTF-8 with its mark or without, else
// Windows-1252.
std::string FromTextFile(std::string_view bytes);
// The first character (as UTF-8) that Windows-1252 lacks, "" when there is none. Bytes that are
// no UTF-8 count as U+FFFD.
std::string FirstCharacterOutside1252(std::string_view utf8);
// Upper case of one Windows-1252 byte, accented letters included: the rule of index keys.
unsigned char UpperWindows1252(unsigned char byte);

}  // namespace tallwick
