#include "cli/demo/company.h"

#include <cstdio>
#include <initializer_list>

#include "cli/demo/bank_book.h"
#include "cli/demo/closing.h"
#include "cli/demo/names.h"
#include "cli/demo/random.h"
#include "shell/rights.h"

namespace tallwick::cli {

namespace {

BankRecord Account(std::string code, std::string name, std::string address, std::string city,
                   std::string account, std::string phone, std::string routing) {
  BankRecord bank;
  bank.code = std::move(code);
  bank.name = std::move(name);
  bank.address1 = std::move(address);
  bank.city_state = std::move(city);
  bank.account_number = std::move(account);
  bank.phone = std::move(phone);
  bank.routing_number = std::move(routing);
  bank.check_stock = "VOUCHER";
  bank.check_position = "TOP";
  bank.check_copies = 1;
  bank.audit_trail = true;
  return bank;
}

std::vector<BankPlan> Plans() {
  BankPlan main{Account("FNT", "First National Trust", "12 Main Street", "Lakeside, OH 43440", "00123456",
                        "419-555-0142", "041200050"),
                10001, "FT"};
  main.bank.date_type = 1;
  main.bank.month_statements = true;
  main.bank.auto_date = 1;
  main.bank.check_inventory = true;
  main.bank.lowest_check = "10001";
  main.bank.highest_check = "99999";
  BankPlan savings{Account("LSB", "Lakeside Savings Bank", "300 Second Street", "Lakeside, OH 43440",
                           "7740018821", "419-555-0177", "041203824"),
                   5201, "LS"};
  BankPlan earnest{Account("HCB", "Harbor Community Bank", "45 Dock Street", "Port Clinton, OH 43452",
                           "90-2218-04", "419-555-0119", "041215663"),
                   2001, "HC"};
  earnest.bank.date_type = 1;
  return {main, savings, earnest};
}

AgentRecord Agent() {
  AgentRecord agent;
  agent.name = TitleOffice().name;
  agent.address1 = TitleOffice().address1;
  agent.city_state = TitleOffice().city_state;
  agent.bank_code = "FNT";
  agent.ledger_points = 9;
  agent.report_points = 9;
  agent.heading = {12, "Arial", 1, 0};
  agent.detail = {9, "Arial", 0, 0};
  return agent;
}

clsSecurity User(std::string login, std::string name, std::string group, std::initializer_list<int> denied,
                 std::vector<std::string> banks) {
  clsSecurity user;
  user.osLogin = std::move(login);
  user.sUserName = std::move(name);
  user.sGroup = std::move(group);
  for (int right : denied) user.SetRight(right, false);
  user.sBankCodes = std::move(banks);
  return user;
}

std::vector<clsSecurity> Users() {
  const auto no_purge = {kRightPurgeFiles};
  const auto no_voids = {kRightPurgeFiles, kRightReconcile, kRightVoidChecks};
  return {User("ADMIN", "Ruth Lindqvist", "Administrator", {}, {"FNT", "LSB", "HCB"}),
          User("JKELLER", "Joan M. Keller", "Power User", {}, {"FNT", "LSB", "HCB"}),
          User("RDAVIS", "Robert L. Davis", "User", no_purge, {"FNT", "LSB"}),
          User("TSZABO", "Tamás B. Szabo", "User", no_voids, {"FNT"}),
          User("AOKAFOR", "Amara Okafor", "User", no_voids, {"LSB", "HCB"})};
}

// Files are numbered within the year in which they are opened, and this office's year did not begin with the
// demo.
class FileNumbers {
 public:
  FileNumbers(int files, const Date& start)
      : year_(start.year), last_((JulianDay(start) - JulianDay({start.year, 1, 1})) * files / 365) {}

  std::string Next(const Date& opened) {
    if (opened.year != year_) last_ = 0;
    year_ = opened.year;
    char text[24];
    std::snprintf(text, sizeof text, "%02d-%04d", year_ % 100, ++last_);
    return text;
  }

 private:
  int year_;
  int last_;
};

Date OpeningDay(const Date& start, int file, int files, const Date& today) {
  const Date day = BusinessDay(DaysLater(start, static_cast<int>(std::int64_t{file} * 365 / files)));
  if (day <= today) return day;
  const int back = DayOfWeek(today) == 0 ? 2 : DayOfWeek(today) == 6 ? 1 : 0;
  return DaysLater(today, -back);
}

}  // namespace

DemoCompany MakeDemoCompany(std::uint64_t seed, int files, const Date& today) {
  Random random(seed);
  DemoCompany company;
  company.agent = Agent();
  company.users = Users();
  std::vector<BankBook> books;
  for (const BankPlan& plan : Plans()) books.emplace_back(random, plan, today);
  const Date start = DaysLater(today, -364);
  FileNumbers numbers(files, start);
  for (int file = 0; file < files; ++file) {
    const Date opened = OpeningDay(start, file, files, today);
    const Closing closing = MakeClosing(random, numbers.Next(opened), opened, static_cast<int>(books.size()));
    for (const MoneyIn& in : closing.in)
      books[static_cast<std::size_t>(in.bank)].Receive(closing.file_no, in);
    for (const MoneyOut& out : closing.out)
      books[static_cast<std::size_t>(out.bank)].PayOut(closing.file_no, out);
    if (!closing.note.empty()) company.notes.push_back({closing.file_no, "GEN", closing.note});
  }
  for (BankBook& book : books) company.banks.push_back(book.Finish());
  return company;
}

}  // namespace tallwick::cli
