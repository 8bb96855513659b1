// Turns the money of all files in one bank account into its checks, deposits, wires and vouchers: numbered,
// some spoiled and written again, and cleared by the bank's statements as far as these have been reconciled.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/demo/closing.h"
#include "cli/demo/company.h"

namespace tallwick::cli {

struct BankPlan {
  BankRecord bank;  // identity, address and the form of its periods (date_type)
  std::int64_t first_check = 0;
  std::string_view wire_prefix;  // two letters before the wire confirmations
};

class BankBook {
 public:
  BankBook(Random& random, const BankPlan& plan, const Date& today);

  void Receive(const std::string& file_no, const MoneyIn& in);
  void PayOut(const std::string& file_no, const MoneyOut& out);
  // Makes the records of everything received and paid out.
  DemoBank Finish();

 private:
  struct Receipt {
    std::string file_no;
    MoneyIn in;
  };
  struct Payment {
    std::string file_no;
    MoneyOut out;
    std::size_t voucher = 0;  // place in the vouchers + 1; 0 = none
    bool again = false;       // written again in place of a lost check: it is not lost twice
  };

  Period PeriodOf(const Date& date) const;
  Period StatementOf(const Date& date) const;
  bool Reconciled(const Date& date) const { return date <= reconciled_; }
  std::string_view Operator() { return random_.Pick(std::span(kOperators)); }

  void MakeVouchers();
  void MakeChecks();
  CheckRecord CheckFor(const Payment& payment);
  void WriteCheck(const Payment& payment);
  void UseVoucher(const Payment& payment, const CheckRecord& check);
  void SpoilCheck(const Date& date);
  bool LoseCheck(const Payment& payment, CheckRecord check);
  void ClearCheck(const Date& written, CheckRecord& check);
  void MakeDeposits();
  void AddDeposit(const Date& date, int sequence, const std::vector<Receipt>& items);
  void MakeWires();
  void Balance();

  static constexpr std::string_view kOperators[] = {"JMK", "RLD", "TSB", "AOP"};

  Random& random_;
  BankPlan plan_;
  Date today_;
  Date reconciled_;  // the last day of the last statement reconciled
  std::vector<Receipt> receipts_;
  std::vector<Payment> payments_;
  std::multimap<Date, Payment> to_write_;
  std::int64_t next_check_ = 0;
  DemoBank book_;
  // Running sums for the bank record, up to the last reconciliation.
  Currency check_book_;
  Currency statement_;
};

}  // namespace tallwick::cli
