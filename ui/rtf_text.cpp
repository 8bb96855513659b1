#include "ui/rtf_text.h"

#include <string>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

bool IsLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

int HexDigit(char character) {
  if (IsDigit(character)) return character - '0';
  const char lower = static_cast<char>(character | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 0;
}

class Reader {
 public:
  explicit Reader(std::string_view rtf) : rtf_(rtf) {}

  QString Html() {
    while (at_ < rtf_.size()) Step();
    return "<p>" + html_ + "</p>";
  }

 private:
  void Step() {
    const char character = rtf_[at_++];
    if (character == '{') {
      ++depth_;
    } else if (character == '}') {
      --depth_;
    } else if (character == '\\') {
      Escape();
    } else if (character != '\r' && character != '\n') {
      Add(character);
    }
  }
  void Escape() {
    if (at_ >= rtf_.size()) return;
    if (rtf_[at_] == '\'' && at_ + 2 < rtf_.size()) {
      Add(static_cast<char>(16 * HexDigit(rtf_[at_ + 1]) + HexDigit(rtf_[at_ + 2])));
      at_ += 3;
    } else if (!IsLetter(rtf_[at_])) {
      Add(rtf_[at_++]);
    } else {
      Word();
    }
  }
  void Word() {
    const std::size_t start = at_;
    while (at_ < rtf_.size() && IsLetter(rtf_[at_])) ++at_;
    while (at_ < rtf_.size() && IsDigit(rtf_[at_])) ++at_;
    const std::string_view word = rtf_.substr(start, at_ - start);
    if (at_ < rtf_.size() && rtf_[at_] == ' ') ++at_;  // the blank ends the word
    if (depth_ > 1) return;
    if (word == "par") html_ += "<br>";
    if (word == "b") html_ += "<b>";
    if (word == "b0") html_ += "</b>";
  }
  void Add(char byte) {
    if (depth_ <= 1) html_ += QString::fromStdString(FromWindows1252(std::string(1, byte))).toHtmlEscaped();
  }

  std::string_view rtf_;
  std::size_t at_ = 0;
  int depth_ = 0;
  QString html_;
};

}  // namespace

bool IsRtf(std::string_view text) {
  return text.substr(0, 5) == "{\\rtf";
}

QString HtmlOfRtf(std::string_view rtf) {
  return Reader(rtf).Html();
}

}  // namespace tallwick
