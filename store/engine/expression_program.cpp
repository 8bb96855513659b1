// The steps of a compiled expression, except conversions between types.
#include "store/engine/expression_program.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>

#include "core/date.h"
#include "core/encoding.h"
#include "store/engine/byte_order.h"
#include "store/engine/expression_number.h"

namespace tallwick::engine {
namespace {

using CaseTable = std::array<std::uint8_t, 256>;

CaseTable MakeUpperTable() {
  CaseTable table{};
  for (unsigned byte = 0; byte < 256; ++byte)
    table[byte] = UpperWindows1252(static_cast<unsigned char>(byte));
  return table;
}

CaseTable MakeLowerTable() {
  const CaseTable upper = MakeUpperTable();
  CaseTable table{};
  for (unsigned byte = 0; byte < 256; ++byte) table[byte] = static_cast<std::uint8_t>(byte);
  for (unsigned byte = 0; byte < 256; ++byte) {
    if (upper[byte] != byte) table[upper[byte]] = static_cast<std::uint8_t>(byte);
  }
  return table;
}

// A result that is no finite number (division by zero,
// overflow, damaged bytes) is 0, so that keys stay in order.
double Finite(double number) {
  return std::isfinite(number) ? number : 0;
}

void Push(Machine& machine, double number) {
  (machine.top++)->number = number;
}

void Push(Machine& machine, const std::uint8_t* text, std::size_t length) {
  Value& value = *machine.top++;
  value.text = text;
  value.length = static_cast<std::uint32_t>(length);
}

// A count or position that is not below 0, cut to `limit`.
std::uint32_t Count(double number, std::uint32_t limit) {
  if (!(number > 0)) return 0;
  return number >= limit ? limit : static_cast<std::uint32_t>(number);
}

std::uint32_t TrimmedLength(const Value& value) {
  std::uint32_t length = value.length;
  while (length > 0 && value.text[length - 1] == ' ') --length;
  return length;
}

void CutLeadingBlanks(Value& value) {
  while (value.length > 0 && *value.text == ' ') {
    ++value.text;
    --value.length;
  }
}

void MapBytes(const Step& step, Machine& machine, const CaseTable& table) {
  Value& value = machine.top[-1];
  std::uint8_t* const out = machine.slots + step.slot;
  for (std::uint32_t i = 0; i < value.length; ++i) out[i] = table[value.text[i]];
  value.text = out;
}

// Texts compare on the right side's length; a shorter left side counts as blank padded.
int CompareOnRightLength(const Value& left, const Value& right) {
  const std::uint32_t shared = std::min(left.length, right.length);
  if (const int order = shared == 0 ? 0 : std::memcmp(left.text, right.text, shared); order != 0)
    return order;
  for (std::uint32_t i = shared; i < right.length; ++i) {
    if (right.text[i] != ' ') return right.text[i] > ' ' ? -1 : 1;
  }
  return 0;
}

bool Holds(Relation relation, int order) {
  switch (relation) {
    case Relation::kEqual:
      return order == 0;
    case Relation::kNotEqual:
      return order != 0;
    case Relation::kLess:
      return order < 0;
    case Relation::kLessOrEqual:
      return order <= 0;
    case Relation::kGreater:
      return order > 0;
    case Relation::kGreaterOrEqual:
      return order >= 0;
  }
  return false;
}

// A date that arithmetic gave: a whole day, empty outside the years that dates can have.
double ToJulianDay(double number) {
  static const double kFirst = JulianDay({1, 1, 1});
  static const double kLast = JulianDay({9999, 12, 31});
  return number >= kFirst && number < kLast + 1 ? std::floor(number) : 0;
}

// The left of the two topmost values, with the right one taken
// off the stack (it stays readable behind the left one).
Value& LeftOfTwo(Machine& machine) {
  return *(--machine.top - 1);
}

}  // namespace

Value Run(const Program& program, const std::uint8_t* record, std::uint32_t record_number,
          Workspace& workspace) {
  Machine machine{record, record_number, reinterpret_cast<const std::uint8_t*>(program.literals.data()),
                  workspace.slots.data(), workspace.stack.data()};
  for (const Step& step : program.steps) step.run(step, machine);
  return workspace.stack[0];
}

namespace steps {

void TextField(const Step& step, Machine& machine) {
  Push(machine, machine.record + step.offset, step.field_width);
}

void NumberField(const Step& step, Machine& machine) {
  const char* text = reinterpret_cast<const char*>(machine.record + step.offset);
  Push(machine, NumberFromText({text, step.field_width}));
}

void DateField(const Step& step, Machine& machine) {
  TextField(step, machine);
  Stod(step, machine);
}

void LogicalField(const Step& step, Machine& machine) {
  const std::uint8_t mark = machine.record[step.offset];
  Push(machine, mark == 'T' || mark == 't' || mark == 'Y' || mark == 'y' ? 1 : 0);
}

void DoubleField(const Step& step, Machine& machine) {
  Push(machine, Finite(std::bit_cast<double>(Load64(machine.record + step.offset))));
}

void IntegerField(const Step& step, Machine& machine) {
  Push(machine, static_cast<std::int32_t>(Load32(machine.record + step.offset)));
}

void CurrencyField(const Step& step, Machine& machine) {
  Push(machine, static_cast<double>(static_cast<std::int64_t>(Load64(machine.record + step.offset))) / 10000);
}

void Literal(const Step& step, Machine& machine) {
  Push(machine, machine.literals + step.offset, step.field_width);
}

void Constant(const Step& step, Machine& machine) {
  Push(machine, step.number);
}

void RecordNumber(const Step& /*step*/, Machine& machine) {
  Push(machine, machine.record_number);
}

void Deleted(const Step& /*step*/, Machine& machine) {
  Push(machine, machine.record[0] == '*' ? 1 : 0);
}

void BeginChain(const Step& step, Machine& machine) {
  Value& value = machine.top[-1];
  std::uint8_t* const out = machine.slots + step.slot;
  std::copy_n(value.text, value.length, out);
  value.text = out;
}

void Append(const Step& /*step*/, Machine& machine) {
  Value& chain = LeftOfTwo(machine);
  const Value& tail = *machine.top;
  // The chain's text lies in the slots, which are ours to write; a value only promises to read.
  std::copy_n(tail.text, tail.length, machine.slots + (chain.text - machine.slots) + chain.length);
  chain.length += tail.length;
}

void Join(const Step& step, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  const Value& right = *machine.top;
  const std::uint32_t kept = TrimmedLength(left);
  std::uint8_t* const out = machine.slots + step.slot;
  std::copy_n(left.text, kept, out);
  std::copy_n(right.text, right.length, out + kept);
  std::fill_n(out + kept + right.length, left.length - kept, std::uint8_t{' '});
  left.text = out;
  left.length += right.length;
}

void Upper(const Step& step, Machine& machine) {
  static const CaseTable kTable = MakeUpperTable();
  MapBytes(step, machine, kTable);
}

void Lower(const Step& step, Machine& machine) {
  static const CaseTable kTable = MakeLowerTable();
  MapBytes(step, machine, kTable);
}

void Left(const Step& /*step*/, Machine& machine) {
  Value& text = LeftOfTwo(machine);
  text.length = Count(machine.top->number, text.length);
}

void Right(const Step& /*step*/, Machine& machine) {
  Value& text = LeftOfTwo(machine);
  const std::uint32_t length = Count(machine.top->number, text.length);
  text.text += text.length - length;
  text.length = length;
}

void Substr(const Step& /*step*/, Machine& machine) {
  machine.top -= 2;
  Value& text = machine.top[-1];
  const std::uint32_t skipped = Count(machine.top[0].number - 1, text.length);
  text.text += skipped;
  text.length = Count(machine.top[1].number, text.length - skipped);
}

void Trim(const Step& /*step*/, Machine& machine) {
  machine.top[-1].length = TrimmedLength(machine.top[-1]);
}

void Ltrim(const Step& /*step*/, Machine& machine) {
  CutLeadingBlanks(machine.top[-1]);
}

void Alltrim(const Step& step, Machine& machine) {
  Trim(step, machine);
  Ltrim(step, machine);
}

void PadLeft(const Step& step, Machine& machine) {
  machine.top -= 2;
  Value& text = machine.top[-1];
  const Value& fill = machine.top[1];
  const std::uint32_t kept = std::min<std::uint32_t>(text.length, step.width);
  std::uint8_t* const out = machine.slots + step.slot;
  std::fill_n(out, step.width - kept, fill.length > 0 ? *fill.text : std::uint8_t{' '});
  std::copy_n(text.text, kept, out + step.width - kept);
  text.text = out;
  text.length = step.width;
}

void PadRight(const Step& step, Machine& machine) {
  machine.top -= 2;
  Value& text = machine.top[-1];
  const Value& fill = machine.top[1];
  const std::uint32_t kept = std::min<std::uint32_t>(text.length, step.width);
  std::uint8_t* const out = machine.slots + step.slot;
  std::copy_n(text.text, kept, out);
  std::fill_n(out + kept, step.width - kept, fill.length > 0 ? *fill.text : std::uint8_t{' '});
  text.text = out;
  text.length = step.width;
}

void EmptyText(const Step& /*step*/, Machine& machine) {
  Value& value = machine.top[-1];
  value.number = View(value).find_first_not_of(" \t\r\n") == std::string_view::npos ? 1 : 0;
}

void ContainedIn(const Step& /*step*/, Machine& machine) {
  Value& needle = LeftOfTwo(machine);
  needle.number = View(*machine.top).find(View(needle)) != std::string_view::npos ? 1 : 0;
}

void ExactlyEqual(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = View(left) == View(*machine.top) ? 1 : 0;
}

void CompareTexts(const Step& step, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = Holds(step.relation, CompareOnRightLength(left, *machine.top)) ? 1 : 0;
}

void Add(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = Finite(left.number + machine.top->number);
}

void Subtract(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = Finite(left.number - machine.top->number);
}

void Multiply(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = Finite(left.number * machine.top->number);
}

void Divide(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = machine.top->number == 0 ? 0 : Finite(left.number / machine.top->number);
}

void Negate(const Step& /*step*/, Machine& machine) {
  machine.top[-1].number = -machine.top[-1].number;
}

void DatePlusDays(const Step& /*step*/, Machine& machine) {
  Value& date = LeftOfTwo(machine);
  if (date.number != 0) date.number = ToJulianDay(date.number + machine.top->number);
}

void DaysPlusDate(const Step& step, Machine& machine) {
  std::swap(machine.top[-2].number, machine.top[-1].number);
  DatePlusDays(step, machine);
}

void DateMinusDays(const Step& step, Machine& machine) {
  Negate(step, machine);
  DatePlusDays(step, machine);
}

void DateMinusDate(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  const bool known = left.number != 0 && machine.top->number != 0;
  left.number = known ? left.number - machine.top->number : 0;
}

void CompareNumbers(const Step& step, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  const double right = machine.top->number;
  const int order = (left.number > right ? 1 : 0) - (left.number < right ? 1 : 0);
  left.number = Holds(step.relation, order) ? 1 : 0;
}

void IsZero(const Step& /*step*/, Machine& machine) {
  machine.top[-1].number = machine.top[-1].number == 0 ? 1 : 0;
}

void And(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = left.number != 0 && machine.top->number != 0 ? 1 : 0;
}

void Or(const Step& /*step*/, Machine& machine) {
  Value& left = LeftOfTwo(machine);
  left.number = left.number != 0 || machine.top->number != 0 ? 1 : 0;
}

void Choose(const Step& /*step*/, Machine& machine) {
  machine.top -= 2;
  Value& condition = machine.top[-1];
  condition = condition.number != 0 ? machine.top[0] : machine.top[1];
}

}  // namespace steps
}  // namespace tallwick::engine
