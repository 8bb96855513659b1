// Money: exact reading and writing, sums at the edges of the range, figures and words of a check.
#include <gtest/gtest.h>

#include "core/amount_in_words.h"
#include "core/currency.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::int64_t kMaximum = std::numeric_limits<std::int64_t>::max();

Currency Amount(std::string_view text) {
  return Currency::Parse(text).value_or(Currency::Overflow());
}

TEST(Currency, PlainTextIsReadExactlyOrNotAtAll) {
  struct Case {
    const char* text;
    std::optional<std::int64_t> count;
  };
  const Case cases[] = {
      {"0", 0},
      {"-12.5", -125000},
      {"+7", 70000},
      {".50", 5000},
      {"5.", 50000},
      {"0.0001", 1},
      {"1.000000", 10000},
      {"1.00001", std::nullopt},
      {"922337203685477.5807", kMaximum},
      {"-922337203685477.5807", -kMaximum},
      {"922337203685477.5808", std::nullopt},
      {"-922337203685477.5808", std::nullopt},  // would be the mark of an overflow
      {"9223372036854775807", std::nullopt},
      {"", std::nullopt},
      {".", std::nullopt},
      {"-", std::nullopt},
      {"1.2.3", std::nullopt},
      {"1,000", std::nullopt},
      {" 1", std::nullopt},
      {"--1", std::nullopt},
      {"1e3", std::nullopt},
  };
  for (const Case& c : cases) {
    const std::optional<Currency> amount = Currency::Parse(c.text);
    ASSERT_EQ(amount.has_value(), c.count.has_value()) << c.text;
    EXPECT_EQ(amount.value_or(Currency()).TenThousandths(), c.count.value_or(0)) << c.text;
  }
}

TEST(Currency, TypedAmounts) {
  struct Case {
    const char* typed;
    const char* value;  // nullptr = refused
  };
  const Case cases[] = {
      {"1250", "1250.00"},
      {" 1,250.00 ", "1250.00"},
      {"$1250", "1250.00"},
      {"$ 1,250,000.5", "1250000.50"},
      {"-5.25", "-5.25"},
      {"5.25-", "-5.25"},
      {"(5.25)", "-5.25"},
      {"($5.25)", "-5.25"},
      {"-$5", "-5.00"},
      {"$-5", "-5.00"},
      {".5", "0.50"},
      {"1.2500", "1.25"},
      {"12,50", nullptr},
      {",250", nullptr},
      {"1250,000", nullptr},
      {"1,2345", nullptr},
      {"1,000.00,0", nullptr},
      {"1.255", nullptr},
      {"(-5)", nullptr},
      {"-5-", nullptr},
      {"--5", nullptr},
      {"-+5", nullptr},
      {"$$5", nullptr},
      {"5$", nullptr},
      {"(5", nullptr},
      {"12a", nullptr},
      {"1 250", nullptr},
      {"", nullptr},
      {"$", nullptr},
      {"()", nullptr},
      {"1,000,000,000,000,000", nullptr},
  };
  for (const Case& c : cases) {
    const std::optional<Currency> amount = Currency::ParseTyped(c.typed);
    ASSERT_EQ(amount.has_value(), c.value != nullptr) << c.typed;
    EXPECT_EQ(amount.value_or(Currency()).ToText(), c.value != nullptr ? c.value : "0.00") << c.typed;
  }
}

TEST(Currency, TextHasAsManyDecimalsAsItNeeds) {
  EXPECT_EQ(Amount("-0.01").ToText(), "-0.01");
  EXPECT_EQ(Amount("1234.5678").ToText(), "1234.5678");
  EXPECT_EQ(Amount("1234.5").ToText(0), "1234.5");
  EXPECT_EQ(Amount("1200").ToText(0), "1200");
  EXPECT_EQ(Amount("1").ToText(4), "1.0000");
  for (const std::int64_t count : {kMaximum, -kMaximum, std::int64_t{9999}, std::int64_t{-10001}}) {
    EXPECT_EQ(Amount(Currency::FromTenThousandths(count).ToText()).TenThousandths(), count);
  }
}

TEST(Currency, SumsThatLeaveTheRangeStayOverflowed) {
  const Currency most = Currency::FromTenThousandths(kMaximum);
  const Currency step = Currency::FromTenThousandths(1);
  EXPECT_EQ((most - step + step).TenThousandths(), kMaximum);
  EXPECT_EQ((-most - most).IsValid(), false);
  Currency sum = most;
  sum += step;
  EXPECT_FALSE(sum.IsValid());
  sum -= most;
  EXPECT_FALSE(sum.IsValid());
  EXPECT_FALSE((-sum).IsValid());
  EXPECT_FALSE((Currency() - sum).IsValid());
  EXPECT_FALSE(sum.Abs().IsNegative());
  EXPECT_FALSE((-most - step).IsValid());
  EXPECT_FALSE(Currency::FromCents(kMaximum).IsValid());
  EXPECT_EQ(Currency::FromCents(-1).ToText(), "-0.01");
  // No reader may take the text of an overflow for an amount.
  EXPECT_FALSE(Currency::Parse(sum.ToText()).has_value());
}

TEST(FormatNumber, Patterns) {
  struct Case {
    const char* value;
    const char* pattern;
    const char* text;
  };
  const Case cases[] = {
      {"1234567", "##,###,###,###", "1,234,567"},
      {"7", "##,###,###,###", "7"},
      {"1234.5", "$###,###.00", "$1,234.50"},
      {"-1234567.89", "$###,###.00", "-$1,234,567.89"},
      {"0.5", "$###,###.00", "$.50"},
      {"999.995", "$##,###,###,###.00", "$1,000.00"},
      {"0", "#,###,###,###.00", ".00"},
      {"-0.005", "#,###,###,###.00", "-.01"},
      {"-0.0049", "#,###,###,###.00", ".00"},
      {"922337203685477.5807", "#,###,###,###.00", "922,337,203,685,477.58"},
      {"0", "###,##0", "0"},
      {"1234.5", "###,##0", "1,235"},
      {"100000", "###########.00", "100000.00"},
      {"-5.25", "###########.00", "-5.25"},
  };
  for (const Case& c : cases) EXPECT_EQ(FormatNumber(Amount(c.value), c.pattern), c.text) << c.value;
  EXPECT_EQ(FormatNumber(std::numeric_limits<long long>::min(), "###,##0"), "-9,223,372,036,854,775,808");
  EXPECT_EQ(VersionText(3, 5, 123), "3.05.0123");
  EXPECT_EQ(VersionText(0, 12, 10000), "0.12.10000");
}

TEST(AmountInWords, WordsOfACheck) {
  struct Case {
    const char* amount;
    const char* words;
  };
  const Case cases[] = {
      {"0", "Zero dollars and no cents"},
      {"1000", "One Thousand dollars & no cents"},
      {"1234.56", "One Thousand Two Hundred Thirty Four dollars & Fifty Six cents "},
      {"10", "Ten dollars & no cents"},
      {"21", "Twenty One dollars & no cents"},
      {"110", "One Hundred Ten dollars & no cents"},
      {"111", "One Hundred Eleven dollars & no cents"},
      {"10000", "Ten Thousand dollars & no cents"},
      {"11000", "Eleven Thousand dollars & no cents"},
      {"19.19", "Nineteen dollars & Nineteen cents "},
      {"0.50", " dollars & Fifty cents "},
      {"-0.50", "Negative dollars & Fifty cents "},
      {"0.004", " dollars & no cents"},
      {"-0.004", "Negative dollars & no cents"},
      {"1.995", "Two dollars & no cents"},
      {"5.05", "Five dollars & Five cents "},
      {"5.10", "Five dollars & Ten cents "},
      {"5.11", "Five dollars & Eleven cents "},
      {"-5.25", "Negative Five dollars & Twenty Five cents "},
      {"-15", "Negative Fifteen dollars & no cents"},
      {"-123", "Negative One Hundred Twenty Three dollars & no cents"},
      {"-1234", "Negative One Thousand Two Hundred Thirty Four dollars & no cents"},
      {"1000000", "One Million dollars & no cents"},
      {"1000001", "One Million One dollars & no cents"},
      {"1000000.01", "One Million dollars & One cents "},
      {"808000700090", "Eight Hundred Eight Billion Seven Hundred Thousand Ninety dollars & no cents"},
      {"922337203685477.58",
       "Nine Hundred Twenty Two Trillion Three Hundred Thirty Seven Billion Two Hundred Three Million Six "
       "Hundred Eighty Five Thousand Four Hundred Seventy Seven dollars & Fifty Eight cents "},
      {"-100000000000000", " dollars & no cents"},  // 16 characters with the sign
  };
  for (const Case& c : cases) EXPECT_EQ(AmountInWords(Amount(c.amount)), c.words) << c.amount;
  EXPECT_EQ(AmountInWords(Currency::Overflow()), "");
}

TEST(NumberToWords, EveryWordOfTheTables) {
  const std::pair<const char*, const char*> cases[] = {
      {" 42.99 ", "Forty Two"},
      {"1234567890123456", ""},
      {"", ""},
      {"0", ""},
      {"-", "Negative"},
      {"x", ""},
      {"123456789",
       "One Hundred Twenty Three Million Four Hundred Fifty Six Thousand Seven Hundred Eighty Nine"},
      {"11012013014", "Eleven Billion Twelve Million Thirteen Thousand Fourteen"},
      {"15016017018", "Fifteen Billion Sixteen Million Seventeen Thousand Eighteen"},
      {"30040060070", "Thirty Billion Forty Million Sixty Thousand Seventy"},
  };
  for (const auto& [figure, words] : cases) EXPECT_EQ(NumberToWords(figure), words) << figure;
}

}  // namespace
}  // namespace tallwick
