// Believable people, addresses and businesses around a lake in northern Ohio. All of them are invented.
#pragma once

#include <string>
#include <string_view>

#include "cli/demo/random.h"

namespace tallwick::cli {

// Somebody who is paid, as a check's address block holds it.
struct Payee {
  std::string name;
  std::string address1;
  std::string address2;
  std::string city_state;  // "Sandusky, OH 44870"
  std::string tin;         // of businesses
};

struct Place {
  std::string_view city_state;
  std::string_view county;
};

const Place& PickPlace(Random& random);
std::string StreetAddress(Random& random);
// One person or a couple: "James T. O'Brien", "Rosa and Miguel Peña".
std::string HouseholdName(Random& random);

// Businesses: one out of a fixed list each, so that the same payees come up again and again.
const Payee& PickLender(Random& random);
const Payee& PickBroker(Random& random);
const Payee& PickInsurer(Random& random);
const Payee& PickTradesman(Random& random);  // surveyors, inspectors, home warranties
Payee CountyRecorder(std::string_view county);
Payee CountyTreasurer(std::string_view county);
// The title office itself, which earns premiums and fees.
const Payee& TitleOffice();

}  // namespace tallwick::cli
