#include "cli/commands/open_table.h"

#include <filesystem>

#include "core/portable_file_system.h"
#include "core/text.h"
#include "shell/rights.h"
#include "tables/bank_table.h"
#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/deposit_xref_table.h"
#include "tables/notes_table.h"
#include "tables/table_lack.h"
#include "tables/users_table.h"
#include "tables/voucher_table.h"
#include "tables/wire_table.h"
#include "tables/xref_table.h"

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

// The layout of a table that this product makes; null for other tables.
const TableLayout* LayoutOf(std::string_view name) {
  for (const TableLayout* layout :
       {&kBankLayout, &kXrefLayout, &kNotesLayout, &kCheckLayout, &kDepositLayout, &kDepositXrefLayout,
        &kWireLayout, &kVoucherLayout, &kUsersLayout, &kUserBanksLayout}) {
    if (layout->per_bank ? ToUpper(name).starts_with(layout->name) : EqualsIgnoreCase(name, layout->name))
      return layout;
  }
  return nullptr;
}

}  // namespace

OpenTable::OpenTable(Office& office, std::string_view file, Access access)
    : office_(office), name_(ToUpper(BaseNameOf(file))) {
  if (office.Granted(kAdministrator)) store_ = office.Store();
  if (store_ == nullptr) {
    status_ = office.Status();
    return;
  }
  const std::string path = PathOf(office, file);
  folder_ = path.substr(0, path.size() - FileNameOf(path).size());
  Open(path, access);
  if (data_ > 0) return;
  const int code = store_->OpenErrorCode() != 0 ? store_->OpenErrorCode() : data_;
  office.Out().Fail(Quoted(file) + " could not be opened: " + std::string(engine::error4text(code)) + " (" +
                    std::to_string(code) + ")");
  status_ = kNoTables;
}

void OpenTable::Open(const std::string& path, Access access) {
  data_ = OpenOnce(path, access);
  const TableLayout* layout = LayoutOf(name_);
  const std::span<const TagLayout> needed = layout != nullptr ? layout->tags : std::span<const TagLayout>();
  if (data_ <= 0) {
    if (IsRebuildWanted() && Rebuild(path, needed)) data_ = OpenOnce(path, access);
    return;
  }
  if (access == Access::kShared) return;
  // What is packed or indexed anew must come out with every tag that the program needs.
  const TableLack lack = FindMissingTag(*store_, data_, needed);
  if (!lack) return;
  const TagsToBuild tags(*store_, data_, needed);
  data_ = store_->RefuseOpened(data_, lack.code, lack.text);
  if (IsRebuildWanted() && Rebuild(path, tags.All())) data_ = OpenOnce(path, access);
}

DataHandle OpenTable::OpenOnce(const std::string& path, Access access) {
  return access == Access::kShared ? store_->OpenDatabase(path) : store_->OpenDatabaseExclusive(path);
}

bool OpenTable::IsRebuildWanted() {
  const bool wanted = store_->RebuildRequested();
  store_->ClearRebuildRequest();
  return wanted;
}

bool OpenTable::Rebuild(const std::string& path, std::span<const TagLayout> tags) {
  if (tags.empty()) {
    office_.Out().Fail("The index of " + name_ + " cannot be rebuilt: its tags are known to its owner only");
    return false;
  }
  const int code = store_->RebuildIndex(path, tags);
  if (code != 0) Failed("could not be rebuilt", code);
  return code == 0;
}

OpenTable::~OpenTable() {
  if (data_ > 0) store_->CloseDatabase(data_);
}

int OpenTable::Failed(std::string_view what, int code) {
  return office_.Refuse(name_ + " " + std::string(what) + ": " + std::string(engine::error4text(code)) +
                        " (" + std::to_string(code) + ")");
}

}  // namespace tallwick::cli
