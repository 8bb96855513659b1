// A table opened for one command, closed at its end.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "cli/office.h"

namespace tallwick::cli {

class OpenTable {
 public:
  enum class Access { kShared, kExclusive };

  // `file` is a path, or the name of a table in the data folder; ".dbf" may be left out. Says what failed, or
  // that the user is no administrator.
  OpenTable(Office& office, std::string_view file, Access access = Access::kShared);
  ~OpenTable();
  OpenTable(const OpenTable&) = delete;
  OpenTable& operator=(const OpenTable&) = delete;

  explicit operator bool() const { return data_ > 0; }
  int Status() const { return status_; }
  clsKVRData& Store() { return *store_; }
  DataHandle Data() const { return data_; }
  // Without folder and extension, as problems name it.
  const std::string& Name() const { return name_; }
  // Where it lies, in the held form.
  const std::string& Folder() const { return folder_; }
  // Says that the table `what`, with the engine's reason, and gives the exit status.
  int Failed(std::string_view what, int code);

 private:
  // With the rebuild that the user may have asked for.
  void Open(const std::string& path, Access access);
  DataHandle OpenOnce(const std::string& path, Access access);
  bool IsRebuildWanted();  // the user was asked and said yes
  // Makes the index anew. False after a message.
  bool Rebuild(const std::string& path, std::span<const TagLayout> tags);

  Office& office_;
  clsKVRData* store_ = nullptr;
  std::string name_;
  std::string folder_;
  DataHandle data_ = 0;
  int status_ = kDone;
};

}  // namespace tallwick::cli
