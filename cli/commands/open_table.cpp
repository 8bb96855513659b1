#include "cli/commands/open_table.h"

#include <filesystem>

#include "core/portable_file_system.h"
#include "core/text.h"

namespace tallwick::cli {

namespace {

std::string Absolute(Office& office, const std::filesystem::path& path) {
  std::error_code ignored;
  const std::filesystem::path whole = std::filesystem::absolute(path, ignored);
  return office.Files().HeldPath(Utf8OfPath(whole.empty() ? path : whole));
}

// The held path of a table. A bare name is looked for in the data folder first; anything else is a path from
// where the program was called.
std::string PathOf(Office& office, std::string_view file) {
  std::filesystem::path path = PathOfUtf8(file);
  if (!path.has_extension()) path += ".dbf";
  std::string here = Absolute(office, path);
  const std::string& data = office.Options().data;
  if (file.find_first_of("/\\") != std::string_view::npos || data.empty()) return here;
  std::string there = Absolute(office, PathOfUtf8(data) / path);
  return office.Files().FileExists(there) || !office.Files().FileExists(here) ? there : here;
}

}  // namespace

OpenTable::OpenTable(Office& office, std::string_view file, Access access)
    : office_(office), store_(office.Store()), name_(ToUpper(BaseNameOf(file))) {
  if (store_ == nullptr) {
    status_ = kNoTables;
    return;
  }
  const std::string path = PathOf(office, file);
  data_ = access == Access::kShared ? store_->OpenDatabase(path) : store_->OpenDatabaseExclusive(path);
  if (data_ > 0) return;
  const int code = store_->OpenErrorCode() != 0 ? store_->OpenErrorCode() : data_;
  office.Out().Fail(Quoted(file) + " could not be opened: " + std::string(engine::error4text(code)) + " (" +
                    std::to_string(code) + ")");
  status_ = kNoTables;
}

OpenTable::~OpenTable() {
  if (data_ > 0) store_->CloseDatabase(data_);
}

int OpenTable::Failed(std::string_view what, int code) {
  office_.Out().Fail(name_ + " " + std::string(what) + ": " + std::string(engine::error4text(code)) + " (" +
                     std::to_string(code) + ")");
  return kRefused;
}

}  // namespace tallwick::cli
