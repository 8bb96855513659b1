// A number, or a date's sequence, that another workstation has taken: it stays with the entries until it is
// typed again, and shows then who has it. And the lines of a deposit that both have changed.

#include <gmock/gmock.h>

#include "posting/check_posting.h"
#include "posting/deposit_posting.h"
#include "posting/post_deposit.h"
#include "posting/post_wire.h"
#include "posting/wire_posting.h"
#include "tests/posting/screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::PostingScreenTest;
using testing::Seen;

template <class Screen>
class LostKeyTest : public PostingScreenTest<Screen> {
 protected:
  // The number was lost. Typed again, over another one or over itself, it is looked up; given up, it stays.
  void IsLookedUpWhenTyped(const char* number, const char* lost, const char* status) {
    this->office_.TakeTexts();
    for (const char* through : {"99", lost}) {
      this->Set(number, through);
      this->Set(number, lost);
      this->office_.boxes.answers = {BoxAnswer::kCancel};
      this->form_->Leave();
      EXPECT_THAT(this->office_.TakeTexts(), ElementsAre("Save Changes?")) << through;
      EXPECT_EQ(Seen(*this->form_, number), lost);
      this->form_->Leave();
      EXPECT_THAT(this->office_.TakeTexts(), IsEmpty()) << "it was not typed since";
    }
    EXPECT_EQ(Seen(*this->form_, status), "Not Posted");
    this->Set(number, lost);
    this->office_.boxes.answers = {BoxAnswer::kNo};
    this->form_->Leave();
    EXPECT_EQ(Seen(*this->form_, status), "Outstanding");
  }
};

class LostCheckTest : public LostKeyTest<FrmEditChecksPost> {};

TEST_F(LostCheckTest, IsLookedUpWhenItIsTypedAgain) {
  OpenOffice();
  Set("txtCheckNumber", "5");
  Set("txtCheckFileNumber", "24-0117");
  form_->Leave();
  CheckRecord other;
  other.number = "5";
  other.status = "O";
  ASSERT_TRUE(PostCheck(*tables_, Xrefs(), "FNB", other).Done());
  form_->Click("cmdOk");
  IsLookedUpWhenTyped("txtCheckNumber", "5", "lblCheckStatus");
}

class LostWireTest : public LostKeyTest<FrmEditWiresPost> {};

TEST_F(LostWireTest, IsLookedUpWhenItIsTypedAgain) {
  OpenOffice();
  Set("txtWireNumber", "FED-1");
  Set("txtWireAmount", "1");
  Set("txtWireFileNumber", "24-0117");
  form_->Leave();
  WireRecord other;
  other.number = "FED-1";
  other.status = "O";
  ASSERT_TRUE(PostWire(*tables_, Xrefs(), "FNB", other).Done());
  form_->Click("cmdOk");
  IsLookedUpWhenTyped("txtWireNumber", "FED-1", "lblWireStatus");
}

class LostDepositTest : public LostKeyTest<FrmEditDepositsPost> {
 protected:
  void PostElsewhere(int sequence, const std::vector<const char*>& files) {
    DepositRecord deposit;
    deposit.dated = "20240315";
    deposit.sequence = std::to_string(sequence);
    deposit.accounting = {3, 0, 2024};
    for (const char* file : files) {
      DepositItem& item = deposit.items[static_cast<std::size_t>(deposit.item_count++)];
      item = {std::to_string(deposit.item_count), file, "SMITH", Currency::FromCents(1'00), {}, "O"};
    }
    ASSERT_TRUE(PostDeposit(*tables_, Xrefs(), "FNB", deposit).Done());
  }
  void SetLine(int row, const char* file, const char* amount) {
    Set("txtFileNumbers", file, row);
    Set("txtAmounts", amount, row);
    form_->Leave();
  }
};

TEST_F(LostDepositTest, IsLookedUpWhenItIsTypedAgain) {
  OpenOffice();
  SetLine(1, "24-0117", "1");
  PostElsewhere(1, {"24-0118"});
  form_->Click("cmdOk");
  IsLookedUpWhenTyped("txtDateSequence", "1", "lblDepositStatus");
}

TEST_F(LostDepositTest, ADateWithoutAFreeSequenceSaysSo) {
  OpenOffice();
  Set("txtDepositDated", "03/14/2024");
  form_->Leave();
  for (int sequence = 1; sequence <= 99; ++sequence) PostElsewhere(sequence, {"24-0118"});
  Set("txtDepositDated", "03/15/2024");
  form_->Leave();
  EXPECT_EQ(Seen(*form_, "txtDateSequence"), "");
  EXPECT_THAT(Seen(*form_, "lblEditMessage"), HasSubstr("All 99 sequence numbers of 03-15-2024 are used."));
}

// A new line in the place of a posted one has nothing of it that could be kept.
TEST_F(LostDepositTest, ALineThatReplacesAPostedOneIsNotSavedOverAnother) {
  OpenOffice();
  PostElsewhere(1, {"24-0117", "24-0117"});
  OpenForm();
  Set("txtDateSequence", "1");
  form_->Leave();
  Set("txtFileNumbers", "", 2);
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes};
  form_->Leave();
  SetLine(2, "24-0117", "3");
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  DepositRecord theirs = tables_->deposits.Read();
  theirs.items[1].file_number = "24-0118";
  ASSERT_EQ(tables_->deposits.Update(theirs), 0);
  office_.TakeTexts();
  form_->Click("cmdOk");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("so they can not be saved over theirs")));
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read(), theirs);
}

}  // namespace
}  // namespace tallwick
