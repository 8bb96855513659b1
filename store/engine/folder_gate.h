// One workstation alone in a company folder, and the replacing of many of its files, all or none.
//
// The gate is the file ESCROW_ALONE.SWP~ beside the tables; whoever is alone holds its first byte
// exclusively, and everyone else is refused when opening a table. It is empty, or holds the list of a
// replacement: a line "+NAME" for a file whose new form stands beside it (NewFileName), a line "-NAME" for a
// file that goes, and the line "end " with a checksum. The list is flushed: that is the moment from which the
// new files count. What follows can be done again by whoever comes to the gate and finds the list.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/clock.h"
#include "store/engine/file.h"

namespace tallwick::engine {

// What happens to the files of a folder together. Names are without the folder.
struct FolderChange {
  std::vector<std::string> replaced;  // flushed, under NewFileName of each
  std::vector<std::string> removed;   // need not exist
};

class FolderGate {
 public:
  static constexpr std::string_view kFileName = "ESCROW_ALONE.SWP~";

  FolderGate(FileLayer& files, Clock& clock, std::string folder)
      : files_(files), clock_(clock), folder_(std::move(folder)) {}
  // Lets the others in again. A change that could not be finished is left to the next who comes.
  ~FolderGate();
  FolderGate(const FolderGate&) = delete;
  FolderGate& operator=(const FolderGate&) = delete;

  // kErrorOpenRefused while another workstation is alone. Finishes a change that was cut short.
  int Enter();
  // When it fails before the list is whole, the old files stand and the new ones are removed. When it fails
  // later the new files count: the next to come finishes, and IsUnfinished is true.
  int Replace(const FolderChange& change);
  bool IsUnfinished() const { return unfinished_; }
  const std::string& Folder() const { return folder_; }

 private:
  std::string Path() const { return folder_ + "/" + std::string(kFileName); }

  FileLayer& files_;
  Clock& clock_;
  std::string folder_;
  std::unique_ptr<File> file_;
  bool unfinished_ = false;
};

// Whether somebody is alone in the folder, or died when his list counted already. Changes nothing.
bool IsGateClosed(FileLayer& files, const std::string& folder);

// For everyone who opens a table of the folder: kErrorOpenRefused while somebody is alone in it. Finishes a
// change that was cut short, and takes away a gate whose owner died.
int PassGate(FileLayer& files, Clock& clock, const std::string& folder);

}  // namespace tallwick::engine
