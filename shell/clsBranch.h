// clsBranch: a branch (office location) of the company as the present user sees it, and "Branches.xml" in the
// settings path, which keeps them.
//
//   <Branches>
//     <Branch name="Main Office"><Path/><MyUserGroup/>...<Files><LastFile_1/>...</Files>...</Branch>
//   </Branches>
//
// Invariants: a branch's path ends with "\" unless it is empty; what the file holds beyond this survives a
// save.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"

namespace tallwick {

// A recently-used list of fixed capacity, most recent first. An empty text marks an empty slot.
class RecentList {
 public:
  explicit RecentList(std::size_t capacity) : entries_(capacity) {}

  std::size_t Capacity() const { return entries_.size(); }
  const std::vector<std::string>& Entries() const { return entries_; }
  std::string& operator[](std::size_t position) { return entries_[position - 1]; }  // from 1
  // Moves the entries up over the empty slots, in their order.
  void Compact();
  // Puts the entry first. One that is in the list already moves there; the last drops off a full list.
  void Add(std::string_view entry);

 private:
  std::vector<std::string> entries_;
};

class clsBranch {
 public:
  std::string Name;
  std::string Path;
  bool PathExists = false;  // when it was loaded
  std::string MyUserGroup;
  std::string EmailFriendlyName;
  std::string EmailAddress;
  std::string PortwainUser;
  RecentList Files{8};
  RecentList Reports{6};
  RecentList Documents{6};

 private:
  friend class BranchFile;
  std::string loaded_name_;  // "" for a branch that was not loaded
};

// "Branches.xml". Each call reads the file anew. A file that cannot be read reads as empty; when it is to be
// written, a new one takes its place.
class BranchFile {
 public:
  BranchFile(FileSystem& files, std::string_view settings_path);

  // A branch that is not in the file is empty but for its name.
  clsBranch Load(std::string_view name) const;
  // In file order. Of several branches with one name the first.
  std::vector<clsBranch> LoadAll() const;
  // Creates, updates, or renames a branch whose name was changed since it was loaded. False, with
  // nothing changed, when the new name is another branch's or the file could not be written.
  bool Save(clsBranch& branch);
  // True also when there was no such branch.
  bool Delete(std::string_view name);

 private:
  FileSystem& files_;
  std::string path_;
};

// The lines of a branch's address file, under the labels that the check layouts use.
struct BranchAddressLine {
  std::string_view label;
  std::string text;  // trimmed; "" where the file has ended
};

inline constexpr std::size_t kBranchAddressLines = 11;

struct BranchAddress {
  std::array<BranchAddressLine, kBranchAddressLines> lines;
  std::string last_line;  // the one behind the labelled ones
  std::string problem;    // why the address is not known though there is a file; "" otherwise

  // The text under a label; "" for an unknown one.
  std::string_view Text(std::string_view label) const;
};

// Reads `base_name` + ".SSP" in the settings path. Every line is "" when the base name is blank or the file
// is missing or cannot be read.
BranchAddress ReadBranchAddress(const FileSystem& files, std::string_view settings_path,
                                std::string_view base_name);

}  // namespace tallwick
