// The wires of a bank as rows.
#pragma once

#include "posting/item_register.h"
#include "tables/wire_table.h"

namespace tallwick {

ItemRows<WireRecord> WireRows();

}  // namespace tallwick
