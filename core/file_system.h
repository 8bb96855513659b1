// The port for folders and small files: settings, logs, copies. Tables have the engine's own file layer.
// Paths are held with "\" between their pieces and compared without regard to case; folder paths end with
// "\". Only an implementation of this port knows the platform's form.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"

namespace tallwick {

// Told of so many more bytes of a long read or copy that have been done; false ends it. May be empty.
using GoesOn = std::function<bool(std::size_t bytes)>;

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // The platform's form of a path. Each piece that exists is found whatever the case of its letters; pieces
  // that do not exist keep theirs. A path already in the platform's form is accepted.
  virtual std::string PlatformPath(std::string_view path) const = 0;
  // The held form of a platform path ("/srv/data" gives "\srv\data"; no "\" is appended).
  virtual std::string HeldPath(std::string_view platform_path) const = 0;

  virtual bool FolderExists(std::string_view folder) const = 0;
  // True when the names in an existing folder can be listed and its files reached.
  virtual bool FolderIsReadable(std::string_view folder) const = 0;
  virtual bool FileExists(std::string_view path) const = 0;
  // True when there is nothing of this name. What cannot be looked at is not missing.
  virtual bool IsMissing(std::string_view path) const = 0;
  // Makes the folder and those above it. True when it exists afterwards.
  virtual bool CreateFolder(std::string_view folder) = 0;
  // Removes it with everything in it. True when it does not exist afterwards.
  virtual bool RemoveFolder(std::string_view folder) = 0;

  // The whole file; nullopt when it cannot be read.
  virtual std::optional<std::string> Read(std::string_view path) const = 0;
  // A file that need not be there: "" when it is missing. nullopt when something of its name is there and
  // cannot be read, such as a file that another program holds; nobody must go on as if there were none.
  std::optional<std::string> ReadIfThere(std::string_view path) const;
  // Up to `length` bytes from `offset` on, fewer only at the file's end; nullopt when it cannot be read.
  virtual std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                              std::size_t length) const;
  // Replaces the whole file: written beside it, flushed, then renamed over it, so that the old or the new
  // contents survive any failure.
  virtual bool Write(std::string_view path, std::string_view contents) = 0;
  // Adds at the end in one write, making the file when it is missing.
  virtual bool Append(std::string_view path, std::string_view contents) = 0;
  // Copies and renames replace an existing `to`; a copy that fails, or was told not to go on, leaves it as it
  // was.
  virtual bool Copy(std::string_view from, std::string_view to, const GoesOn& goes_on) = 0;
  virtual bool Rename(std::string_view from, std::string_view to) = 0;
  // Removes a file, never a folder. True when it does not exist afterwards.
  virtual bool Remove(std::string_view path) = 0;

  // Names (without folder) of the files in the folder that match a pattern with "*" and "?", without regard
  // to case, sorted without regard to case; subfolders are left out.
  virtual std::vector<std::string> List(std::string_view folder, std::string_view pattern) const = 0;
  virtual std::optional<DateTime> Modified(std::string_view path) const = 0;
  virtual std::optional<std::uint64_t> SizeOf(std::string_view path) const = 0;
};

// True when the name fits a pattern in which "*" stands for any characters and "?" for one.
bool MatchesPattern(std::string_view name, std::string_view pattern);

// The folder with exactly one "\" at its end; an empty path stays empty.
std::string WithBackslash(std::string_view folder);
// The folder without "\" at its end; the root stays "\".
std::string WithoutBackslash(std::string_view folder);
// The text after the last "\" or "/".
std::string_view FileNameOf(std::string_view path);
// The file name up to its last "." (the whole name when it has none).
std::string_view BaseNameOf(std::string_view path);
// What is said of a file that is there and cannot be read, with what to do: "The file MICR_Print_FNB.dat
// cannot be read.  …".
std::string CannotBeReadText(std::string_view path);
// True when the paths name the same file: case and trailing "\" do not count.
bool SamePath(std::string_view left, std::string_view right);

}  // namespace tallwick
