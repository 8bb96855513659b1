#include "cli/demo/closing.h"

#include <algorithm>
#include <array>

namespace tallwick::cli {

Date DaysLater(const Date& date, int days) {
  return DateFromJulianDay(JulianDay(date) + days);
}

Date BusinessDay(Date date) {
  while (DayOfWeek(date) == 0 || DayOfWeek(date) == 6) date = DaysLater(date, 1);
  return date;
}

namespace {

// Amounts while a story is made are whole cents.
using Cents = std::int64_t;

constexpr Cents Dollars(Cents dollars) {
  return dollars * 100;
}
constexpr Cents Share(Cents of, int per_thousand) {
  return of * per_thousand / 1000;
}

// What somebody is paid and why. Costs are written as braced lists, whose parts are drawn from left to right
// on every compiler; the arguments of a call are not.
struct Cost {
  Date date;
  Payee payee;
  Cents amount = 0;
  std::string reason;
};

// Money and people of one sale or one new loan on a house that is owned already.
class Story {
 public:
  Story(Random& random, std::string file_no, const Date& opened, int banks) : random_(random) {
    closing_.file_no = std::move(file_no);
    closing_.opened = BusinessDay(opened);
    closing_.closes = BusinessDay(DaysLater(opened, random.Int(24, 52)));
    const int draw = random.Int(0, 99);
    home_bank_ = banks < 2 || draw < 55 ? 0 : draw < 85 ? 1 : banks - 1;
    last_bank_ = banks - 1;
    place_ = PickPlace(random);
    house_ = StreetAddress(random);
  }

  Closing Sale();
  Closing NewLoan();
  Closing FallenThrough();

 private:
  Cents DollarsBetween(Cents low, Cents high) { return Dollars(random_.Between(low, high)); }
  Cents CentsBetween(Cents low, Cents high) { return random_.Between(Dollars(low), Dollars(high)); }
  Payee Resident(std::string name, bool old_house);
  void In(const Date& date, std::string source, Cents amount, bool wire = false);
  void Out(Cost cost);
  void PayRecordingAndTrades(const Date& date);
  void EarnestMoney(const std::string& buyer, Cents amount);
  void Finish();
  Cents Rest() const { return money_in_ - money_out_; }

  Random& random_;
  Closing closing_;
  int home_bank_ = 0;
  int last_bank_ = 0;
  Place place_;
  std::string house_;
  Cents money_in_ = 0;
  Cents money_out_ = 0;
};

Payee Story::Resident(std::string name, bool old_house) {
  if (!old_house) return {std::move(name), house_, "", std::string(place_.city_state), ""};
  return {std::move(name), StreetAddress(random_), "", std::string(PickPlace(random_).city_state), ""};
}

void Story::In(const Date& date, std::string source, Cents amount, bool wire) {
  if (amount <= 0) return;
  money_in_ += amount;
  closing_.in.push_back({date, std::move(source), Currency::FromCents(amount), wire, home_bank_});
}

void Story::Out(Cost cost) {
  if (cost.amount <= 0) return;
  money_out_ += cost.amount;
  MoneyOut out{cost.date,
               std::move(cost.payee),
               Currency::FromCents(cost.amount),
               std::move(cost.reason),
               false,
               home_bank_,
               {}};
  if (cost.amount > Dollars(150'000)) out.wire = random_.Chance(850);
  if (!out.wire && random_.Chance(140))
    out.vouchered = std::min(cost.date, BusinessDay(DaysLater(cost.date, -random_.Int(2, 9))));
  closing_.out.push_back(std::move(out));
}

// The buyer's deposit in good faith. Some offices keep it in an account of its own until the closing.
void Story::EarnestMoney(const std::string& buyer, Cents amount) {
  const Date day = BusinessDay(DaysLater(closing_.opened, random_.Int(0, 3)));
  In(day, "Earnest money - " + buyer, amount);
  if (home_bank_ == last_bank_ || !random_.Chance(90)) return;
  closing_.in.back().bank = last_bank_;
  closing_.out.push_back({closing_.closes,
                          TitleOffice(),
                          Currency::FromCents(amount),
                          "Earnest money to closing account",
                          true,
                          last_bank_,
                          {}});
  closing_.in.push_back(
      {closing_.closes, "Transfer of earnest money", Currency::FromCents(amount), true, home_bank_});
}

void Story::PayRecordingAndTrades(const Date& date) {
  Out({date, CountyRecorder(place_.county), Dollars(34) + Dollars(8) * random_.Int(0, 18), "Recording fees"});
  for (int trades = random_.Int(0, 2); trades > 0; --trades)
    Out({date, PickTradesman(random_), CentsBetween(75, 925),
         "Invoice " + std::to_string(random_.Int(1040, 98700))});
}

Closing Story::Sale() {
  const Cents price = Dollars(500) * random_.Between(180, 1750);
  const std::string buyer = HouseholdName(random_);
  const std::string seller = HouseholdName(random_);
  const Date day = closing_.closes;
  EarnestMoney(buyer, Dollars(100) * random_.Between(10, std::max<Cents>(12, price / Dollars(5000))));
  const bool cash = random_.Chance(160);
  const Cents loan = cash ? 0 : Dollars(100) * (Share(price, random_.Int(700, 965)) / Dollars(100));

  const Payee& lender = PickLender(random_);
  if (random_.Chance(680))
    Out({day, lender, Share(price, random_.Int(250, 800)) + random_.Between(0, 99'999),
         "Payoff loan " + std::to_string(random_.Int(20'000'000, 89'999'999))});
  Out({day, PickBroker(random_), Share(price, random_.Int(24, 31)), "Commission, listing side"});
  if (random_.Chance(820))
    Out({day, PickBroker(random_), Share(price, random_.Int(24, 31)), "Commission, selling side"});
  Out({day, TitleOffice(), Dollars(475) + Share(price, 4) + random_.Between(0, 9'999),
       "Title premium and closing fee"});
  Out({day, CountyTreasurer(place_.county), Share(price, random_.Int(6, 11)) + random_.Between(0, 9'999),
       "Real estate taxes"});
  const Cents seller_paid = money_out_;
  PayRecordingAndTrades(day);
  if (!cash) Out({day, PickInsurer(random_), CentsBetween(640, 2850), "Homeowner's premium"});
  const Cents buyer_paid = money_out_ - seller_paid;

  In(day, PickLender(random_).name, loan, true);
  In(day, "Balance due - " + buyer, price + buyer_paid - money_in_, random_.Chance(400));
  Out({day, Resident(seller, true), price - seller_paid, "Proceeds of sale"});
  Finish();
  return std::move(closing_);
}

Closing Story::NewLoan() {
  const Cents loan = Dollars(500) * random_.Between(120, 1100);
  const std::string owner = HouseholdName(random_);
  // An owner may think it over for three days before the money goes out.
  const Date day = BusinessDay(DaysLater(closing_.closes, 4));
  In(day, PickLender(random_).name, loan, true);
  Out({day, PickLender(random_), Share(loan, random_.Int(600, 930)) + random_.Between(0, 99'999),
       "Payoff loan " + std::to_string(random_.Int(20'000'000, 89'999'999))});
  Out({day, TitleOffice(), Dollars(350) + Share(loan, 3) + random_.Between(0, 9'999),
       "Title premium and closing fee"});
  PayRecordingAndTrades(day);
  if (random_.Chance(500)) Out({day, PickInsurer(random_), CentsBetween(640, 1900), "Homeowner's premium"});
  Out({day, Resident(owner, false), Rest(), "Loan proceeds"});
  Finish();
  return std::move(closing_);
}

Closing Story::FallenThrough() {
  const std::string buyer = HouseholdName(random_);
  const Cents earnest = DollarsBetween(1'000, 6'500);
  In(BusinessDay(DaysLater(closing_.opened, 1)), "Earnest money - " + buyer, earnest);
  Out({closing_.closes, Resident(buyer, true), earnest, "Refund of earnest money"});
  closing_.note = "Buyer's financing was declined. Earnest money refunded with the consent of both parties.";
  return std::move(closing_);
}

// The few that do not come out even, and what somebody wrote down.
void Story::Finish() {
  static constexpr std::array<std::string_view, 5> kNotes{
      "Seller will be out of state; documents by overnight mail.",
      "Wire instructions verified by telephone with the lender.",
      "Hold recording until the release of the 2009 mortgage is in.",
      "Taxes prorated on the last bill. Re-prorate when the new bill comes out.\r\n"
      "Both sides have signed the tax agreement.",
      "Buyer's attorney wants a copy of the final statement and of every check."};
  if (random_.Chance(30)) {
    In(closing_.closes, "Recording fee, paid twice", CentsBetween(12, 240));
    closing_.note = "Funds left over: refund or hand to the state's unclaimed funds.";
  } else if (random_.Chance(9)) {
    Out({BusinessDay(DaysLater(closing_.closes, 6)), CountyRecorder(place_.county), CentsBetween(4, 58),
         "Additional recording fee"});
    closing_.note = "Recorder charged more pages than collected. Bill the buyer.";
  } else if (random_.Chance(140)) {
    closing_.note = random_.Pick(std::span(kNotes));
  }
}

}  // namespace

Closing MakeClosing(Random& random, std::string file_no, const Date& opened, int banks) {
  Story story(random, std::move(file_no), opened, banks);
  const int draw = random.Int(0, 99);
  if (draw < 4) return story.FallenThrough();
  return draw < 28 ? story.NewLoan() : story.Sale();
}

}  // namespace tallwick::cli
