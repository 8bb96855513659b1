// ESCROW_VOUCHERS_<bank>: one record per voucher, the authorisation of a disbursement.
#pragma once

#include "core/period.h"
#include "tables/typed_table.h"

namespace tallwick {

struct VoucherRecord {
  std::string number;
  std::string file_number;
  Date dated;
  std::string payee;
  std::string reason;
  Currency amount;
  Period accounting;
  std::string status;
  std::string check_number;  // of the check that consumed it; "" until then
  std::string spare;
  friend bool operator==(const VoucherRecord&, const VoucherRecord&) = default;
};

extern const TableLayout kVoucherLayout;

class VoucherTable : public TypedTable<VoucherRecord> {
 public:
  explicit VoucherTable(const TableHome& home);
  // On the voucher with this number, in the tag VCHRNUMBER; also finds a number stored left-aligned.
  bool SeekNumber(std::string_view number);
  bool FirstOfFile(std::string_view file_number);  // in the tag VCHRFILENO
  bool NextOfFile(std::string_view file_number);

 protected:
  // Offers to begin with an empty table; the damaged one is kept as ".BAD".
  bool OfferAfterDamagedHeader() override;
};

}  // namespace tallwick
