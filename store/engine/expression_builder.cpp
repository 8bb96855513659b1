// Types, widths and steps of the expression language, mostly
// as tables: one row an operator, one row a function.
#include "store/engine/expression_builder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/text.h"

namespace tallwick::engine {
namespace {

constexpr std::uint32_t kMaxTextLength = 65535;
constexpr int kMaxStrWidth = 64;

constexpr ValueType kText = ValueType::kText;
constexpr ValueType kNumber = ValueType::kNumber;
constexpr ValueType kDate = ValueType::kDate;
constexpr ValueType kLogical = ValueType::kLogical;

struct BinaryRule {
  TokenKind sign;
  ValueType left;
  ValueType right;
  ValueType result;
  Step::Function step;
};

constexpr auto kBinaryRules = std::to_array<BinaryRule>({
    {TokenKind::kOr, kLogical, kLogical, kLogical, steps::Or},
    {TokenKind::kAnd, kLogical, kLogical, kLogical, steps::And},
    {TokenKind::kContainedIn, kText, kText, kLogical, steps::ContainedIn},
    {TokenKind::kExactlyEqual, kText, kText, kLogical, steps::ExactlyEqual},
    {TokenKind::kPlus, kText, kText, kText, steps::Append},
    {TokenKind::kMinus, kText, kText, kText, steps::Join},
    {TokenKind::kPlus, kNumber, kNumber, kNumber, steps::Add},
    {TokenKind::kMinus, kNumber, kNumber, kNumber, steps::Subtract},
    {TokenKind::kTimes, kNumber, kNumber, kNumber, steps::Multiply},
    {TokenKind::kDividedBy, kNumber, kNumber, kNumber, steps::Divide},
    {TokenKind::kPlus, kDate, kNumber, kDate, steps::DatePlusDays},
    {TokenKind::kPlus, kNumber, kDate, kDate, steps::DaysPlusDate},
    {TokenKind::kMinus, kDate, kNumber, kDate, steps::DateMinusDays},
    {TokenKind::kMinus, kDate, kDate, kNumber, steps::DateMinusDate},
});

constexpr auto kRelations = std::to_array<std::pair<TokenKind, Relation>>({
    {TokenKind::kEqual, Relation::kEqual},
    {TokenKind::kExactlyEqual, Relation::kEqual},
    {TokenKind::kNotEqual, Relation::kNotEqual},
    {TokenKind::kLess, Relation::kLess},
    {TokenKind::kLessOrEqual, Relation::kLessOrEqual},
    {TokenKind::kGreater, Relation::kGreater},
    {TokenKind::kGreaterOrEqual, Relation::kGreaterOrEqual},
});

constexpr auto kFunctions = std::to_array<Function>({
    {"UPPER", "T", 1, Function::Kind::kPlain, steps::Upper, kText},
    {"LOWER", "T", 1, Function::Kind::kPlain, steps::Lower, kText},
    {"TRIM", "T", 1, Function::Kind::kPlain, steps::Trim, kText},
    {"RTRIM", "T", 1, Function::Kind::kPlain, steps::Trim, kText},
    {"LTRIM", "T", 1, Function::Kind::kPlain, steps::Ltrim, kText},
    {"ALLTRIM", "T", 1, Function::Kind::kPlain, steps::Alltrim, kText},
    {"LEFT", "TN", 2, Function::Kind::kPart, steps::Left, kText},
    {"RIGHT", "TN", 2, Function::Kind::kPart, steps::Right, kText},
    {"SUBSTR", "TNN", 2, Function::Kind::kPart, steps::Substr, kText},
    {"PADL", "TNT", 2, Function::Kind::kPad, steps::PadLeft, kText},
    {"PADR", "TNT", 2, Function::Kind::kPad, steps::PadRight, kText},
    {"STR", "NNN", 1, Function::Kind::kStr, steps::Str, kText},
    {"VAL", "T", 1, Function::Kind::kPlain, steps::Val, kNumber},
    {"DTOS", "D", 1, Function::Kind::kDtos, steps::Dtos, kText},
    {"DTOC", "D", 1, Function::Kind::kPlain, steps::Dtoc, kText},
    {"STOD", "T", 1, Function::Kind::kPlain, steps::Stod, kDate},
    {"CTOD", "T", 1, Function::Kind::kPlain, steps::Ctod, kDate},
    {"DATE", "", 0, Function::Kind::kToday, steps::Constant, kDate},
    {"RECNO", "", 0, Function::Kind::kPlain, steps::RecordNumber, kNumber},
    {"DELETED", "", 0, Function::Kind::kPlain, steps::Deleted, kLogical},
    {"EMPTY", "?", 1, Function::Kind::kEmpty, steps::IsZero, kLogical},
    {"IIF", "L??", 3, Function::Kind::kChoose, steps::Choose, kText},
});

struct FieldRule {
  char type;
  int width;  // 0 for any
  ValueType result;
  Step::Function step;
};

constexpr auto kFieldRules = std::to_array<FieldRule>({
    {'C', 0, kText, steps::TextField},
    {'N', 0, kNumber, steps::NumberField},
    {'F', 0, kNumber, steps::NumberField},
    {'D', 8, kDate, steps::DateField},
    {'L', 1, kLogical, steps::LogicalField},
    {'B', 8, kNumber, steps::DoubleField},
    {'I', 4, kNumber, steps::IntegerField},
    {'Y', 8, kNumber, steps::CurrencyField},
});

std::string_view TypeName(ValueType type) {
  switch (type) {
    case kText:
      return "a text";
    case kNumber:
      return "a number";
    case kDate:
      return "a date";
    case kLogical:
      return "a logical value";
  }
  return "";
}

std::optional<ValueType> TypeOfLetter(char letter) {
  switch (letter) {
    case 'T':
      return kText;
    case 'N':
      return kNumber;
    case 'D':
      return kDate;
    case 'L':
      return kLogical;
    default:
      return std::nullopt;
  }
}

std::uint16_t Narrow(std::uint32_t length) {
  return static_cast<std::uint16_t>(length);
}

}  // namespace

const Function* FindFunction(std::string_view name) {
  const auto found = std::find_if(kFunctions.begin(), kFunctions.end(),
                                  [name](const Function& f) { return EqualsIgnoreCase(f.name, name); });
  return found == kFunctions.end() ? nullptr : &*found;
}

// --- Sources and operators ---

ProgramBuilder::Result ProgramBuilder::Number(double number) {
  Operand operand;
  operand.constant = number;
  return Emit({{.run = steps::Constant, .number = number}}, 0, operand);
}

ProgramBuilder::Result ProgramBuilder::Text(std::string_view text) {
  const auto offset = static_cast<std::uint32_t>(literals_.size());
  const auto length = static_cast<std::uint32_t>(text.size());
  literals_ += text;
  return EmitText({.run = steps::Literal, .offset = offset, .field_width = Narrow(length)}, 0, length, false);
}

ProgramBuilder::Result ProgramBuilder::Logical(bool truth) {
  return Emit({{.run = steps::Constant, .number = truth ? 1.0 : 0.0}}, 0, {.type = kLogical});
}

ProgramBuilder::Result ProgramBuilder::Field(const FieldInfo& field) {
  const auto rule = std::find_if(kFieldRules.begin(), kFieldRules.end(), [&field](const FieldRule& r) {
    return r.type == field.type && (r.width == 0 || r.width == field.width);
  });
  if (rule == kFieldRules.end() || field.width < 1 || field.width > static_cast<int>(kMaxTextLength)) {
    return Fail("A field of type " + std::string(1, field.type) + " cannot stand in an expression");
  }
  const auto width = static_cast<std::uint32_t>(field.width);
  const Step step{
      .run = rule->step, .offset = static_cast<std::uint32_t>(field.offset), .field_width = Narrow(width)};
  return Emit({step}, 0, {.type = rule->result, .length = rule->result == kText ? width : 0});
}

ProgramBuilder::Result ProgramBuilder::Negate(const Operand& operand) {
  if (operand.type != kNumber) return Fail("A sign stands before " + std::string(TypeName(operand.type)));
  if (operand.constant) {
    TakeBackConstant();
    return Number(-*operand.constant);
  }
  return Emit({{.run = steps::Negate}}, 1, {.type = kNumber});
}

ProgramBuilder::Result ProgramBuilder::Not(const Operand& operand) {
  if (operand.type != kLogical) return Fail(".NOT. stands before " + std::string(TypeName(operand.type)));
  return Emit({{.run = steps::IsZero}}, 1, {.type = kLogical});
}

void ProgramBuilder::BeforeRight(TokenKind sign, Operand* left) {
  if (sign != TokenKind::kPlus || left->type != kText || left->chain) return;
  left->chain = drafts_.size();
  Emit({{.run = steps::BeginChain}, left->length}, 1, *left);
}

ProgramBuilder::Result ProgramBuilder::Binary(const Token& sign, const Operand& left, const Operand& right) {
  const auto rule = std::find_if(kBinaryRules.begin(), kBinaryRules.end(), [&](const BinaryRule& r) {
    return r.sign == sign.kind && r.left == left.type && r.right == right.type;
  });
  if (rule == kBinaryRules.end()) return Compare(sign, left, right);
  if (rule->result != kText) return Emit({{.run = rule->step}}, 2, {.type = rule->result});
  const std::uint32_t length = left.length + right.length;
  if (rule->step == steps::Join) return EmitText({.run = rule->step}, 2, length, true);
  if (length <= kMaxTextLength) drafts_[*left.chain].slot_bytes = length;
  Result result = EmitText({.run = rule->step}, 2, length, false);
  if (result) result->chain = left.chain;
  return result;
}

ProgramBuilder::Result ProgramBuilder::Compare(const Token& sign, const Operand& left, const Operand& right) {
  const auto relation = std::find_if(kRelations.begin(), kRelations.end(),
                                     [&sign](const auto& pair) { return pair.first == sign.kind; });
  const bool ordered = relation != kRelations.end() && relation->second != Relation::kEqual &&
                       relation->second != Relation::kNotEqual;
  if (relation == kRelations.end() || left.type != right.type || (left.type == kLogical && ordered)) {
    return Fail(Quoted(sign.text) + " does not go with " + std::string(TypeName(left.type)) + " and " +
                std::string(TypeName(right.type)));
  }
  const auto step = left.type == kText ? steps::CompareTexts : steps::CompareNumbers;
  return Emit({{.run = step, .relation = relation->second}}, 2, {.type = kLogical});
}

// --- Functions ---

ProgramBuilder::Result ProgramBuilder::Call(const Function& function, std::span<const Operand> arguments) {
  if (!CheckArguments(function, arguments)) return std::nullopt;
  switch (function.kind) {
    case Function::Kind::kPlain:
      return CallPlain(function, arguments);
    case Function::Kind::kPart:
      return CallPart(function, arguments);
    case Function::Kind::kPad:
      return CallPad(function, arguments);
    case Function::Kind::kStr:
      return CallStr(function, arguments);
    case Function::Kind::kChoose:
      return CallChoose(function, arguments);
    case Function::Kind::kDtos:
      if (drafts_.back().step.run != steps::DateField) return EmitText({.run = function.step}, 1, 8, true);
      // The field holds the very text.
      drafts_.back().step.run = steps::TextField;
      return Operand{.type = kText, .length = 8};
    case Function::Kind::kToday:
      if (today_.IsEmpty()) return Fail("DATE() changes from day to day and cannot be part of an index");
      return Emit({{.run = function.step, .number = static_cast<double>(JulianDay(today_))}}, 0,
                  {.type = kDate});
    case Function::Kind::kEmpty:
      return Emit({{.run = arguments[0].type == kText ? steps::EmptyText : function.step}}, 1,
                  {.type = kLogical});
  }
  return std::nullopt;
}

bool ProgramBuilder::CheckArguments(const Function& function, std::span<const Operand> arguments) {
  const std::string name(function.name);
  const std::size_t most = function.arguments.size();
  if (arguments.size() < function.required || arguments.size() > most) {
    std::string count = most == 0 ? "no" : std::to_string(function.required);
    if (function.required != most) count += " to " + std::to_string(most);
    Fail(name + " takes " + count + (most == 1 ? " argument" : " arguments"));
    return false;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto wanted = TypeOfLetter(function.arguments[i]);
    if (!wanted || *wanted == arguments[i].type) continue;
    Fail("Argument " + std::to_string(i + 1) + " of " + name + " must be " + std::string(TypeName(*wanted)));
    return false;
  }
  return true;
}

bool ProgramBuilder::CheckWrittenOut(const Function& function, std::span<const Operand> arguments,
                                     std::size_t index, int low, int high) {
  if (index >= arguments.size()) return true;
  const auto& constant = arguments[index].constant;
  if (constant && *constant >= low && *constant <= high && *constant == static_cast<int>(*constant))
    return true;
  Fail("Argument " + std::to_string(index + 1) + " of " + std::string(function.name) +
       " must be a whole number from " + std::to_string(low) + " to " + std::to_string(high));
  return false;
}

ProgramBuilder::Result ProgramBuilder::CallPlain(const Function& function,
                                                 std::span<const Operand> arguments) {
  const int taken = static_cast<int>(arguments.size());
  if (function.result != kText) return Emit({{.run = function.step}}, taken, {.type = function.result});
  if (function.step == steps::Dtoc) return EmitText({.run = function.step}, taken, 10, true);
  const bool changes_letters = function.step == steps::Upper || function.step == steps::Lower;
  return EmitText({.run = function.step}, taken, arguments[0].length, changes_letters);
}

// The result is no wider than the text, nor than a count that is written out.
ProgramBuilder::Result ProgramBuilder::CallPart(const Function& function,
                                                std::span<const Operand> arguments) {
  std::uint32_t length = arguments[0].length;
  const auto cut = [&length](double count) {
    if (count < length) length = count > 0 ? static_cast<std::uint32_t>(count) : 0;
  };
  if (function.step != steps::Substr) {
    if (arguments[1].constant) cut(*arguments[1].constant);
    return EmitText({.run = function.step}, 2, length, false);
  }
  // Positions count in whole characters, here as when the program runs.
  if (arguments[1].constant && *arguments[1].constant > 1)
    cut(length - std::trunc(*arguments[1].constant - 1));
  if (arguments.size() < 3) {
    if (!Number(kMaxTextLength)) return std::nullopt;
  } else if (arguments[2].constant) {
    cut(*arguments[2].constant);
  }
  return EmitText({.run = function.step}, 3, length, false);
}

ProgramBuilder::Result ProgramBuilder::CallPad(const Function& function, std::span<const Operand> arguments) {
  if (!CheckWrittenOut(function, arguments, 1, 0, static_cast<int>(kMaxTextLength))) return std::nullopt;
  if (arguments.size() < 3 && !Text(" ")) return std::nullopt;
  const auto width = static_cast<std::uint32_t>(*arguments[1].constant);
  return EmitText({.run = function.step, .width = Narrow(width)}, 3, width, true);
}

ProgramBuilder::Result ProgramBuilder::CallStr(const Function& function, std::span<const Operand> arguments) {
  if (!CheckWrittenOut(function, arguments, 1, 1, kMaxStrWidth)) return std::nullopt;
  const int width = arguments.size() > 1 ? static_cast<int>(*arguments[1].constant) : 10;
  if (!CheckWrittenOut(function, arguments, 2, 0, std::max(width - 2, 0))) return std::nullopt;
  const int decimals = arguments.size() > 2 ? static_cast<int>(*arguments[2].constant) : 0;
  for (std::size_t i = 1; i < arguments.size(); ++i) TakeBackConstant();

  Step step{.run = function.step,
            .width = static_cast<std::uint16_t>(width),
            .decimals = static_cast<std::uint8_t>(decimals)};
  if (drafts_.back().step.run != steps::NumberField) {
    return EmitText(step, 1, static_cast<std::uint32_t>(width), true);
  }
  const Step field = drafts_.back().step;
  drafts_.pop_back();
  --depth_;
  step.run = steps::StrOfField;
  step.offset = field.offset;
  step.field_width = field.field_width;
  return EmitText(step, 0, static_cast<std::uint32_t>(width), true);
}

ProgramBuilder::Result ProgramBuilder::CallChoose(const Function& function,
                                                  std::span<const Operand> arguments) {
  if (arguments[1].type != arguments[2].type) {
    return Fail("IIF has to choose between two values of one type, not " +
                std::string(TypeName(arguments[1].type)) + " and " +
                std::string(TypeName(arguments[2].type)));
  }
  return Emit({{.run = function.step}}, 3,
              {.type = arguments[1].type, .length = std::max(arguments[1].length, arguments[2].length)});
}

// --- The program ---

std::optional<Program> ProgramBuilder::Finish(const Operand& result) {
  Program program;
  program.type = result.type;
  program.length = result.length;
  program.literals = std::move(literals_);
  std::size_t used = 0;
  for (Draft& draft : drafts_) {
    draft.step.slot = static_cast<std::uint32_t>(used);
    used += draft.slot_bytes;
    if (used > Program::kSlotBytes) return Fail("The texts of the expression are too long");
    program.steps.push_back(draft.step);
  }
  return program;
}

ProgramBuilder::Result ProgramBuilder::Emit(Draft draft, int taken, Operand operand) {
  depth_ += 1 - taken;
  if (depth_ > Program::kStackDepth) return Fail("The expression is too complicated");
  drafts_.push_back(draft);
  return operand;
}

ProgramBuilder::Result ProgramBuilder::EmitText(Step step, int taken, std::uint32_t length, bool slot) {
  if (length > kMaxTextLength) return Fail("The texts of the expression are too long");
  return Emit({step, slot ? length : 0}, taken, {.type = kText, .length = length});
}

void ProgramBuilder::TakeBackConstant() {
  drafts_.pop_back();
  --depth_;
}

std::nullopt_t ProgramBuilder::Fail(std::string message) {
  error_ = std::move(message);
  return std::nullopt;
}

}  // namespace tallwick::engine
