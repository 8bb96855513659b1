// Tokens of the expression language. A dot has three uses, told apart by what follows it: a number (".5"), a
// word between dots (".AND.", ".T.") and an alias prefix ("ALIAS.FIELD"); "A.AND.B" is the operator.
#include "store/engine/expression_lexer.h"

#include <array>
#include <optional>
#include <utility>

#include "core/text.h"

namespace tallwick::engine {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool StartsName(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool InName(char c) {
  return StartsName(c) || IsDigit(c);
}

using Word = std::pair<std::string_view, TokenKind>;

constexpr std::array<Word, 7> kDottedWords{{{".T.", TokenKind::kTrue},
                                            {".Y.", TokenKind::kTrue},
                                            {".F.", TokenKind::kFalse},
                                            {".N.", TokenKind::kFalse},
                                            {".AND.", TokenKind::kAnd},
                                            {".OR.", TokenKind::kOr},
                                            {".NOT.", TokenKind::kNot}}};

// Longer signs stand before those that they begin with.
constexpr std::array<Word, 18> kSigns{{{"==", TokenKind::kExactlyEqual},
                                       {"<>", TokenKind::kNotEqual},
                                       {"!=", TokenKind::kNotEqual},
                                       {"<=", TokenKind::kLessOrEqual},
                                       {">=", TokenKind::kGreaterOrEqual},
                                       {"=", TokenKind::kEqual},
                                       {"#", TokenKind::kNotEqual},
                                       {"<", TokenKind::kLess},
                                       {">", TokenKind::kGreater},
                                       {"$", TokenKind::kContainedIn},
                                       {"!", TokenKind::kNot},
                                       {"+", TokenKind::kPlus},
                                       {"-", TokenKind::kMinus},
                                       {"*", TokenKind::kTimes},
                                       {"/", TokenKind::kDividedBy},
                                       {"(", TokenKind::kOpen},
                                       {")", TokenKind::kClose},
                                       {",", TokenKind::kComma}}};

std::optional<Word> DottedWord(std::string_view rest) {
  for (const Word& word : kDottedWords) {
    if (EqualsIgnoreCase(rest.substr(0, word.first.size()), word.first)) return word;
  }
  return std::nullopt;
}

bool IsOperatorWord(std::string_view rest) {
  const auto word = DottedWord(rest);
  return word && word->second != TokenKind::kTrue && word->second != TokenKind::kFalse;
}

}  // namespace

bool ExpressionLexer::Next(Token* token) {
  while (next_ < text_.size() && IsBlank(text_[next_])) ++next_;
  *token = {TokenKind::kEnd, next_ + 1, {}};
  if (next_ >= text_.size()) return true;
  const char c = text_[next_];
  if (StartsName(c)) return ReadName(token);
  if (IsDigit(c) || (c == '.' && IsDigit(At(next_ + 1)))) return ReadNumber(token);
  if (c == '\'' || c == '"' || c == '[') return ReadLiteral(token);
  return c == '.' ? ReadDotted(token) : ReadSign(token);
}

bool ExpressionLexer::ReadName(Token* token) {
  std::size_t start = next_;
  std::size_t end = EndOfName(start);
  if (const std::size_t field = StartOfAliasedName(end); field != 0) {
    if (!StartsName(At(field))) return Fail("A field name is missing behind the alias", field);
    start = field;
    end = EndOfName(start);
  }
  token->kind = TokenKind::kName;
  token->text = text_.substr(start, end - start);
  next_ = end;
  return true;
}

std::size_t ExpressionLexer::EndOfName(std::size_t start) const {
  std::size_t end = start;
  while (InName(At(end))) ++end;
  return end;
}

// Where the name behind "ALIAS->" or "ALIAS." begins; 0 when what was read is no alias.
std::size_t ExpressionLexer::StartOfAliasedName(std::size_t end_of_alias) const {
  if (At(end_of_alias) == '.' && StartsName(At(end_of_alias + 1)) &&
      !IsOperatorWord(text_.substr(end_of_alias))) {
    return end_of_alias + 1;
  }
  std::size_t at = end_of_alias;
  while (IsBlank(At(at))) ++at;
  if (At(at) != '-' || At(at + 1) != '>') return 0;
  at += 2;
  while (IsBlank(At(at))) ++at;
  return at;
}

bool ExpressionLexer::ReadNumber(Token* token) {
  const std::size_t start = next_;
  while (IsDigit(At(next_))) ++next_;
  if (At(next_) == '.' && IsDigit(At(next_ + 1))) {
    ++next_;
    while (IsDigit(At(next_))) ++next_;
  }
  token->kind = TokenKind::kNumber;
  token->text = text_.substr(start, next_ - start);
  return true;
}

bool ExpressionLexer::ReadLiteral(Token* token) {
  const char close = text_[next_] == '[' ? ']' : text_[next_];
  const std::size_t end = text_.find(close, next_ + 1);
  if (end == std::string_view::npos) return Fail("A text has no closing quote; it begins", next_);
  token->kind = TokenKind::kText;
  token->text = text_.substr(next_ + 1, end - next_ - 1);
  next_ = end + 1;
  return true;
}

bool ExpressionLexer::ReadDotted(Token* token) {
  const auto word = DottedWord(text_.substr(next_));
  if (!word) return Fail("A dot that belongs to nothing", next_);
  token->kind = word->second;
  token->text = text_.substr(next_, word->first.size());
  next_ += word->first.size();
  return true;
}

bool ExpressionLexer::ReadSign(Token* token) {
  const std::string_view rest = text_.substr(next_);
  for (const Word& sign : kSigns) {
    if (!rest.starts_with(sign.first)) continue;
    token->kind = sign.second;
    token->text = rest.substr(0, sign.first.size());
    next_ += sign.first.size();
    return true;
  }
  return Fail("A character that means nothing here", next_);
}

bool ExpressionLexer::Fail(std::string_view message, std::size_t offset) {
  error_ = std::string(message) + " at position " + std::to_string(offset + 1);
  return false;
}

}  // namespace tallwick::engine
