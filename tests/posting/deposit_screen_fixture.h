// The deposit screen with a printer that keeps its slips, and the cross-references behind it.
#pragma once

#include "posting/deposit_facts.h"
#include "posting/deposit_posting.h"
#include "posting/post_deposit.h"
#include "tests/posting/screen_fixture.h"
#include "tests/support/keeping_printer.h"

namespace tallwick::testing {

class DepositScreenTest : public PostingScreenTest<FrmEditDepositsPost> {
 protected:
  DepositScreenTest() { office_.printer = &slips_; }
  void SetRow(int row, const char* file, const char* amount, const char* source = "SMITH") {
    Set("txtFileNumbers", file, row);
    Set("txtSources", source, row);
    Set("txtAmounts", amount, row);
  }
  // Looks a deposit up by its date and sequence.
  void Show(const char* dated, const char* sequence) {
    Set("txtDepositDated", dated);
    Set("txtDateSequence", sequence);
    form_->Leave();
  }
  std::optional<DepositRecord> Stored(std::string_view dated, std::string_view sequence) {
    if (!tables_->deposits.SeekDeposit(dated, sequence)) return std::nullopt;
    return tables_->deposits.Read();
  }
  // Files and items of every cross-reference of the bank, which agree in both tables: "24-0117 20240315 1 1".
  std::vector<std::string> References() {
    std::vector<std::string> found;
    XrefTable& company = Xrefs();
    int company_count = 0;
    for (bool on = company.Top("XRFSFILEBK"); on; on = company.Skip()) ++company_count;
    for (bool on = tables_->deposit_xrefs.Top("DXRFFILENO"); on; on = tables_->deposit_xrefs.Skip()) {
      const DepositXrefRecord xref = tables_->deposit_xrefs.Read();
      const int item = std::stoi(xref.item);
      if (!company.SeekReference(DepositItemXref(xref.file_number, "FNB", xref.dated, xref.sequence, item))) {
        found.push_back("missing:");
      }
      found.push_back(xref.file_number + " " + xref.dated + " " + xref.sequence + " " + xref.item);
    }
    EXPECT_EQ(static_cast<std::size_t>(company_count), found.size());
    return found;
  }
  void Clear(const char* dated, const char* sequence, std::size_t item, const Period& statement) {
    DepositRecord deposit = *Stored(dated, sequence);
    deposit.items[item - 1].status = "C";
    deposit.items[item - 1].statement = statement;
    ASSERT_EQ(tables_->deposits.Update(deposit), 0);
  }

  testing::KeepingPrinter slips_;
};

}  // namespace tallwick::testing
