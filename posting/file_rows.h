// The escrow files that an entry may name, as the rows of a look-up, last number first: those of the suite's
// file list; where the suite offers none, those with transactions in any bank.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

class FileRows : public RowSource {
 public:
  // The session must outlive the rows.
  explicit FileRows(Session& session) : session_(session) {}

  // Asks the suite for its list. False when no file is known at all.
  bool Begin();
  // Shows the files of the suite's list with the text anywhere in them, else the last files with transactions
  // that begin with it.
  void Find(std::string_view text);
  // From 0; the row must exist.
  const std::string& FileAt(std::size_t row) const { return found_[row]; }

  std::vector<std::string> Headings() const override { return {"File Number", "Transactions"}; }
  std::size_t RowCount() override { return found_.size(); }
  std::vector<std::string> Row(std::size_t row) override;

 private:
  Session& session_;
  std::optional<std::vector<std::string>> listed_;  // by the suite, last number first
  std::vector<std::string> found_;
};

}  // namespace tallwick
