// Texts: small helpers, the code page, the answers of boxes.
#include "core/text.h"

#include <gtest/gtest.h>

#include "core/encoding.h"
#include "core/message_boxes.h"

namespace tallwick {
namespace {

TEST(Text, Helpers) {
  using std::string_view_literals::operator""sv;
  EXPECT_EQ(Trim(" \t a b\r\n\0"sv), "a b");
  EXPECT_EQ(Trim(" \0"sv), "");
  EXPECT_EQ(TrimRight("  a \0"sv), "  a");
  EXPECT_TRUE(EqualsIgnoreCase("Escrow_9", "ESCROW_9"));
  EXPECT_FALSE(EqualsIgnoreCase("a", "ab"));
  EXPECT_FALSE(EqualsIgnoreCase("[", "{"));
  EXPECT_EQ(PadLeft("12", 4), "  12");
  EXPECT_EQ(PadRight("12345", 4), "12345");
  EXPECT_FALSE(IsAllDigits(""));
  EXPECT_FALSE(IsAllDigits("1 "));
  EXPECT_EQ(Split("a||b|", '|'), (std::vector<std::string>{"a", "", "b", ""}));
}

TEST(Encoding, EveryByteWithACharacterComesBack) {
  int without_character = 0;
  for (int byte = 0; byte < 256; ++byte) {
    const std::string bytes(1, static_cast<char>(byte));
    const std::string utf8 = FromWindows1252(bytes);
    if (utf8 == "\xEF\xBF\xBD") {
      ++without_character;
      EXPECT_FALSE(ToWindows1252(utf8).has_value());
    } else {
      EXPECT_EQ(ToWindows1252(utf8), bytes) << byte;
    }
  }
  EXPECT_EQ(without_character, 5);
  EXPECT_EQ(FromWindows1252("\x80 \xE9 \x9F"), "€ é Ÿ");
}

TEST(Encoding, WhatTheCodePageLacksIsNamed) {
  const std::pair<std::string, std::string> cases[] = {
      {"Müller – “Söhne” €", ""},
      {"Łódź Title", "Ł"},
      {"ok 漢字", "漢"},
      {"smile \xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
      {"\xC2\x81", "\xC2\x81"},          // a control character beside the code page
      {"a\xC3", "\xEF\xBF\xBD"},         // cut off
      {"\xC0\xAF", "\xEF\xBF\xBD"},      // overlong
      {"\xE0\x80\xAF", "\xEF\xBF\xBD"},  // overlong
      {"\xED\xA0\x80", "\xEF\xBF\xBD"},  // surrogate
      {"\xF4\x90\x80\x80", "\xEF\xBF\xBD"},
      {"\xE9", "\xEF\xBF\xBD"},
  };
  for (const auto& [text, character] : cases) {
    EXPECT_EQ(FirstCharacterOutside1252(text), character) << text;
    EXPECT_EQ(ToWindows1252(text).has_value(), character.empty()) << text;
  }
}

TEST(Encoding, UpperCaseOfAccentedLetters) {
  const std::pair<std::string, std::string> cases[] = {
      {"azAZ09", "AZAZ09"}, {"éàþ", "ÉÀÞ"}, {"÷×ß", "÷×ß"}, {"šœžÿ", "ŠŒŽŸ"}, {"ƒ€¢µ", "ƒ€¢µ"}};
  for (const auto& [lower, upper] : cases) {
    std::string bytes = ToWindows1252(lower).value();
    for (char& byte : bytes) byte = static_cast<char>(UpperWindows1252(static_cast<unsigned char>(byte)));
    EXPECT_EQ(FromWindows1252(bytes), upper);
  }
}

TEST(MessageBoxes, TheSafeAnswerChangesNothing) {
  const std::pair<BoxButtons, const char*> cases[] = {{BoxButtons::kOk, "OK"},
                                                      {BoxButtons::kOkCancel, "Cancel"},
                                                      {BoxButtons::kYesNo, "No"},
                                                      {BoxButtons::kYesNoCancel, "Cancel"},
                                                      {BoxButtons::kRetryCancel, "Cancel"}};
  for (const auto& [buttons, answer] : cases) {
    Box box;
    box.buttons = buttons;
    EXPECT_EQ(AnswerWord(SafeAnswer(box)), answer);
  }
}

}  // namespace
}  // namespace tallwick
