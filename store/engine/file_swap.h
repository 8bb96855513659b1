// Replacing the files of a table by new ones, all or none, through any failure.
//
// The new files are written beside the old ones under names ending in "~". Then a list of them,
// "<table>.SWP~", is written and flushed: that is the moment from which the new files count. The renames that
// follow can be done again by whoever finds the list.
#pragma once

#include <string>
#include <vector>

#include "store/engine/file.h"

namespace tallwick::engine {

// The byte of a data file that says who has the table open: shared by its users, exclusive for one alone.
inline constexpr std::int64_t kTablePresenceAt = 0x7FFFFFFF;

// The format's lock on the head and on appends, of a table with an index and of one without. Its locks on
// records and on the whole file lie between the two.
inline constexpr std::int64_t kIndexedAppendAt = 0x7FFFFFFE;
inline constexpr std::int64_t kPlainAppendAt = 0x40000000;

// The folder of a platform path, "." for a bare name.
std::string TableFolder(const std::string& path);

// The name under which the new form of a file is written.
std::string NewFileName(const std::string& path);

// Puts the new files (flushed, under NewFileName of each path) in the place of the old. `table` is the data
// file's path; the caller has the table for itself. When it fails before the list is whole, the old files
// stand and the new ones are removed; when it fails later, the next to open the table finishes it, and the
// caller must not write on.
int SwapFiles(FileLayer& files, const std::string& table, const std::vector<std::string>& paths);

// Whether a swap of the table's files is under way, or was cut short when its new files counted already.
bool IsSwapListed(FileLayer& files, const std::string& table);

// Finishes a swap that was cut short, and removes new files whose maker died before the list was whole.
// `paths` are the table's files. Called before a table is opened; kErrorOpenRefused while whoever swaps is
// still at it. New files beside a table that others have open stay for the next who finds it free.
// `alone` says that the caller has the folder for himself; otherwise they may be of somebody who has.
int FinishSwap(FileLayer& files, const std::string& table, const std::vector<std::string>& paths,
               bool alone = false);

}  // namespace tallwick::engine
