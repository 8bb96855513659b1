// The voucher that a check names: what it fills in, what is said where it changes before the post, and who
// has it when its check lets go of it.

#include <gmock/gmock.h>

#include "tests/posting/check_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Seen;
using Kind = CheckMode::Kind;

class CheckVoucherEntryTest : public testing::CheckScreenTest {
 protected:
  void AddVoucherTo(const char* number, const char* payee, std::int64_t cents) {
    VoucherRecord voucher;
    voucher.number = number;
    voucher.file_number = "24-0117";
    voucher.payee = payee;
    voucher.amount = Currency::FromCents(cents);
    ASSERT_EQ(tables_->vouchers.Add(voucher), 0);
  }
  void PostElsewhere(const char* number, const char* voucher) {
    CheckRecord check;
    check.number = number;
    check.file_number = "24-0117";
    check.voucher_number = voucher;
    check.accounting = {3, 0, 2024};
    check.status = "O";
    ASSERT_TRUE(PostCheck(*tables_, Xrefs(), "FNB", check).Done());
  }
  void SetStatus(Kind mode, const char* number, const char* button = "cmdOk") {
    OpenIn(mode);
    Set("txtCheckNumber", number);
    form_->Leave();
    form_->Click(button);
  }
};

TEST_F(CheckVoucherEntryTest, WhatAVoucherFilledInGoesWithIt) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  AddVoucherTo("37", "BETA", 250'00);
  const auto name = [this](const char* voucher) {
    Set("txtCheckVoucherNumber", voucher);
    form_->Leave();
    return Seen(*form_, "txtCheckPayee") + " " + Seen(*form_, "txtCheckAmount");
  };
  EXPECT_EQ(name("36"), "ALPHA 100.00");
  EXPECT_EQ(name("37"), "BETA 250.00");
  EXPECT_EQ(name(""), " ");
  EXPECT_EQ(name("36"), "ALPHA 100.00");
  Set("txtCheckPayee", "TYPED");
  EXPECT_EQ(name("37"), "TYPED 250.00");
  Set("txtCheckPayee", "ALPHA");
  EXPECT_EQ(name("36"), "ALPHA 100.00");
  EXPECT_EQ(name("37"), "ALPHA 250.00") << "typed, though it is what the voucher says";
}

TEST_F(CheckVoucherEntryTest, WhatChangedSinceTheLookUpIsSaidAtThePost) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  const std::pair<std::function<void()>, const char*> cases[] = {
      {[&] { PostElsewhere("10", "36"); }, "Voucher number 36 has already been reduced by check number 10 ."},
      {[&] {
         ASSERT_TRUE(tables_->vouchers.SeekNumber("36"));
         ASSERT_EQ(tables_->vouchers.Delete(), 0);
       },
       "Voucher Number 36 is NOT posted."}};
  for (const auto& [elsewhere, said] : cases) {
    const std::string number = Seen(*form_, "txtCheckNumber");
    Set("txtCheckFileNumber", "24-0117");
    Set("txtCheckVoucherNumber", "36");
    form_->Leave();
    office_.TakeTexts();
    elsewhere();
    Set("txtCheckNumber", number + "00");
    form_->Click("cmdOk");
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(said));
    EXPECT_EQ(Stored(number + "00").voucher_number, "36") << "a warning refuses nothing";
  }
}

TEST_F(CheckVoucherEntryTest, AVoucherPassesToTheCheckThatStillNamesIt) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  PostElsewhere("10", "36");
  PostElsewhere("11", "36");
  EXPECT_EQ(VoucherCheck("36"), "10");
  SetStatus(Kind::kVoiding, "10");
  EXPECT_EQ(VoucherCheck("36"), "11");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  SetStatus(Kind::kVoiding, "10", "cmdSetOutstanding");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Voucher number 36 has already been reduced by check number 11 ."));
  EXPECT_EQ(VoucherCheck("36"), "11");
  OpenIn(Kind::kPosting);
  Set("txtCheckNumber", "11");
  form_->Menu("mnuEditRenumberCheck");
  Set("txtCheckNumber", "12");
  Post();
  EXPECT_EQ(VoucherCheck("36"), "12") << "it stays with its check";
  Set("txtCheckNumber", "12");
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Menu("mnuEditRemoveCheck");
  EXPECT_EQ(VoucherCheck("36"), "10");
}

}  // namespace
}  // namespace tallwick
