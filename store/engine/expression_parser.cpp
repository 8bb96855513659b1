// A recursive descent over the tokens; the builder gets the parts in the order of evaluation. The nesting of
// parentheses, calls and signs is bounded, and with it the recursion, whatever the text.
#include "store/engine/expression_parser.h"

#include <algorithm>
#include <vector>

#include "core/encoding.h"
#include "core/text.h"
#include "store/engine/expression_builder.h"
#include "store/engine/expression_number.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kMaxText = 1024;
constexpr int kMaxNesting = 64;

// How tightly the binary operators bind, loosest first; 0 for tokens that are none. .NOT. binds its right
// side as tightly as a comparison, a sign tighter than all.
constexpr int kLoosest = 1;
constexpr int kComparison = 3;

int Binding(TokenKind kind) {
  switch (kind) {
    case TokenKind::kOr:
      return 1;
    case TokenKind::kAnd:
      return 2;
    case TokenKind::kEqual:
    case TokenKind::kExactlyEqual:
    case TokenKind::kNotEqual:
    case TokenKind::kLess:
    case TokenKind::kLessOrEqual:
    case TokenKind::kGreater:
    case TokenKind::kGreaterOrEqual:
    case TokenKind::kContainedIn:
      return kComparison;
    case TokenKind::kPlus:
    case TokenKind::kMinus:
      return 4;
    case TokenKind::kTimes:
    case TokenKind::kDividedBy:
      return 5;
    default:
      return 0;
  }
}

class Parser {
 public:
  Parser(std::string_view text, std::span<const FieldInfo> fields, const Date& today)
      : lexer_(text), fields_(fields), builder_(today) {}

  std::optional<Program> Parse() {
    if (!Advance()) return std::nullopt;
    const auto result = Expression(kLoosest);
    if (!result) return std::nullopt;
    if (token_.kind != TokenKind::kEnd) return Unexpected();
    auto program = builder_.Finish(*result);
    if (!program) error_ = builder_.Error();
    return program;
  }

  const std::string& Error() const { return error_; }

 private:
  using Result = ProgramBuilder::Result;

  // Operands joined by operators that bind at least as tightly as `binding`.
  Result Expression(int binding) {
    Result left = Signed();
    while (left && Binding(token_.kind) >= binding) {
      const Token sign = token_;
      if (!Advance()) return std::nullopt;
      builder_.BeforeRight(sign.kind, &*left);
      const Result right = Expression(Binding(sign.kind) + 1);
      if (!right) return std::nullopt;
      left = At(sign, builder_.Binary(sign, *left, *right));
    }
    return left;
  }

  Result Signed() {
    const Token sign = token_;
    if (sign.kind != TokenKind::kNot && sign.kind != TokenKind::kMinus) return Primary();
    if (!Enter() || !Advance()) return std::nullopt;
    const bool negates_truth = sign.kind == TokenKind::kNot;
    const Result operand = negates_truth ? Expression(kComparison) : Signed();
    if (!operand) return std::nullopt;
    --nesting_;
    return At(sign, negates_truth ? builder_.Not(*operand) : builder_.Negate(*operand));
  }

  Result Primary() {
    const Token token = token_;
    switch (token.kind) {
      case TokenKind::kNumber:
      case TokenKind::kText:
      case TokenKind::kTrue:
      case TokenKind::kFalse:
        return Advance() ? At(token, Literal(token)) : std::nullopt;
      case TokenKind::kOpen:
        return Parenthesis();
      case TokenKind::kName:
        if (!Advance()) return std::nullopt;
        return token_.kind == TokenKind::kOpen ? Call(token) : Field(token);
      default:
        return Unexpected();
    }
  }

  Result Literal(const Token& token) {
    if (token.kind == TokenKind::kNumber) return builder_.Number(NumberFromText(token.text));
    if (token.kind == TokenKind::kText) return builder_.Text(token.text);
    return builder_.Logical(token.kind == TokenKind::kTrue);
  }

  Result Parenthesis() {
    if (!Enter() || !Advance()) return std::nullopt;
    const Result inside = Expression(kLoosest);
    if (!inside || !Close()) return std::nullopt;
    return inside;
  }

  Result Field(const Token& name) {
    const auto same_name = [&name](const FieldInfo& field) {
      return EqualsIgnoreCase(field.name, name.text);
    };
    const auto field = std::find_if(fields_.begin(), fields_.end(), same_name);
    if (field == fields_.end()) return Fail("Unknown field " + Quoted(FromWindows1252(name.text)), name);
    return At(name, builder_.Field(*field));
  }

  Result Call(const Token& name) {
    const Function* const function = FindFunction(name.text);
    if (function == nullptr) return Fail("Unknown function " + Quoted(FromWindows1252(name.text)), name);
    if (!Enter() || !Advance()) return std::nullopt;
    std::vector<Operand> arguments;
    while (token_.kind != TokenKind::kClose || !arguments.empty()) {
      const Result argument = Expression(kLoosest);
      if (!argument) return std::nullopt;
      arguments.push_back(*argument);
      if (token_.kind != TokenKind::kComma) break;
      if (!Advance()) return std::nullopt;
    }
    if (!Close()) return std::nullopt;
    return At(name, builder_.Call(*function, arguments));
  }

  bool Enter() {
    if (++nesting_ <= kMaxNesting) return true;
    Fail("More than 64 levels of nesting", token_);
    return false;
  }

  bool Close() {
    if (token_.kind != TokenKind::kClose) {
      Fail("A closing parenthesis is missing", token_);
      return false;
    }
    --nesting_;
    return Advance();
  }

  bool Advance() {
    if (lexer_.Next(&token_)) return true;
    error_ = lexer_.Error();
    return false;
  }

  // Passes a builder's result on; a failure gets the position of the part that the builder refused.
  Result At(const Token& token, const Result& result) {
    if (!result) Fail(builder_.Error(), token);
    return result;
  }

  std::nullopt_t Unexpected() {
    if (token_.kind == TokenKind::kEnd) return Fail("The expression is not complete", token_);
    return Fail("Unexpected " + Quoted(FromWindows1252(token_.text)), token_);
  }

  std::nullopt_t Fail(const std::string& message, const Token& token) {
    error_ = message + " at position " + std::to_string(token.position);
    return std::nullopt;
  }

  ExpressionLexer lexer_;
  std::span<const FieldInfo> fields_;
  ProgramBuilder builder_;
  Token token_;
  int nesting_ = 0;
  std::string error_;
};

}  // namespace

std::optional<Program> CompileExpression(std::string_view text, std::span<const FieldInfo> fields,
                                         const Date& today, std::string* error) {
  if (text.size() > kMaxText) {
    *error = "The expression has more than 1,024 characters";
    return std::nullopt;
  }
  Parser parser(text, fields, today);
  auto program = parser.Parse();
  if (!program) *error = parser.Error();
  return program;
}

}  // namespace tallwick::engine
