// The vouchers of a bank as rows.
#pragma once

#include "posting/item_register.h"
#include "tables/voucher_table.h"

namespace tallwick {

ItemRows<VoucherRecord> VoucherRows();

}  // namespace tallwick
