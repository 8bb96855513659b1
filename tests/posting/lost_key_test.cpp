// A number, or a date's sequence, that another workstation has taken: it stays with the entries until it is
// typed again, and shows then who has it.

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

}  // namespace
}  // namespace tallwick
