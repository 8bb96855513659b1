#include "tables/bank_code.h"

#include <algorithm>
#include <array>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {

namespace {

constexpr std::size_t kBankCodeWidth = 8;

// Names that some platforms keep for devices, with any extension.
bool IsDeviceName(std::string_view code) {
  std::string name = ToUpper(Trim(code.substr(0, code.find('.'))));
  constexpr std::array<std::string_view, 4> kDevices = {"CON", "PRN", "AUX", "NUL"};
  if (std::find(kDevices.begin(), kDevices.end(), name) != kDevices.end()) return true;
  bool port = name.size() == 4 && (name.starts_with("COM") || name.starts_with("LPT"));
  return port && name[3] >= '1' && name[3] <= '9';
}

bool IsForbidden(unsigned char character) {
  return character < 0x20 || character == 0x7F ||
         std::string_view("\\/:*?\"<>|").find(static_cast<char>(character)) != std::string_view::npos;
}

}  // namespace

std::string TrimmedBankCode(std::string_view code) {
  return std::string(Trim(code));
}

std::string BankCodeProblem(std::string_view code) {
  std::string trimmed = TrimmedBankCode(code);
  if (trimmed.empty()) return "The bank code is missing. Please enter 1 to 8 letters or digits.";
  std::string lead = "The bank code " + Quoted(trimmed) + " ";
  std::optional<std::string> bytes = ToWindows1252(trimmed);
  if (!bytes) return lead + "holds a character that the tables cannot keep. Please use letters and digits.";
  if (bytes->size() > kBankCodeWidth) return lead + "is too long. Please use at most 8 characters.";
  bool forbidden = std::any_of(bytes->begin(), bytes->end(),
                               [](char c) { return IsForbidden(static_cast<unsigned char>(c)); });
  if (forbidden)
    return lead + "holds a character that file names may not have. Please use letters and digits.";
  if (trimmed.back() == '.') return lead + "ends with a full stop. Please use letters and digits.";
  if (IsDeviceName(trimmed)) return lead + "is the name of a device. Please choose another code.";
  return {};
}

bool IsValidBankCode(std::string_view code) {
  return BankCodeProblem(code).empty();
}

}  // namespace tallwick
