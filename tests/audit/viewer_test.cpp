// The audit trail viewer and what it prints.

#include "audit/view_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audit/audit_trail.h"
#include "tests/support/keeping_printer.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::KeepingPrinter;
using ::testing::Not;
using testing::Office;
using testing::Seen;

class ViewerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    Add("10452", kAuditPostCheck, {{2024, 3, 4}, 14, 7, 31});
    Add("10453", kAuditPostCheck, {{2024, 3, 5}, 9, 0, 0});
    Add("10452", kAuditVoidCheck, {{2024, 3, 6}, 9, 0, 0});
  }
  void Add(std::string_view reference, int tx, const DateTime& when) {
    office_.clock.now = when;
    FrmViewLog any(*office_.session);
    WriteAuditTrail(AuditTargetOf(*office_.session, "FNB", true), any, kAuditAdd, tx, reference);
  }
  // The references of the rows shown.
  static std::vector<std::string> Shown(Form& form) {
    std::vector<std::string> shown;
    RowSource& rows = *form.Find("grdEntries")->source;
    for (std::size_t row = 0; row < rows.RowCount(); ++row) shown.push_back(rows.Row(row)[2]);
    return shown;
  }

  Office office_;
};

TEST_F(ViewerTest, ShowsSearchesAndOrdersTheLog) {
  FrmViewLog form(*office_.session);
  form.Opened();
  EXPECT_EQ(Seen(form, "txtLogFile"), "Audit Trail Log: FNB\\Audit_Trail.log");
  EXPECT_THAT(Shown(form), ElementsAre("10452", "10453", "10452"));
  EXPECT_THAT(form.Find("grdEntries")->source->Row(2),
              ElementsAre("Mar 06, 2024 @ 9:00 AM", "Void Check", "10452", "jdoe", "FRONTDESK2", "Add Void",
                          "10452"));
  EXPECT_THAT(form.Find("cboReferenceNum")->rows, ElementsAre("10452", "10453"));
  EXPECT_THAT(Seen(form, "lblProof"), HasSubstr("Proven"));
  EXPECT_FALSE(form.Find("cboGrids")->visible);

  form.SetCheck("optOrder", 1, 2);
  EXPECT_THAT(Shown(form), ElementsAre("10452", "10453", "10452"));
  form.Change("txtFrom", "3/5/24");
  form.Change("cboReferenceNum", "52");
  EXPECT_EQ(Seen(form, "txtFrom"), "03/05/2024");
  EXPECT_THAT(Shown(form), ElementsAre("10452", "10453", "10452"));  // nothing moves before the search
  form.Click("cmdSearch");
  EXPECT_THAT(Shown(form), ElementsAre("10452"));
  EXPECT_EQ(Seen(form, "lblFound"), "1 of 3 entries");
  form.SetCheck("chkMeetAllValues", 0);
  form.Click("cmdSearch");
  EXPECT_THAT(Shown(form), ElementsAre("10452", "10453", "10452"));
  form.Click("cmdClear");
  form.Mark("lstTXCode", 4, true);
  form.Click("cmdSearch");
  EXPECT_THAT(Shown(form), ElementsAre("10453", "10452"));
}

TEST_F(ViewerTest, RefusesDatesThatCannotBe) {
  FrmViewLog form(*office_.session);
  form.Opened();
  form.Change("txtTo", "2/30/24");
  form.Leave();
  EXPECT_TRUE(form.Find("txtTo")->refused);
  form.Change("txtTo", "3/1/24");
  form.Change("txtFrom", "3/2/24");
  form.Click("cmdSearch");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("date is not valid"), HasSubstr("before the first")));
  EXPECT_EQ(Shown(form).size(), 3U);
}

TEST_F(ViewerTest, PrintsWhatWasFound) {
  FrmViewLog no_printer(*office_.session);
  no_printer.Opened();
  no_printer.Menu("mnuFilePrint");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("no printer here")));

  KeepingPrinter printer;
  StartUpOutcome started = StartUp({office_.boxes, SystemFileSystem(), office_.clock, office_.workstation,
                                    nullptr, nullptr, nullptr, &printer},
                                   [this] { return std::make_unique<testing::FakeSuite>(office_.suite); });
  ASSERT_NE(started.session, nullptr);
  ASSERT_TRUE(SelectBank(*started.session, "FNB"));
  FrmViewLog form(*started.session);
  form.Opened();
  form.Change("txtFrom", "03/05/2024");
  form.Mark("lstTXCode", 4, true);
  form.Mark("lstTXCode", 5, true);
  form.Mark("lstEntries", 2, true);
  form.SetCheck("chkLandscape", 1);
  form.Click("cmdSearch");
  form.Menu("mnuFilePdf");
  EXPECT_EQ(printer.last.name, "Audit Trail FNB 2024-03-06");
  EXPECT_TRUE(printer.last.landscape);
  const std::string text = printer.Text();
  for (const char* line :
       {"Last modified: ", "Search Parameters:|\n", "    TX Code: Post Check; Void Check|\n",
        "    Entries from: 03/05/2024|\n", "    Entries: Add Void|\n",
        "10452|jdoe|FRONTDESK2|\nMar 06, 2024 @ 9:00 AM|Void Check||\n|Add Void|10452|\n"})
    EXPECT_THAT(text, HasSubstr(line));
  EXPECT_THAT(text, Not(HasSubstr("10453")));
  EXPECT_THAT(text, Not(HasSubstr("Login Name")));
}

TEST_F(ViewerTest, GridsAreChosenAndTheLogIsReadAgain) {
  FrmViewLog form(*office_.session);
  form.Opened();
  office_.WriteFile("Logs\\FNB\\Audit_Trail.log",
                    "[DATE: Mar 04, 2024 @ 02:07:31 PM][TX: Office][REFERENCE: G1][LOGIN: a][COMPUTER: b]\r\n"
                    "[GRID] grdA was:\r\n[H]X[C]Y\r\n1[C]2\r\n[GRID] grdB was:\r\n[H]Z\r\n3\r\n");
  form.Key("F5");
  EXPECT_THAT(Seen(form, "lblProof"), HasSubstr("NOT proven"));
  ASSERT_TRUE(form.Find("cboGrids")->visible);
  EXPECT_EQ(Shown(form).size(), 4U);
  form.Click("cmdAddGrid");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Choose a grid")));
  form.Choose("cboGrids", 1);
  form.Click("cmdAddGrid");
  EXPECT_EQ(Shown(form).size(), 2U);
  form.SetCheck("optGridSelect", 1, 2);
  form.Mark("lstColumnList", 2, true);
  EXPECT_EQ(form.Find("grdEntries")->source->Row(1)[6], "Old Grid Value: 2");
  form.Click("cmdDeleteGrid");
  EXPECT_EQ(Shown(form).size(), 4U);

  // A shorter log, read while the criteria cannot be searched for: what is shown is of this log all the same.
  form.Change("txtFrom", "01/01/2020");
  form.Click("cmdSearch");
  form.Change("txtTo", "01/01/2010");
  office_.WriteFile("Logs\\FNB\\Audit_Trail.log",
                    "[DATE: Mar 04, 2019 @ 02:07:31 PM][TX: Office][REFERENCE: G2][LOGIN: a][COMPUTER: b]\r\n"
                    "[GRID] grdA was:\r\n[H]X\r\n1\r\n");
  form.Key("F5");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("before the first")));
  EXPECT_THAT(Shown(form), ElementsAre());
  form.SetCheck("chkPrintEntireGrid", 1);
  EXPECT_EQ(Seen(form, "lblFound"), "0 of 1 entries");
}

}  // namespace
}  // namespace tallwick
