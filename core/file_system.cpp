#include "core/file_system.h"

#include "core/text.h"

namespace tallwick {

namespace {

constexpr std::string_view kSeparators = "\\/";

std::string_view WithoutSeparators(std::string_view path) {
  const std::size_t last = path.find_last_not_of(kSeparators);
  return last == std::string_view::npos ? std::string_view{} : path.substr(0, last + 1);
}

std::string Comparable(std::string_view path) {
  std::string text = ToUpper(WithoutBackslash(path));
  for (char& character : text) {
    if (character == '/') character = '\\';
  }
  return text;
}

}  // namespace

std::optional<std::string> FileSystem::ReadIfThere(std::string_view path) const {
  std::optional<std::string> text = Read(path);
  if (!text && IsMissing(path)) text.emplace();
  return text;
}

std::optional<std::string> FileSystem::ReadPart(std::string_view path, std::uint64_t offset,
                                                std::size_t length) const {
  const std::optional<std::string> whole = Read(path);
  if (!whole) return std::nullopt;
  return offset < whole->size() ? whole->substr(static_cast<std::size_t>(offset), length) : std::string();
}

bool MatchesPattern(std::string_view name, std::string_view pattern) {
  const std::string text = ToUpper(name);
  const std::string upper = ToUpper(pattern);
  std::size_t at = 0;
  std::size_t in_pattern = 0;
  // The last "*" met, and where in the name its match ends so far.
  std::size_t star = std::string::npos;
  std::size_t star_end = 0;
  while (at < text.size()) {
    if (in_pattern < upper.size() && upper[in_pattern] == '*') {
      star = in_pattern++;
      star_end = at;
    } else if (in_pattern < upper.size() && (upper[in_pattern] == '?' || upper[in_pattern] == text[at])) {
      ++in_pattern;
      ++at;
    } else if (star != std::string::npos) {
      in_pattern = star + 1;
      at = ++star_end;
    } else {
      return false;
    }
  }
  return upper.find_first_not_of('*', in_pattern) == std::string::npos;
}

std::string WithBackslash(std::string_view folder) {
  return folder.empty() ? std::string() : std::string(WithoutSeparators(folder)) + '\\';
}

std::string WithoutBackslash(std::string_view folder) {
  const std::string_view path = WithoutSeparators(folder);
  return path.empty() && !folder.empty() ? "\\" : std::string(path);
}

std::string_view FileNameOf(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

std::string_view BaseNameOf(std::string_view path) {
  const std::string_view name = FileNameOf(path);
  return name.substr(0, name.rfind('.'));
}

std::string CannotBeReadText(std::string_view path) {
  return "The file " + std::string(FileNameOf(path)) +
         " cannot be read.  Close the program that holds it, or ask for the right to read it, and try again.";
}

bool SamePath(std::string_view left, std::string_view right) {
  return Comparable(left) == Comparable(right);
}

}  // namespace tallwick
