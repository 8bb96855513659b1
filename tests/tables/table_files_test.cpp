// Making, opening and rebuilding table files, with the messages to the letter, and the bank codes that name
// them.

#include <functional>

#include "tables/bank_code.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"
#include "tables/notes_table.h"
#include "tables/users_table.h"
#include "tables/xref_table.h"
#include "tests/tables/company_fixture.h"

namespace tallwick {
namespace {

class TableFilesTest : public testing::CompanyTest {
 protected:
  void AddChecks(CheckTable& checks, int count) {
    ASSERT_GT(checks.Open("FNB"), 0);
    CheckRecord check;
    for (int number = 1; number <= count; ++number) {
      check.number = std::to_string(number);
      ASSERT_EQ(checks.Add(check), 0);
    }
  }
  int LiveInOrder(CheckTable& checks) {
    int live = 0;
    for (bool on = checks.Top("CHXNUMBER"); on; on = checks.Skip()) ++live;
    return live;
  }
  void Patch(std::string_view name, std::size_t at, char byte) {
    std::string bytes = *SystemFileSystem().Read(folder_.Held(name));
    bytes[at] = byte;
    SystemFileSystem().Write(folder_.Held(name), bytes);
  }
  void Spoil(std::string_view name, std::size_t keep) {
    std::string bytes = *SystemFileSystem().Read(folder_.Held(name));
    SystemFileSystem().Write(folder_.Held(name), bytes.substr(0, keep));
  }
};

TEST(BankCodes, OnlyHarmlessNamesPass) {
  for (std::string_view good :
       {"FNB", " FNB   ", "12345678", "A-B_C.D", "FIRST NB", "Ébène", "COM0", "CONE"}) {
    EXPECT_EQ(BankCodeProblem(good), "") << good;
  }
  for (std::string_view bad :
       {"",   "   ", "..",   ".",         "A.",  "A/B", "A\\B", "A:B",     "A*",   "A?",   "A\"B",
        "<A", "A|",  "A\tB", "123456789", "con", "PRN", "aux",  "NUL.txt", "COM1", "lpt9", "Dvořák"}) {
    EXPECT_NE(BankCodeProblem(bad), "") << bad;
  }
}

TEST_F(TableFilesTest, PerBankTablesAreMadeWhenFirstOpened) {
  BankTables tables(home_);
  ASSERT_TRUE(tables.Open("FNB     "));
  EXPECT_EQ(made_, (std::vector<std::string>{"ESCROW_CHECKS_FNB", "ESCROW_DEPOSITS_FNB", "ESCROW_WIRES_FNB",
                                             "ESCROW_VOUCHERS_FNB", "ESCROW_DEPOXRFS_FNB"}));
  EXPECT_TRUE(FileThere("ESCROW_CHECKS_FNB.DBF"));
  EXPECT_TRUE(FileThere("ESCROW_CHECKS_FNB.CDX"));
  ASSERT_TRUE(tables.Open("fnb"));
  EXPECT_EQ(made_.size(), 5U) << "names are found whatever their case";
  EXPECT_TRUE(boxes_.shown.empty());
}

TEST_F(TableFilesTest, CreationCutShortIsNoObstacle) {
  NotesTable notes(home_);
  ASSERT_EQ(notes.Create(), 0);
  ASSERT_TRUE(SystemFileSystem().Remove(notes.Path()));
  EXPECT_EQ(notes.Create(), 0);
  EXPECT_GT(notes.Open(), 0);
}

TEST_F(TableFilesTest, MakingATableKeepsTheTextsOfALostOne) {
  NotesTable notes(home_);
  for (const char* kept : {"ESCROW_NOTES.LOST.FPT", "ESCROW_NOTES.LOST2.FPT"}) {
    ASSERT_EQ(notes.Create(), 0);
    ASSERT_GT(notes.Open(), 0);
    EXPECT_EQ(notes.RecordCount(), 0);
    ASSERT_EQ(notes.Add({"24-1", "A", std::string("Text of ") + kept}), 0);
    notes.Close();
    const std::string texts = *SystemFileSystem().Read(folder_.Held("ESCROW_NOTES.FPT"));
    ASSERT_TRUE(SystemFileSystem().Remove(notes.Path()));
    ASSERT_EQ(notes.Create(), 0);
    EXPECT_EQ(SystemFileSystem().Read(folder_.Held(kept)), texts);
    ASSERT_TRUE(SystemFileSystem().Remove(notes.Path()));
  }
}

TEST_F(TableFilesTest, FailuresSayWhatWasNotDone) {
  XrefTable xrefs(home_);
  EXPECT_LE(xrefs.Open(), 0);
  EXPECT_EQ(boxes_.LastText(), "Open database ESCROW_XRFS failed.\r-60");
  ASSERT_EQ(xrefs.Create(), 0);
  EXPECT_EQ(xrefs.Create(), -64);
  EXPECT_EQ(boxes_.shown.back().title, "Create New Database");
  EXPECT_EQ(boxes_.LastText(), "ESCROW_XRFS  was not created.\r-64");

  BankTable banks(home_);
  ASSERT_EQ(banks.Create(), 0);
  EXPECT_EQ(banks.Create(), -64);
  EXPECT_EQ(boxes_.shown.back().title, "Create Database for Banks");
  EXPECT_EQ(boxes_.LastText(), "ESCROW_BANKS was not created.\rError code = -64");
  NotesTable notes(home_);
  ASSERT_EQ(notes.Create(), 0);
  EXPECT_EQ(notes.Create(), -64);
  EXPECT_EQ(boxes_.LastText(), "ESCROW_NOTES  was not created.\rError Code: -64\rDBFCreate_Escrow_Notes");

  CheckTable checks(home_);
  EXPECT_LE(checks.Open("..\\X"), 0);
  EXPECT_EQ(boxes_.shown.back().title, "Open Database Checks");
  CheckTable theirs(other_home_);
  ASSERT_EQ(theirs.Create("FNB"), 0);
  ASSERT_GT(theirs.OpenExclusive("FNB"), 0);
  EXPECT_EQ(checks.Open("FNB"), -61);
  EXPECT_EQ(boxes_.LastText(), "Open database ESCROW_CHECKS_FNB failed.\r-61");
}

TEST_F(TableFilesTest, BanksBringTheirTables) {
  BankTable banks(home_);
  ASSERT_EQ(banks.Create(), 0);
  ASSERT_GT(banks.Open(), 0);
  BankRecord bank;
  bank.code = "ZB";
  bank.name = "Alpha Bank";
  bank.last_voucher = 999'999'999'999;
  bank.audit_trail = true;
  bank.ending_balance = Currency::FromCents(99'999'999'999'99 / 100);
  bank.lowest_check = "100";
  bank.reconciled = {2, 29, 2024};
  ASSERT_EQ(banks.AddBank(bank), 0);
  EXPECT_TRUE(FileThere("ESCROW_DEPOXRFS_ZB.DBF"));
  EXPECT_TRUE(made_.empty());
  EXPECT_EQ(banks.Find("zb "), bank);
  bank.name = "Other";
  EXPECT_EQ(banks.AddBank(bank), engine::kUnique);
  bank.code = "AUX";
  EXPECT_EQ(banks.AddBank(bank), engine::kErrorFieldValue);
  bank.code = "AB";
  bank.name = "Zeta";
  ASSERT_EQ(banks.AddBank(bank), 0);
  std::vector<BankRecord> list = banks.InNameOrder();
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0].code, "ZB");
  ASSERT_EQ(banks.Delete(), engine::kNoRecord) << "behind the last record";
  ASSERT_TRUE(banks.SeekCode("AB"));
  ASSERT_EQ(banks.Delete(), 0);
  EXPECT_FALSE(banks.SeekCode("AB"));
  EXPECT_TRUE(banks.Top("DEL4REUSE"));
  EXPECT_EQ(banks.Read().code, "AB");
}

TEST_F(TableFilesTest, VouchersMayBeginAnewBehindADamagedHeader) {
  VoucherTable vouchers(home_);
  ASSERT_GT(vouchers.Open("FNB"), 0);
  VoucherRecord voucher;
  voucher.number = "1";
  ASSERT_EQ(vouchers.Add(voucher), 0);
  vouchers.Close();
  std::string bytes = *SystemFileSystem().Read(vouchers.Path());
  bytes[4] = 9;
  SystemFileSystem().Write(vouchers.Path(), bytes);
  boxes_.answers = {BoxAnswer::kCancel, BoxAnswer::kNo};
  EXPECT_EQ(vouchers.Open("FNB"), -200);
  EXPECT_EQ(boxes_.shown.back().title, "Corrupt File Header");
  EXPECT_EQ(boxes_.LastText(), "Create new (and empty) ESCROW_VOUCHERS_FNB ?");
  EXPECT_EQ(boxes_.shown.back().preset, BoxAnswer::kNo);
  EXPECT_EQ(*SystemFileSystem().Read(vouchers.Path()), bytes);
  boxes_.answers = {BoxAnswer::kCancel, BoxAnswer::kYes};
  ASSERT_GT(vouchers.Open("FNB"), 0);
  EXPECT_EQ(vouchers.RecordCount(), 0);
  EXPECT_EQ(*SystemFileSystem().Read(folder_.Held("ESCROW_VOUCHERS_FNB.BAD")), bytes)
      << "money is never thrown away";
}

TEST_F(TableFilesTest, VersionCheckSeesOtherFieldsAndTags) {
  std::vector<FieldLayout> fields(kXrefLayout.fields.begin(), kXrefLayout.fields.end());
  std::vector<TagLayout> tags(kXrefLayout.tags.begin(), kXrefLayout.tags.end());
  XrefTable xrefs(home_);
  auto state = [&] {
    data_.CloseDatabase(data_.CreateDatabase(xrefs.Path(), fields, tags));
    xrefs.OpenAsItIs({}, false);
    LayoutState found = xrefs.CheckVersion();
    xrefs.Close();
    data_.RemoveDatabase(data_.OpenDatabaseSilent(xrefs.Path(), true));
    return found;
  };
  tags[0].expression = "upper(xrfsfileno+xrfsbankid+xrfstxtype+xrfstxrefn)";
  EXPECT_EQ(state(), LayoutState::kCurrent) << "case and blanks do not count";
  tags[0].unique = false;
  EXPECT_EQ(state(), LayoutState::kOtherTags);
  tags.pop_back();
  EXPECT_EQ(state(), LayoutState::kOtherTags);
  fields[3].width = 14;
  EXPECT_EQ(state(), LayoutState::kOtherFields);
}

// --- Rebuild ---

TEST_F(TableFilesTest, RebuildPacksAndDropsTheCopy) {
  CheckTable checks(home_);
  AddChecks(checks, 30);
  for (std::string_view number : {"3", "30"}) {
    ASSERT_TRUE(checks.SeekNumber(number));
    ASSERT_EQ(checks.Delete(), 0);
  }
  EXPECT_EQ(checks.Rebuild("FNB"), 0);
  EXPECT_EQ(boxes_.LastText(), "Pack Result Code: 0");
  EXPECT_FALSE(FileThere("ESCROW_CHECKS_FNB.SAV"));
  ASSERT_GT(checks.Open("FNB"), 0);
  EXPECT_EQ(checks.RecordCount(), 28);
  EXPECT_EQ(LiveInOrder(checks), 28);
}

// What a table has lost may stand in the copy that a rebuild before left.
TEST_F(TableFilesTest, ARebuildKeepsAFullerCopy) {
  CheckTable checks(home_);
  AddChecks(checks, 30);
  checks.Close();
  const std::string fuller = *SystemFileSystem().Read(folder_.Held("ESCROW_CHECKS_FNB.DBF"));
  SystemFileSystem().Write(folder_.Held("ESCROW_CHECKS_FNB.SAV"), fuller);
  ASSERT_GT(checks.Open("FNB"), 0);
  ASSERT_TRUE(checks.SeekNumber("3"));
  ASSERT_EQ(checks.Delete(), 0);
  EXPECT_EQ(checks.Rebuild("FNB"), 0);
  EXPECT_FALSE(FileThere("ESCROW_CHECKS_FNB.SAV2")) << "as long as the table was: nothing more in it";
  SystemFileSystem().Write(folder_.Held("ESCROW_CHECKS_FNB.SAV"), fuller);
  EXPECT_EQ(checks.Rebuild("FNB"), 0);
  EXPECT_EQ(SystemFileSystem().Read(folder_.Held("ESCROW_CHECKS_FNB.SAV2")), fuller);
}

TEST_F(TableFilesTest, RebuildOfATableInUseChangesNothing) {
  CheckTable checks(home_);
  AddChecks(checks, 3);
  ASSERT_TRUE(checks.SeekNumber("2"));
  ASSERT_EQ(checks.Delete(), 0);
  checks.Close();
  CheckTable theirs(other_home_);
  ASSERT_GT(theirs.Open("FNB"), 0);
  EXPECT_EQ(checks.Rebuild("FNB"), -61);
  EXPECT_EQ(boxes_.LastText(), "Pack Result Code: -61");
  EXPECT_EQ(theirs.RecordCount(), 3);
  EXPECT_EQ(LiveInOrder(theirs), 2);
}

TEST_F(TableFilesTest, StoppedRebuildLeavesTheOldTable) {
  CheckTable checks(home_);
  AddChecks(checks, 3);
  ASSERT_TRUE(checks.SeekNumber("2"));
  ASSERT_EQ(checks.Delete(), 0);
  EXPECT_NE(checks.Rebuild("FNB", [](std::uint32_t, std::uint32_t) { return false; }), 0);
  EXPECT_FALSE(FileThere("ESCROW_CHECKS_FNB.SAV"));
  ASSERT_GT(checks.Open("FNB"), 0);
  EXPECT_EQ(checks.RecordCount(), 3);
  EXPECT_EQ(LiveInOrder(checks), 2);
}

TEST_F(TableFilesTest, DamagedIndexIsRebuiltWhenTheUserAgrees) {
  for (bool missing : {true, false}) {
    CheckTable checks(home_);
    if (missing) AddChecks(checks, 40);
    checks.Close();
    if (missing) {
      SystemFileSystem().Remove(folder_.Held("ESCROW_CHECKS_FNB.CDX"));
    } else {
      Spoil("ESCROW_CHECKS_FNB.CDX", 1000);
    }
    boxes_.answers = {BoxAnswer::kNo};
    EXPECT_LE(checks.Open("FNB"), 0);
    boxes_.answers = {BoxAnswer::kYes};
    ASSERT_GT(checks.Open("FNB"), 0);
    EXPECT_EQ(boxes_.LastText(), "Pack Result Code: 0");
    EXPECT_EQ(LiveInOrder(checks), 40);
    EXPECT_TRUE(checks.SeekNumber("17"));
  }
}

// A walk along a tag that is not there would show an empty table, and its keys would guard nothing.
TEST_F(TableFilesTest, ATableWithoutATagIsRefusedAndRebuilt) {
  CheckTable checks(home_);
  AddChecks(checks, 20);
  checks.Close();
  const struct {
    std::function<void()> harm;
    int code;
    const char* said;
  } harms[] = {
      {[&] { data_.RebuildIndex(checks.Path(), kCheckLayout.tags.subspan(1)); }, engine::kErrorTagName,
       "Its index lacks the tag CHXFILENO"},
      {[&] { Patch("ESCROW_CHECKS_FNB.DBF", 28, 0); }, engine::kErrorIndexMissing,
       "It does not know of an index"},
  };
  for (const auto& harm : harms) {
    for (const bool asked : {true, false}) {
      harm.harm();
      EXPECT_EQ(checks.OpenQuietly("FNB", false), harm.code);
      EXPECT_EQ(checks.Lack().text, harm.said);
      boxes_.shown.clear();
      boxes_.answers = {BoxAnswer::kNo, BoxAnswer::kNo};
      EXPECT_EQ(checks.OpenExclusive("FNB"), harm.code);
      EXPECT_EQ(checks.Open("FNB"), harm.code);
      EXPECT_NE(boxes_.shown.front().text.find(harm.said), std::string::npos);
      if (asked) {
        boxes_.answers = {BoxAnswer::kYes};
      } else {
        EXPECT_EQ(checks.Rebuild("FNB"), 0);
      }
      ASSERT_GT(checks.Open("FNB"), 0);
      EXPECT_EQ(LiveInOrder(checks), 20);
      EXPECT_TRUE(checks.SeekNumber("17"));
      checks.Close();
    }
  }
  // Posted twice meanwhile: a rebuild says so, and changes nothing.
  Patch("ESCROW_CHECKS_FNB.DBF", 28, 0);
  ASSERT_GT(checks.OpenAsItIs("FNB", false), 0);
  CheckRecord check;
  check.number = "17";
  ASSERT_EQ(checks.Add(check), 0);
  checks.Close();
  const std::string before = *SystemFileSystem().Read(checks.Path());
  EXPECT_EQ(checks.Rebuild("FNB"), engine::kErrorUniqueKey);
  EXPECT_EQ(*SystemFileSystem().Read(checks.Path()), before);
}

TEST_F(TableFilesTest, ATableWithoutAFieldIsRefused) {
  WireTable wires(home_);
  ASSERT_EQ(wires.Create("FNB"), 0);
  const std::string head = *SystemFileSystem().Read(wires.Path());
  Patch("ESCROW_WIRES_FNB.DBF", head.find("WIREAMOUNT"), 'X');
  EXPECT_EQ(wires.Open("FNB"), engine::kErrorFieldName);
  EXPECT_EQ(boxes_.shown.size(), 1U);
  EXPECT_EQ(boxes_.LastText().rfind("Open database ESCROW_WIRES_FNB failed.\r-211\r\rIt lacks the field "
                                    "WIREAMOUNT.  Update Database Versions",
                                    0),
            0U);
  EXPECT_EQ(wires.OpenQuietly("FNB", true), engine::kErrorFieldName);
  EXPECT_FALSE(wires.IsOpen());
  EXPECT_GT(wires.OpenAsItIs("FNB", true), 0);
}

// The engine blames the index, which no rebuild mends as long as the field is gone.
TEST_F(TableFilesTest, AFieldThatATagNeedsIsNamed) {
  CheckTable checks(home_);
  AddChecks(checks, 2);
  checks.Close();
  const std::string head = *SystemFileSystem().Read(checks.Path());
  Patch("ESCROW_CHECKS_FNB.DBF", head.find("CHXSTMTMO"), 'X');
  ASSERT_EQ(checks.OpenAsItIs("FNB", false), engine::kErrorTagExpression);
  EXPECT_EQ(checks.OpenQuietly("FNB", false), engine::kErrorFieldName);
  boxes_.shown.clear();
  EXPECT_EQ(checks.Open("FNB"), engine::kErrorFieldName);
  ASSERT_EQ(boxes_.shown.size(), 1U);
  EXPECT_NE(boxes_.LastText().find("It lacks the field CHXSTMTMO.  What it held is never made up: restore"),
            std::string::npos);
  EXPECT_EQ(checks.RebuildQuietly("FNB", {}), engine::kErrorFieldName);
}

TEST_F(TableFilesTest, ARebuildKeepsTheTagsOfOtherPrograms) {
  CheckTable checks(home_);
  AddChecks(checks, 3);
  checks.Close();
  std::vector<TagLayout> tags(kCheckLayout.tags.begin() + 1, kCheckLayout.tags.end());
  tags.push_back({"THEIRS", "CHXTINNO", ".NOT. DELETED()"});
  ASSERT_EQ(data_.RebuildIndex(checks.Path(), tags), 0);
  EXPECT_EQ(checks.Rebuild("FNB"), 0);
  ASSERT_GT(checks.Open("FNB"), 0);
  EXPECT_TRUE(data_.TagExist(checks.Handle(), "THEIRS"));
  EXPECT_TRUE(checks.SeekNumber("2"));
}

TEST_F(TableFilesTest, NobodyIsAskedToRebuildTheTablesOfTheSuite) {
  UsersTable users(home_);
  ASSERT_EQ(users.Create(), 0);
  ASSERT_EQ(data_.RebuildIndex(users.Path(), kUsersLayout.tags.subspan(1)), 0);
  boxes_.answers = {BoxAnswer::kYes};
  EXPECT_EQ(users.Open(), engine::kErrorTagName);
  ASSERT_EQ(boxes_.shown.size(), 1U);
  EXPECT_NE(boxes_.LastText().find("\"escrowctl --answer Yes table reindex USERS\""), std::string::npos);
  const std::string head = *SystemFileSystem().Read(users.Path());
  Patch("USERS.DBF", head.find("MUSTCHANGE"), 'X');
  EXPECT_EQ(users.Open(), engine::kErrorFieldName);
  EXPECT_NE(boxes_.LastText().find("It lacks the field MUSTCHANGE.  The table is the suite's"),
            std::string::npos);
}

TEST_F(TableFilesTest, NotesKeepTheirTextsThroughARebuild) {
  NotesTable notes(home_);
  ASSERT_EQ(notes.Create(), 0);
  ASSERT_GT(notes.Open(), 0);
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(
        notes.Add({"F" + std::to_string(i), "A", std::string(static_cast<std::size_t>(i) * 100 + 1, 'x')}),
        0);
  }
  ASSERT_TRUE(notes.SeekNote("F3", "A"));
  ASSERT_EQ(notes.Delete(), 0);
  EXPECT_EQ(notes.Rebuild(), 0);
  ASSERT_GT(notes.Open(), 0);
  EXPECT_EQ(notes.RecordCount(), 19);
  EXPECT_EQ(notes.NotesOf("F19").at(0).text.size(), 1901U);
  EXPECT_FALSE(FileThere("ESCROW_NOTES.SAV.FPT"));
}

}  // namespace
}  // namespace tallwick
