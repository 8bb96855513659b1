#include "maintenance/copy_manifest.h"

#include <algorithm>
#include <charconv>

#include "core/text.h"
#include "shell/sha256.h"

namespace tallwick {
namespace {

constexpr std::string_view kHead = "Tallwick data copy";
constexpr std::string_view kComplete = "State: complete";
constexpr std::string_view kIncomplete = "State: incomplete";
constexpr std::size_t kDigestLength = 64;
constexpr std::size_t kPiece = std::size_t{1} << 20;

std::optional<CopiedFile> ParseLine(std::string_view line) {
  const std::size_t blank = line.find(' ', kDigestLength + 1);
  if (line.size() < kDigestLength + 4 || line[kDigestLength] != ' ' || blank == std::string_view::npos)
    return std::nullopt;
  CopiedFile file;
  file.digest = line.substr(0, kDigestLength);
  const std::string_view size = line.substr(kDigestLength + 1, blank - kDigestLength - 1);
  const auto [end, error] = std::from_chars(size.data(), size.data() + size.size(), file.size);
  if (error != std::errc() || end != size.data() + size.size()) return std::nullopt;
  file.name = line.substr(blank + 1);
  return file.name.empty() ? std::nullopt : std::optional(std::move(file));
}

}  // namespace

const CopiedFile* CopyManifest::Find(std::string_view name) const {
  for (const CopiedFile& file : files) {
    if (EqualsIgnoreCase(file.name, name)) return &file;
  }
  return nullptr;
}

bool CopyManifest::CanList(std::string_view name) {
  return std::none_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::optional<CopiedFile> Fingerprint(const FileSystem& files, std::string_view folder, std::string_view name,
                                      const GoesOn& goes_on) {
  const std::string path = std::string(folder) + std::string(name);
  CopiedFile file{std::string(name), 0, {}};
  Sha256 digest;
  while (true) {
    const std::optional<std::string> piece = files.ReadPart(path, file.size, kPiece);
    if (!piece) return std::nullopt;
    digest.Add(*piece);
    file.size += piece->size();
    if (goes_on && !goes_on(piece->size())) return std::nullopt;
    if (piece->size() < kPiece) break;
  }
  file.digest = digest.Hex();
  return file;
}

std::uint64_t SizeOf(const CopyManifest& manifest) {
  std::uint64_t size = 0;
  for (const CopiedFile& file : manifest.files) size += file.size;
  return size;
}

std::string ManifestText(const CopyManifest& manifest) {
  std::string text = std::string(kHead) + "\r\n";
  text += std::string(manifest.complete ? kComplete : kIncomplete) + "\r\n";
  for (const CopiedFile& file : manifest.files)
    text += file.digest + " " + std::to_string(file.size) + " " + file.name + "\r\n";
  return text;
}

std::optional<CopyManifest> ParseManifest(std::string_view text) {
  CopyManifest manifest;
  std::vector<std::string> lines = Split(text, '\n');
  for (std::string& line : lines) {
    if (line.ends_with('\r')) line.pop_back();
  }
  if (lines.size() < 3 || lines[0] != kHead || !lines.back().empty()) return std::nullopt;
  manifest.complete = lines[1] == kComplete;
  if (!manifest.complete && lines[1] != kIncomplete) return std::nullopt;
  for (std::size_t i = 2; i + 1 < lines.size(); ++i) {
    std::optional<CopiedFile> file = ParseLine(lines[i]);
    if (!file) return std::nullopt;
    manifest.files.push_back(std::move(*file));
  }
  return manifest;
}

}  // namespace tallwick
