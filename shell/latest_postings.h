// The transactions entered last in a bank, as the main window lists them.
#pragma once

#include <string>
#include <vector>

#include "core/currency.h"
#include "core/date.h"
#include "core/form.h"

namespace tallwick {

struct BankTables;

struct LatestPosting {
  Date dated;
  std::string kind;         // "Check", "Deposit", "Wire" or "Voucher"
  std::string number;       // of a deposit its sequence
  std::string file_number;  // of a deposit with several "3 files"
  std::string payee;        // or the source of a deposit's first item
  Currency amount;
  std::string status;  // in words
  std::string style;   // see RowSource::RowStyle
  friend bool operator==(const LatestPosting&, const LatestPosting&) = default;
};

// From the tables' ends, newest date first.
std::vector<LatestPosting> ReadLatestPostings(BankTables& tables);

// The latest postings as rows: Date, Kind, Number, File, Payee or source, Amount, Status.
class LatestPostings : public RowSource {
 public:
  explicit LatestPostings(std::vector<LatestPosting> postings) : postings_(std::move(postings)) {}
  std::vector<std::string> Headings() const override;
  std::size_t RowCount() override { return postings_.size(); }
  std::vector<std::string> Row(std::size_t row) override;
  std::string RowStyle(std::size_t row) override;
  bool IsNumeric(std::size_t column) const override { return column == 5; }

 private:
  std::vector<LatestPosting> postings_;
};

}  // namespace tallwick
