// The list of checks: its orders and filters, and how it follows what is posted.

#include <gmock/gmock.h>

#include "tests/posting/check_screen_fixture.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::Seen;

class CheckRegisterTest : public testing::CheckScreenTest {};

TEST_F(CheckRegisterTest, TheRegisterMarksTheCheckThatIsShown) {
  OpenOffice();
  PostCheckOf("10");
  PostCheckOf("11");
  const Control& list = *form_->Find("lstCheckNumbers");
  form_->Choose("lstCheckNumbers", 2);
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "10");
  EXPECT_EQ(list.selected, 2);
  Set("txtCheckNumber", "11");
  form_->Leave();
  EXPECT_EQ(list.selected, 0) << "shown by its number";
  form_->Choose("lstCheckNumbers", 2);
  PostCheckOf("12");
  EXPECT_EQ(list.selected, 0) << "the next one is new";
}

TEST_F(CheckRegisterTest, TheListIsOrderedAndFiltered) {
  OpenOffice();
  PostCheckOf("1", "Miller", "30");
  PostCheckOf("2", "adams", "20");
  PostCheckOf("3", "Young", "10");
  CheckRecord cleared = Stored("2");
  cleared.status = "C";
  ASSERT_EQ(tables_->checks.Update(cleared), 0);
  CheckRecord unknown = Stored("3");  // as another program may leave it: nobody has paid it
  unknown.status = "X";
  ASSERT_EQ(tables_->checks.Update(unknown), 0);
  OpenForm();
  EXPECT_THAT(Numbers(), ElementsAre("3", "2", "1"));
  form_->Menu("mnuViewPayee");
  EXPECT_THAT(Numbers(), ElementsAre("2", "1", "3"));
  RowSource& rows = *form_->Find("lstCheckNumbers")->source;
  EXPECT_EQ(rows.FindRow("3"), 2u);
  EXPECT_EQ(rows.FindRow("mill"), 1u);
  form_->Menu("mnuViewAmount");
  EXPECT_THAT(Numbers(), ElementsAre("1", "2", "3"));
  EXPECT_EQ(rows.FindRow("20.00"), 1u);
  EXPECT_EQ(rows.FindRow("3"), 2u) << "no amount: the number";
  form_->Click("cmdListOutstanding");
  EXPECT_THAT(Numbers(), ElementsAre("1", "3"));
  EXPECT_EQ(rows.FindRow("3"), 1u);
  PostCheckOf("4", "Baker", "15");
  EXPECT_THAT(Numbers(), ElementsAre("1", "4", "3"));
  form_->Menu("mnuViewPayee");
  EXPECT_THAT(Numbers(), ElementsAre("4", "1", "3"));
  form_->Menu("mnuOptionsCleared");
  EXPECT_THAT(Numbers(), ElementsAre("2"));
  form_->Choose("lstCheckNumbers", 1);
  EXPECT_EQ(Seen(*form_, "txtCheckPayee"), "adams");
}

TEST_F(CheckRegisterTest, TheRegisterFollowsTheTable) {
  OpenOffice();
  RowSource& rows = *form_->Find("lstCheckNumbers")->source;
  EXPECT_EQ(rows.RowCount(), 0u);
  CheckRecord check;
  check.file_number = "24-0117";
  for (int number = 1; number <= 200; ++number) {
    if (number == 150) continue;
    check.number = std::to_string(number);
    ASSERT_EQ(tables_->checks.Add(check), 0);
  }
  PostCheckOf("300");  // counts anew, then grows by one at a time
  EXPECT_EQ(rows.RowCount(), 200u);
  PostCheckOf("301");
  EXPECT_EQ(rows.RowCount(), 201u);
  EXPECT_THAT(rows.Row(0),
              ElementsAre("301", "03/15/2024", "SMITH TITLE CO", "1,250.00", "24-0117", "Outstanding"));
  PostCheckOf("150");  // in the middle
  for (std::size_t row = 0; row < 202; ++row) {
    const std::size_t expected = row < 2 ? 301 - row : 202 - row;
    ASSERT_EQ(rows.Row(row).at(0), std::to_string(expected)) << row;
  }
  EXPECT_THAT(rows.Row(202), IsEmpty());
  form_->Choose("lstCheckNumbers", 202);
  EXPECT_EQ(Seen(*form_, "txtCheckNumber"), "1");
  EXPECT_EQ(Seen(*form_, "cmdOk"), "&Ok");
  OpenForm();
  EXPECT_EQ(form_->Find("lstCheckNumbers")->source->RowCount(), 202u);
}

TEST_F(CheckRegisterTest, TheRegisterIsReadInStepsWhileChecksArePosted) {
  OpenOffice();
  CheckRecord check;
  check.file_number = "24-0117";
  check.amount = Currency::FromCents(100);
  for (int number = 1; number <= 300; ++number) {
    check.number = std::to_string(number);
    check.status = number % 2 == 0 ? "C" : "O";
    ASSERT_EQ(tables_->checks.Add(check), 0);
  }
  OpenForm();
  RowSource& rows = *form_->Find("lstCheckNumbers")->source;
  const auto step = [&] { return rows.ReadOn(std::chrono::milliseconds(0)); };
  EXPECT_TRUE(step());
  EXPECT_TRUE(step());  // the rows are known, and a part of the sum
  EXPECT_EQ(rows.RowsKnown(), 300U);
  EXPECT_EQ(rows.Total(), "");
  PostCheckOf("301", "SMITH TITLE CO", "1");
  while (step()) continue;
  EXPECT_EQ(rows.Total(), "301.00");
  EXPECT_EQ(rows.Row(0).at(0), "301");
  EXPECT_EQ(rows.FindRow("300"), 1U);

  form_->Click("cmdListOutstanding");
  EXPECT_TRUE(step());
  EXPECT_GT(rows.RowsKnown(), 0U);
  EXPECT_LT(rows.RowsKnown(), 100U);
  PostCheckOf("302", "SMITH TITLE CO", "1");
  ASSERT_EQ(rows.RowCount(), 152U);
  EXPECT_EQ(rows.Total(), "152.00");
  for (std::size_t row = 1; row < 152; ++row)
    ASSERT_EQ(rows.Row(row).at(0), std::to_string(row == 1 ? 301 : 303 - 2 * row)) << row;

  // Read anew, the list keeps its length meanwhile.
  Set("txtCheckNumber", "301");
  Set("txtCheckPayee", "JONES");
  PostCheckOf("301", "SMITH TITLE CO", "2");
  EXPECT_EQ(rows.RowsKnown(), 152U);
  EXPECT_EQ(rows.Row(1).at(3), "2.00");
  while (step()) continue;
  EXPECT_EQ(rows.Total(), "153.00");
}

}  // namespace
}  // namespace tallwick
