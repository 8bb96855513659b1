// The screen that clears deposits, beside another workstation that reconciles the account.

#include "clearing/deposit_clearing.h"

#include <gmock/gmock.h>

#include "posting/post_deposit.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
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

TEST_F(DepositClearedTest, TheTrailHasThePeriodsOfTheLines) {
  OpenOffice();
  const Period march{3, 0, 2024};
  DepositRecord deposit;
  deposit.dated = "20240315";
  deposit.sequence = "1";
  deposit.accounting = march;
  deposit.item_count = 3;
  deposit.items[0] = {"1", "24-0117", "SMITH", Currency::FromCents(10'00), march, "C"};
  deposit.items[1] = {"2", "24-0117", "SMITH", Currency::FromCents(20'00), {}, "O"};
  deposit.items[2] = {"3", "24-0117", "SMITH", Currency::FromCents(30'00), {}, "O"};
  ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", deposit).Done());
  OpenForm();
  form_->Choose("lstDepositDates", 1);
  form_->SetCheck("chkCleared", 1, 2);
  Post();
  EXPECT_THAT(Log(), EndsWith("[EDIT] chkCleared (2) was: Unchecked now: Checked\r\n"
                              "[EDIT] txtStmtPeriods (2) was:  now: 3-2024\r\n"));
  form_->SetCheck("chkCleared", 0, 1);
  form_->SetCheck("chkCleared", 1, 3);
  Set("txtStmtPeriod", "4/2024");
  Post();
  EXPECT_THAT(Log(), EndsWith("[COMPUTER: FRONTDESK2]\r\n"
                              "[EDIT] chkCleared (1) was: Checked now: Unchecked\r\n"
                              "[EDIT] txtStmtPeriods (1) was: 3-2024 now: \r\n"
                              "[EDIT] chkCleared (3) was: Unchecked now: Checked\r\n"
                              "[EDIT] txtStmtPeriods (3) was:  now: 4-2024\r\n"));
}

}  // namespace
}  // namespace tallwick
