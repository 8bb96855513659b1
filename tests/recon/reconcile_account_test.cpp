// The reconcile screen and the passes behind it, over real tables.
#include "recon/reconcile_account.h"

#include <gmock/gmock.h>

#include <map>
#include <random>

#include "core/text.h"
#include "recon/recon_screen_data.h"
#include "recon/recon_update.h"
#include "reports/report_rtf.h"
#include "tests/posting/screen_fixture.h"
#include "tests/support/faulty_files.h"
#include "tests/support/keeping_printer.h"
#include "tests/support/spoil_field.h"

namespace tallwick::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

// A face before which somebody holds down Esc.
class Impatient : public Form::Face {
 public:
  void ControlChanged(const Control&) override {}
  void FocusMoved(const Control&) override {}
  void CaptionChanged() override {}
  void Closed() override {}
  bool StopAsked() override { return stop; }
  bool stop = true;
};

class ReconcileTest : public PostingScreenTest<FrmReconcileAccount> {
 protected:
  void AddCheck(int number, std::string_view status, int cents, const Period& posted, const Period& stamped,
                std::string_view file = "24-0117") {
    CheckRecord check;
    check.number = std::to_string(number);
    check.status = status;
    check.amount = Currency::FromCents(cents);
    check.accounting = posted;
    check.statement = stamped;
    check.file_number = file;
    ASSERT_EQ(tables_->checks.Add(check), 0);
  }
  std::string Shown(std::string_view control) { return form_->Find(control)->text; }
  std::string Status() { return form_->Find("lblStatus")->caption; }
  // The account of March, which a statement balance of -5.00 balances.
  void ComputeMarch() {
    AddCheck(1, "C", 500, {3, 0, 2024}, {3, 0, 2024});
    Set("txtStatementDate", "3/2024");
    Set("txtBankStatementBalance", "-5");
    form_->Click("cmdCompute");
    ASSERT_EQ(Status(), "Account Balanced to a Zero Difference...");
  }
};

TEST_F(ReconcileTest, ABalanceThatNoBankRecordHoldsIsNamedAsOnTheScreen) {
  OpenOffice();
  DepositRecord deposit;
  deposit.dated = "20240301";
  deposit.sequence = "1";
  deposit.accounting = {3, 0, 2024};
  deposit.items[0] = {"1", "24-0117", "X", Currency::FromCents(10'00), {}, "O"};
  ASSERT_EQ(tables_->deposits.Add(deposit), 0);
  Set("txtStatementDate", "3/2024");
  for (const char* control : {"txtBankStatementBalance", "txtBeginningCheckBookBalance"})
    Set(control, "99,999,999,999.99");
  form_->Click("cmdUpdateBankRecord");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("Ending Check Book Balance 100,000,000,009.99 is more than a bank record "
                                    "holds as BANKBEGBAL: nothing was updated.")));
  EXPECT_EQ(Bank().reconciled, (Period{1, 0, 2024}));
}

// The passes decode bytes; here the records are read whole, field by field.
TEST_F(ReconcileTest, ThePassesCountWhatTheTablesHold) {
  OpenOffice();
  std::mt19937 dice(7);
  const auto to = [&](int most) { return std::uniform_int_distribution<int>(0, most)(dice); };
  const auto any = [&]() -> Period { return to(3) == 0 ? Period{} : Period{1 + to(3), to(2), 2024}; };
  const std::string_view statuses[] = {"O", "C", "V", "S", "H", ""};
  const std::string_view files[] = {"24-0117", "24-0117a", "24-0117A", "", "\u00c9T\u00c9 1"};
  for (int i = 1; i <= 300; ++i)
    AddCheck(i, statuses[to(5)], to(1) * to(99999999), any(), any(), files[to(4)]);
  ASSERT_TRUE(tables_->checks.GoTo(17));
  ASSERT_EQ(tables_->checks.Delete(), 0);
  for (int i = 1; i <= 60; ++i) {
    DepositRecord deposit;
    deposit.dated = "20240301";
    deposit.sequence = std::to_string(i);
    deposit.accounting = any();
    for (DepositItem& item : deposit.items) {
      if (to(1) == 0) continue;
      item = {"1",   std::string(files[to(4)]),   "X", Currency::FromCents(to(9999999)),
              any(), std::string(statuses[to(5)])};
    }
    ASSERT_EQ(tables_->deposits.Add(deposit), 0);
    WireRecord wire;
    wire.number = "W" + std::to_string(i);
    wire.file_number = files[to(4)];
    wire.amount = Currency::FromCents(to(9999999));
    wire.accounting = any();
    wire.statement = any();
    wire.status = statuses[to(5)];
    ASSERT_EQ(tables_->wires.Add(wire), 0);
  }

  const ReconTerms terms{{3, 1, 2024}, 20240100, 1, true};
  Reconciliation expected(terms);
  std::map<std::string, Currency> balances;
  const auto count = [&](ReconKind kind, const std::string& status, Currency amount, const Period& posted,
                         const Period& stamped, const std::string& file) {
    if (MakeKey(posted) > MakeKey(terms.statement)) return;
    const char letter = status.empty() ? ' ' : status[0];
    const ReconBucket bucket = expected.Add({kind, letter, amount, MakeKey(posted), stamped}).bucket;
    const std::string folded = file == "24-0117a" ? "24-0117A" : file;
    if (kind == ReconKind::kDeposit && (bucket != kReconNone || !file.empty())) balances[folded] += amount;
    if (kind != ReconKind::kDeposit && bucket < kReconVoided) balances[folded] -= amount;
  };
  for (bool on = tables_->checks.Top(""); on; on = tables_->checks.Skip()) {
    if (tables_->checks.Data().IsRecordDeleted(tables_->checks.Handle())) continue;
    const CheckRecord check = tables_->checks.Read();
    count(ReconKind::kCheck, check.status, check.amount, check.accounting, check.statement,
          check.file_number);
  }
  for (bool on = tables_->wires.Top(""); on; on = tables_->wires.Skip()) {
    const WireRecord wire = tables_->wires.Read();
    count(ReconKind::kWire, wire.status, wire.amount, wire.accounting, wire.statement, wire.file_number);
  }
  for (bool on = tables_->deposits.Top(""); on; on = tables_->deposits.Skip()) {
    const DepositRecord deposit = tables_->deposits.Read();
    for (const DepositItem& item : deposit.items)
      count(ReconKind::kDeposit, item.status, item.amount, deposit.accounting, item.statement,
            item.file_number);
  }

  ReconFindings findings(terms);
  ASSERT_EQ(RunReconPasses(*tables_, {}, findings), PassEnd::kDone);
  EXPECT_EQ(findings.recon.ResultsFor({}), expected.ResultsFor({}));
  EXPECT_EQ(findings.records, 299 + 60 + 60);
  std::vector<FileBalance> open;
  Currency sum;
  for (const auto& [file, balance] : balances) {
    if (!balance.IsZero()) open.push_back({file, balance});
    sum += balance;
  }
  EXPECT_EQ(findings.files.Open(), open);
  EXPECT_EQ(findings.files.Sum(), sum);
  // The list behind a figure adds up to it.
  const ReconResults results = findings.recon.ResultsFor({});
  EXPECT_EQ(SumOf(findings.entries, {"", "", true, true, false, kFigureBooked}).sum, results.disbursements);
  EXPECT_EQ(SumOf(findings.entries, {"", "", true, false, false, kFigureReturned}).sum,
            results.voided_checks);
  EXPECT_EQ(SumOf(findings.entries, {"", "", false, false, true, kFigureOutstanding}).sum,
            results.outstanding_deposits);
}

TEST_F(ReconcileTest, EscStopsTheComputation) {
  OpenOffice();
  AddCheck(1, "O", 500, {3, 0, 2024}, {});
  Impatient face;
  form_->Attach(&face);
  Set("txtStatementDate", "3/2024");
  form_->Click("cmdCompute");
  EXPECT_EQ(Status(), "Calculations incomplete - stopped by user...");
  EXPECT_EQ(Shown("txtAdjustedBalance"), "");
  EXPECT_EQ(form_->Results(), nullptr);
  form_->Attach(nullptr);
}

TEST_F(ReconcileTest, AnUpdateWritesTheBankRecordAndTheTrail) {
  OpenOffice([](BankRecord& bank) { bank.date_type = 1; });
  ComputeMarch();
  form_->Click("cmdUpdateBankRecord");
  EXPECT_EQ(Status(), "Updated as Reconciled for 3-2024 ...");
  const BankRecord bank = Bank();
  EXPECT_EQ(bank.reconciled, (Period{3, 0, 2024}));
  EXPECT_EQ(bank.work_in_progress, (Period{1, 0, 2024}));
  EXPECT_EQ(bank.ending_balance, Currency::FromCents(-500));
  EXPECT_EQ(bank.beginning_balance, bank.ending_balance);
  EXPECT_NE(Log().find("[EDIT] txtReconciledThrough was: 1-2024 now: 3-2024"), std::string::npos) << Log();
}

// Another workstation reconciles, posts, or removes the bank between computing and updating.
TEST_F(ReconcileTest, AnUpdateSeesWhatOthersHaveDone) {
  OpenOffice();
  ComputeMarch();
  AddCheck(2, "O", 100, {3, 0, 2024}, {});
  AddCheck(3, "C", 100, {3, 0, 2024}, {3, 0, 2024});
  form_->Click("cmdUpdateBankRecord");
  EXPECT_EQ(Bank().reconciled, (Period{1, 0, 2024}));
  EXPECT_EQ(Shown("txtDifferenceBalances"), "1.00");
  BankRecord read = Bank();
  ChangeBank([](BankRecord& bank) { bank.reconciled = {2, 0, 2024}; });
  EXPECT_NE(RecordReconciliation(*office_.session, &read, {3, 0, 2024}, {}, {}, [] { return true; }), "");
  EXPECT_EQ(Bank().reconciled, (Period{2, 0, 2024}));
  EXPECT_EQ(OfferTakeBack(*office_.session, Bank()).last, std::nullopt);
  ASSERT_TRUE(office_.session->Company().banks.SeekCode("FNB"));
  ASSERT_EQ(office_.session->Company().banks.Delete(), 0);
  office_.TakeTexts();
  form_->Click("cmdCompute");
  EXPECT_EQ(office_.TakeTexts(), std::vector<std::string>{"Bank ID Code is no longer valid."});
}

TEST_F(ReconcileTest, TheDateThatIsProposedCanBeReadAtTheEndOfFebruaryToo) {
  OpenOffice([](BankRecord& bank) {
    bank.accounting = {2, 29, 2024};
    bank.reconciled = {1, 31, 2024};
  });
  form_->Click("cmdCompute");
  EXPECT_THAT(office_.TakeTexts(), ::testing::IsEmpty());
  EXPECT_EQ(Shown("txtStatementDate"), "2-28-2024");
}

// Another workstation posts into the period behind the computation, before the bank record is written.
TEST_F(ReconcileTest, WhatIsPostedBehindTheComputationKeepsItFromBeingUpdated) {
  FaultyFiles files;
  office_.files = &files;
  OpenOffice();
  ComputeMarch();
  bool posted = false;
  files.unreadable = [&](std::string_view path) {
    if (posted || path.find("Reconciliations_") == path.npos) return false;
    posted = true;
    StartUpOutcome second = office_.Start();
    BankTables theirs(second.session->Home());
    EXPECT_TRUE(theirs.Open("FNB"));
    CheckRecord check;
    check.number = "2";
    check.status = "O";
    check.amount = Currency::FromCents(100);
    check.accounting = {3, 0, 2024};
    EXPECT_EQ(theirs.checks.Add(check), 0);
    return false;
  };
  form_->Click("cmdUpdateBankRecord");
  EXPECT_TRUE(posted);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Nothing was updated: compute again.")));
  EXPECT_EQ(Bank().reconciled, (Period{1, 0, 2024}));
  EXPECT_EQ(office_.ReadFile("Reconciliations_FNB.dat"), "");
  form_->Click("cmdCompute");
  EXPECT_EQ(Shown("txtLessOutstandingChecks"), "1.00");
}

// What was refused is in no history: neither when the record was locked nor when the history could not be
// read, which then stays as it is.
TEST_F(ReconcileTest, ARefusedUpdateLeavesNoHistory) {
  FaultyFiles files;
  office_.files = &files;
  OpenOffice();
  ComputeMarch();
  {
    StartUpOutcome second = office_.Start();
    BankTable& theirs = second.session->Company().banks;
    ASSERT_TRUE(theirs.SeekCode("FNB") && theirs.Lock() == 0);
    form_->Click("cmdUpdateBankRecord");
    EXPECT_FALSE(office_.TakeTexts().empty());
    EXPECT_EQ(office_.ReadFile("Reconciliations_FNB.dat"), "");
  }
  office_.WriteFile("Reconciliations_FNB.dat", "[1-2024]\r\nkept\r\n");
  files.unreadable = [](std::string_view path) { return path.find("Reconciliations_") != path.npos; };
  form_->Click("cmdUpdateBankRecord");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("The file Reconciliations_FNB.dat cannot be read.")));
  EXPECT_NE(OfferTakeBack(*office_.session, Bank()).refusal.find("cannot be read"), std::string::npos);
  EXPECT_EQ(office_.ReadFile("Reconciliations_FNB.dat"), "[1-2024]\r\nkept\r\n");
  EXPECT_EQ(Bank().reconciled, (Period{1, 0, 2024}));
  files.unreadable = {};
  form_->Click("cmdUpdateBankRecord");
  EXPECT_EQ(Bank().reconciled, (Period{3, 0, 2024}));
  EXPECT_THAT(office_.ReadFile("Reconciliations_FNB.dat"),
              ::testing::StartsWith("[1-2024]\r\nkept\r\n[3-2024]\r\n"));
}

TEST_F(ReconcileTest, WhatCannotBeNotedIsNotTakenBack) {
  FaultyFiles files;
  office_.files = &files;
  OpenOffice();
  ComputeMarch();
  form_->Click("cmdUpdateBankRecord");
  const std::string history = office_.ReadFile("Reconciliations_FNB.dat");
  files.fails = [](std::string_view change, std::string_view) { return change == "write"; };
  Set("txtTakeBackReason", "a slip");
  office_.TakeTexts();
  office_.boxes.answers = {BoxAnswer::kYes, BoxAnswer::kYes};
  form_->Click("cmdTakeBack");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("Take back"), HasSubstr("Reconciliations_FNB.dat could not be written")));
  EXPECT_EQ(Bank().reconciled, (Period{3, 0, 2024}));
  files.fails = {};
  {
    StartUpOutcome second = office_.Start();
    BankTable& theirs = second.session->Company().banks;
    ASSERT_TRUE(theirs.SeekCode("FNB") && theirs.Lock() == 0);
    form_->Click("cmdTakeBack");
    EXPECT_EQ(office_.ReadFile("Reconciliations_FNB.dat"), history) << "the record was in use";
  }
  office_.boxes.answers = {BoxAnswer::kYes};
  form_->Click("cmdTakeBack");
  EXPECT_EQ(Bank().reconciled, (Period{1, 0, 2024}));
  EXPECT_THAT(office_.ReadFile("Reconciliations_FNB.dat"), HasSubstr("a slip"));
}

// The figures of an update cannot be computed again once its date is reconciled.
TEST_F(ReconcileTest, AnUpdatesReportStaysUntilItIsPrintedOrLeft) {
  OpenOffice();
  ComputeMarch();
  form_->Click("cmdUpdateBankRecord");
  for (const ReconEntryLook& look : kReconEntryLooks) EXPECT_FALSE(form_->Find(look.control)->enabled);
  const char* warning = "WARNING - Account Reconciled but Report NOT Printed...\r\rPrint now ?";
  office_.TakeTexts();
  office_.boxes.answers = {BoxAnswer::kCancel};
  Set("txtStatementDate", "4/2024");
  EXPECT_EQ(Shown("txtStatementDate"), "3-2024");
  EXPECT_NE(form_->Results(), nullptr);
  // The next statement begins where this one has ended.
  office_.boxes.answers = {BoxAnswer::kNo};
  Set("txtStatementDate", "4/2024");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(warning, warning));
  EXPECT_EQ(form_->Results(), nullptr);
  EXPECT_EQ(Shown("txtBeginningCheckBookBalance"), "-5.00");
  EXPECT_EQ(Shown("txtBankStatementBalance"), "");
  Set("txtBankStatementBalance", "-5");
  form_->Click("cmdCompute");
  EXPECT_EQ(Status(), "Account Balanced to a Zero Difference...");
}

TEST_F(ReconcileTest, APrintedReportIsWantedAgainOnlyForOtherEntries) {
  KeepingPrinter printer;
  office_.printer = &printer;
  OpenOffice();
  ComputeMarch();
  office_.clock.now.minute += 5;
  form_->Click("cmdPrint");
  EXPECT_THAT(printer.last.header.front().cells.front(), HasSubstr("9:30 AM")) << "when it was computed";
  form_->Enter("txtAdjustmentsinTransit");
  form_->Enter("txtBankStatementBalance");
  form_->Click("cmdUpdateBankRecord");
  office_.TakeTexts();
  form_->Click("cmdClose");
  EXPECT_THAT(office_.TakeTexts(), ::testing::IsEmpty());
}

TEST_F(ReconcileTest, AnAmountThatIsNoNumberGivesNoFigures) {
  OpenOffice();
  AddCheck(1, "O", 500, {3, 0, 2024}, {});
  AddCheck(2, "O", 500, {3, 0, 2024}, {});
  SpoilField(tables_->checks, 2, "CHXAMOUNT", "1e3");
  Set("txtStatementDate", "3/2024");
  office_.TakeTexts();
  form_->Click("cmdCompute");
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("Record 2 of ESCROW_CHECKS_FNB holds an amount that is no number")));
  EXPECT_EQ(form_->Results(), nullptr);
}

TEST_F(ReconcileTest, WhatWasPurgedSinceKeepsItFromBeingTakenBack) {
  OpenOffice();
  ComputeMarch();
  form_->Click("cmdUpdateBankRecord");
  ASSERT_TRUE(OfferTakeBack(*office_.session, Bank()).last);
  ChangeBank([](BankRecord& bank) { bank.purged = {2, 0, 2024}; });
  EXPECT_NE(OfferTakeBack(*office_.session, Bank()).refusal.find("purged through 2-2024"), std::string::npos);
}

TEST_F(ReconcileTest, ChargesAndCreditsMayBeForbidden) {
  ASSERT_TRUE(office_.Open());
  office_.WriteFile("Reconcile_FNB.dat",
                    "ReconcileAllowBankChargesCredits=F\r\nReconcileAllowBankChargesCredit=no\r\n");
  tables_ = std::make_unique<BankTables>(office_.session->Home());
  ASSERT_TRUE(tables_->Open("FNB"));
  OpenForm();
  EXPECT_FALSE(form_->Find("txtLessBankCharges")->enabled);
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("The line \"ReconcileAllowBankChargesCredit=no\" of Reconcile_FNB.dat")));
  ComputeMarch();
  const auto notes_them = [&] {
    const std::optional<ReportDocument> report = form_->Report();
    return MakeRtf(*report).find("the Escrow Analysis reports may not match") != std::string::npos;
  };
  EXPECT_FALSE(notes_them());
  office_.WriteFile("Reconcile_FNB.dat", "");
  OpenForm();
  Set("txtStatementDate", "3/2024");
  form_->Click("cmdCompute");
  EXPECT_TRUE(notes_them());
}

}  // namespace
}  // namespace tallwick::testing
