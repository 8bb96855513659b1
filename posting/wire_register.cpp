#include "posting/wire_register.h"

#include "posting/entry_problems.h"
#include "shell/status_style.h"
#include "tables/status_text.h"

namespace tallwick {

bool WireRegister::Open(std::string_view bank_code) {
  if (wires_.Open(bank_code) <= 0) return false;
  CountAgain();
  return true;
}

void WireRegister::ShowStatus(std::string_view status) {
  status_ = status;
  CountAgain();
}

bool WireRegister::IsWanted() {
  return wires_.Data().GetStringFieldValueByPointer(wires_.Handle(), wires_.Field("WIRESTATUS")) == status_;
}

WireRegister::Shown WireRegister::ReadRow() {
  const WireRecord wire = wires_.Read();
  return {{wire.number, DisplayDate(wire.dated), wire.payee, AmountText(wire.amount), wire.file_number,
           WireStatusText(wire.status)},
          StatusStyle(wire.status)};
}

std::vector<WireRegister::SearchKey> WireRegister::KeysFor(std::string_view text) const {
  return {{"WIRENUMBER", std::string(text)}, {"WIREFILENO", std::string(text)}};
}

std::vector<std::string> WireRegister::Headings() const {
  return {"Number", "Dated", "Payee", "Amount", "File", "Status"};
}

std::string WireRegister::NumberAt(std::size_t row) {
  return GoToRow(row) ? wires_.Read().number : "";
}

}  // namespace tallwick
