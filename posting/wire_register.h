// The wires of a bank as rows.
#pragma once

#include "posting/item_register.h"
#include "tables/wire_table.h"

namespace tallwick {

class WireRegister : public ItemRegister<WireTable, WireRecord> {
 public:
  explicit WireRegister(const TableHome& home);
};

}  // namespace tallwick
