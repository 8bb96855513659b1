#include "cli/demo/audit_book.h"

#include <algorithm>
#include <array>

#include "audit/audit_trail.h"
#include "cli/demo/closing.h"
#include "core/text.h"
#include "posting/deposit_facts.h"

namespace tallwick::cli {

namespace {

struct Clerk {
  std::string_view operator_code;
  std::string_view login;
  std::string_view computer;
};

// The first one stands in where another may not work with the bank.
constexpr std::array<Clerk, 4> kClerks{{{"JMK", "JKELLER", "BACKOFFICE"},
                                        {"RLD", "RDAVIS", "FRONTDESK1"},
                                        {"TSB", "TSZABO", "FRONTDESK2"},
                                        {"AOP", "AOKAFOR", "FRONTDESK3"}}};

struct Happening {
  Date date;
  int tx = 0;
  std::string reference;
  std::string events;  // lines with their ends
  const Clerk* clerk = &kClerks.front();
};

// Office hours are spread evenly over what happened on a day.
constexpr int kOpens = 8 * 3600 + 35 * 60;
constexpr int kOfficeSeconds = 8 * 3600;

class StandingClock : public Clock {
 public:
  DateTime Now() override { return now; }
  void Sleep(int) override {}

  DateTime now;
};

DateTime MomentOf(const Date& date, std::size_t place, std::size_t of) {
  const int second = kOpens + static_cast<int>(kOfficeSeconds * (static_cast<std::int64_t>(place) + 1) /
                                               (static_cast<std::int64_t>(of) + 1));
  return {date, second / 3600, second / 60 % 60, second % 60};
}

class AuditBook {
 public:
  AuditBook(const DemoCompany& company, const DemoBank& bank) : company_(company), bank_(bank) {}

  // In the order of time.
  std::vector<Happening> Finish() {
    for (const CheckRecord& check : bank_.checks) AddCheck(check);
    for (std::size_t i = 0; i < bank_.deposits.size(); ++i) AddDeposit(bank_.deposits[i], i);
    for (const WireRecord& wire : bank_.wires)
      Add(wire.dated, kAuditPostWire, wire.number, "[ADD] " + wire.number, ClerkOf(wire.control));
    std::stable_sort(happened_.begin(), happened_.end(),
                     [](const Happening& left, const Happening& right) { return left.date < right.date; });
    if (!happened_.empty()) {
      Happening first{DaysLater(happened_.front().date, -1), kAuditAccountEdit, bank_.bank.code,
                      "[EDIT] chkGenAuditTrail was: Unchecked now: Checked\r\n"};
      happened_.insert(happened_.begin(), std::move(first));
    }
    return std::move(happened_);
  }

 private:
  void Add(const Date& date, int tx, const std::string& reference, const std::string& event,
           const Clerk* clerk) {
    happened_.push_back({date, tx, reference, event + "\r\n", clerk});
  }

  void AddCheck(const CheckRecord& check) {
    const Clerk* clerk = ClerkOf(check.control);
    const bool entered_void = check.status == "V" && check.payee == "VOID";
    if (entered_void)
      return Add(check.dated, kAuditVoidCheck, check.number, "[ADD VOID] " + check.number, clerk);
    Add(check.dated, kAuditPostCheck, check.number, "[ADD] " + check.number, clerk);
    if (check.status == "V") Add(check.dated, kAuditVoidCheck, check.number, "[VOID] " + check.number, clerk);
    if (!check.address1.empty() && check.number.ends_with("17"))  // a slip put right on the same day
      Add(check.dated, kAuditPostCheck, check.number, "[EDIT] txtCheckAddr1 was:  now: " + check.address1,
          clerk);
  }

  void AddDeposit(const DepositRecord& deposit, std::size_t place) {
    const std::string key = DepositName(deposit.dated, deposit.sequence);
    Add(ParseStoredDate(deposit.dated).value_or(Date{}), kAuditPostDeposit, key, "[ADD] " + key,
        ClerkOf(kClerks[place % kClerks.size()].operator_code));
  }

  const Clerk* ClerkOf(std::string_view operator_code) const {
    for (const Clerk& clerk : kClerks) {
      if (clerk.operator_code == operator_code && MayWork(clerk)) return &clerk;
    }
    return &kClerks.front();
  }

  bool MayWork(const Clerk& clerk) const {
    return std::any_of(company_.users.begin(), company_.users.end(), [&](const clsSecurity& user) {
      return user.osLogin == clerk.login && user.MayUseBank(bank_.bank.code);
    });
  }

  const DemoCompany& company_;
  const DemoBank& bank_;
  std::vector<Happening> happened_;
};

std::size_t EndOfDay(const std::vector<Happening>& happened, std::size_t start) {
  std::size_t end = start;
  while (end < happened.size() && happened[end].date == happened[start].date) ++end;
  return end;
}

// The entries of a day go to the log together.
bool WriteBank(Session& session, const DemoCompany& company, const DemoBank& bank, int* entries) {
  StandingClock clock;
  const std::vector<Happening> happened = AuditBook(company, bank).Finish();
  for (std::size_t start = 0; start < happened.size();) {
    const std::size_t end = EndOfDay(happened, start);
    std::string day;
    AuditTarget target{
        true, session.Files(), clock, session.DataPath(), std::string(Trim(bank.bank.code)), {}, {}};
    for (std::size_t i = start; i < end; ++i) {
      clock.now = MomentOf(happened[i].date, i - start, end - start);
      target.login = happened[i].clerk->login;
      target.computer = happened[i].clerk->computer;
      if (i > start) day += "\r\n";
      day += WriteAuditHeader(target, happened[i].tx, happened[i].reference) + AuditBytes(happened[i].events);
    }
    if (!AppendAuditEntry(target, day)) return false;
    *entries += static_cast<int>(end - start);
    start = end;
  }
  return true;
}

}  // namespace

bool WriteDemoAudit(Session& session, const DemoCompany& company, int* entries) {
  return std::all_of(company.banks.begin(), company.banks.end(),
                     [&](const DemoBank& bank) { return WriteBank(session, company, bank, entries); });
}

}  // namespace tallwick::cli
