// The list of a copy's files with their sizes and SHA-256 digests, "Copy_Files.txt" beside the stamp file: by
// it a copy is proven when it has been made, and again before it is restored.
//
// Text, lines end with CR LF:
//   Tallwick data copy
//   State: complete            ("incomplete" from the copy's beginning to its end)
//   <64 hexadecimal digits> <size in bytes> <file name>      one line for each file
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"

namespace tallwick {

struct CopiedFile {
  std::string name;
  std::uint64_t size = 0;
  std::string digest;
  friend bool operator==(const CopiedFile&, const CopiedFile&) = default;
};

struct CopyManifest {
  static constexpr std::string_view kFileName = "Copy_Files.txt";

  bool complete = false;
  std::vector<CopiedFile> files;

  const CopiedFile* Find(std::string_view name) const;
  // False for a name that would break its line, as one with a line break.
  static bool CanList(std::string_view name);
};

// Size and digest of a file; nullopt when it cannot be read, or was told not to go on.
std::optional<CopiedFile> Fingerprint(const FileSystem& files, std::string_view folder, std::string_view name,
                                      const GoesOn& goes_on);

// Of all files together.
std::uint64_t SizeOf(const CopyManifest& manifest);

std::string ManifestText(const CopyManifest& manifest);
// nullopt for a text that is no manifest, or not whole.
std::optional<CopyManifest> ParseManifest(std::string_view text);

}  // namespace tallwick
