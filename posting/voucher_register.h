// The vouchers of a bank as rows.
#pragma once

#include "posting/item_register.h"
#include "tables/voucher_table.h"

namespace tallwick {

class VoucherRegister : public ItemRegister<VoucherTable, VoucherRecord> {
 public:
  explicit VoucherRegister(const TableHome& home);
};

}  // namespace tallwick
