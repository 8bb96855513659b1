// The cross-reference check of a bank: what it finds, creates, and leaves alone.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "maintenance/xref_check.h"
#include "tests/maintenance/maintained_office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MaintainedOffice;
using testing::WatchedProgress;

class XrefCheckTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(office_.started); }
  std::vector<std::string> Check(const XrefCheckOptions& options = {}) {
    last_ = CheckXReferences(*office_.session, options, progress_);
    std::vector<std::string> texts;
    for (const XrefFinding& finding : last_.findings)
      texts.push_back(finding.item + " of " + finding.file_number + ": " + finding.problem);
    return texts;
  }
  void Remove(const XrefRecord& xref) {
    ASSERT_TRUE(Xrefs().SeekReference(xref));
    ASSERT_EQ(Xrefs().Delete(), 0);
  }
  XrefTable& Xrefs() { return office_.session->Company().xrefs; }

  MaintainedOffice office_;
  WatchedProgress progress_;
  XrefCheckResult last_;
};

TEST_F(XrefCheckTest, FindsAndCreatesWhatIsMissing) {
  EXPECT_THAT(Check(), IsEmpty());
  EXPECT_TRUE(last_.completed);
  Remove(CheckXref("24-0002", "FNB", "102"));
  Remove(WireXref("24-0001", "FNB", "FED1"));
  Remove(DepositItemXref("24-0002", "FNB", "20240315", "1", 2));
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB") && bank.deposit_xrefs.SeekItem({"24-0001", "20240315", "1", "1"}));
    ASSERT_EQ(bank.deposit_xrefs.Delete(), 0);
  }
  EXPECT_THAT(Check(), ElementsAre("Check 102 of 24-0002: Missing", "Wire FED1 of 24-0001: Missing",
                                   "Deposit 20240315 1 item 1 of 24-0001: Missing",
                                   "Deposit 20240315 1 item 2 of 24-0002: Missing"));
  EXPECT_THAT(Check({false, true}), ElementsAre("Check 102 of 24-0002: Missing"));
  EXPECT_FALSE(last_.completed);
  Check({true, false});
  EXPECT_EQ(last_.Created(), 4);
  EXPECT_THAT(Check(), IsEmpty());
}

TEST_F(XrefCheckTest, ListsInvalidReferencesOfThisBankAndKeepsThem) {
  for (const XrefRecord& stray : {CheckXref("24-0001", "FNB", "999"), CheckXref("24-0009", "FNB", "101"),
                                  CheckXref("24-0001", "ELSE", "998"), XrefRecord{"24-0001", "FNB", "X", "1"},
                                  XrefRecord{"24-0001", "FNB", "D", "short"}})
    ASSERT_EQ(Xrefs().Add(stray), 0);
  EXPECT_THAT(Check({true, false}),
              ElementsAre("Check 999 of 24-0001: Invalid", "Check 101 of 24-0009: Invalid",
                          "Kind \"X\" 1 of 24-0001: Invalid", "Deposit short of 24-0001: Invalid"));
  EXPECT_EQ(last_.Invalid(), 4);
  EXPECT_TRUE(Xrefs().SeekReference(CheckXref("24-0001", "FNB", "999")));
}

TEST_F(XrefCheckTest, ARecordInUseIsNotedAndLeft) {
  Remove(CheckXref("24-0002", "FNB", "102"));
  const StartUpOutcome clerk = office_.Another();
  BankTables bank(clerk.session->Home());
  ASSERT_TRUE(bank.Open("FNB") && bank.checks.SeekNumber("102"));
  ASSERT_EQ(bank.checks.Lock(true), 0);
  Check({true, false});
  ASSERT_EQ(last_.findings.size(), 1U);
  EXPECT_FALSE(last_.findings[0].created);
  bank.checks.Unlock();
  Check({true, false});
  EXPECT_EQ(last_.Created(), 1);
}

}  // namespace
}  // namespace tallwick
