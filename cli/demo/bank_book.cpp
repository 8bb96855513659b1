#include "cli/demo/bank_book.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace tallwick::cli {

namespace {

Date MonthEnd(const Date& date) {
  const Date next = date.month == 12 ? Date{date.year + 1, 1, 1} : Date{date.year, date.month + 1, 1};
  return DaysLater(next, -1);
}

// The last statement that the office has had the time to reconcile.
Date LastReconciliation(const Date& today) {
  const Date before = DaysLater({today.year, today.month, 1}, -1);
  return today.day > 8 ? before : DaysLater({before.year, before.month, 1}, -1);
}

constexpr std::array<std::string_view, 4> kVoidReasons{"Wrong amount", "Payee's name misspelled",
                                                       "Closing postponed", "Printed on the wrong stock"};
constexpr std::array<std::string_view, 3> kStopReasons{"Lost in the mail", "Never received by payee",
                                                       "Reported stolen"};

}  // namespace

BankBook::BankBook(Random& random, const BankPlan& plan, const Date& today)
    : random_(random),
      plan_(plan),
      today_(today),
      reconciled_(LastReconciliation(today)),
      next_check_(plan.first_check) {
  book_.bank = plan.bank;
}

// Periods know no 29 February: that day's items belong to the 28th.
Period BankBook::PeriodOf(const Date& date) const {
  if (plan_.bank.date_type == 0) return {date.month, 0, date.year};
  return {date.month, date.month == 2 ? std::min(date.day, 28) : date.day, date.year};
}

Period BankBook::StatementOf(const Date& date) const {
  return PeriodOf(MonthEnd(date));
}

void BankBook::Receive(const std::string& file_no, const MoneyIn& in) {
  if (in.date <= today_) receipts_.push_back({file_no, in});
}

void BankBook::PayOut(const std::string& file_no, const MoneyOut& out) {
  const bool vouchered = !out.vouchered.IsEmpty() && out.vouchered <= today_;
  if (out.date <= today_ || vouchered) payments_.push_back({file_no, out, 0, false});
}

DemoBank BankBook::Finish() {
  MakeVouchers();
  MakeDeposits();
  MakeWires();
  MakeChecks();
  Balance();
  return std::move(book_);
}

void BankBook::MakeVouchers() {
  std::vector<Payment*> vouchered;
  for (Payment& payment : payments_)
    if (!payment.out.vouchered.IsEmpty() && payment.out.vouchered <= today_) vouchered.push_back(&payment);
  std::stable_sort(vouchered.begin(), vouchered.end(), [](const Payment* left, const Payment* right) {
    return left->out.vouchered < right->out.vouchered;
  });
  for (Payment* payment : vouchered) {
    VoucherRecord voucher;
    voucher.number = std::to_string(book_.vouchers.size() + 1);
    voucher.file_number = payment->file_no;
    voucher.dated = payment->out.vouchered;
    voucher.payee = payment->out.payee.name;
    voucher.reason = payment->out.reason;
    voucher.amount = payment->out.amount;
    voucher.accounting = PeriodOf(payment->out.vouchered);
    voucher.status = "O";
    book_.vouchers.push_back(std::move(voucher));
    payment->voucher = book_.vouchers.size();
  }
  book_.bank.last_voucher = static_cast<std::int64_t>(book_.vouchers.size());
}

void BankBook::MakeChecks() {
  for (const Payment& payment : payments_)
    if (!payment.out.wire && payment.out.date <= today_) to_write_.emplace(payment.out.date, payment);
  while (!to_write_.empty()) {
    const Payment payment = to_write_.begin()->second;
    to_write_.erase(to_write_.begin());
    WriteCheck(payment);
  }
}

CheckRecord BankBook::CheckFor(const Payment& payment) {
  CheckRecord check;
  check.number = std::to_string(next_check_++);
  check.dated = payment.out.date;
  check.payee = payment.out.payee.name;
  check.address1 = payment.out.payee.address1;
  check.address2 = payment.out.payee.address2;
  check.city_state = payment.out.payee.city_state;
  check.tin = payment.out.payee.tin;
  check.amount = payment.out.amount;
  check.accounting = PeriodOf(payment.out.date);
  check.status = "O";
  check.control = Operator();
  check.file_number = payment.file_no;
  if (payment.voucher != 0) check.voucher_number = book_.vouchers[payment.voucher - 1].number;
  return check;
}

void BankBook::WriteCheck(const Payment& payment) {
  const Date& date = payment.out.date;
  if (random_.Chance(6)) SpoilCheck(date);
  CheckRecord check = CheckFor(payment);
  if (random_.Chance(12)) {
    check.status = "V";
    check.reason = random_.Pick(std::span(kVoidReasons));
    check.statement = PeriodOf(date);
    book_.checks.push_back(check);
    check = CheckFor(payment);
  }
  if (LoseCheck(payment, check)) return;
  if (random_.Chance(15)) check.status = "H";
  ClearCheck(date, check);
  UseVoucher(payment, check);
  if (Reconciled(date)) check_book_ -= check.amount;
  book_.checks.push_back(std::move(check));
}

// The first check that names a voucher keeps it, also when payment of the check is stopped.
void BankBook::UseVoucher(const Payment& payment, const CheckRecord& check) {
  if (payment.voucher == 0) return;
  VoucherRecord& voucher = book_.vouchers[payment.voucher - 1];
  if (voucher.check_number.empty()) voucher.check_number = check.number;
}

// A blank check that the printer ruined: kept for its number, under the file number that voided checks share.
void BankBook::SpoilCheck(const Date& date) {
  CheckRecord check;
  check.number = std::to_string(next_check_++);
  check.dated = date;
  check.payee = "VOID";
  check.accounting = PeriodOf(date);
  check.statement = PeriodOf(date);
  check.status = "V";
  check.control = Operator();
  check.file_number = "VOID";
  check.reason = "Spoiled in the printer";
  book_.checks.push_back(std::move(check));
}

// A check that did not arrive is stopped after a month, and another one goes out.
bool BankBook::LoseCheck(const Payment& payment, CheckRecord check) {
  const Date stopped = BusinessDay(DaysLater(payment.out.date, 30));
  const Date again = BusinessDay(DaysLater(stopped, 2));
  if (payment.again || again > today_ || !random_.Chance(5)) return false;
  check.status = "S";
  check.reason = random_.Pick(std::span(kStopReasons));
  check.statement = PeriodOf(stopped);
  UseVoucher(payment, check);
  if (Reconciled(payment.out.date) && !Reconciled(stopped)) check_book_ -= check.amount;
  book_.checks.push_back(std::move(check));
  Payment second = payment;
  second.out.date = again;
  second.again = true;
  to_write_.emplace(again, std::move(second));
  return true;
}

// Most checks come back within two weeks, some take longer, a few are never cashed.
void BankBook::ClearCheck(const Date& written, CheckRecord& check) {
  if (random_.Chance(25)) return;
  const Date cleared =
      BusinessDay(DaysLater(written, random_.Chance(120) ? random_.Int(13, 55) : random_.Int(2, 12)));
  if (!Reconciled(cleared)) return;
  check.status = "C";
  check.statement = StatementOf(cleared);
  statement_ -= check.amount;
}

void BankBook::MakeDeposits() {
  std::stable_sort(receipts_.begin(), receipts_.end(),
                   [](const Receipt& left, const Receipt& right) { return left.in.date < right.in.date; });
  for (std::size_t i = 0; i < receipts_.size();) {
    const Date date = receipts_[i].in.date;
    for (int sequence = 1; i < receipts_.size() && receipts_[i].in.date == date; ++sequence) {
      std::vector<Receipt> items;
      while (i < receipts_.size() && receipts_[i].in.date == date && items.size() < kDepositItems)
        items.push_back(receipts_[i++]);
      AddDeposit(date, sequence, items);
    }
  }
}

void BankBook::AddDeposit(const Date& date, int sequence, const std::vector<Receipt>& items) {
  DepositRecord deposit;
  deposit.dated = StoredDate(date);
  deposit.sequence = std::to_string(sequence);
  deposit.accounting = PeriodOf(date);
  deposit.item_count = static_cast<std::int32_t>(items.size());
  const Date cleared = BusinessDay(DaysLater(date, random_.Int(1, 2)));
  for (std::size_t i = 0; i < items.size(); ++i) {
    DepositItem& item = deposit.items[i];
    item.number = std::to_string(i + 1);
    item.file_number = items[i].file_no;
    item.source = items[i].in.source;
    item.amount = items[i].in.amount;
    item.status = Reconciled(cleared) ? "C" : "O";
    if (Reconciled(cleared)) item.statement = StatementOf(cleared);
    if (Reconciled(cleared)) statement_ += item.amount;
    if (Reconciled(date)) check_book_ += item.amount;
    // The mark of a wire coming in stands at the item's position.
    if (items[i].in.wire) {
      deposit.spare.resize(i, ' ');
      deposit.spare += 'X';
    }
  }
  book_.deposits.push_back(std::move(deposit));
}

void BankBook::MakeWires() {
  std::vector<const Payment*> wires;
  for (const Payment& payment : payments_)
    if (payment.out.wire && payment.out.date <= today_) wires.push_back(&payment);
  std::stable_sort(wires.begin(), wires.end(), [](const Payment* left, const Payment* right) {
    return left->out.date < right->out.date;
  });
  int of_day = 0;
  Date day;
  for (const Payment* payment : wires) {
    const Date& date = payment->out.date;
    of_day = date == day ? of_day + 1 : 1;
    day = date;
    WireRecord wire;
    char number[16];
    std::snprintf(number, sizeof number, "%02d%02d%02d%04d", date.year % 100, date.month, date.day,
                  of_day % 10000);
    wire.number = std::string(plan_.wire_prefix) + number;
    wire.file_number = payment->file_no;
    wire.dated = date;
    wire.payee = payment->out.payee.name;
    wire.amount = payment->out.amount;
    wire.accounting = PeriodOf(date);
    wire.control = Operator();
    wire.status = Reconciled(date) ? "C" : "O";
    if (Reconciled(date)) {
      wire.statement = StatementOf(date);
      check_book_ -= wire.amount;
      statement_ -= wire.amount;
    }
    book_.wires.push_back(std::move(wire));
  }
}

void BankBook::Balance() {
  book_.bank.accounting = PeriodOf(today_);
  book_.bank.reconciled = StatementOf(reconciled_);
  if (plan_.bank.date_type != 0)
    book_.bank.work_in_progress = StatementOf(DaysLater({reconciled_.year, reconciled_.month, 1}, -1));
  book_.bank.beginning_balance = check_book_;
  book_.bank.ending_balance = check_book_;
  book_.bank.statement_balance = statement_;
}

}  // namespace tallwick::cli
