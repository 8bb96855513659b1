// The look of a transaction's row by its status, as RowSource::RowStyle names it.
#pragma once

#include <string>
#include <string_view>

namespace tallwick {

inline std::string StatusStyle(std::string_view status) {
  if (status == "C") return "cleared";
  if (status == "V") return "voided";
  return status == "S" ? "stopped" : "";
}

}  // namespace tallwick
