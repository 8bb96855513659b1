// Posting steps of deposits and vouchers as units of work: item, cross-references and counter together. Each
// gives 0 or a code, and kChangedElsewhere where the record is not as it was read.
#pragma once

#include "posting/post_check.h"
#include "tables/bank_table.h"

namespace tallwick::load {

int PostDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code, const DepositRecord& deposit);
// Date and sequence stay as they are.
int RewriteDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                   const DepositRecord& before, const DepositRecord& after);
int RemoveDeposit(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                  const DepositRecord& deposit);

// Raises the bank's counter where the number is above it.
int PostVoucher(BankTables& bank, BankTable& banks, XrefTable& xrefs, std::string_view bank_code,
                const VoucherRecord& voucher);
int RewriteVoucher(BankTables& bank, XrefTable& xrefs, std::string_view bank_code,
                   const VoucherRecord& before, const VoucherRecord& after);

// The records by which escrow files find a deposit's items.
std::vector<XrefRecord> CompanyReferences(const DepositRecord& deposit, std::string_view bank_code);
std::vector<DepositXrefRecord> BankReferences(const DepositRecord& deposit);

}  // namespace tallwick::load
