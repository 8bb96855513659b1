// The screen that clears deposits, beside another workstation that reconciles the account.

#include "clearing/deposit_clearing.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "posting/post_deposit.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using testing::PostingScreenTest;

constexpr Period kMarch{3, 0, 2024};

class DepositClearedTest : public PostingScreenTest<FrmEditDepositsClear> {
 protected:
  // An office with one deposit of March on the screen.
  void OpenWith(const std::vector<DepositItem>& items) {
    OpenOffice();
    deposit_.dated = "20240315";
    deposit_.sequence = "1";
    deposit_.accounting = kMarch;
    deposit_.item_count = static_cast<int>(items.size());
    std::copy(items.begin(), items.end(), deposit_.items.begin());
    ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", deposit_).Done());
    OpenForm();
    form_->Choose("lstDepositDates", 1);
  }
  DepositRecord deposit_;
};

TEST_F(DepositClearedTest, AnItemReconciledSinceItWasShownStaysCleared) {
  OpenWith({{"1", "24-0117", "SMITH", Currency::FromCents(10'00), kMarch, "C"}});
  form_->SetCheck("chkCleared", 0, 1);
  Reconcile(kMarch);
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Line 1 Cleared: yours not marked, stored marked")));
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read(), deposit_);
}

TEST_F(DepositClearedTest, TheTrailHasThePeriodsOfTheLines) {
  OpenWith({{"1", "24-0117", "SMITH", Currency::FromCents(10'00), kMarch, "C"},
            {"2", "24-0117", "SMITH", Currency::FromCents(20'00), {}, "O"},
            {"3", "24-0117", "SMITH", Currency::FromCents(30'00), {}, "O"}});
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
