// The folder in which a copy of the escrow data lives, the stamp that says when and by whom it was made, and
// the files that belong to a copy.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"
#include "shell/session.h"

namespace tallwick {

// "DBFCOPYS\" in the data path.
std::string CopyFolder(const Session& session);

struct CopyStamp {
  static constexpr std::string_view kFileName = "Copy_Date.txt";

  std::string date = "N/A";  // "Friday, March 15, 2024"
  std::string time;          // "09:30 AM"
  std::string user = "N/A";

  // "Friday, March 15, 2024 09:30 AM"
  std::string When() const { return time.empty() ? date : date + " " + time; }
};

// The stamp of the copy that is there; "N/A" without one, and for whatever in it is no date or no name.
CopyStamp ReadStamp(const Session& session);
// False when it could not be written.
bool WriteStamp(Session& session);

// One file of a walk with what goes with it.
struct FileGroup {
  std::string name;                // "ESCROW_CHECKS_FNB.DBF"
  std::vector<std::string> files;  // it and its companions
  bool is_data_file = false;       // a ".DAT" file
};

// The groups of a folder that a copy and a restore take: settings (*.DAT), then tables (*.DBF), without the
// four tables that the whole company shares. Never taken are files that other work is just putting in place
// (ending in "~" or ".tmp"), and the transactions switch of an earlier build, which would lock out another
// office.
std::vector<FileGroup> WalkedGroups(const FileSystem& files, std::string_view folder);
// Those four: agent, banks, cross-references, notes. A group without files is missing in the folder.
std::vector<FileGroup> SharedGroups(const FileSystem& files, std::string_view folder);

// Of all their files together.
std::uint64_t SizeOf(const FileSystem& files, std::string_view folder, const std::vector<FileGroup>& groups);

}  // namespace tallwick
