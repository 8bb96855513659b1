#include "posting/file_rows.h"

#include <algorithm>
#include <functional>

#include "core/text.h"
#include "posting/file_number.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::size_t kMostFiles = 200;  // of those with transactions: each costs a seek

// "12 checks, 1 wire"; "" for none.
std::string TransactionsText(const FileReferences& found) {
  struct Kind {
    int count;
    std::string_view one, more;
  };
  const Kind kinds[] = {{found.checks, " check", " checks"},
                        {found.deposits, " deposit item", " deposit items"},
                        {found.wires, " wire", " wires"},
                        {found.vouchers, " voucher", " vouchers"}};
  std::string text;
  for (const Kind& kind : kinds) {
    if (kind.count == 0) continue;
    text += (text.empty() ? "" : ", ") + std::to_string(kind.count);
    text += kind.count == 1 ? kind.one : kind.more;
  }
  return text;
}

}  // namespace

bool FileRows::Begin() {
  listed_ = session_.TheSuite().Files();
  if (listed_) std::sort(listed_->begin(), listed_->end(), std::greater());
  Find({});
  return !found_.empty();
}

void FileRows::Find(std::string_view text) {
  const std::string wanted = ToUpper(Trim(text));
  if (!listed_) {
    found_ = session_.Company().xrefs.LastFiles(wanted, kMostFiles);
    std::erase_if(found_, [](const std::string& file) { return IsVoidFile(file); });
    return;
  }
  found_.clear();
  std::copy_if(listed_->begin(), listed_->end(), std::back_inserter(found_),
               [&](const std::string& file) { return ToUpper(file).find(wanted) != std::string::npos; });
}

std::vector<std::string> FileRows::Row(std::size_t row) {
  if (row >= found_.size()) return {};
  return {found_[row], TransactionsText(session_.Company().xrefs.LookUpFile(found_[row]))};
}

}  // namespace tallwick
