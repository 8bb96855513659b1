// The face of the expression language: evaluation of a compiled program into keys, truths and texts.
#include "store/engine/expression.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <utility>

#include "store/engine/byte_order.h"
#include "store/engine/expression_parser.h"
#include "store/engine/expression_program.h"

namespace tallwick::engine {
namespace {

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

std::string ShortestNumber(double number) {
  std::array<char, 400> text{};  // 1.8e308 without exponent has 309 digits, 5e-324 has 326 characters
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number == 0 ? 0.0 : number,
                                 std::chars_format::fixed)
                       .ptr;
  return {text.data(), end};
}

}  // namespace

struct Expression::Impl {
  std::string source;
  Program program;
};

Expression::Expression(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Expression::~Expression() = default;

std::unique_ptr<const Expression> Expression::Parse(std::string_view text, std::span<const FieldInfo> fields,
                                                    std::string* error, const Date& today) {
  std::string message;
  auto program = CompileExpression(text, fields, today, &message);
  if (!program) {
    if (error != nullptr) *error = std::move(message);
    return nullptr;
  }
  auto impl = std::make_unique<Impl>(Impl{std::string(text), std::move(*program)});
  return std::unique_ptr<const Expression>(new Expression(std::move(impl)));
}

ValueType Expression::Type() const {
  return impl_->program.type;
}

int Expression::KeyLength() const {
  switch (Type()) {
    case ValueType::kText:
      return std::max(static_cast<int>(impl_->program.length), 1);
    case ValueType::kNumber:
    case ValueType::kDate:
      return 8;
    case ValueType::kLogical:
      return 1;
  }
  return 1;
}

void Expression::EvaluateKey(const std::uint8_t* record, std::uint32_t record_number,
                             std::uint8_t* key) const {
  Workspace workspace;
  const Value value = Run(impl_->program, record, record_number, workspace);
  switch (Type()) {
    case ValueType::kText:
      std::copy_n(value.text, value.length, key);
      std::fill_n(key + value.length, static_cast<std::uint32_t>(KeyLength()) - value.length,
                  std::uint8_t{' '});
      break;
    case ValueType::kNumber:
    case ValueType::kDate:
      NumberToKey(value.number, key);
      break;
    case ValueType::kLogical:
      *key = value.number != 0 ? 'T' : 'F';
      break;
  }
}

bool Expression::EvaluateLogical(const std::uint8_t* record, std::uint32_t record_number) const {
  if (Type() != ValueType::kLogical) return false;
  Workspace workspace;
  return Run(impl_->program, record, record_number, workspace).number != 0;
}

std::string Expression::EvaluateText(const std::uint8_t* record, std::uint32_t record_number) const {
  Workspace workspace;
  const Value value = Run(impl_->program, record, record_number, workspace);
  switch (Type()) {
    case ValueType::kText:
      return {reinterpret_cast<const char*>(value.text), value.length};
    case ValueType::kNumber:
      return ShortestNumber(value.number);
    case ValueType::kDate:
      return value.number == 0 ? "" : StoredDate(DateFromJulianDay(static_cast<std::int32_t>(value.number)));
    case ValueType::kLogical:
      return value.number != 0 ? "T" : "F";
  }
  return {};
}

const std::string& Expression::Source() const {
  return impl_->source;
}

void NumberToKey(double number, std::uint8_t key[8]) {
  const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
  const std::uint64_t ordered = (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
  Store32Big(key, static_cast<std::uint32_t>(ordered >> 32));
  Store32Big(key + 4, static_cast<std::uint32_t>(ordered));
}

double KeyToNumber(const std::uint8_t key[8]) {
  const std::uint64_t ordered = Load64Big(key);
  return std::bit_cast<double>((ordered & kSignBit) != 0 ? ordered & ~kSignBit : ~ordered);
}

}  // namespace tallwick::engine
