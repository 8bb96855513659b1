// Splits the text of an expression into tokens. Positions count from 1, as a person would count characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tallwick::engine {

enum class TokenKind {
  kEnd,
  kName,    // a field or function name without its alias prefix
  kNumber,  // without sign
  kText,    // without its quotes
  kTrue,
  kFalse,
  kOpen,
  kClose,
  kComma,
  kOr,
  kAnd,
  kNot,
  kEqual,
  kExactlyEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
  kContainedIn,
  kPlus,
  kMinus,
  kTimes,
  kDividedBy
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::size_t position = 1;
  std::string_view text;  // the name or the literal; for the rest as written
};

class ExpressionLexer {
 public:
  explicit ExpressionLexer(std::string_view text) : text_(text) {}

  // Reads the next token; false when there is none that makes sense, and Error() says why.
  bool Next(Token* token);
  const std::string& Error() const { return error_; }

 private:
  bool ReadName(Token* token);
  bool ReadNumber(Token* token);
  bool ReadLiteral(Token* token);
  bool ReadDotted(Token* token);
  bool ReadSign(Token* token);
  bool Fail(std::string_view message, std::size_t offset);
  char At(std::size_t offset) const { return offset < text_.size() ? text_[offset] : '\0'; }
  std::size_t EndOfName(std::size_t start) const;
  std::size_t StartOfAliasedName(std::size_t end_of_alias) const;

  std::string_view text_;
  std::size_t next_ = 0;
  std::string error_;
};

}  // namespace tallwick::engine
