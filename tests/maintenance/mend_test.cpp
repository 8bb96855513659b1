// A company with faults of every kind, mended: what follows from the records is rebuilt, all else is named
// and left, and no transaction changes by a byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "core/text.h"
#include "maintenance/mend_company.h"
#include "maintenance/verify_company.h"
#include "shell/clsSecurity.h"
#include "tests/support/office.h"
#include "tests/support/spoil_field.h"

namespace tallwick::testing {
namespace {

class Mend : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB"));
    for (const char* number : {"101", "102", "103"}) {
      CheckRecord check;
      check.number = number;
      check.file_number = "24-1";
      check.amount = Currency::FromCents(12345);
      check.status = "O";
      ASSERT_EQ(bank.checks.Add(check), 0);
      ASSERT_EQ(Xrefs().Add(CheckXref("24-1", "FNB", number)), 0);
    }
    AddDeposit(bank);
  }
  // Two items of two files, with their references.
  void AddDeposit(BankTables& bank) {
    DepositRecord deposit;
    deposit.dated = "20240315";
    deposit.sequence = "1";
    deposit.item_count = 2;
    deposit.items[0] = {"1", "24-1", "Buyer", Currency::FromCents(500000), {}, "O"};
    deposit.items[1] = {"2", "24-2", "Lender", Currency::FromCents(700000), {}, "O"};
    ASSERT_EQ(bank.deposits.Add(deposit), 0);
    for (int item = 1; item <= 2; ++item) {
      const std::string file = "24-" + std::to_string(item);
      ASSERT_EQ(Xrefs().Add(DepositItemXref(file, "FNB", "20240315", "1", item)), 0);
      ASSERT_EQ(bank.deposit_xrefs.Add({file, "20240315", "1", std::to_string(item)}), 0);
    }
  }
  XrefTable& Xrefs() { return office_.session->Company().xrefs; }

  // Leaves the company, so that it can be had exclusively; a store of its own then works on it.
  const TableHome& Leave() {
    office_.session.reset();
    store_ = std::make_unique<clsKVRData>(StorePorts{office_.clock, office_.workstation, SystemFileSystem(),
                                                     office_.boxes, engine::SystemFiles()});
    store_->InitializeCodebase();
    home_ = std::make_unique<TableHome>(
        TableHome{*store_, SystemFileSystem(), office_.boxes, office_.folder.Held()});
    return *home_;
  }
  void Patch(const std::string& file, std::size_t offset, const std::string& bytes) {
    std::fstream stream(office_.folder.Platform(file), std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(static_cast<std::streamoff>(offset));
    stream << bytes;
  }
  static std::vector<std::string> Steps(const MendReport& report) {
    std::vector<std::string> steps;
    steps.reserve(report.steps.size());
    for (const MendStep& step : report.steps) steps.push_back(step.table + ": " + step.text);
    return steps;
  }
  static std::vector<std::string> Texts(const std::vector<CompanyProblem>& problems) {
    std::vector<std::string> texts;
    texts.reserve(problems.size());
    for (const CompanyProblem& problem : problems) texts.push_back(problem.table + ": " + problem.text);
    return texts;
  }
  using Lines = std::vector<std::string>;

  Office office_;
  std::unique_ptr<clsKVRData> store_;
  std::unique_ptr<TableHome> home_;
};

TEST_F(Mend, RebuildsReferencesAndCountersAndNamesTheRest) {
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB"));
    // Check 102 moves to another file behind the references' back, and item 2 loses both of its references.
    ASSERT_TRUE(bank.checks.SeekNumber("102"));
    CheckRecord moved = bank.checks.Read();
    moved.file_number = "24-9";
    ASSERT_EQ(bank.checks.Update(moved), 0);
    ASSERT_TRUE(Xrefs().SeekReference(DepositItemXref("24-2", "FNB", "20240315", "1", 2)));
    ASSERT_EQ(Xrefs().Delete(), 0);
    ASSERT_TRUE(bank.deposit_xrefs.SeekItem({"24-2", "20240315", "1", "2"}));
    ASSERT_EQ(bank.deposit_xrefs.Delete(), 0);
    // A voucher above the counter, and one whose number is no number.
    ASSERT_EQ(bank.vouchers.Add({"17", "24-1", {}, "Payee", "", {}, {}, "O", "", ""}), 0);
    ASSERT_EQ(bank.vouchers.Add({"V-2", "24-1", {}, "Payee", "", {}, {}, "O", "", ""}), 0);
    ASSERT_EQ(Xrefs().Add(VoucherXref("24-1", "FNB", "17")), 0);
    ASSERT_EQ(Xrefs().Add(VoucherXref("24-1", "FNB", "V-2")), 0);
    // The trace of a check that is gone: nobody can say whether it was ever good.
    ASSERT_EQ(Xrefs().Add(CheckXref("24-5", "FNB", "999")), 0);
  }
  const TableHome& home = Leave();
  const std::string checks = office_.ReadFile("ESCROW_CHECKS_FNB.DBF");
  const std::string deposits = office_.ReadFile("ESCROW_DEPOSITS_FNB.DBF");

  const MendReport plan = PlanMending(home);
  EXPECT_EQ(
      Steps(plan),
      (Lines{"ESCROW_CHECKS_FNB: adds the cross-reference \"C 102\" of file \"24-9\" in bank FNB",
             "ESCROW_BANKS: raises the voucher counter of bank FNB to 17",
             "ESCROW_DEPOSITS_FNB: adds the cross-reference \"D 20240315 1 2\" of file \"24-2\" in bank FNB",
             "ESCROW_DEPOSITS_FNB: adds the reference to item 2 of deposit 20240315 1 of file \"24-2\""}));
  const Lines left{
      "ESCROW_XRFS: names \"C 102\" of file \"24-1\" in bank FNB, which stands under another file: compare "
      "both with the paper, and correct the transaction's file number where it is wrong",
      "ESCROW_XRFS: names \"C 999\" of file \"24-5\" in bank FNB, which is not there: compare with the "
      "paper, and enter "
      "the transaction again where it was real"};
  EXPECT_EQ(Texts(plan.remains), left);
  EXPECT_EQ(VerifyCompany(home).size(), 6U);  // planning has changed nothing

  const MendReport done = MendCompany(home);
  EXPECT_EQ(done.refusal, "");
  EXPECT_EQ(done.steps.size(), plan.steps.size());
  EXPECT_EQ(Texts(done.remains), left);
  EXPECT_EQ(Texts(VerifyCompany(home)), left);
  EXPECT_EQ(office_.ReadFile("ESCROW_CHECKS_FNB.DBF"), checks);
  EXPECT_EQ(office_.ReadFile("ESCROW_DEPOSITS_FNB.DBF"), deposits);
}

// Damaged files: each harm is mended, nobody is asked anything, and the company is clean afterwards.
TEST_F(Mend, MendsFilesThatDoNotOpen) {
  const TableHome& home = Leave();
  const struct {
    std::function<void()> harm;
    std::string step;
  } kHarms[] = {
      {[&] { Patch("ESCROW_CHECKS_FNB.DBF", 4, "\x09"); },
       "ESCROW_CHECKS_FNB: sets the record count to what the file holds, without records of zero bytes at "
       "its end; look its last records over.  It "
       "counts 9 records and holds 3: the last 6 are lost.  Restore the table from a copy if there is a good "
       "one; mending keeps what is left"},
      {[&] {
         store_->RebuildIndex(office_.folder.Held("ESCROW_CHECKS_FNB.DBF"), kCheckLayout.tags.first(5));
       },
       "ESCROW_CHECKS_FNB: builds the index anew from the records"},
      {[&] { Patch("ESCROW_BANKS.DBF", 28, std::string(1, '\0')); },
       "ESCROW_BANKS: builds the index anew from the records"},
      {[&] { SystemFileSystem().Remove(office_.folder.Held("ESCROW_XRFS.CDX")); },
       "ESCROW_XRFS: builds the index anew from the records"},
      {[&] { Patch("ESCROW_BANKS.CDX", 1024, std::string(512, '\x07')); },
       "ESCROW_BANKS: builds the index anew from the records"},
      {[&] { Patch("ESCROW_DEPOSITS_FNB.CDX", 2048 + 1024 * 2, std::string(512, '\x07')); },
       "ESCROW_DEPOSITS_FNB: builds the index anew from the records"},
      {[&] {
         office_.WriteFile("ESCROW_UNITS.JNL", "This is a letter that someone saved under a wrong name.");
       },
       "ESCROW_UNITS.JNL: keeps the journal as ESCROW_UNITS.BAD and begins a new one"},
      {[&] { Patch("ESCROW_NOTES.FPT", 0, "\x7F\x12\x34\x56"); },
       "ESCROW_NOTES: sets the next free block of the memo file to the file's end"},
  };
  const std::string kSetAside =
      "ESCROW_UNITS.BAD: holds units of work that could not be brought to the tables: compare the last posts "
      "with the paper, enter what is missing, and then remove the file";
  for (const auto& harm : kHarms) {
    harm.harm();
    EXPECT_EQ(Steps(PlanMending(home)), Lines{harm.step});
    const MendReport done = MendCompany(home);
    EXPECT_EQ(Steps(done), Lines{harm.step});
    // What a journal held must not be forgotten.
    const bool journal = harm.step.starts_with("ESCROW_UNITS.JNL");
    const Lines left = journal ? Lines{kSetAside} : Lines{};
    EXPECT_EQ(Texts(done.remains), left);
    EXPECT_EQ(Texts(VerifyCompany(home)), left) << harm.step;
    SystemFileSystem().Remove(office_.folder.Held("ESCROW_UNITS.BAD"));
  }
  // One behind the other on the same table: nothing that was mended may be said to remain.
  for (const int harm : {6, 0, 3}) kHarms[harm].harm();
  Patch("ESCROW_CHECKS_FNB.DBF", 28, std::string(1, '\0'));
  EXPECT_EQ(Texts(MendCompany(home).remains), Lines{kSetAside});
  EXPECT_EQ(Texts(VerifyCompany(home)), Lines{kSetAside});
  EXPECT_TRUE(office_.boxes.shown.empty());
}

// A table that was cut short opens after mending, without what was lost: that is said before.
TEST_F(Mend, SaysWhatACutTableHasLost) {
  const TableHome& home = Leave();
  const std::string table = office_.ReadFile("ESCROW_CHECKS_FNB.DBF");
  office_.WriteFile("ESCROW_CHECKS_FNB.DBF", table.substr(0, table.find("103") - 2));
  const MendReport plan = PlanMending(home);
  EXPECT_TRUE(plan.incomplete);
  std::string said;
  for (const std::string& text : Texts(VerifyCompany(home))) said += text + "\n";
  EXPECT_NE(said.find("It counts 3 records and holds 2: the last 1 are lost.  Restore"), std::string::npos)
      << said;
}

// What no table can tell: what a field that is gone held, which tags the suite had, whose transactions a
// vanished bank's are.
TEST_F(Mend, NamesWhatAPersonMustSeeTo) {
  clsSecurity user;
  user.osLogin = "ann";
  ASSERT_EQ(user.SaveUserSecurity(office_.session->Home(), office_.clock.Now()), 0);
  const TableHome& home = Leave();
  office_.WriteFile("ESCROW_CHECKS_OLD.DBF", office_.ReadFile("ESCROW_CHECKS_FNB.DBF"));
  office_.WriteFile("ESCROW_CHECKS_FNB - Copy.DBF", office_.ReadFile("ESCROW_CHECKS_FNB.DBF"));
  office_.WriteFile("ESCROW_WIRES_OLD.DBF", office_.ReadFile("ESCROW_WIRES_FNB.DBF"));  // without records
  Patch("ESCROW_VOUCHERS_FNB.DBF", office_.ReadFile("ESCROW_VOUCHERS_FNB.DBF").find("VCHRAMOUNT"), "X");
  Patch("USERS.DBF", 28, std::string(1, '\0'));
  const Lines wanted{
      "USERS: does not open: It does not know of an index (-310).  \"escrowctl --answer Yes table reindex "
      "USERS\" builds the tags that Escrow Accounting needs",
      "ESCROW_VOUCHERS_FNB: does not open: It lacks the field VCHRAMOUNT (-211).  Update Database Versions "
      "adds "
      "it, empty, where the table is of an older program.  Where it has been lost, restore the table from a "
      "copy.",
      "ESCROW_CHECKS_FNB - Copy: holds records (3), but no bank can have the code \"FNB - Copy\": it looks "
      "like a stray copy of a table.  Have it carried out of the folder",
      "ESCROW_CHECKS_OLD: holds records (3) of a bank \"OLD\" that the bank table does not have.  Restore "
      "the "
      "copy in which the bank is, or have its tables carried out of the folder before a bank gets this code"};
  EXPECT_EQ(Texts(VerifyCompany(home)), wanted);
  const MendReport done = MendCompany(home);
  EXPECT_TRUE(done.steps.empty());
  EXPECT_EQ(Texts(done.remains), wanted);
  EXPECT_TRUE(office_.boxes.shown.empty());
}

// What only misleads is named as well: counts by which other programs read, uses that lead nowhere, and tags
// that let a number stand twice.
TEST_F(Mend, NamesWhatDoesNotFitTogether) {
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB"));
    ASSERT_TRUE(bank.deposits.SeekDeposit("20240315", "1"));
    DepositRecord deposit = bank.deposits.Read();
    deposit.item_count = 1;
    ASSERT_EQ(bank.deposits.Update(deposit), 0);
    VoucherRecord voucher;
    voucher.number = "7";
    voucher.file_number = "24-1";
    voucher.check_number = "999";
    ASSERT_EQ(bank.vouchers.Add(voucher), 0);
    ASSERT_EQ(Xrefs().Add(VoucherXref("24-1", "FNB", "7")), 0);
    std::optional<BankRecord> record = office_.session->Company().banks.Find("FNB");
    record->last_voucher = 7;
    ASSERT_EQ(office_.session->Company().banks.Update(*record), 0);
  }
  const TableHome& home = Leave();
  std::vector<TagLayout> tags(kWireLayout.tags.begin(), kWireLayout.tags.end());
  for (TagLayout& tag : tags) tag.unique = tag.unique && tag.name != "WIRENUMBER";
  ASSERT_EQ(store_->RebuildIndex(office_.folder.Held("ESCROW_WIRES_FNB.DBF"), tags), 0);
  EXPECT_THAT(
      Texts(VerifyCompany(home)),
      ::testing::ElementsAre(
          ::testing::StartsWith("ESCROW_WIRES_FNB: Tag WIRENUMBER is not made as this program"),
          ::testing::StartsWith("ESCROW_VOUCHERS_FNB: voucher 7 of file \"24-1\" is used by check 999,"),
          ::testing::StartsWith("ESCROW_DEPOSITS_FNB: deposit 20240315 1 counts 1 items and holds 2,")));
}

// A power cut can leave a file longer than what was written to it. Zero bytes would be records that stop every
// figure; one that was written and not counted is kept.
TEST_F(Mend, CountsNoRecordsOfZeroBytes) {
  const TableHome& home = Leave();
  const std::string whole = office_.ReadFile("ESCROW_CHECKS_FNB.DBF");
  for (const bool one_uncounted : {false, true}) {
    office_.WriteFile("ESCROW_CHECKS_FNB.DBF", whole + std::string(5000, '\0'));
    if (one_uncounted) Patch("ESCROW_CHECKS_FNB.DBF", 4, "\x02");
    const MendReport done = MendCompany(home);
    ASSERT_EQ(done.steps.size(), 1U);
    EXPECT_NE(done.steps[0].text.find("without records of zero bytes"), std::string::npos);
    EXPECT_EQ(Texts(done.remains), Lines{});
    EXPECT_EQ(office_.ReadFile("ESCROW_CHECKS_FNB.DBF"), whole);
  }
}

TEST_F(Mend, IsRefusedWhileAnotherWorkstationIsIn) {
  const TableHome& home = Leave();
  Patch("ESCROW_CHECKS_FNB.DBF", 4, "\x09");
  const std::string harmed = office_.ReadFile("ESCROW_CHECKS_FNB.DBF");
  Office other;
  other.suite.data_path = office_.folder.Held();
  StartUpOutcome there = other.Start();
  ASSERT_TRUE(there.session);
  const MendReport report = MendCompany(home);
  EXPECT_NE(report.refusal.find("is open on another workstation"), std::string::npos) << report.refusal;
  EXPECT_TRUE(report.steps.empty());
  EXPECT_EQ(office_.ReadFile("ESCROW_CHECKS_FNB.DBF"), harmed);
}

// Two checks with one number: which of them is right, no table says.
TEST_F(Mend, LeavesWhatARebuildCannotDecide) {
  const TableHome& home = Leave();
  const std::string table = office_.ReadFile("ESCROW_CHECKS_FNB.DBF");
  Patch("ESCROW_CHECKS_FNB.DBF", table.find("102"), "101");
  const MendReport done = MendCompany(home);
  EXPECT_TRUE(done.steps.empty());
  bool said = false;
  for (const std::string& text : Texts(done.remains)) said = said || text.find("(-360)") != std::string::npos;
  EXPECT_TRUE(said);
}

TEST_F(Mend, RemovesWhatARebuildLeftAndKeepsWhatIsMissingElsewhere) {
  const TableHome& home = Leave();
  const std::string checks = office_.ReadFile("ESCROW_CHECKS_FNB.DBF");
  office_.WriteFile("ESCROW_CHECKS_FNB.SAV", checks);
  office_.WriteFile("ESCROW_NOTES.SAV.FPT", "memos");
  office_.WriteFile("ESCROW_XRFS.SAV~", "half a co");
  office_.WriteFile("ESCROW_WIRES_FNB.SAV", checks);  // more than the table holds
  office_.WriteFile("ESCROW_WIRES_FNB.SAV.FPT", "memos");
  office_.WriteFile("Reconciliations_FNB.dat.4711-0.tmp", "[3-20");
  office_.WriteFile("Budget.2026-11 final.tmp", "somebody's own");
  EXPECT_EQ(
      Steps(PlanMending(home)),
      (Lines{"ESCROW_CHECKS_FNB.SAV: removes the file", "ESCROW_NOTES.SAV.FPT: removes the file",
             "ESCROW_XRFS.SAV~: removes the file", "Reconciliations_FNB.dat.4711-0.tmp: removes the file"}));
  EXPECT_EQ(
      Texts(MendCompany(home).remains),
      (Lines{"ESCROW_WIRES_FNB.SAV: was left by a rebuild that was cut short and holds 3 records as they "
             "were before, the table now 0.  Keep it until the table has been put right",
             "ESCROW_WIRES_FNB.SAV.FPT: was left by a rebuild that was cut short and holds 3 records as they "
             "were before, the table now 0.  Keep it until the table has been put right"}));
  EXPECT_EQ(SystemFileSystem().List(office_.folder.Held(), "*.SAV*"),
            (Lines{"ESCROW_WIRES_FNB.SAV", "ESCROW_WIRES_FNB.SAV.FPT"}));
  EXPECT_EQ(SystemFileSystem().List(office_.folder.Held(), "*.tmp"), Lines{"Budget.2026-11 final.tmp"});
}

TEST_F(Mend, NamesNumbersThatAreNone) {
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB"));
    SpoilField(bank.checks, 2, "CHXAMOUNT", "12a45.00");
    SpoilField(bank.checks, 3, "CHXAMOUNT", "");
    SpoilField(bank.deposits, 1, "DEPOAMT2", "nan");
  }
  const std::vector<CompanyProblem> problems = VerifyCompany(office_.session->Home());
  ASSERT_EQ(problems.size(), 2U);
  EXPECT_EQ(problems[0].record, 2);
  EXPECT_TRUE(problems[0].text.starts_with("CHXAMOUNT holds \"12a45.00\", which is no number"));
  EXPECT_TRUE(problems[1].text.starts_with("DEPOAMT2 holds \"nan\"")) << problems[1].text;
  EXPECT_FALSE(problems[0].IsMendable());
}

// Every figure counts them in its own way. What a table may hold of other programs is no finding.
TEST_F(Mend, NamesStatusesThatAreNone) {
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB"));
    const struct {
      const char* number;
      const char* status;
      Period statement;
    } changes[] = {{"101", "v", {3, 0, 2024}}, {"102", "V", {}}, {"103", "", {}}};
    for (const auto& change : changes) {
      ASSERT_TRUE(bank.checks.SeekNumber(change.number));
      CheckRecord check = bank.checks.Read();
      check.status = change.status;
      check.accounting = {3, 0, 2024};
      check.statement = change.statement;
      ASSERT_EQ(bank.checks.Update(check), 0);
    }
    ASSERT_TRUE(bank.deposits.SeekDeposit("20240315", "1"));
    DepositRecord deposit = bank.deposits.Read();
    deposit.items[1].status = "X";
    ASSERT_EQ(bank.deposits.Update(deposit), 0);
    for (const char* status : {"", "C", "V"}) {
      WireRecord wire;
      wire.number = std::string("W") + status;
      wire.file_number = "24-1";
      wire.status = status;
      ASSERT_EQ(bank.wires.Add(wire), 0);
      ASSERT_EQ(Xrefs().Add(WireXref("24-1", "FNB", wire.number)), 0);
    }
  }
  const TableHome& home = Leave();
  const std::string corrected = ": compare the record with the paper and the bank's statement, and correct ";
  const Lines wanted{
      "ESCROW_CHECKS_FNB: CHXSTATUS holds the status \"v\", which is none of H, O, C, V and S" + corrected +
          "CHXSTATUS with \"escrowctl table set ESCROW_CHECKS_FNB 1\"",
      "ESCROW_CHECKS_FNB: CHXSTATUS is \"V\", but no statement period says since when" + corrected +
          "CHXSTMTMO, CHXSTMTDA and CHXSTMTYR with \"escrowctl table set ESCROW_CHECKS_FNB 2\"",
      "ESCROW_CHECKS_FNB: CHXSTATUS holds the status \"\", which is none of H, O, C, V and S" + corrected +
          "CHXSTATUS with \"escrowctl table set ESCROW_CHECKS_FNB 3\"",
      "ESCROW_DEPOSITS_FNB: DEPOSTAT2 holds the status \"X\", which is none of O and C" + corrected +
          "DEPOSTAT2 with \"escrowctl table set ESCROW_DEPOSITS_FNB 1\"",
      "ESCROW_WIRES_FNB: WIRESTATUS holds the status \"V\", which is none of O and C" + corrected +
          "WIRESTATUS with \"escrowctl table set ESCROW_WIRES_FNB 3\""};
  EXPECT_EQ(Texts(VerifyCompany(home)), wanted);
  const MendReport done = MendCompany(home);
  EXPECT_TRUE(done.steps.empty());
  EXPECT_EQ(Texts(done.remains), wanted);
}

}  // namespace
}  // namespace tallwick::testing
