// The expression language of index tags: key and filter expressions over the fields of one record.
//
//   functions   UPPER LOWER DTOS STR(n,w,d) RECNO() DELETED() LEFT RIGHT SUBSTR TRIM RTRIM LTRIM ALLTRIM VAL
//               DTOC CTOD STOD DATE() IIF EMPTY PADL(t,n[,fill]) PADR(t,n[,fill])
//   operators   + - on texts (- moves the left side's trailing blanks to the end), + - * / on numbers,
//               dates +- days, = <> # != < > <= >= $ ==, .AND. .OR. .NOT. (also !), parentheses
//   literals    'text' "text" [text], numbers, .T. .F.
//   names       field names, with an optional alias prefix ALIAS->FIELD or ALIAS.FIELD, which is not looked
//               at; case never counts, and a blank may stand before a parenthesis
//
// Texts are Windows-1252 bytes, as in records and tag headers. What holds for all expressions:
//   - A blank numeric field is 0, and so is a result that is no finite number (division by zero).
//   - A blank or impossible date is empty: date arithmetic leaves it empty, a difference with it is 0. DTOS
//     gives 8 blanks for it, DTOC "  /  /    "; DTOS of a field gives the field's own 8 bytes.
//   - Texts compare on the right side's length, a shorter left side blank padded ("SMITH" = "SM" is true);
//     == demands the same bytes and the same length.
//   - STR rounds halves away from zero and gives asterisks for what does not fit. Its width and decimals, and
//     the width of PADL and PADR, must be written out, so that the length of a key is known.
//   - SUBSTR counts from 1; parts outside the text are cut off. PADL and PADR also cut, on the right.
//   - Memo fields, and fields with a time of day, cannot stand in an expression.
//
// A parsed expression is immutable. Evaluation allocates nothing: it works on the stack
// (about 76 KB), in some tens of nanoseconds for the keys of the product's tables.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"

namespace tallwick::engine {

// What an expression needs to know of a field.
struct FieldInfo {
  std::string name;  // upper case
  char type = 'C';   // C N F D L M B I Y T as in the table's descriptors
  int width = 0;     // bytes in the record
  int decimals = 0;
  int offset = 0;  // in the record; 1 = directly behind the deletion mark
};

enum class ValueType { kText, kNumber, kDate, kLogical };

class Expression {
 public:
  // Parses and checks an expression against a field list. On failure the result is null and `error` (when
  // given) says what is wrong and where (positions from 1). Nesting is limited to 64 levels, the text to
  // 1,024 characters, and all texts that an evaluation makes to 64 KiB together. DATE() is the given day;
  // without one it is refused, since an index on it would be wrong tomorrow.
  static std::unique_ptr<const Expression> Parse(std::string_view text, std::span<const FieldInfo> fields,
                                                 std::string* error = nullptr, const Date& today = {});
  ~Expression();

  ValueType Type() const;
  // Fixed length of a text result in bytes, 1 to 65,535 (functions like TRIM keep the widest they can yield,
  // blank padded in a key); 8 for numbers and dates, 1 for logicals. This is the key length of a tag with
  // this expression.
  int KeyLength() const;

  // `record`: the record's bytes, deletion mark first, at least as long as the last field's end.
  // `record_number`: from 1, what RECNO() yields.
  //
  // Writes KeyLength() bytes of index key: text blank padded; numbers and dates (as Julian day numbers, empty
  // = 0) as 8-byte IEEE doubles in big-endian order with the sign bit flipped when positive and all bits
  // flipped when negative; logicals "T" or "F".
  void EvaluateKey(const std::uint8_t* record, std::uint32_t record_number, std::uint8_t* key) const;
  // The truth of a logical expression; false for any other type.
  bool EvaluateLogical(const std::uint8_t* record, std::uint32_t record_number) const;
  // The result as text (Windows-1252): numbers in the shortest decimal form without exponent, dates
  // "CCYYMMDD" ("" when empty), logicals "T" or "F".
  std::string EvaluateText(const std::uint8_t* record, std::uint32_t record_number) const;

  const std::string& Source() const;

 private:
  struct Impl;
  explicit Expression(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

// The 8 key bytes of a number, and back. Bytes compare as the numbers do; -0 has the key of 0.
void NumberToKey(double number, std::uint8_t key[8]);
double KeyToNumber(const std::uint8_t key[8]);

}  // namespace tallwick::engine
