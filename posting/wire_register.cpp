#include "posting/wire_register.h"

#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {
namespace {

std::vector<std::string> Cells(const WireRecord& wire) {
  return {wire.number,      DisplayDate(wire.dated),    wire.payee, AmountText(wire.amount),
          wire.file_number, WireStatusText(wire.status)};
}

std::vector<SearchKey> Keys(std::string_view text) {
  return {{"WIRENUMBER", std::string(text)}, {"WIREFILENO", std::string(text)}};
}

}  // namespace

ItemRows<WireRecord> WireRows() {
  return {"WIRENUMBER",
          "WIRESTATUS",
          "WIREAMOUNT",
          &WireRecord::number,
          &WireRecord::status,
          {"Number", "Dated", "Payee", "Amount", "File", "Status"},
          {3},
          Cells,
          Keys,
          StatusStyle};
}

}  // namespace tallwick
