// The screen that clears deposits, beside another workstation that reconciles the account.

#include "clearing/deposit_clearing.h"

#include <gmock/gmock.h>

#include "posting/post_deposit.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::PostingScreenTest;

class DepositClearedTest : public PostingScreenTest<FrmEditDepositsClear> {};

TEST_F(DepositClearedTest, AnItemReconciledSinceItWasShownStaysCleared) {
  OpenOffice();
  const Period march{3, 0, 2024};
  DepositRecord deposit;
  deposit.dated = "20240315";
  deposit.sequence = "1";
  deposit.accounting = march;
  deposit.item_count = 1;
  deposit.items[0] = {"1", "24-0117", "SMITH", Currency::FromCents(10'00), march, "C"};
  ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", deposit).Done());
  OpenForm();
  form_->Choose("lstDepositDates", 1);
  form_->SetCheck("chkCleared", 0, 1);
  Reconcile(march);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Line 1 Cleared: yours not marked, stored marked")));
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read(), deposit);
}

}  // namespace
}  // namespace tallwick
