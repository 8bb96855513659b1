// Amounts read from the bytes of a record are what the store reads, in whatever form they stand.

#include "tables/packed_record.h"

#include <gtest/gtest.h>

#include <random>

#include "core/text.h"

namespace tallwick {
namespace {

Currency AsTheStoreReads(const std::string& field) {
  if (Trim(field).empty()) return {};
  return Currency::Parse(Trim(field)).value_or(Currency::Overflow());
}

TEST(PackedRecordTest, AmountsAreReadAsTheStoreReadsThem) {
  const char* forms[] = {"",          "0",           "0.00",         ".50",          "1.00",         "-1.00",
                         "-.05",      "1234.5",      "1234",         "12 34.56",     "1 .00",        "0 1.00",
                         "00012.34",  "!2.34",       "+12.34",       "1,234.56",     "12.3a",        "a2.34",
                         "*********", "99999999.99", "999999999.99", "100000000.00", "123456789.01", "1.2.34",
                         "1:3.00",    "/12.00",      "********.**",  "10000000.01"};
  for (const std::size_t width : {std::size_t{12}, std::size_t{14}, std::size_t{11}, std::size_t{8}}) {
    for (const std::string form : forms) {
      for (const std::string& field : {PadLeft(form, width), PadRight(form, width)})
        EXPECT_EQ(MoneyIn(field), AsTheStoreReads(field)) << Quoted(field);
    }
  }
  // One character of a good amount changed to any other.
  std::mt19937 random(7);
  for (int i = 0; i < 20'000; ++i) {
    std::string field =
        PadLeft(Currency::FromCents(static_cast<std::int64_t>(random() >> random() % 30)).ToText(), 12);
    EXPECT_EQ(MoneyIn(field), AsTheStoreReads(field)) << Quoted(field);
    field[random() % field.size()] = static_cast<char>(random() % 255 + 1);
    EXPECT_EQ(MoneyIn(field), AsTheStoreReads(field)) << Quoted(field);
  }
}

}  // namespace
}  // namespace tallwick
