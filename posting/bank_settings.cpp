#include "posting/bank_settings.h"

#include <algorithm>
#include <vector>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

bool Names(std::string_view line, std::string_view name) {
  const std::size_t equals = line.find('=');
  return equals != std::string_view::npos && EqualsIgnoreCase(Trim(line.substr(0, equals)), name);
}

std::optional<std::string> ReadSettings(const FileSystem& files, const std::string& path) {
  const std::optional<std::string> text = files.ReadIfThere(path);
  return text ? std::optional(std::string(WithoutTextMark(*text))) : std::nullopt;
}

// A login may be that of a domain, "OFFICE\jdoe".
std::string FilePart(std::string_view owner) {
  std::string part(Trim(owner));
  std::replace_if(
      part.begin(), part.end(),
      [](char c) { return std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos; }, '_');
  return part;
}

}  // namespace

BankSettings::BankSettings(FileSystem& files, std::string_view data_path, std::string_view kind,
                           std::string_view owner)
    : files_(files),
      path_(std::string(data_path) + std::string(kind) + FilePart(owner) + ".dat"),
      text_(ReadSettings(files_, path_)) {}

std::string BankSettings::Problem() const {
  return text_ ? std::string() : CannotBeReadText(path_);
}

std::optional<std::string> BankSettings::Get(std::string_view name) const {
  for (const std::string& line : Split(text_.value_or(""), '\n')) {
    if (Names(line, name)) return std::string(Trim(std::string_view(line).substr(line.find('=') + 1)));
  }
  return std::nullopt;
}

std::string BankSettings::UnknownLine(std::span<const std::string_view> names) const {
  std::vector<std::string_view> left(names.begin(), names.end());
  for (const std::string& line : Split(text_.value_or(""), '\n')) {
    const std::string_view trimmed = Trim(line);
    const bool is_setting =
        std::erase_if(left, [&](std::string_view name) { return Names(trimmed, name); }) > 0;
    if (!trimmed.empty() && trimmed.front() != ';' && !is_setting) return std::string(trimmed);
  }
  return {};
}

// Over what the file holds by now.
bool BankSettings::Set(std::string_view name, std::string_view value) {
  text_ = ReadSettings(files_, path_);
  if (!text_) return false;
  const std::string setting = std::string(name) + "=" + std::string(value) + "\r\n";
  std::string text;
  bool written = false;
  for (const std::string& line : Split(*text_, '\n')) {
    if (Names(line, name)) {
      if (!written) text += setting;
      written = true;
    } else if (!Trim(line).empty()) {
      text += std::string(TrimRight(line)) + "\r\n";
    }
  }
  if (!written) text += setting;
  if (!files_.Write(path_, text)) return false;
  text_ = std::move(text);
  return true;
}

}  // namespace tallwick
