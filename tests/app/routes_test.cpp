// From every screen that has an escrow file number to the file's ledger, and from every report to preview,
// paper, PDF and RTF.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/screen_catalogue.h"
#include "shell/screen_routes.h"
#include "tests/support/keeping_printer.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::KeepingPrinter;
using testing::Office;

class RoutesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office_.printer = &printer_;
    ASSERT_TRUE(office_.Open());
    screens_ = std::make_unique<ScreenCatalogue>(*office_.session, office_);
    BankTables tables(office_.session->Home());
    ASSERT_TRUE(tables.Open("FNB"));
    const Period march{3, 0, 2024};
    const Date dated{2024, 3, 15};
    const Currency amount = Currency::FromCents(5'00);
    CheckRecord check;
    WireRecord wire;
    VoucherRecord voucher;
    check.number = wire.number = voucher.number = "7";
    check.payee = wire.payee = voucher.payee = "JONES";
    check.amount = wire.amount = voucher.amount = amount;
    check.accounting = wire.accounting = voucher.accounting = march;
    check.status = wire.status = voucher.status = "O";
    check.dated = dated;
    check.file_number = "24-0001";
    wire.file_number = "24-0002";
    voucher.file_number = "24-0003";
    DepositRecord deposit;
    deposit.dated = StoredDate(dated);
    deposit.sequence = "1";
    deposit.accounting = march;
    deposit.item_count = 2;
    deposit.items[0] = {"1", "24-0004", "BUYER", amount, {}, "O"};
    deposit.items[1] = {"2", "24-0005", "BUYER", amount, {}, "O"};
    ASSERT_EQ(tables.checks.Add(check), 0);
    ASSERT_EQ(tables.wires.Add(wire), 0);
    ASSERT_EQ(tables.vouchers.Add(voucher), 0);
    ASSERT_EQ(tables.deposits.Add(deposit), 0);
  }
  // Does what a person does on the screen, asks for the ledger, and gives what was opened.
  std::string LedgerFrom(std::string_view screen, std::string_view mode,
                         const std::function<void(Form&)>& work) {
    const std::unique_ptr<Form> form = screens_->Make(screen, mode);
    form->Opened();
    work(*form);
    office_.opened.clear();
    form->Menu(kLedgerCommand);
    return office_.opened.size() == 1 ? office_.opened[0] : "opened " + std::to_string(office_.opened.size());
  }

  KeepingPrinter printer_;
  Office office_;
  std::unique_ptr<ScreenCatalogue> screens_;
};

TEST_F(RoutesTest, TheLedgerOpensFromEveryScreenThatHasAFileNumber) {
  struct Case {
    const char *screen, *mode;
    void (*work)(Form&);
    const char* file;
  };
  const Case cases[] = {
      {"frmEditChecksPost", "Viewing", [](Form& form) { form.Choose("lstCheckNumbers", 1); }, "24-0001"},
      {"frmEditChecksPost", "Posting", [](Form& form) { form.Change("txtCheckFileNumber", "24-0009"); },
       "24-0009"},
      {"frmEditWiresPost", "Viewing", [](Form& form) { form.Choose("lstWireNumbers", 1); }, "24-0002"},
      {"frmEditVouchersPost", "Viewing", [](Form& form) { form.Choose("lstVCHRNumbers", 1); }, "24-0003"},
      {"frmEditDepositsPost", "Viewing", [](Form& form) { form.Choose("lstDepositDates", 1); }, "24-0004"},
      {"frmEditDepositsPost", "Posting",
       [](Form& form) {
         form.Choose("lstDepositDates", 1);
         form.Enter("txtSources", 2);
       },
       "24-0005"},
      // The items stand last one first.
      {"frmEditDepositsPost", "Viewing",
       [](Form& form) {
         form.Click("cmdListAll");
         form.Choose("lstDepositDates", 1);
       },
       "24-0005"},
      {"frmEditDepositsClear", "Clearing",
       [](Form& form) {
         form.Choose("lstDepositDates", 1);
         form.Enter("chkCleared", 2);
       },
       "24-0005"},
      {"frmPrintChecks", "",
       [](Form& form) {
         form.Change("txtNumbers", "7");
         form.Click("cmdList");
         form.Choose("grdChecks", 1);
       },
       "24-0001"},
      {"frmReconcileAccount", "",
       [](Form& form) {
         form.Click("cmdCompute");
         form.Click("cmdOutstandingWires");
         form.Choose("grdItems", 1);
       },
       "24-0002"},
      {"frmReconcileAccount", "",
       [](Form& form) {
         form.Click("cmdCompute");
         form.Click("cmdFiles");
         form.Choose("grdItems", 3);
       },
       "24-0004"},
      {"frmViewTrialBalance", "",
       [](Form& form) {
         form.Click("cmdCompute");
         form.Choose("grdFiles", 2);
       },
       "24-0002"},
      {"frmMainEscrowAccounting", "", [](Form& form) { form.Choose("grdLatestPostings", 1); }, "24-0001"},
      // Two files stand behind the deposit's row, and none where no row is chosen.
      {"frmMainEscrowAccounting", "", [](Form& form) { form.Choose("grdLatestPostings", 2); }, ""},
      {"frmMainEscrowAccounting", "", [](Form&) {}, ""},
  };
  for (const Case& one : cases)
    EXPECT_EQ(LedgerFrom(one.screen, one.mode, one.work), std::string("frmViewFileLedgers ") + one.file)
        << one.screen << " " << one.mode;
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("no printer here"))) << "of checks";
}

TEST_F(RoutesTest, ReconciliationOpensFromTheCommandsThatLeadToIt) {
  for (const char* screen : {"frmMainEscrowAccounting", "frmEditChecksPost"}) {
    const std::unique_ptr<Form> form = screens_->Make(screen, "");
    form->Opened();
    office_.opened.clear();
    form->Menu("mnuEditReconcileAccount");
    EXPECT_THAT(office_.opened, ElementsAre("frmReconcileAccount ")) << screen;
  }
}

TEST_F(RoutesTest, ARowOfTheLatestPostingsOpensItsLedgerAndADepositOfSeveralFilesItself) {
  const std::unique_ptr<Form> form = screens_->Make("frmMainEscrowAccounting", "");
  form->Opened();
  form->Choose("grdLatestPostings", 1);
  office_.session->NotifyChanged(SessionChange::kPosted);
  EXPECT_EQ(form->Find("grdLatestPostings")->selected, 1) << "a look around changes nothing";
  EXPECT_TRUE(form->Key("Enter"));
  form->Choose("grdLatestPostings", 2);
  EXPECT_TRUE(form->Key("Enter"));
  EXPECT_THAT(office_.opened, ElementsAre("frmViewFileLedgers 24-0001", "frmEditDepositsPost Viewing"));
}

TEST_F(RoutesTest, EveryReportGoesToPreviewPaperPdfAndRtf) {
  struct Case {
    const char *screen, *topic, *compute, *name, *title;
  };
  const Case cases[] = {
      {"frmViewFileLedgers", "24-0001", "cmdShow", "Ledger 24-0001", "Escrow Ledger for File: 24-0001"},
      {"frmViewTrialBalance", "", "cmdCompute", "Trial Balance All Files", "Trial Balance - All Files"},
      {"frmReconcileAccount", "", "cmdCompute", "Bank Statement Reconciliation FNB 3-2024",
       "Bank Statement Reconciliation for First National Trust"},
  };
  for (const Case& one : cases) {
    const std::unique_ptr<Form> form = screens_->Make(one.screen, one.topic);
    form->Opened();
    form->Click(one.compute);
    printer_.ways.clear();
    for (const char* way : {"mnuFilePreview", "mnuFilePrint", "mnuFilePdf", "mnuFileRtf"}) form->Menu(way);
    EXPECT_TRUE(form->Key("Ctrl+P"));
    const std::string name = one.name;
    EXPECT_THAT(printer_.ways,
                ElementsAre(HasSubstr("preview " + name), HasSubstr("print " + name),
                            HasSubstr("pdf " + name), HasSubstr("rtf " + name), HasSubstr("print " + name)));
    EXPECT_THAT(printer_.rtf, ::testing::StartsWith("{\\rtf1"));
    EXPECT_THAT(printer_.rtf, HasSubstr(one.title));
  }
}

TEST_F(RoutesTest, OnlyAReportThatWentSomewhereCountsAsPrinted) {
  const std::unique_ptr<Form> form = screens_->Make("frmReconcileAccount", "");
  form->Opened();
  form->Change("txtBankStatementBalance", "-10");
  form->Change("txtPlusBankCredits", "-10");
  form->Click("cmdCompute");
  form->Click("cmdRtf");
  printer_.works = false;
  form->Click("cmdPdf");
  ASSERT_EQ(form->Find("txtDifferenceBalances")->text, "0.00");
  office_.boxes.answers = {BoxAnswer::kNo};
  EXPECT_TRUE(form->Close());
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("NOT Updated"))) << "the RTF file counts";
}

}  // namespace
}  // namespace tallwick
