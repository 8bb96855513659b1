#include "checks/micr_line.h"

#include <algorithm>

#include "checks/micr_glyphs.h"
#include "core/text.h"

namespace tallwick {
namespace {

constexpr int kOnUsFirst = 14;
constexpr int kOnUsLast = 31;
constexpr int kTransitFirst = 33;
constexpr int kAuxiliaryFirst = 45;
constexpr int kAuxiliaryLast = 65;  // the last position of a check of 8.5 inches
constexpr std::size_t kRoutingDigits = 9;
constexpr std::string_view kSymbols = "ABCD";
constexpr double kMicrFontPoints = 12;

// Of the districts that routing numbers begin with.
bool IsDistrict(int first_two) {
  return first_two <= 12 || (first_two >= 21 && first_two <= 32) || (first_two >= 61 && first_two <= 72) ||
         first_two == 80;
}

std::string Replaced(std::string text, std::string_view part, std::string_view with) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + with.size()))
    text.replace(at, part.size(), with);
  return text;
}

std::string WithoutBlanks(std::string_view text) {
  std::string result(text);
  std::erase(result, ' ');
  return result;
}

bool IsReadable(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return MicrGlyph(c) != nullptr; });
}

// The rightmost character stands at `first`.
void Put(std::string_view text, int first, MicrLine& line) {
  int position = first + static_cast<int>(text.size()) - 1;
  for (const char code : text) line.characters.push_back({position--, code});
}

std::string FieldProblem(std::string_view name, std::string_view text, int room) {
  if (!IsReadable(text))
    return "The " + std::string(name) + " of the MICR line would be " + Quoted(text) +
           ".  It holds digits, A, B, C and D only: correct the MICR settings of the bank.";
  if (static_cast<int>(text.size()) <= room) return {};
  return "The " + std::string(name) + " of the MICR line would be " + Quoted(text) + ", which is " +
         std::to_string(text.size()) + " characters long; " + std::to_string(room) +
         " have room.  Correct the MICR settings of the bank.";
}

std::string AccountProblem(std::string_view account) {
  if (account.empty()) return "The bank has no account number.  Enter it in the bank's record.";
  const auto digits = std::count_if(account.begin(), account.end(), [](char c) { return IsDigit(c); });
  const bool known =
      std::all_of(account.begin(), account.end(), [](char c) { return IsDigit(c) || c == '-'; });
  if (digits > 0 && known) return {};
  return "The account number " + Quoted(account) +
         " cannot stand in a MICR line, which holds digits and dashes.  Correct the bank's record.";
}

// Why the text is no routing number; "" when it is one.
std::string RoutingProblem(std::string_view routing) {
  const std::string quoted = Quoted(routing);
  if (routing.empty()) return "The bank has no routing number.  Enter it in the bank's record.";
  if (!IsAllDigits(routing) || routing.size() != kRoutingDigits)
    return "The routing number " + quoted + " is not nine digits.  Correct the bank's record.";
  constexpr int weights[] = {3, 7, 1};
  int sum = 0;
  for (std::size_t i = 0; i < kRoutingDigits; ++i) sum += (routing[i] - '0') * weights[i % 3];
  const int first_two = (routing[0] - '0') * 10 + routing[1] - '0';
  std::string fault;
  if (sum % 10 != 0) fault = "its last digit does not fit the others";
  if (sum == 0 || !IsDistrict(first_two)) fault = "no bank has a number that begins like this";
  if (fault.empty()) return {};
  return "The routing number " + quoted + " is wrong: " + fault +
         ".  Compare it with a check of the bank and correct the bank's record.";
}

}  // namespace

MicrLine MakeMicrLine(std::string_view routing, std::string_view account, std::string_view check_number,
                      const MicrSettings& settings) {
  MicrLine line;
  const std::string transit = WithoutBlanks(routing);
  const std::string number(Trim(check_number));
  std::string account_text = WithoutBlanks(account);
  line.problem = RoutingProblem(transit);
  if (line.problem.empty()) line.problem = AccountProblem(account_text);
  if (line.problem.empty() && !IsAllDigits(number))
    line.problem = "The check number " + Quoted(number) + " cannot stand in a MICR line, which holds digits.";
  if (!line.problem.empty()) return line;
  std::replace(account_text.begin(), account_text.end(), '-', kSymbols[3]);
  const std::size_t digits = static_cast<std::size_t>(std::max(settings.number_digits, 1));
  const std::string padded =
      number.size() < digits ? std::string(digits - number.size(), '0') + number : number;
  const auto filled = [&](const std::string& pattern) {
    return Replaced(Replaced(WithoutBlanks(pattern), "{account}", account_text), "{number}", padded);
  };
  const std::string on_us = filled(settings.on_us);
  const std::string auxiliary = filled(settings.auxiliary_on_us);
  line.problem = FieldProblem("on-us field", on_us, kOnUsLast - kOnUsFirst + 1);
  if (line.problem.empty())
    line.problem = FieldProblem("auxiliary on-us field", auxiliary, kAuxiliaryLast - kAuxiliaryFirst + 1);
  if (!line.problem.empty()) return line;
  Put(auxiliary, kAuxiliaryFirst, line);
  Put(std::string("A").append(transit).append("A"), kTransitFirst, line);
  Put(on_us, kOnUsFirst, line);
  return line;
}

void PlaceMicrLine(const MicrLine& line, const MicrSettings& settings, double right, double bottom,
                   SheetPage& page) {
  const double baseline = bottom - kMicrBaseline;
  const double height = SheetLineHeight(kMicrFontPoints);
  for (const MicrCharacter& one : line.characters) {
    const double edge = right - kMicrRightMargin - (one.position - 1) * kMicrPitch;
    if (settings.font.empty()) {
      for (const SheetRect& bar : MicrBars(one.code, edge, baseline)) page.bars.push_back(bar);
    } else {
      page.texts.push_back({std::string(1, one.code),
                            {edge - kMicrPitch, baseline - kSheetBaseline * height, kMicrPitch, height},
                            {settings.font, kMicrFontPoints, false}});
    }
  }
}

}  // namespace tallwick
