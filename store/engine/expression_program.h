// A compiled expression: a flat row of steps over a stack of values, in the
// order of evaluation (operands before their operator). Every step is a small
// function that takes its operands from the stack and leaves one result there.
//
// Types are settled when the program is made, so a value carries no type. A text on
// the stack is a view of the record, of a literal or of a slot in the working
// memory; each step that makes new text has a slot of its own, as wide as the widest
// text it can make. So a run allocates nothing and can never outgrow its memory.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/engine/expression.h"

namespace tallwick::engine {

struct Value {
  double number;             // of a number, a date (Julian day, 0 = empty) and a logical (0 or 1)
  const std::uint8_t* text;  // of a text
  std::uint32_t length;
};

inline std::string_view View(const Value& value) {
  return {reinterpret_cast<const char*>(value.text), value.length};
}

// The state of a run. `top` is the first free place of the stack.
struct Machine {
  const std::uint8_t* record;
  std::uint32_t record_number;
  const std::uint8_t* literals;
  std::uint8_t* slots;
  Value* top;
};

enum class Relation : std::uint8_t { kEqual, kNotEqual, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

struct Step {
  using Function = void (*)(const Step&, Machine&);
  Function run = nullptr;
  double number = 0;              // a constant
  std::uint32_t offset = 0;       // of a field in the record, or of a literal among the program's literals
  std::uint32_t slot = 0;         // of the result in the working memory
  std::uint16_t field_width = 0;  // of the field or literal read
  std::uint16_t width = 0;        // of the result, where the step fixes it
  std::uint8_t decimals = 0;
  Relation relation = Relation::kEqual;  // of comparisons
};

struct Program {
  static constexpr std::size_t kSlotBytes = 65536;
  static constexpr int kStackDepth = 512;

  std::vector<Step> steps;
  std::string literals;
  ValueType type = ValueType::kText;
  std::uint32_t length = 0;  // the widest text result
};

// Memory for one run; it is left uninitialised, since
// setting 76 KB to zero would cost more than any expression.
struct Workspace {
  std::array<Value, Program::kStackDepth> stack;
  std::array<std::uint8_t, Program::kSlotBytes> slots;
};

// The result's text may lie in the workspace or in the record.
Value Run(const Program& program, const std::uint8_t* record, std::uint32_t record_number,
          Workspace& workspace);

namespace steps {

// Sources.
void TextField(const Step& step, Machine& machine);
void NumberField(const Step& step, Machine& machine);    // decimal text
void DateField(const Step& step, Machine& machine);      // CCYYMMDD
void LogicalField(const Step& step, Machine& machine);   // T t Y y are true
void DoubleField(const Step& step, Machine& machine);    // 8 bytes, IEEE
void IntegerField(const Step& step, Machine& machine);   // 4 bytes
void CurrencyField(const Step& step, Machine& machine);  // 8 bytes, ten-thousandths
void Literal(const Step& step, Machine& machine);
void Constant(const Step& step, Machine& machine);
void RecordNumber(const Step& step, Machine& machine);
void Deleted(const Step& step, Machine& machine);

// Texts. A chain a + b + c is BeginChain behind a, and Append behind b and c: all grow in one slot.
void BeginChain(const Step& step, Machine& machine);
void Append(const Step& step, Machine& machine);
void Join(const Step& step, Machine& machine);  // the left side's trailing blanks go to the end
void Upper(const Step& step, Machine& machine);
void Lower(const Step& step, Machine& machine);
void Left(const Step& step, Machine& machine);
void Right(const Step& step, Machine& machine);
void Substr(const Step& step, Machine& machine);
void Trim(const Step& step, Machine& machine);
void Ltrim(const Step& step, Machine& machine);
void Alltrim(const Step& step, Machine& machine);
void PadLeft(const Step& step, Machine& machine);   // text, width (ignored: the step has it), fill
void PadRight(const Step& step, Machine& machine);  // as PadLeft
void EmptyText(const Step& step, Machine& machine);
void ContainedIn(const Step& step, Machine& machine);
void ExactlyEqual(const Step& step, Machine& machine);
void CompareTexts(const Step& step, Machine& machine);

// Numbers, dates and logicals.
void Add(const Step& step, Machine& machine);
void Subtract(const Step& step, Machine& machine);
void Multiply(const Step& step, Machine& machine);
void Divide(const Step& step, Machine& machine);
void Negate(const Step& step, Machine& machine);
void DatePlusDays(const Step& step, Machine& machine);
void DaysPlusDate(const Step& step, Machine& machine);
void DateMinusDays(const Step& step, Machine& machine);
void DateMinusDate(const Step& step, Machine& machine);
void CompareNumbers(const Step& step, Machine& machine);
void IsZero(const Step& step, Machine& machine);  // EMPTY of all but texts, and .NOT.
void And(const Step& step, Machine& machine);
void Or(const Step& step, Machine& machine);
void Choose(const Step& step, Machine& machine);  // IIF

// Conversions.
void Str(const Step& step, Machine& machine);
void StrOfField(const Step& step, Machine& machine);  // STR of a numeric field, from its digits
void Val(const Step& step, Machine& machine);
void Dtos(const Step& step, Machine& machine);
void Dtoc(const Step& step, Machine& machine);
void Stod(const Step& step, Machine& machine);
void Ctod(const Step& step, Machine& machine);

}  // namespace steps
}  // namespace tallwick::engine
