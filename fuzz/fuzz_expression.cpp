// An expression, a NUL, and the bytes of a record: parsed against a fixed field list and evaluated in every
// way.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "store/engine/expression.h"

namespace {

using tallwick::engine::Expression;
using tallwick::engine::FieldInfo;

constexpr std::size_t kRecordLength = 76;

const std::array<FieldInfo, 7>& Fields() {
  static const std::array<FieldInfo, 7> fields = {{{"NUMBER", 'C', 12, 0, 1},
                                                   {"DATED", 'D', 8, 0, 13},
                                                   {"PAYEE", 'C', 30, 0, 21},
                                                   {"AMOUNT", 'N', 12, 2, 51},
                                                   {"YEAR", 'N', 4, 0, 63},
                                                   {"PRINTED", 'L', 1, 0, 67},
                                                   {"RATE", 'B', 8, 4, 68}}};
  return fields;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(bytes), size);
  const std::string_view text = input.substr(0, input.find('\0'));
  const auto expression = Expression::Parse(text, Fields());
  if (expression == nullptr) return 0;

  // Exactly as long as promised, so that a byte beyond is seen.
  std::vector<std::uint8_t> record(kRecordLength, ' ');
  const std::string_view rest = input.substr(std::min(text.size() + 1, input.size()));
  std::copy_n(rest.begin(), std::min(rest.size(), record.size()), record.begin());
  if (expression->KeyLength() < 0) std::abort();
  std::vector<std::uint8_t> key(static_cast<std::size_t>(expression->KeyLength()));
  expression->EvaluateKey(record.data(), 7, key.data());
  expression->EvaluateLogical(record.data(), 7);
  expression->EvaluateText(record.data(), 7);

  // What an index stores as its expression must be understood again.
  if (Expression::Parse(expression->Source(), Fields()) == nullptr) std::abort();
  return 0;
}
