// ESCROW_WIRES_<bank>: one record per wire transfer.
#pragma once

#include "core/period.h"
#include "tables/typed_table.h"

namespace tallwick {

struct WireRecord {
  std::string number;  // the confirmation; left-aligned whatever it is made of
  std::string file_number;
  Date dated;
  std::string payee;
  Currency amount;
  Period accounting;
  Period statement;
  std::string status;  // "O" or "C"
  std::string control;
  std::string spare;
  friend bool operator==(const WireRecord&, const WireRecord&) = default;
};

extern const TableLayout kWireLayout;

class WireTable : public TypedTable<WireRecord> {
 public:
  explicit WireTable(const TableHome& home);
  bool SeekNumber(std::string_view number);        // in the tag WIRENUMBER
  bool FirstOfFile(std::string_view file_number);  // in the tag WIREFILENO
  bool NextOfFile(std::string_view file_number);
};

}  // namespace tallwick
