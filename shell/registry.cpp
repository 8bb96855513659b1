#include "shell/registry.h"

#include "core/text.h"

namespace tallwick {
namespace {

struct IniLine {
  std::string section;
  std::string name;  // "" on the section's own line
  std::string value;
};

std::vector<IniLine> LinesOf(const FileSystem& files, std::string_view path) {
  std::vector<IniLine> lines;
  std::string section;
  for (const std::string& raw : Split(files.Read(path).value_or(""), '\n')) {
    const std::string_view line = Trim(raw);
    if (line.size() > 2 && line.front() == '[' && line.back() == ']') {
      section = Trim(line.substr(1, line.size() - 2));
      lines.push_back({section, {}, {}});
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || line.front() == ';') continue;
    lines.push_back(
        {section, std::string(Trim(line.substr(0, equals))), std::string(Trim(line.substr(equals + 1)))});
  }
  return lines;
}

}  // namespace

std::vector<std::string> IniRegistry::Subkeys(std::string_view key) const {
  std::vector<std::string> subkeys;
  for (const IniLine& line : LinesOf(files_, path_)) {
    const std::size_t end = key.size();
    if (!line.name.empty() || line.section.size() <= end + 1 || line.section[end] != '\\') continue;
    if (EqualsIgnoreCase(line.section.substr(0, end), key)) subkeys.push_back(line.section.substr(end + 1));
  }
  return subkeys;
}

std::string IniRegistry::Value(std::string_view key, std::string_view subkey, std::string_view name) const {
  const std::string section = std::string(key) + "\\" + std::string(subkey);
  for (const IniLine& line : LinesOf(files_, path_)) {
    if (EqualsIgnoreCase(line.section, section) && EqualsIgnoreCase(line.name, name)) return line.value;
  }
  return {};
}

}  // namespace tallwick
