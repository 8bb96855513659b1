// What the main window says about the selected bank: its figures now, and the transactions entered last.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/currency.h"
#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

// A sum and how many items it has.
struct CountedSum {
  Currency sum;
  int count = 0;
  void Add(Currency amount) {
    sum += amount;
    ++count;
  }
};

struct LatestPosting {
  Date dated;
  std::string kind;         // "Check", "Deposit", "Wire" or "Voucher"
  std::string number;       // of a deposit its sequence
  std::string file_number;  // of a deposit with several "3 files"
  std::string payee;        // or the source of a deposit's first item
  Currency amount;
  std::string status;  // in words
  std::string style;   // see RowSource::RowStyle
};

struct BankOverview {
  Currency book_balance;
  CountedSum outstanding_checks;
  CountedSum outstanding_deposits;    // deposit items
  std::vector<LatestPosting> latest;  // newest date first
};

// The check book balance is the balance of the last reconciliation, plus deposits and less checks and wires
// of later accounting periods, plus checks voided or stopped since. Empty when the bank's tables cannot be
// opened.
BankOverview ReadBankOverview(Session& session);

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
