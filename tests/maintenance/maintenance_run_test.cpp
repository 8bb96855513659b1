// The maintenance commands: their questions in order, exclusive access, and what they leave of the tables.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "maintenance/data_copy.h"
#include "maintenance/maintained_table.h"
#include "maintenance/maintenance_run.h"
#include "maintenance/version_report.h"
#include "maintenance/xref_check.h"
#include "tests/maintenance/maintained_office.h"

namespace tallwick {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MaintainedOffice;
using ::testing::SizeIs;
using testing::WatchedProgress;

constexpr BoxAnswer kOk = BoxAnswer::kOk;
constexpr BoxAnswer kCancel = BoxAnswer::kCancel;
constexpr BoxAnswer kYes = BoxAnswer::kYes;
constexpr BoxAnswer kNo = BoxAnswer::kNo;
constexpr MaintenanceOperation kRebuild = MaintenanceOperation::kRebuild;
constexpr MaintenanceOperation kPack = MaintenanceOperation::kPack;
constexpr MaintenanceOperation kUpdate = MaintenanceOperation::kUpdateVersions;

class MaintenanceTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(office_.started); }
  MaintenanceOutcome Run(MaintenanceOperation operation, std::deque<BoxAnswer> answers = {kNo, kOk}) {
    office_.boxes.shown.clear();
    office_.boxes.answers = std::move(answers);
    return RunMaintenance(*office_.session, operation, progress_);
  }
  const std::vector<Box>& Shown() { return office_.boxes.shown; }

  MaintainedOffice office_;
  WatchedProgress progress_;
};

TEST_F(MaintenanceTest, AsksInOrderAndCancelEndsIt) {
  const struct {
    MaintenanceOperation operation;
    const char* backup_title;
    const char* lock_out;
  } cases[] = {{kRebuild, "Backup Prior to Rebuild & Reindex",
                "\"Rebuild & Reindex\" requires exclusive access to "
                "Escrow Accounting - Will attempt lock-out now..."},
               {kUpdate, "Backup Prior to Update",
                "\"Update Database Versions\" requires exclusive access to "
                "Escrow Accounting - Will attempt lock-out now..."},
               {kPack, "Backup Prior to Pack Databases",
                "\"Pack Databases\" requires exclusive access to Escrow "
                "Accounting - Will attempt lock-out now..."},
               {MaintenanceOperation::kPurge, "Backup Prior to Purge",
                "\"Purge Files\" requires exclusive access to "
                "Escrow Accounting - Will attempt lock-out now..."}};
  const std::string before = office_.Picture();
  for (const auto& one : cases) {
    EXPECT_FALSE(Run(one.operation, {kCancel}).completed);
    ASSERT_THAT(Shown(), SizeIs(1));
    EXPECT_EQ(Shown()[0].title, one.backup_title);
    EXPECT_EQ(Shown()[0].text, "Backup Escrow Accounting Files Now?");
    EXPECT_EQ(Shown()[0].buttons, BoxButtons::kYesNoCancel);
    EXPECT_FALSE(Run(one.operation, {kNo, kCancel}).completed);
    ASSERT_THAT(Shown(), SizeIs(2));
    EXPECT_EQ(Shown()[1].text, one.lock_out);
    EXPECT_FALSE(Run(one.operation, {kYes, kCancel}).completed);
    EXPECT_EQ(Shown().back().text, "Copy Databases Aborted...\r\rBackup Aborted or Failed...");
    EXPECT_EQ(office_.Picture(), before);  // every table open and unchanged
  }
  EXPECT_TRUE(Run(kRebuild, {kYes, kOk, kOk}).completed);  // with a backup
  EXPECT_TRUE(office_.Has("DBFCOPYS\\Copy_Date.txt"));
}

TEST_F(MaintenanceTest, GoesThroughTheTablesInOrder) {
  const std::string before = office_.Picture();
  const MaintenanceOutcome outcome = Run(kRebuild);
  EXPECT_TRUE(outcome.completed);
  EXPECT_EQ(Shown().back().title + "|" + Shown().back().text,
            "Rebuild & Reindex Completed...|Escrow Databases have been Rebuilt & Reindexed...");
  EXPECT_THAT(progress_.shown, ElementsAre("Processing ESCROW_BANKS", "Processing ESCROW_XRFS",
                                           "Processing ESCROW_NOTES", "Processing ESCROW_CHECKS_FNB",
                                           "Processing ESCROW_DEPOSITS_FNB", "Processing ESCROW_DEPOXRFS_FNB",
                                           "Processing ESCROW_VOUCHERS_FNB", "Processing ESCROW_WIRES_FNB"));
  EXPECT_EQ(outcome.tables.front().text, "Pack Result Code: 0");
  EXPECT_EQ(office_.Picture(), before);
  EXPECT_TRUE(office_.AddCheck("900", "24-0900"));
}

TEST_F(MaintenanceTest, ExclusiveMeansThatNobodyElseWorks) {
  {
    const StartUpOutcome clerk = office_.Another();
    EXPECT_EQ(Run(kPack).code, engine::kErrorOpenRefused);
    EXPECT_EQ(Shown().back().text, "Could not get exclusive file access.  Try again later...");
    EXPECT_EQ(Shown().back().icon, BoxIcon::kCritical);
    EXPECT_TRUE(office_.AddCheck("900", "24-0900"));  // shared again
  }
  int turned_away = 0;
  progress_.at_show = [&](std::string_view) {
    if (office_.Another().result == StartUpResult::kExclusive) ++turned_away;
  };
  EXPECT_TRUE(Run(kPack).completed);
  EXPECT_GE(turned_away, 8);
  EXPECT_THAT(office_.other_boxes.Texts(),
              ::testing::Each("Escrow Accounting is in Exclusive Access Mode - Try again later..."));
  EXPECT_EQ(office_.Another().result, StartUpResult::kStarted);
}

TEST_F(MaintenanceTest, LostTableIsNotMadeEmpty) {
  for (const char* extension : {".DBF", ".CDX"})
    SystemFileSystem().Remove(office_.folder.Held(std::string("ESCROW_CHECKS_FNB") + extension));
  EXPECT_TRUE(Run(kRebuild).HasFailures());
  EXPECT_THAT(Shown().back().text, HasSubstr("ESCROW_CHECKS_FNB: is missing, but it was there: "));
  EXPECT_FALSE(office_.Has("ESCROW_CHECKS_FNB.DBF"));
}

// Refused in the work itself, so that no face can pass by.
TEST_F(MaintenanceTest, NeedsTheRight) {
  office_.suite.security = true;
  office_.session->ReloadUser();
  const std::string before = office_.Picture();
  const auto refused = [&] {
    return Shown().size() == 1 && Shown()[0].text.starts_with("You do not have the right");
  };
  for (const MaintenanceOperation operation : {kRebuild, kUpdate, kPack, MaintenanceOperation::kPurge}) {
    EXPECT_FALSE(Run(operation).completed);
    EXPECT_TRUE(refused());
  }
  office_.boxes.shown.clear();
  EXPECT_FALSE(CheckXReferences(*office_.session, {}, progress_).opened);
  EXPECT_TRUE(refused());
  office_.boxes.shown.clear();
  EXPECT_FALSE(RestoreDatabases(*office_.session, progress_).completed);
  EXPECT_THAT(Shown().front().text, HasSubstr("You do not have the right"));
  EXPECT_EQ(office_.Picture(), before);
}

TEST_F(MaintenanceTest, PackDropsDeletedRecordsAndRebuildMendsIndexes) {
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB") && bank.checks.SeekNumber("103"));
    ASSERT_EQ(bank.checks.Delete(), 0);
    EXPECT_EQ(bank.checks.RecordCount(), 5);
  }
  EXPECT_TRUE(Run(kPack).completed);
  office_.WriteFile("ESCROW_WIRES_FNB.CDX", "no index");
  const MaintenanceOutcome packed = Run(kPack);
  EXPECT_TRUE(packed.HasFailures());
  EXPECT_THAT(Shown().back().text, HasSubstr("ESCROW_WIRES_FNB: Pack Result Code: -"));
  EXPECT_TRUE(Run(kRebuild).completed);
  BankTables bank(office_.session->Home());
  ASSERT_TRUE(bank.Open("FNB"));
  EXPECT_EQ(bank.checks.RecordCount(), 4);
  EXPECT_TRUE(bank.wires.SeekNumber("FED1"));
}

TEST_F(MaintenanceTest, StopsBetweenTablesAndWithinOneWithNothingLost) {
  const std::string before = office_.Picture();
  for (int at = 1; at <= 12; ++at) {
    progress_.asked = 0;
    progress_.stop_after = at;
    const MaintenanceOutcome outcome = Run(kRebuild);
    EXPECT_FALSE(outcome.completed);
    EXPECT_THAT(Shown().back().text, HasSubstr("was stopped"));
    EXPECT_EQ(office_.Picture(), before) << at;
  }
}

// Makes a bank's wires table of an older layout: another width, a field that is gone, one that is missing,
// and one tag.
void MakeOldWires(MaintainedOffice& office) {
  clsKVRData& data = office.session->Data();
  const std::string path = office.folder.Held("ESCROW_WIRES_FNB.DBF");
  for (const char* part : {".DBF", ".CDX"})
    SystemFileSystem().Remove(office.folder.Held("ESCROW_WIRES_FNB" + std::string(part)));
  const FieldLayout fields[] = {{"WIRENUMBER", 'C', 12},    {"WIREFILENO", 'C', 10}, {"WIREDATED", 'D', 8},
                                {"WIREAMOUNT", 'N', 14, 2}, {"WIREOLD", 'C', 5},     {"WIRESTATUS", 'C', 2},
                                {"WIREPAYEE", 'C', 60},     {"WIREACCTMO", 'N', 2},  {"WIREACCTYR", 'N', 4},
                                {"WIRESTMTMO", 'N', 2},     {"WIRESTMTYR", 'N', 4}};
  const TagLayout tags[] = {{"WIRENUMBER", "UPPER (WIRENUMBER)", ".NOT. Deleted ()", true}};
  const DataHandle old = data.CreateDatabase(path, fields, tags);
  ASSERT_GT(old, 0);
  for (const char* number : {"FED1", "FED2"}) {
    data.AddRecordStart(old);
    data.SetStringFieldValue(old, "WIRENUMBER", number);
    data.SetStringFieldValue(old, "WIREFILENO", "24-0001");
    data.SetDateFieldValue(old, "WIREDATED", "03/15/2024");
    data.SetCurrencyFieldValue(old, "WIREAMOUNT", Currency::FromCents(123456));
    data.SetStringFieldValue(old, "WIREOLD", "KEPT");
    EXPECT_EQ(data.AddRecordFinish(old), 0);
  }
  data.CloseDatabase(old);
}

// The lists of maintenance are compared with the bank selection, also while the index is out of order.
TEST_F(MaintenanceTest, GoesThroughTheBanksAsTheyAreSelected) {
  for (const auto& [code, name] : {std::pair("ZZZ", "alpine Savings"), std::pair("AAA", "Öl Bank"),
                                   std::pair("MID", "Zuercher"), std::pair("BBB", "Alpine Savings")})
    ASSERT_TRUE(office_.AddBank(code, name));
  std::vector<std::string> selected;
  for (const BankRecord& bank : UserBanks(*office_.session)) selected.push_back(bank.code);
  EXPECT_THAT(selected, ElementsAre("BBB", "ZZZ", "FNB", "MID", "AAA"));
  EXPECT_EQ(EveryBankCode(office_.session->Home()), selected);
}

std::string VersionOf(MaintainedOffice& office, const std::string& table) {
  WatchedProgress progress;
  for (const TableVersion& version : ReportVersions(*office.session, progress))
    if (version.table.Name() == table) return version.text;
  return {};
}

TEST_F(MaintenanceTest, BringsAnOldTableToThePresentLayout) {
  EXPECT_EQ(VersionOf(office_, "ESCROW_BANKS"), "Escrow_Banks - current");
  EXPECT_EQ(VersionOf(office_, "ESCROW_DEPOXRFS_FNB"), "Escrow_DepoXRFS_ - current");
  MakeOldWires(office_);
  EXPECT_EQ(VersionOf(office_, "ESCROW_WIRES_FNB"), "Escrow_Wires_ OUT-of-DATE");
  EXPECT_TRUE(Run(kUpdate).completed);
  EXPECT_EQ(VersionOf(office_, "ESCROW_WIRES_FNB"), "Escrow_Wires_ - current");
  EXPECT_THAT(office_.boxes.Texts(), Contains(HasSubstr("\rESCROW_WIRES_FNB: WIRECNTLNO, WIREACCTDA, ")));
  {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB") && bank.wires.SeekNumber("FED2"));
    const WireRecord wire = bank.wires.Read();
    EXPECT_EQ(wire.amount, Currency::FromCents(123456));
    EXPECT_EQ(wire.dated, (Date{2024, 3, 15}));
    EXPECT_EQ(wire.file_number, "24-0001");
    EXPECT_TRUE(bank.wires.FirstOfFile("24-0001"));
  }
  EXPECT_THAT(office_.ReadFile("ESCROW_WIRES_FNB.OLD"), HasSubstr("KEPT"));
  EXPECT_THAT(SystemFileSystem().List(office_.folder.Held(), "*~*"), IsEmpty());

  office_.WriteFile("ESCROW_CHECKS_FNB.DBF", "no table");
  EXPECT_EQ(VersionOf(office_, "ESCROW_CHECKS_FNB"), "Escrow_Checks version status not available.");
}

// A copy that lacks what could not be read must not take the table's place.
TEST_F(MaintenanceTest, AnUnreadableTextKeepsTheOldTable) {
  office_.session->Company().notes.Close();
  clsKVRData& data = office_.session->Data();
  const std::string path = office_.folder.Held("ESCROW_NOTES.DBF");
  for (const char* part : {".DBF", ".CDX", ".FPT"})
    SystemFileSystem().Remove(office_.folder.Held("ESCROW_NOTES" + std::string(part)));
  const FieldLayout fields[] = {
      {"FILENO", 'C', 14}, {"NOTETYPE", 'C', 4}, {"TEXT", 'M', 10}, {"OLD", 'C', 1}};
  const DataHandle old = data.CreateDatabase(path, fields, {});
  ASSERT_GT(old, 0);
  data.AddRecordStart(old);
  data.SetStringFieldValue(old, "FILENO", "24-0001");
  data.SetMemoFieldValue(old, "TEXT", "Call the lender");
  ASSERT_EQ(data.AddRecordFinish(old), 0);
  data.CloseDatabase(old);
  const std::string table = office_.ReadFile("ESCROW_NOTES.DBF");
  const std::string memos = office_.ReadFile("ESCROW_NOTES.FPT");
  office_.WriteFile("ESCROW_NOTES.FPT", memos.substr(0, 512));
  const MaintenanceOutcome cut = Run(kUpdate);
  EXPECT_THAT(cut.tables, Contains(::testing::Field(&TableOutcome::text, HasSubstr("record 1: "))));
  EXPECT_EQ(office_.ReadFile("ESCROW_NOTES.DBF"), table);
  office_.WriteFile("ESCROW_NOTES.FPT", memos);
  EXPECT_TRUE(Run(kUpdate).completed);
  EXPECT_EQ(office_.session->Company().notes.NotesOf("24-0001").at(0).text, "Call the lender");
}

// A made-up 0 would stand in every balance as if it were true, and a blank status would count a voided check.
// A day that the table lacks is made up also where a tag needs it, and the table does not open for that.
TEST_F(MaintenanceTest, OnlyWhatSaysNothingFalseIsMadeUp) {
  const struct {
    std::string table;
    std::string field;
    bool made_up;
  } cases[] = {{"ESCROW_CHECKS_FNB", "CHXAMOUNT", false},   {"ESCROW_CHECKS_FNB", "CHXSTATUS", false},
               {"ESCROW_CHECKS_FNB", "CHXSTMTMO", false},   {"ESCROW_DEPOSITS_FNB", "DEPOFILE1", false},
               {"ESCROW_WIRES_FNB", "WIRESTATUS", false},   {"ESCROW_VOUCHERS_FNB", "VCHRSTATUS", false},
               {"ESCROW_DEPOXRFS_FNB", "DXRFDATED", false}, {"ESCROW_NOTES", "NOTETYPE", false},
               {"ESCROW_BANKS", "BANKBEGBAL", false},       {"ESCROW_BANKS", "BANKRECOMO", false},
               {"ESCROW_BANKS", "BANKVCHRNO", false},       {"ESCROW_BANKS", "SECLINEANG", true},
               {"ESCROW_CHECKS_FNB", "CHXTINNO", true},     {"ESCROW_WIRES_FNB", "WIREACCTDA", true},
               {"ESCROW_DEPOSITS_FNB", "DEPOSTDA2", true}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.field);
    office_.session->Company().notes.Close();
    office_.session->Company().banks.Close();
    const std::string whole = office_.ReadFile(one.table + ".DBF");
    std::string lacking = whole;
    lacking[lacking.find(one.field)] = 'X';
    office_.WriteFile(one.table + ".DBF", lacking);
    const MaintenanceOutcome outcome = Run(kUpdate);
    const auto found = std::find_if(outcome.tables.begin(), outcome.tables.end(),
                                    [&](const TableOutcome& table) { return table.table == one.table; });
    ASSERT_NE(found, outcome.tables.end());
    EXPECT_EQ(found->done, one.made_up) << found->text;
    EXPECT_EQ(found->made_up, one.made_up ? one.field : "");
    if (one.made_up) continue;
    EXPECT_EQ(found->text,
              "it lacks the field " + one.field + ", which is never made up: restore the table from a copy");
    EXPECT_EQ(office_.ReadFile(one.table + ".DBF"), lacking);
    office_.WriteFile(one.table + ".DBF", whole);
  }
}

TEST_F(MaintenanceTest, TheAgentsTableIsBroughtToThePresentLayoutToo) {
  office_.session->Company().agent.Close();
  std::string table = office_.ReadFile("ESCROW_AGENT.DBF");
  table[table.find("AGENTDTLFI")] = 'X';
  office_.WriteFile("ESCROW_AGENT.DBF", table);
  EXPECT_EQ(VersionOf(office_, "ESCROW_AGENT"), "Escrow_Agent OUT-of-DATE");
  EXPECT_TRUE(Run(kUpdate).completed);
  EXPECT_EQ(VersionOf(office_, "ESCROW_AGENT"), "Escrow_Agent - current");
}

TEST_F(MaintenanceTest, AValueThatTheNewLayoutCannotHoldKeepsTheOldTable) {
  MakeOldWires(office_);
  {
    clsKVRData& data = office_.session->Data();
    const DataHandle old = data.OpenDatabase(office_.folder.Held("ESCROW_WIRES_FNB.DBF"));
    data.TopDatabase(old);
    data.LockTheRecord(old);
    data.SetCurrencyFieldValue(old, "WIREAMOUNT", Currency::FromCents(9999999999999));
    data.WriteTheRecord(old);
    data.CloseDatabase(old);
  }
  const std::string bytes = office_.ReadFile("ESCROW_WIRES_FNB.DBF");
  const MaintenanceOutcome outcome = Run(kUpdate);
  EXPECT_FALSE(outcome.completed);
  EXPECT_THAT(Shown().back().text, HasSubstr("ESCROW_WIRES_FNB: record 1: "));
  EXPECT_EQ(office_.ReadFile("ESCROW_WIRES_FNB.DBF"), bytes);
  EXPECT_THAT(SystemFileSystem().List(office_.folder.Held(), "*~*"), IsEmpty());
}

}  // namespace
}  // namespace tallwick
