// Makes the program of an expression: the parser names the parts in the order of evaluation, the builder
// checks their types, follows how wide each text can become, and emits the steps.
//
// Every operation returns the operand it leaves on the stack, or nullopt with Error() set.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"
#include "store/engine/expression_lexer.h"
#include "store/engine/expression_program.h"

namespace tallwick::engine {

// What is known of a value while compiling.
struct Operand {
  ValueType type = ValueType::kNumber;
  std::uint32_t length = 0;            // the widest a text can be
  std::optional<double> constant{};    // of a number that is written out: its only step is then a Constant
  std::optional<std::size_t> chain{};  // the BeginChain step of a text in whose slot more can be appended
};

// A function of the language, by its upper-case name.
struct Function {
  enum class Kind { kPlain, kPart, kPad, kStr, kDtos, kToday, kEmpty, kChoose };

  std::string_view name;
  std::string_view arguments;  // T text, N number, D date, L logical, ? any
  std::size_t required;        // the others may be left out from the end
  Kind kind;
  Step::Function step;
  ValueType result;
};

// nullptr when there is none; letters in any case.
const Function* FindFunction(std::string_view name);

class ProgramBuilder {
 public:
  using Result = std::optional<Operand>;

  // An empty `today` forbids DATE().
  explicit ProgramBuilder(const Date& today) : today_(today) {}

  Result Number(double number);
  Result Text(std::string_view text);
  Result Logical(bool truth);
  Result Field(const FieldInfo& field);
  Result Negate(const Operand& operand);
  Result Not(const Operand& operand);
  // Stands between the two sides of a binary operator.
  void BeforeRight(TokenKind sign, Operand* left);
  Result Binary(const Token& sign, const Operand& left, const Operand& right);
  Result Call(const Function& function, std::span<const Operand> arguments);
  // The whole program, `result` being the only operand left.
  std::optional<Program> Finish(const Operand& result);

  const std::string& Error() const { return error_; }

 private:
  // A step with the bytes of its slot; slots get their places when all are known.
  struct Draft {
    Step step;
    std::uint32_t slot_bytes = 0;
  };

  Result Emit(Draft draft, int taken, Operand operand);
  Result EmitText(Step step, int taken, std::uint32_t length, bool slot);
  void TakeBackConstant();
  bool CheckArguments(const Function& function, std::span<const Operand> arguments);
  bool CheckWrittenOut(const Function& function, std::span<const Operand> arguments, std::size_t index,
                       int low, int high);
  Result CallPlain(const Function& function, std::span<const Operand> arguments);
  Result CallPart(const Function& function, std::span<const Operand> arguments);
  Result CallPad(const Function& function, std::span<const Operand> arguments);
  Result CallStr(const Function& function, std::span<const Operand> arguments);
  Result CallChoose(const Function& function, std::span<const Operand> arguments);
  Result Compare(const Token& sign, const Operand& left, const Operand& right);
  std::nullopt_t Fail(std::string message);

  Date today_;
  std::vector<Draft> drafts_;
  std::string literals_;
  int depth_ = 0;  // values on the stack
  std::string error_;
};

}  // namespace tallwick::engine
