#include "cli/demo/names.h"

#include <array>

namespace tallwick::cli {

namespace {

constexpr std::string_view kGivenNames[] = {
    "James",   "Mary",    "Robert",  "Patricia", "John",    "Jennifer", "Michael",  "Linda",   "David",
    "Barbara", "William", "Susan",   "Richard",  "Jessica", "Joseph",   "Karen",    "Thomas",  "Sarah",
    "Carlos",  "Nancy",   "Daniel",  "Lisa",     "Matthew", "Margaret", "Anthony",  "Sandra",  "Marcus",
    "Ashley",  "Steven",  "Emily",   "Paul",     "Donna",   "Andrew",   "Michelle", "José",    "Carol",
    "Kenneth", "Amanda",  "Kevin",   "Dorothy",  "Brian",   "Melissa",  "Timothy",  "Deborah", "Ronald",
    "Renée",   "Jason",   "Rebecca", "Wei",      "Sharon",  "Jeffrey",  "Laura",    "Ryan",    "Cynthia",
    "Jacob",   "Amy",     "Gary",    "Kathleen", "Imran",   "Angela",   "Eric",     "Shirley", "Jonathan",
    "Brenda",  "Stephen", "Emma",    "Larry",    "Anna",    "Justin",   "Pamela",   "Scott",   "Priya"};

constexpr std::string_view kFamilyNames[] = {
    "Smith",     "Johnson",  "Williams", "Brown",     "Jones",      "Garcia",    "Miller",   "Davis",
    "Rodriguez", "Martinez", "Kowalski", "Novak",     "Gonzalez",   "Wilson",    "Anderson", "Thomas",
    "Taylor",    "Moore",    "Jackson",  "Martin",    "Lee",        "Peña",      "Thompson", "White",
    "Harris",    "Sanchez",  "Clark",    "Ramirez",   "Lewis",      "Robinson",  "Walker",   "Young",
    "Allen",     "King",     "Wright",   "Schneider", "Torres",     "Nguyen",    "Hill",     "Flores",
    "Green",     "Adams",    "Nelson",   "Baker",     "Hall",       "Rivera",    "Campbell", "Mitchell",
    "Carter",    "Roberts",  "O'Brien",  "Müller",    "Szabo",      "Papadakis", "Van Dyke", "McAllister",
    "Okafor",    "Patel",    "Chen",     "Kaminski",  "Fitzgerald", "Lindqvist", "Becker"};

constexpr std::string_view kStreets[] = {
    "Main",    "Maple",     "Harbor",     "Lakeshore", "Erie",     "Perry",    "Walnut",     "Cherry",
    "Second",  "Jefferson", "Orchard",    "Bayview",   "Catawba",  "Huron",    "Washington", "Mill",
    "Fremont", "Quarry",    "Lighthouse", "Cedar",     "Sycamore", "Columbus", "Monroe",     "Vine"};

constexpr std::string_view kStreetKinds[] = {"St", "St", "Ave", "Rd", "Dr", "Ln", "Ct", "Blvd"};

constexpr std::array<Place, 14> kPlaces{{{"Lakeside, OH 43440", "Ottawa"},
                                         {"Port Clinton, OH 43452", "Ottawa"},
                                         {"Oak Harbor, OH 43449", "Ottawa"},
                                         {"Marblehead, OH 43440", "Ottawa"},
                                         {"Genoa, OH 43430", "Ottawa"},
                                         {"Sandusky, OH 44870", "Erie"},
                                         {"Huron, OH 44839", "Erie"},
                                         {"Vermilion, OH 44089", "Erie"},
                                         {"Fremont, OH 43420", "Sandusky"},
                                         {"Clyde, OH 43410", "Sandusky"},
                                         {"Bellevue, OH 44811", "Sandusky"},
                                         {"Toledo, OH 43604", "Lucas"},
                                         {"Maumee, OH 43537", "Lucas"},
                                         {"Oregon, OH 43616", "Lucas"}}};

const std::array<Payee, 8> kLenders{
    {{"Inland Seas Mortgage Corporation", "4100 Talmadge Rd", "Payoff Department", "Toledo, OH 43623",
      "34-1802217"},
     {"Buckeye Hearth Home Loans LLC", "PO Box 71120", "", "Columbus, OH 43271", "31-1447093"},
     {"Sandusky Bay Savings Association", "301 W Water St", "", "Sandusky, OH 44870", "34-0617725"},
     {"Prairie Crest Mortgage Servicing", "PO Box 660044", "Attn: Payoffs", "Dallas, TX 75266", "75-2690018"},
     {"Three Rivers Farm Credit, ACA", "1200 Stone Dr", "", "Harrison, OH 45030", "31-0992746"},
     {"Maumee Valley Credit Union", "55 Conant St", "", "Maumee, OH 43537", "34-4428190"},
     {"Allegheny Union Bank, N.A.", "One Gateway Plaza", "Loan Servicing", "Pittsburgh, PA 15222",
      "25-1197336"},
     {"Northgate Federal Home Lending", "8800 Meridian Pkwy", "Suite 310", "Indianapolis, IN 46240",
      "35-2034871"}}};

const std::array<Payee, 7> kBrokers{
    {{"Shoreline Realty Group", "118 Madison St", "", "Port Clinton, OH 43452", "34-1730052"},
     {"Kestrel & Hayes, Realtors", "2240 Cleveland Rd", "", "Sandusky, OH 44870", "34-1511864"},
     {"Marblehead Properties LLC", "710 W Main St", "", "Marblehead, OH 43440", "34-1986630"},
     {"Vacationland Real Estate", "1525 E Perry St", "Suite 2", "Port Clinton, OH 43452", "34-1620473"},
     {"Old Orchard Brokers, Inc.", "3030 Monroe St", "", "Toledo, OH 43606", "34-1283359"},
     {"Firelands Home Sellers", "12 Public Square", "", "Huron, OH 44839", "34-1874405"},
     {"Croghan Street Realty", "415 Croghan St", "", "Fremont, OH 43420", "34-1659218"}}};

const std::array<Payee, 5> kInsurers{
    {{"Harborlight Mutual Insurance Co.", "PO Box 4400", "", "Akron, OH 44309", "34-0438116"},
     {"Western Reserve Farmers Insurance", "600 S Main St", "", "Norwalk, OH 44857", "34-0526690"},
     {"Beacon Lake Insurance Agency", "231 Madison St", "", "Port Clinton, OH 43452", "34-1540771"},
     {"Statewide Homeowners Assurance", "PO Box 182500", "", "Columbus, OH 43218", "31-4177100"},
     {"Erie Islands Flood Underwriters", "88 Jackson St", "Suite 400", "Sandusky, OH 44870", "34-1792286"}}};

const std::array<Payee, 6> kTradesmen{
    {{"Garrison Land Surveying, Inc.", "1905 Hayes Ave", "", "Sandusky, OH 44870", "34-1365027"},
     {"Lake County Line Surveyors", "77 N Locust St", "", "Oak Harbor, OH 43449", "34-1901158"},
     {"Clearwater Septic & Well Testing", "5630 W Harbor Rd", "", "Port Clinton, OH 43452", "34-1844419"},
     {"Ohio Shores Pest Control", "909 Sycamore Line", "", "Sandusky, OH 44870", "34-1577840"},
     {"Hearthside Home Warranty", "PO Box 9912", "", "Cincinnati, OH 45209", "31-1620087"},
     {"Pinewater Homeowners Association", "PO Box 318", "", "Marblehead, OH 43440", "34-1935562"}}};

template <typename List>
const auto& PickFrom(Random& random, const List& list) {
  return random.Pick(std::span(list));
}

std::string GivenName(Random& random) {
  std::string name(PickFrom(random, kGivenNames));
  if (random.Chance(350)) name += std::string(" ") + static_cast<char>('A' + random.Int(0, 22)) + ".";
  return name;
}

}  // namespace

const Place& PickPlace(Random& random) {
  return PickFrom(random, kPlaces);
}

std::string StreetAddress(Random& random) {
  static constexpr std::string_view kSides[] = {"", "", "", "N ", "S ", "E ", "W "};
  std::string address = std::to_string(random.Int(11, 9880)) + " ";
  address += PickFrom(random, kSides);
  address += PickFrom(random, kStreets);
  address += " ";
  address += PickFrom(random, kStreetKinds);
  return address;
}

std::string HouseholdName(Random& random) {
  const std::string first = GivenName(random);
  const std::string family(PickFrom(random, kFamilyNames));
  if (!random.Chance(480)) return first + " " + family;
  std::string second(PickFrom(random, kGivenNames));
  return first + " and " + second + " " + family;
}

const Payee& PickLender(Random& random) {
  return PickFrom(random, kLenders);
}
const Payee& PickBroker(Random& random) {
  return PickFrom(random, kBrokers);
}
const Payee& PickInsurer(Random& random) {
  return PickFrom(random, kInsurers);
}
const Payee& PickTradesman(Random& random) {
  return PickFrom(random, kTradesmen);
}

namespace {

std::string CountySeat(std::string_view county) {
  if (county == "Ottawa") return "Port Clinton, OH 43452";
  if (county == "Erie") return "Sandusky, OH 44870";
  if (county == "Sandusky") return "Fremont, OH 43420";
  return "Toledo, OH 43604";
}

}  // namespace

Payee CountyRecorder(std::string_view county) {
  return {std::string(county) + " County Recorder", "County Courthouse", "Room 103", CountySeat(county), ""};
}

Payee CountyTreasurer(std::string_view county) {
  return {std::string(county) + " County Treasurer", "County Courthouse", "", CountySeat(county), ""};
}

const Payee& TitleOffice() {
  static const Payee kOffice{"Lakeside Title Company", "210 Harbor St", "", "Lakeside, OH 43440",
                             "34-1718293"};
  return kOffice;
}

}  // namespace tallwick::cli
