// Records that another workstation holds while something is posted: nothing is written, the words say what to
// do, no entry is blamed, and whoever is asked to wait keeps nobody else from posting (screen_fixture.h).

#include "posting/check_posting.h"
#include "posting/deposit_posting.h"
#include "posting/post_wire.h"
#include "posting/voucher_posting.h"
#include "posting/wire_posting.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using testing::PostingScreenTest;

constexpr const char* kInUse = "Information in use...\r\rIn use by FRONTDESK2 (process 4711)";
std::string AdviceFor(const std::string& table) {
  return "Another workstation or another program keeps " + table +
         " or a record of it locked.  Nothing was saved: try again in a moment.";
}

// A screen, and another workstation with the same bank.
template <class Screen>
class LockedTest : public PostingScreenTest<Screen> {
 protected:
  void OpenBoth() {
    this->OpenOffice();
    second_ = std::move(this->office_.Start().session);
    ASSERT_TRUE(second_);
    theirs_ = std::make_unique<BankTables>(second_->Home());
    ASSERT_TRUE(theirs_->Open("FNB"));
  }
  void TearDown() override { theirs_.reset(); }
  // Posts while a box stands on the screen.
  void PostMeanwhile() {
    this->meanwhile_ = [this] {
      WireRecord wire;
      wire.number = "THEIRS";
      wire.file_number = "24-0118";
      EXPECT_TRUE(PostWire(*theirs_, second_->Company().xrefs, "FNB", wire).Done());
    };
  }
  void RefusesAndPostsLater(const std::vector<std::string>& boxes, const std::function<void()>& unlock) {
    PostMeanwhile();
    this->form_->Click("cmdOk");
    EXPECT_EQ(this->office_.TakeTexts(), boxes);
    EXPECT_TRUE(theirs_->wires.SeekNumber("THEIRS"));
    EXPECT_FALSE(this->form_->Focus() != nullptr && this->form_->Focus()->refused);
    unlock();
    this->Post();
  }

  std::unique_ptr<Session> second_;
  std::unique_ptr<BankTables> theirs_;
};

using LockedCheckTest = LockedTest<FrmEditChecksPost>;

TEST_F(LockedCheckTest, AVoucherInUseLeavesNoCheck) {
  OpenBoth();
  VoucherRecord voucher;
  voucher.number = "31";
  voucher.file_number = "24-0117";
  ASSERT_EQ(tables_->vouchers.Add(voucher), 0);
  ASSERT_TRUE(theirs_->vouchers.SeekNumber("31"));
  ASSERT_EQ(theirs_->vouchers.Lock(), 0);
  Set("txtCheckFileNumber", "24-0117");
  Set("txtCheckAmount", "10");
  Set("txtCheckVoucherNumber", "31");
  form_->Leave();
  office_.TakeTexts();
  RefusesAndPostsLater(
      {std::string("Failed to add check number 1\r\nError code = 50\r\n") + AdviceFor("ESCROW_VOUCHERS_FNB")},
      [this] {
        EXPECT_FALSE(tables_->checks.SeekNumber("1"));
        EXPECT_FALSE(Xrefs().SeekReference(CheckXref("24-0117", "FNB", "1")));
        theirs_->vouchers.Unlock();
      });
  ASSERT_TRUE(tables_->vouchers.SeekNumber("31"));
  EXPECT_EQ(tables_->vouchers.Read().check_number, "1");
}

TEST_F(LockedCheckTest, WhoChangesACheckInUseIsAskedToWait) {
  OpenBoth();
  Set("txtCheckFileNumber", "24-0117");
  Set("txtCheckAmount", "10");
  Post();
  ASSERT_TRUE(theirs_->checks.SeekNumber("1"));
  ASSERT_EQ(theirs_->checks.Lock(), 0);
  Set("txtCheckNumber", "1");
  Set("txtCheckPayee", "SMITH");
  office_.boxes.answers = {BoxAnswer::kRetry, BoxAnswer::kCancel};
  RefusesAndPostsLater(
      {kInUse, kInUse, std::string("Failed to update transaction...\r\n") + AdviceFor("ESCROW_CHECKS_FNB")},
      [this] { theirs_->checks.Unlock(); });
}

using LockedWireTest = LockedTest<FrmEditWiresPost>;

TEST_F(LockedWireTest, AWireInUse) {
  OpenBoth();
  Set("txtWireNumber", "A");
  Set("txtWireFileNumber", "24-0117");
  Set("txtWireAmount", "10");
  Post();
  ASSERT_TRUE(theirs_->wires.SeekNumber("A"));
  ASSERT_EQ(theirs_->wires.Lock(), 0);
  Set("txtWireNumber", "A");
  Set("txtWirePayee", "SMITH");
  RefusesAndPostsLater(
      {kInUse, std::string("Failed to update transaction...\r\n") + AdviceFor("ESCROW_WIRES_FNB")},
      [this] { theirs_->wires.Unlock(); });
}

using LockedVoucherTest = LockedTest<FrmEditVouchersPost>;

TEST_F(LockedVoucherTest, ABankInUseLeavesNoVoucher) {
  OpenBoth();
  BankTable& banks = second_->Company().banks;
  ASSERT_TRUE(banks.SeekCode("FNB"));
  ASSERT_EQ(banks.Lock(), 0);
  Set("txtVCHRFileNumber", "24-0117");
  Set("txtVCHRAmount", "10");
  RefusesAndPostsLater(
      {std::string("Failed to add voucher number 1\r\nError code = 50\r\n") + AdviceFor("ESCROW_BANKS")},
      [&] {
        EXPECT_FALSE(tables_->vouchers.SeekNumber("1"));
        EXPECT_FALSE(Xrefs().SeekReference(VoucherXref("24-0117", "FNB", "1")));
        banks.Unlock();
      });
  EXPECT_EQ(Bank().last_voucher, 1);
}

using LockedDepositTest = LockedTest<FrmEditDepositsPost>;

TEST_F(LockedDepositTest, ADepositInUse) {
  OpenBoth();
  Set("txtFileNumbers", "24-0117", 1);
  Set("txtAmounts", "10", 1);
  Post();
  ASSERT_TRUE(theirs_->deposits.SeekDeposit("20240315", "1"));
  ASSERT_EQ(theirs_->deposits.Lock(), 0);
  form_->Choose("lstDepositDates", 1);
  Set("txtSources", "SMITH", 1);
  RefusesAndPostsLater(
      {kInUse, std::string("Failed to update transaction...\r\n") + AdviceFor("ESCROW_DEPOSITS_FNB")},
      [this] { theirs_->deposits.Unlock(); });
}

}  // namespace
}  // namespace tallwick
