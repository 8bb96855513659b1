// The steps that turn texts, numbers and dates into each other.
#include <algorithm>
#include <string_view>

#include "core/date.h"
#include "core/text.h"
#include "store/engine/expression_number.h"
#include "store/engine/expression_program.h"

namespace tallwick::engine::steps {
namespace {

void WriteDigits(std::uint8_t* out, int count, int number) {
  for (int i = count - 1; i >= 0; --i, number /= 10) out[i] = static_cast<std::uint8_t>('0' + number % 10);
}

// What stands behind leading blanks of a field when it is all digits up to the end, the form in which nearly
// every record holds a whole number; empty otherwise, also when a leading 0 would have to go.
std::string_view PlainDigits(const std::uint8_t* field, std::size_t width) {
  std::size_t start = 0;
  while (start < width && field[start] == ' ') ++start;
  if (start == width || (field[start] == '0' && start + 1 < width)) return {};
  for (std::size_t i = start; i < width; ++i) {
    if (!IsDigit(static_cast<char>(field[i]))) return {};
  }
  return {reinterpret_cast<const char*>(field + start), width - start};
}

void SetText(Value& value, const std::uint8_t* text, std::uint32_t length) {
  value.text = text;
  value.length = length;
}

}  // namespace

void Str(const Step& step, Machine& machine) {
  Value& value = machine.top[-1];
  std::uint8_t* const out = machine.slots + step.slot;
  FormatNumber(value.number, step.width, step.decimals, out);
  SetText(value, out, step.width);
}

void StrOfField(const Step& step, Machine& machine) {
  const std::string_view digits = PlainDigits(machine.record + step.offset, step.field_width);
  if (digits.empty() || digits.size() > step.width || step.decimals != 0) {
    NumberField(step, machine);
    Str(step, machine);
    return;
  }
  std::uint8_t* const out = machine.slots + step.slot;
  std::fill_n(out, step.width - digits.size(), std::uint8_t{' '});
  std::copy(digits.begin(), digits.end(), out + step.width - digits.size());
  SetText(*machine.top++, out, step.width);
}

void Val(const Step& /*step*/, Machine& machine) {
  machine.top[-1].number = NumberFromText(View(machine.top[-1]));
}

void Dtos(const Step& step, Machine& machine) {
  Value& value = machine.top[-1];
  std::uint8_t* const out = machine.slots + step.slot;
  const Date date = DateFromJulianDay(static_cast<std::int32_t>(value.number));
  if (date.IsEmpty()) {
    std::fill_n(out, 8, std::uint8_t{' '});
  } else {
    WriteDigits(out, 4, date.year);
    WriteDigits(out + 4, 2, date.month);
    WriteDigits(out + 6, 2, date.day);
  }
  SetText(value, out, 8);
}

void Dtoc(const Step& step, Machine& machine) {
  Value& value = machine.top[-1];
  std::uint8_t* const out = machine.slots + step.slot;
  std::copy_n("  /  /    ", 10, out);
  const Date date = DateFromJulianDay(static_cast<std::int32_t>(value.number));
  if (!date.IsEmpty()) {
    WriteDigits(out, 2, date.month);
    WriteDigits(out + 3, 2, date.day);
    WriteDigits(out + 6, 4, date.year);
  }
  SetText(value, out, 10);
}

void Stod(const Step& /*step*/, Machine& machine) {
  Value& value = machine.top[-1];
  const auto date = ParseStoredDate(View(value).substr(0, 8));
  value.number = date ? JulianDay(*date) : 0;
}

void Ctod(const Step& /*step*/, Machine& machine) {
  Value& value = machine.top[-1];
  const auto date = ParseDisplayDate(View(value));
  value.number = date ? JulianDay(*date) : 0;
}

}  // namespace tallwick::engine::steps
