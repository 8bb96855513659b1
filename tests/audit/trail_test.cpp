// The audit trail's lines, to the letter.

#include "audit/audit_trail.h"

#include <gtest/gtest.h>

#include "tests/support/office.h"

namespace tallwick {
namespace {

using testing::Office;

class PlainForm : public Form {
 public:
  explicit PlainForm(MessageBoxes& boxes) : Form("frmPlain", boxes) {
    Add(ControlKind::kText, "txtPayee").text = "SMITH TITLE";
    Add(ControlKind::kLabel, "lblStatus").caption = "Outstanding";
    Add(ControlKind::kAmount, "txtAmount", {}, 1).text = "1.00";
    Add(ControlKind::kAmount, "txtAmount", {}, 2).text = "150.00";
    Add(ControlKind::kCheck, "chkPrinted").value = 1;
    Add(ControlKind::kOption, "optOrder").value = 0;
    Add(ControlKind::kMasked, "txtPhone").text = "555";
  }
};

class AuditTest : public ::testing::Test {
 protected:
  AuditTest() : form_(office_.boxes) { office_.clock.now = {{2024, 3, 4}, 14, 7, 31}; }

  void Write(int action, int tx, std::string_view reference, bool on = true) {
    WriteAuditTrail(
        {on, SystemFileSystem(), office_.clock, office_.folder.Held(), "FNB", "jdoe", "FRONTDESK2"}, form_,
        action, tx, reference);
  }
  std::string Log() { return office_.ReadFile("Logs\\FNB\\Audit_Trail.log"); }
  static std::string Header(const std::string& tx, const std::string& reference) {
    return "[DATE: Mar 04, 2024 @ 02:07:31 PM][TX: " + tx + "][REFERENCE: " + reference +
           "][LOGIN: jdoe][COMPUTER: FRONTDESK2]\r\n";
  }

  Office office_;
  PlainForm form_;
};

TEST_F(AuditTest, SwitchedOffItDoesNothing) {
  Write(kAuditDelete, kAuditPostCheck, "1", false);
  Write(kAuditSnapshot, kAuditPostCheck, "1", false);
  EXPECT_FALSE(SystemFileSystem().FolderExists(office_.folder.Held("Logs\\")));
  EXPECT_EQ(form_.Find("txtPayee")->tag, "");
}

TEST_F(AuditTest, OneEventLinePerKindOfEntry) {
  struct Case {
    int action, tx;
    const char* reference;
    const char* tx_name;  // nullptr: nothing is written
    const char* event;
  };
  const Case cases[] = {
      {kAuditAdd, kAuditPostCheck, "10452", "Post Check", "[ADD] 10452"},
      {kAuditAdd, kAuditVoidCheck, "10452", "Void Check", "[ADD VOID] 10452"},
      {kAuditAdd, kAuditPostWire, "", nullptr, ""},
      {kAuditSave, kAuditVoidCheck, "9", "Void Check", "[VOID] 9"},
      {kAuditSave, kAuditSetOutstanding, "9", "Set Outstanding", "[SET OUTSTANDING] 9"},
      {kAuditDelete, kAuditPostDeposit, "", "Post Deposit", "[DELETE] "},
      {kAuditDelete, 9, "x", "Undefined", "[DELETE] x"},
      {5, kAuditPostCheck, "x", nullptr, ""},
  };
  std::string expected;
  for (const Case& one : cases) {
    Write(one.action, one.tx, one.reference);
    if (one.tx_name != nullptr) {
      expected += (expected.empty() ? "" : "\r\n") + Header(one.tx_name, one.reference) + one.event + "\r\n";
    }
    EXPECT_EQ(Log(), expected) << one.event;
  }
}

TEST_F(AuditTest, AnEditListsWhatChangedSinceTheSnapshot) {
  form_.Find("txtPhone")->tag = "555";
  Write(kAuditSnapshot, kAuditPostCheck, "10452");
  Write(kAuditSave, kAuditPostCheck, "10452");
  EXPECT_EQ(Log(), "");
  form_.Find("txtPayee")->text =
      "SMITH\r\nTITLE \xE2\x82\xAC \xE2\x98\x83";  // the euro sign has a byte, the snowman none
  form_.Find("lblStatus")->caption = "Cleared";
  form_.Find("txtAmount", 2)->text = "175.00";
  form_.Find("chkPrinted")->value = 2;
  form_.Find("optOrder")->value = 1;
  form_.Find("txtPhone")->text = "556";
  const std::string expected = Header("Post Check", "10452") +
                               "[EDIT] txtPayee was: SMITH TITLE now: SMITH  TITLE \x80 ?\r\n"
                               "[EDIT] txtAmount (2) was: 150.00 now: 175.00\r\n"
                               "[EDIT] chkPrinted was: Checked now: Grayed\r\n"
                               "[EDIT] optOrder was: False now: True\r\n"
                               "[EDIT] txtPhone was: 555 now: 556\r\n";
  Write(kAuditSave, kAuditPostCheck, "10452");
  EXPECT_EQ(Log(), expected);
  // A new snapshot takes everything but the masked entry, which keeps its old comparison.
  Write(kAuditSnapshot, kAuditPostCheck, "10452");
  Write(kAuditSave, kAuditPostCheck, "10452");
  EXPECT_EQ(Log(),
            expected + "\r\n" + Header("Post Check", "10452") + "[EDIT] txtPhone was: 555 now: 556\r\n");
}

TEST_F(AuditTest, AFailureStaysUnnoticed) {
  office_.WriteFile("Logs", "a file where the folder should be");
  Write(kAuditAdd, kAuditPostCheck, "1");
  EXPECT_TRUE(office_.boxes.shown.empty());
}

}  // namespace
}  // namespace tallwick
