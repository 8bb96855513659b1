#include "bench/checks.h"

#include <array>
#include <cstdio>
#include <utility>

namespace tallwick::bench {
namespace {

// A small generator of our own: the standard's distributions differ from library to library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint32_t Below(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::uint32_t>((state_ >> 33U) % limit);
  }
  template <std::size_t N>
  const char* Pick(const std::array<const char*, N>& words) {
    return words[Below(static_cast<std::uint32_t>(N))];
  }

 private:
  std::uint64_t state_;
};

constexpr std::array<const char*, 24> kGivenNames = {
    "JAMES",   "Mary",   "ROBERT",  "Patricia", "JOHN",    "Jennifer", "MICHAEL", "Linda",
    "DAVID",   "Susan",  "WILLIAM", "Karen",    "RICHARD", "Nancy",    "JOSEPH",  "Lisa",
    "CHARLES", "Sandra", "THOMAS",  "Ashley",   "DANIEL",  "Emily",    "MATTHEW", "Donna"};
constexpr std::array<const char*, 32> kFamilyNames = {
    "SMITH",     "Johnson",  "WILLIAMS", "Brown", "JONES",   "Garcia", "MILLER", "Davis",
    "WILSON",    "Anderson", "TAYLOR",   "Moore", "JACKSON", "Martin", "LEE",    "Thompson",
    "WHITE",     "Harris",   "CLARK",    "Lewis", "WALKER",  "Hall",   "ALLEN",  "Young",
    "HERNANDEZ", "King",     "WRIGHT",   "Hill",  "SCOTT",   "Green",  "ADAMS",  "Baker"};
constexpr std::array<const char*, 12> kPlaces = {"LAKESIDE",  "HARBOR",   "Summit",    "FIRST NATIONAL",
                                                 "Prairie",   "OAK PARK", "Riverbend", "COUNTY",
                                                 "Evergreen", "GRANITE",  "Bayview",   "MIDLAND"};
constexpr std::array<const char*, 12> kTrades = {"TITLE CO",      "Savings Bank",      "MORTGAGE CORP",
                                                 "Realty Group",  "RECORDER OF DEEDS", "Insurance Agency",
                                                 "SURVEYING INC", "Pest Control",      "TAX COLLECTOR",
                                                 "Law Offices",   "HOMEOWNERS ASSN",   "Appraisal Services"};
constexpr std::array<const char*, 6> kStreets = {"Main Street", "Oak Avenue", "2nd Street",
                                                 "Harbor Road", "Mill Lane",  "Courthouse Square"};

template <typename... Values>
std::string Format(const char* format, Values... values) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

std::string Payee(Random& random) {
  if (random.Below(3) == 0) return std::string(random.Pick(kGivenNames)) + " " + random.Pick(kFamilyNames);
  return std::string(random.Pick(kPlaces)) + " " + random.Pick(kTrades);
}

// Days go by evenly over four years of twelve months of 28 days each, 1,344 days.
constexpr std::uint64_t kDays = 1344;

PeriodNumbers DayOf(std::uint32_t index, std::uint32_t count) {
  const auto day = static_cast<std::uint32_t>(std::uint64_t{index} * kDays / count);
  return {static_cast<int>(day / 28 % 12) + 1, static_cast<int>(day % 28) + 1,
          static_cast<int>(day / (28 * 12)) + 2021};
}

void SetStatus(Check& check, Random& random) {
  const std::uint32_t draw = random.Below(100);
  check.status = draw < 70 ? "C" : draw < 94 ? "O" : draw < 98 ? "V" : "S";
  if (check.status == "C") {
    check.statement = check.accounting;
    check.statement.day = 28;
  }
  if (check.status == "V") check.reason = "Closing was postponed, check returned by the payee";
  if (check.status == "S") check.reason = "Lost in the mail";
}

Check MakeCheck(std::uint32_t number, const PeriodNumbers& day, Random& random) {
  Check check;
  check.number = Format("%12u", number);
  check.dated = Format("%04d%02d%02d", day.year, day.month, day.day);
  check.payee = Payee(random);
  check.address1 = Format("%u ", random.Below(9000) + 1) + random.Pick(kStreets);
  if (random.Below(4) == 0) check.address2 = Format("Suite %u", random.Below(400) + 1);
  check.city = std::string(random.Pick(kPlaces)) + Format(", IL %05u", random.Below(900) + 60001);
  check.cents = random.Below(8) == 0 ? random.Below(40000000) : random.Below(250000);
  check.accounting = day;
  check.control = Format("%u", random.Below(100000));
  if (random.Below(5) == 0) check.voucher = Format("%12u", number / 5 + 1);
  check.file_number = Format("%02d-%04u", day.year % 100, random.Below(9999) + 1);
  if (random.Below(3) == 0) check.tin = Format("%02u-%07u", random.Below(90) + 10, random.Below(10000000));
  SetStatus(check, random);
  return check;
}

}  // namespace

std::vector<Check> MakeChecks(std::uint32_t first, std::uint32_t count) {
  Random random(first);
  std::vector<Check> checks;
  checks.reserve(count);
  for (std::uint32_t index = 0; index < count; ++index)
    checks.push_back(MakeCheck(first + index, DayOf(index, count), random));
  return checks;
}

std::vector<std::string> ShuffledNumbers(const std::vector<Check>& checks, std::size_t most) {
  std::vector<std::string> numbers;
  numbers.reserve(checks.size());
  for (const Check& check : checks) numbers.push_back(check.number);
  Random random(7);
  for (std::size_t left = numbers.size(); left > 1; --left)
    std::swap(numbers[left - 1], numbers[random.Below(static_cast<std::uint32_t>(left))]);
  if (numbers.size() > most) numbers.resize(most);
  return numbers;
}

}  // namespace tallwick::bench
