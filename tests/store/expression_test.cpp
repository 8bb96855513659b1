// The expression language of tags: what expressions give, how long their keys are, and what is refused.
#include "store/engine/expression.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

// A record whose fields are set by their bytes.
class Record {
 public:
  Record() {
    Add("CODE", 'C', 6, "ab12");
    Add("NAME", 'C', 10, " J\xFCrgen \x9A");
    Add("BLANK", 'C', 4, "");
    Add("DATED", 'D', 8, "20240315");
    Add("NODATE", 'D', 8, "");
    Add("BADDATE", 'D', 8, "20230229");
    Add("YEAR", 'N', 4, "2024");
    Add("LEFTNO", 'N', 4, "7");
    Add("ZEROS", 'N', 4, "0042");
    Add("NONUM", 'N', 4, "");
    Add("STARS", 'N', 4, "****");
    Add("AMOUNT", 'N', 12, "    -1234.56");
    Add("EXACT", 'N', 20, "  123456789012345678");
    Add("YES", 'L', 1, "y");
    Add("UNSET", 'L', 1, "?");
    Add("REAL", 'B', 8, std::string("\0\0\0\0\0\0\xF8\x3F", 8));
    Add("NAN", 'B', 8, std::string("\0\0\0\0\0\0\xF8\x7F", 8));
    Add("INT", 'I', 4, "\xFE\xFF\xFF\xFF");
    Add("MONEY", 'Y', 8, std::string("\x39\x30\0\0\0\0\0\0", 8));
    Add("MEMO", 'M', 10, "");
    Add("MOMENT", 'T', 8, "");
    Add("WIDE", 'C', 60000, "w");
  }

  std::unique_ptr<const Expression> Parse(const std::string& text, std::string* error = nullptr) const {
    return Expression::Parse(text, fields_, error);
  }

  // "T:text", "N:number", "D:date" or "L:truth", with the record being number 17.
  std::string Evaluate(const std::string& text) const {
    std::string error;
    const auto expression = Parse(text, &error);
    if (!expression) return error;
    return std::string(1, "TNDL"[static_cast<int>(expression->Type())]) + ":" +
           expression->EvaluateText(bytes_.data(), 17);
  }

  std::string Key(const std::string& text) const {
    const auto expression = Parse(text);
    if (!expression) return "?";
    std::string key(static_cast<std::size_t>(expression->KeyLength()) + 1, '#');
    expression->EvaluateKey(bytes_.data(), 17, reinterpret_cast<std::uint8_t*>(key.data()));
    EXPECT_EQ(key.back(), '#') << "wrote behind the key of " << text;
    key.pop_back();
    return key;
  }

  const std::vector<std::uint8_t>& Bytes() const { return bytes_; }
  void MarkDeleted() { bytes_[0] = '*'; }

 private:
  void Add(const char* name, char type, int width, const std::string& value) {
    fields_.push_back({name, type, width, 0, static_cast<int>(bytes_.size())});
    bytes_.insert(bytes_.end(), value.begin(), value.end());
    bytes_.resize(bytes_.size() + static_cast<std::size_t>(width) - value.size(), ' ');
  }

  std::vector<FieldInfo> fields_;
  std::vector<std::uint8_t> bytes_{' '};
};

struct Case {
  const char* expression;
  const char* result;
};

void Check(std::initializer_list<Case> cases) {
  const Record record;
  for (const Case& c : cases) EXPECT_EQ(record.Evaluate(c.expression), c.result) << c.expression;
}

TEST(Expression, TextFunctions) {
  Check({{"UPPER (Code + 'x')", "T:AB12  X"},
         {"upper(name)", "T: J\xDCRGEN \x8A "},
         {"LOWER(UPPER(NAME))", "T: j\xFCrgen \x9A "},
         {"TRIM(CODE) + '|'", "T:ab12|"},
         {"LTRIM(NAME) + '|'", "T:J\xFCrgen \x9A |"},
         {"ALLTRIM(BLANK)", "T:"},
         {"CODE - BLANK - '|'", "T:ab12|      "},
         {"LEFT(CODE, 3) + RIGHT(CODE, 3)", "T:ab12  "},
         {"LEFT(CODE, -1) + LEFT('xyz', 99)", "T:xyz"},
         {"SUBSTR(CODE, 2, 2) + SUBSTR('xyz', 3)", "T:b1z"},
         {"SUBSTR(CODE, 9, 2) + SUBSTR('xyz', 0, 1)", "T:x"},
         {"SUBSTR('abcdef', LEFTNO - 4, YEAR)", "T:cdef"},
         {"PADL(TRIM(CODE), 6, '0') + PADR('xyz', 2) + PADR('x', 3)", "T:00ab12xyx  "},
         {"'it\"s' + \"it's\" + [x'\"]", "T:it\"sit'sx'\""},
         // A chain goes on in its slot; what was made before must not move.
         {"(CODE + '1') + UPPER(CODE + '2') + (CODE + '3')", "T:ab12  1AB12  2ab12  3"}});
}

TEST(Expression, NumbersAndStr) {
  Check({{"STR(YEAR,4,0) + STR(LEFTNO,2,0) + STR(NONUM,4,0)", "T:2024 7   0"},
         {"STR(ZEROS,4,0) + STR(YEAR,6) + STR(YEAR,3)", "T:  42  2024***"},
         {"STR(STARS,4,0) + STR(AMOUNT,8,2) + STR(AMOUNT,7,2)", "T:   0-1234.56*******"},
         {"STR(AMOUNT) + STR(AMOUNT,5,0) + STR(AMOUNT,4,0)", "T:     -1235-1235****"},
         {"STR(EXACT,20,0)", "T:  123456789012345678"},
         {"STR(2.5,2) + STR(-2.5,2) + STR(1.005,5,2) + STR(0.45,4,1)", "T: 3-3 1.01 0.5"},
         {"STR(99.996,6,2) + STR(0.04,4,1) + STR(-0.04,4,1) + STR(0.5,1)", "T:100.00 0.0 0.01"},
         {"STR(1 / 3 * 3 - 1, 3) + STR(0.000001, 9, 6) + STR(999.5, 3)", "T:  0 0.000001***"},
         {"1 + 2 * 3 - 4 / 2", "N:5"},
         {"-(1 - 2) * -3", "N:-3"},
         {"10 - 4 - 3", "N:3"},
         {"YEAR / NONUM + .5", "N:0.5"},
         {"VAL(' 12.50x') + VAL('-.5') + VAL('12E3') + VAL('inf') + VAL('')", "N:24"},
         {"0.1 + 0.2", "N:0.30000000000000004"},
         {"AMOUNT", "N:-1234.56"},
         {"STR((INT + REAL + NAN) * 2 + MONEY, 8, 4)", "T:  0.2345"},
         {"RECNO()", "N:17"}});
}

TEST(Expression, DatesAndLogicals) {
  Check({{"DTOS(DATED) + DTOS(NODATE) + '|'", "T:20240315        |"},
         {"DTOC(DATED) + DTOC(NODATE)", "T:03/15/2024  /  /    "},
         {"DTOS(DATED - 15) + DTOS(1 + DATED)", "T:2024022920240316"},
         {"DTOS(BADDATE + 1) + DTOS(DATED + 9999999)", "T:                "},
         {"DATED - STOD('20240301')", "N:14"},
         {"DATED - NODATE", "N:0"},
         {"CTOD('3/15/2024') = DATED .AND. CTOD('02/30/2024') = NODATE", "L:T"},
         {"STOD('20240315') + 366", "D:20250316"},
         {"EMPTY(BLANK) .AND. EMPTY(NODATE) .AND. EMPTY(NONUM) .AND. EMPTY(UNSET)", "L:T"},
         {"EMPTY(CODE) .OR. EMPTY(DATED) .OR. EMPTY(YEAR) .OR. EMPTY(YES)", "L:F"},
         {".NOT. Deleted ()", "L:T"},
         {"!YES.OR.UNSET", "L:F"},
         {".T. .OR. .T. .AND. .F.", "L:T"},
         {".NOT. YEAR = 2024 .OR. YEAR >= 2024", "L:T"},
         {"YES = .T. .AND. UNSET # .Y.", "L:T"},
         {"'SMITH' = 'SM' .AND. .NOT. 'SM' = 'SMITH' .AND. 'SM' = 'SM  '", "L:T"},
         {"'A' < 'B' .AND. 'AB' <= 'A' .AND. 'A' < 'A!' .AND. 'B' > 'A' .AND. 'B' >= 'A'", "L:T"},
         {"'A' == 'A ' .OR. 'A' <> 'A' .OR. 2 != 2 .OR. 3 <= 2 .OR. DATED > STOD('20240315')", "L:F"},
         {"'b1' $ CODE .AND. .NOT. 'B1' $ CODE", "L:T"},
         {"IIF(YEAR > 2000, 'new', 'older') + IIF(UNSET, 'a', '')", "T:new"}});
}

TEST(Expression, NamesAndAliases) {
  Check({{"CHECKS->Code", "T:ab12  "},
         {"CHECKS -> CODE", "T:ab12  "},
         {"checks.year = 2024.AND.CHECKS.YES.AND.YES", "L:T"},
         {"DELETED().OR.YES", "L:T"}});
}

TEST(Expression, KeysHaveAFixedLengthAndTheIndexForm) {
  const Record record;
  EXPECT_EQ(record.Key("TRIM(CODE) + TRIM(CODE)"), "ab12ab12    ");
  EXPECT_EQ(record.Key("IIF(YES, 'a', 'long')"), "a   ");
  EXPECT_EQ(record.Key("LEFT(SUBSTR(CODE, 2), 3)"), "b12");
  EXPECT_EQ(record.Key("SUBSTR(CODE, 5)"), "  ");
  EXPECT_EQ(record.Key("ALLTRIM('')"), " ");
  EXPECT_EQ(record.Key("YES"), "T");
  EXPECT_EQ(record.Key("DATED"), std::string("\xC1\x42\xC5\x70\x80\0\0\0", 8));  // 2460385
  EXPECT_EQ(record.Key("NODATE"), std::string("\x80\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(record.Key("INT"), std::string("\x3F\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 8));  // -2
}

TEST(Expression, FiltersFollowTheDeletionMark) {
  Record record;
  const auto live = record.Parse(".NOT. Deleted ()");
  EXPECT_TRUE(live->EvaluateLogical(record.Bytes().data(), 1));
  record.MarkDeleted();
  EXPECT_FALSE(live->EvaluateLogical(record.Bytes().data(), 1));
  EXPECT_FALSE(record.Parse("RECNO()")->EvaluateLogical(record.Bytes().data(), 1));
}

TEST(Expression, TodayMustBeGiven) {
  std::string error;
  EXPECT_EQ(Expression::Parse("DATE()", {}, &error), nullptr);
  const auto today = Expression::Parse("DTOS(DATE())", {}, &error, {2024, 3, 15});
  ASSERT_NE(today, nullptr);
  EXPECT_EQ(today->EvaluateText(Record().Bytes().data(), 1), "20240315");
}

TEST(Expression, RefusalsSayWhatAndWhere) {
  Check({{"", "The expression is not complete at position 1"},
         {"CODE +", "The expression is not complete at position 7"},
         {"UPPER(CODE", "A closing parenthesis is missing at position 11"},
         {"CODE CODE", "Unexpected \"CODE\" at position 6"},
         {"()", "Unexpected \")\" at position 2"},
         {"LEFT(CODE,)", "Unexpected \")\" at position 11"},
         {"'abc", "A text has no closing quote; it begins at position 1"},
         {"CODE & CODE", "A character that means nothing here at position 6"},
         {"X->", "A field name is missing behind the alias at position 4"},
         {"1.", "A dot that belongs to nothing at position 2"},
         {"UPPER(PAYEE)", "Unknown field \"PAYEE\" at position 7"},
         {"N\xDCL()", "Unknown function \"N\xC3\x9CL\" at position 1"},
         {"MEMO", "A field of type M cannot stand in an expression at position 1"},
         {"MOMENT", "A field of type T cannot stand in an expression at position 1"},
         {"CODE + YEAR", "\"+\" does not go with a text and a number at position 6"},
         {"DATED + DATED", "\"+\" does not go with a date and a date at position 7"},
         {"YES < YES", "\"<\" does not go with a logical value and a logical value at position 5"},
         {".NOT. CODE", ".NOT. stands before a text at position 1"},
         {"-CODE", "A sign stands before a text at position 1"},
         {"RECNO(1)", "RECNO takes no arguments at position 1"},
         {"STR()", "STR takes 1 to 3 arguments at position 1"},
         {"UPPER(YEAR)", "Argument 1 of UPPER must be a text at position 1"},
         {"STR(YEAR, YEAR)", "Argument 2 of STR must be a whole number from 1 to 64 at position 1"},
         {"STR(YEAR, 4, 3)", "Argument 3 of STR must be a whole number from 0 to 2 at position 1"},
         {"PADL(CODE, 1.5)", "Argument 2 of PADL must be a whole number from 0 to 65535 at position 1"},
         {"IIF(YES, CODE, YEAR)",
          "IIF has to choose between two values of one type, not a text and a number at position 1"},
         {"DATE()", "DATE() changes from day to day and cannot be part of an index at position 1"},
         {"WIDE + WIDE", "The texts of the expression are too long at position 6"},
         {"UPPER(UPPER(WIDE))", "The texts of the expression are too long"}});
}

TEST(Expression, HostileTextsEndInARefusal) {
  const Record record;
  const auto repeated = [](const std::string& part, int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += part;
    return text;
  };
  EXPECT_EQ(record.Evaluate(repeated("(", 64) + "1" + repeated(")", 64)), "N:1");
  for (const std::string& text :
       {repeated("(", 65), repeated("!", 65), repeated("-", 1024), repeated("UPPER(", 65)}) {
    EXPECT_TRUE(record.Evaluate(text).starts_with("More than 64 levels of nesting at position ")) << text;
  }
  EXPECT_EQ(record.Evaluate(repeated("1+", 511) + "1"), "N:512");
  EXPECT_EQ(record.Evaluate(repeated("'a'+", 255) + "'b'"), "T:" + repeated("a", 255) + "b");
  EXPECT_EQ(record.Evaluate(repeated("9", 1024)), "N:0");
  EXPECT_EQ(record.Evaluate(repeated(" ", 1025)), "The expression has more than 1,024 characters");

  // Any row of plausible parts is either refused or evaluated, in bounds.
  const std::vector<std::string> parts{
      "CODE", "YEAR",  "DATED", "YES", "(", ")",    "+", "-", "=",  ".AND.", "'x'", "3", "UPPER(",
      "STR(", "PADL(", "LEFT(", ",2",  ",", "IIF(", "!", ".", "->", "TRIM(", "$",   "[", "\xFF"};
  std::mt19937 random(4711);
  int accepted = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto count = random() % 9 + 1; count > 0; --count) text += parts[random() % parts.size()];
    if (record.Key(text) != "?") ++accepted;
  }
  EXPECT_GT(accepted, 100);
}

TEST(Expression, KeysOfNumbersSortAsTheNumbers) {
  const std::vector<double> numbers{
      -std::numeric_limits<double>::max(), -1e10, -2, -1.5, -1e-300, 0, 5e-324, 0.01, 1, 1.5, 2460385, 1e300};
  std::string before;
  for (const double number : numbers) {
    std::string key(8, '\0');
    NumberToKey(number, reinterpret_cast<std::uint8_t*>(key.data()));
    EXPECT_LT(before, key) << number;
    EXPECT_EQ(KeyToNumber(reinterpret_cast<const std::uint8_t*>(key.data())), number);
    before = key;
  }
  std::uint8_t negative_zero[8];
  NumberToKey(-0.0, negative_zero);
  EXPECT_FALSE(std::signbit(KeyToNumber(negative_zero)));
}

}  // namespace
}  // namespace tallwick::engine
