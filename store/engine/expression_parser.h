// From the text of an expression to its program: syntax, types, and the widths of all texts.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/date.h"
#include "store/engine/expression_program.h"

namespace tallwick::engine {

// nullopt with `error` set to one sentence when the text is no expression over these fields.
std::optional<Program> CompileExpression(std::string_view text, std::span<const FieldInfo> fields,
                                         const Date& today, std::string* error);

}  // namespace tallwick::engine
