// The voucher that a check names: what it fills in, what is said where it changes before the post, and who
// has it when its check lets go of it.

#include <gmock/gmock.h>

#include "tests/posting/check_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
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

// Both workstations were proposed the same number: what the voucher says then is another check's.
TEST_F(CheckVoucherEntryTest, ALostNumberInTheVoucherIsAnotherChecks) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  const char* reduced = "Voucher number 36 has already been reduced by check number 1 .";
  const auto begin = [this] {
    OpenForm();
    Set("txtCheckNumber", "1");
    Set("txtCheckFileNumber", "24-0117");
    Set("txtCheckVoucherNumber", "36");
    form_->Leave();
  };
  begin();
  PostElsewhere("1", "36");
  form_->Click("cmdOk");  // the next number is not taken
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(reduced, HasSubstr("Post this one as 2 ?"), HasSubstr("Failed to add")));
  ASSERT_TRUE(RemoveCheck(*tables_, Xrefs(), "FNB", Stored("1")).Done());

  // It is spent while the question about the number waits.
  begin();
  PostElsewhere("1", "");
  meanwhile_ = [this] { PostElsewhere("9", "36"); };
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("Post this one as 2 ?"),
                          "Voucher number 36 has already been reduced by check number 9 ."));
  EXPECT_EQ(Stored("2").voucher_number, "36");
}

// The voucher screen holds a number for a check that is still to come.
TEST_F(CheckVoucherEntryTest, AVoucherMeantForTheCheckIsNotUsedUp) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  ASSERT_TRUE(tables_->vouchers.SeekNumber("36"));
  VoucherRecord voucher = tables_->vouchers.Read();
  voucher.check_number = "7";
  ASSERT_EQ(tables_->vouchers.Update(voucher), 0);
  Set("txtCheckNumber", "7");
  Set("txtCheckFileNumber", "24-0117");
  Set("txtCheckVoucherNumber", "36");
  form_->Leave();
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  Set("txtCheckNumber", "8");
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Voucher number 36 has already been reduced by check number 7 ."));
}

TEST_F(CheckVoucherEntryTest, AnAddressDoesNotOutlastItsPayee) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  AddVoucherTo("37", "BETA", 250'00);
  AddVoucherTo("38", "BETA", 50'00);
  const auto name = [this](const char* voucher) {
    Set("txtCheckVoucherNumber", voucher);
    form_->Leave();
    return Seen(*form_, "txtCheckAddr1") + Seen(*form_, "txtCheckAddr2") + Seen(*form_, "txtCheckCityState");
  };
  Set("txtCheckAddr1", "TYPED FIRST");
  EXPECT_EQ(name("36"), "TYPED FIRST");
  Set("txtCheckAddr2", "FLOOR 2");
  Set("txtCheckCityState", "ERIE PA");
  EXPECT_EQ(name("37"), "");
  Set("txtCheckAddr1", "OF BETA");
  EXPECT_EQ(name("38"), "OF BETA");
}

TEST_F(CheckVoucherEntryTest, ATypedVoucherIsWatchedAfterAChangeElsewhere) {
  OpenOffice();
  AddVoucherTo("36", "ALPHA", 100'00);
  for (const BoxAnswer first : {BoxAnswer::kCancel, BoxAnswer::kYes}) {
    const std::string used = first == BoxAnswer::kCancel ? "10" : "11";
    const std::string number = used + "0";
    PostElsewhere(number.c_str(), "");
    OpenForm();
    Set("txtCheckNumber", number);
    form_->Leave();
    Set("txtCheckVoucherNumber", "36");
    form_->Leave();
    CheckRecord theirs = Stored(number);
    theirs.control = "Q";
    ASSERT_EQ(tables_->checks.Update(theirs), 0);
    if (first == BoxAnswer::kCancel) {
      form_->Click("cmdOk");
      EXPECT_THAT(Seen(*form_, "lblVoucherInformation"), HasSubstr("to ALPHA"));
      PostElsewhere(used.c_str(), "36");
    } else {
      meanwhile_ = [&] { PostElsewhere(used.c_str(), "36"); };
    }
    office_.TakeTexts();
    office_.boxes.answers = {BoxAnswer::kYes};
    form_->Click("cmdOk");
    std::vector<std::string> said = office_.TakeTexts();
    EXPECT_THAT(said, ::testing::Contains("Voucher number 36 has already been reduced by check number " +
                                          used + " ."));
    EXPECT_EQ(Stored(number).voucher_number, "36");
    ASSERT_TRUE(RemoveCheck(*tables_, Xrefs(), "FNB", Stored(used)).Done());
    ASSERT_TRUE(RemoveCheck(*tables_, Xrefs(), "FNB", Stored(number)).Done());
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
