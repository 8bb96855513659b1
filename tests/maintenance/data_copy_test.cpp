// Copy and restore: what an office gets back, and what faults leave behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "maintenance/copy_manifest.h"
#include "maintenance/data_copy.h"
#include "shell/transactions_switch.h"
#include "tests/maintenance/maintained_office.h"

namespace tallwick {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::MaintainedOffice;
using ::testing::Not;
using testing::WatchedProgress;

constexpr BoxAnswer kOk = BoxAnswer::kOk;
constexpr BoxAnswer kCancel = BoxAnswer::kCancel;
constexpr BoxAnswer kYes = BoxAnswer::kYes;
constexpr BoxAnswer kNo = BoxAnswer::kNo;

class DataCopyTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(office_.started); }

  CopyOutcome Copy(std::deque<BoxAnswer> answers = {kOk}) {
    office_.boxes.answers = std::move(answers);
    return CopyDatabases(*office_.session, progress_);
  }
  // Restores; settings that exist are kept.
  CopyOutcome Restore(std::deque<BoxAnswer> answers = {kOk, kNo, kNo}) {
    office_.boxes.shown.clear();
    office_.boxes.answers = std::move(answers);
    return RestoreDatabases(*office_.session, progress_);
  }
  bool Copied(const std::string& name) { return office_.Has("DBFCOPYS\\" + name); }
  void RemoveFromCopy(const std::string& name) {
    SystemFileSystem().Remove(office_.folder.Held("DBFCOPYS\\" + name));
  }
  void DropManifest() { RemoveFromCopy("Copy_Files.txt"); }

  MaintainedOffice office_;
  WatchedProgress progress_;
};

TEST_F(DataCopyTest, BringsBackWhatWasCopied) {
  const std::string before = office_.Picture();
  ASSERT_TRUE(Copy().completed);
  EXPECT_THAT(office_.boxes.shown.front().text, HasSubstr("Last copy was made N/A\rPrepared by: N/A"));
  EXPECT_EQ(office_.boxes.shown.back().text, "Copy Databases Completed...");
  EXPECT_EQ(office_.ReadFile("DBFCOPYS\\Copy_Date.txt"), "Friday, March 15, 2024\r\n09:30 AM\r\njdoe\r\n");
  // The shared tables are copied in their own step, once; nothing but escrow data is.
  EXPECT_EQ(std::count(progress_.shown.begin(), progress_.shown.end(),
                       "Copying Escrow_Banks.dbf to " + office_.folder.Platform("DBFCOPYS/") + "."),
            1);
  EXPECT_FALSE(std::any_of(progress_.shown.begin(), progress_.shown.end(),
                           [](const std::string& line) { return line.starts_with("Copying ESCROW_BANKS"); }));
  for (const char* name : {"ESCROW_CHECKS_FNB.CDX", "ESCROW_NOTES.FPT", "MICR_Print_FNB.dat"})
    EXPECT_TRUE(Copied(name)) << name;
  EXPECT_FALSE(Copied("letter.txt"));

  ASSERT_TRUE(office_.AddCheck("900", "24-0900"));
  office_.session->Company().notes.Save({"24-0001", "GEN", std::string(3000, 'x')});
  ASSERT_TRUE(office_.AddBank("NEW", "A New Bank"));
  office_.WriteFile("Inactive Banks.dat", "FNB");
  ASSERT_NE(office_.Picture(), before);

  EXPECT_TRUE(Restore({kOk, kYes, kNo}).completed);
  EXPECT_EQ(office_.Picture(), before);
  EXPECT_EQ(office_.ReadFile("Inactive Banks.dat"), "OLD");
  const std::vector<Box>& shown = office_.boxes.shown;
  ASSERT_EQ(shown.size(), 4U);
  EXPECT_THAT(shown[0].text,
              HasSubstr("\r\rBackup was made Friday, March 15, 2024 09:30 AM\rPrepared by: jdoe"));
  EXPECT_EQ(shown[1].text, "\"Inactive Banks.dat\" exists - Overwrite?");
  EXPECT_EQ(shown[2].title, "Restore Escrow Files");
  EXPECT_EQ(shown[2].preset, kNo);
  EXPECT_EQ(
      shown[2].text,
      "\"MICR_Print_FNB.dat\" exists - Overwrite?\r\rNote: If restoring files from a remote reconciliation "
      "then the usual response is 'No'.");
  EXPECT_EQ(shown[3].title + "|" + shown[3].text,
            "Restore Databases Completed...|Escrow databases have been restored.");
  EXPECT_TRUE(office_.AddCheck("901", "24-0901"));
}

TEST_F(DataCopyTest, AsksBeforeAnythingAndCancelTouchesNothing) {
  EXPECT_EQ(Copy({kCancel}).message, "Copy Databases Aborted...");
  EXPECT_FALSE(office_.Has("DBFCOPYS\\Copy_Files.txt"));
  EXPECT_THAT(Restore().message, HasSubstr("Aborted"));
  EXPECT_THAT(office_.boxes.shown.front().text, HasSubstr("There is no copy"));
  ASSERT_TRUE(Copy().completed);
  ASSERT_TRUE(office_.AddCheck("900", "24-0900"));
  RemoveFromCopy("Copy_Date.txt");
  const std::string now = office_.Picture();
  EXPECT_FALSE(Restore({kCancel}).completed);
  EXPECT_THAT(office_.boxes.shown.front().text, HasSubstr("Backup was made N/A\rPrepared by: N/A"));
  EXPECT_EQ(office_.Picture(), now);
}

TEST_F(DataCopyTest, AStampShowsWhatItHoldsOfAStamp) {
  struct Case {
    const char* stamp;
    const char* shown;
  };
  const Case cases[] = {
      {"Friday, March 15, 2024\r\n09:30 AM\r\njdoe\r\n",
       "Friday, March 15, 2024 09:30 AM\rPrepared by: jdoe"},
      {"Friday, March 15, 2024\n12:05 pm\n", "Friday, March 15, 2024 12:05 pm\rPrepared by: N/A"},
      {"Friday, March 15, 2024\r\n09:75 AM\r\n\x01\x02", "Friday, March 15, 2024\rPrepared by: N/A"},
      {"Friday, March 35, 2024\r\n09:30 AM\r\njdoe\r\n", "N/A\rPrepared by: N/A"},
      {"garbage, not a stamp\r\nat all\r\nnobody\r\n", "N/A\rPrepared by: N/A"},
      {"\x7f"
       "ELF\x02\x01",
       "N/A\rPrepared by: N/A"},
      {"", "N/A\rPrepared by: N/A"}};
  SystemFileSystem().CreateFolder(office_.folder.Held("DBFCOPYS\\"));
  for (const Case& one : cases) {
    office_.WriteFile("DBFCOPYS\\Copy_Date.txt", one.stamp);
    office_.boxes.shown.clear();
    Copy({kCancel});
    EXPECT_THAT(office_.boxes.shown.front().text,
                ::testing::EndsWith("Last copy was made " + std::string(one.shown)));
  }
}

TEST_F(DataCopyTest, TheTransactionsSwitchStaysWithItsOffice) {
  Session& session = *office_.session;
  ASSERT_TRUE(SetTransactionsOpen(session, false));
  office_.WriteFile("Transactions.dat", "F");  // as an earlier build kept it
  ASSERT_TRUE(Copy().completed);
  EXPECT_FALSE(Copied(std::string(kSwitchFile)));
  EXPECT_FALSE(Copied("Transactions.dat"));
  // An earlier build's copy, brought to an office that never locked.
  office_.WriteFile("DBFCOPYS\\Transactions.dat", "F");
  DropManifest();
  for (const std::string_view file : {kSwitchFile, kFormerSwitchFile})
    SystemFileSystem().Remove(office_.folder.Held(file));
  EXPECT_TRUE(Restore({kOk, kYes, kNo, kNo}).completed);
  EXPECT_TRUE(TransactionsOpen(session));
}

TEST_F(DataCopyTest, NobodyPostsWhileTheFilesAreCopied) {
  StartUpOutcome clerk = office_.Another();
  ASSERT_NE(clerk.session, nullptr);
  int refused = 0;
  progress_.at_show = [&](std::string_view what) {
    const bool posted = office_.AddCheck("90" + std::to_string(refused), "24-0900", clerk.session.get());
    if (what.starts_with("Copying ")) {
      EXPECT_FALSE(posted) << what;
      ++refused;
    }
  };
  ASSERT_TRUE(Copy().completed);
  EXPECT_GT(refused, 5);
  progress_.at_show = {};
  EXPECT_TRUE(office_.AddCheck("950", "24-0950", clerk.session.get()));
  clerk.session.reset();
  EXPECT_TRUE(Restore().completed);
}

struct CopyFault {
  const char* what;
  const char* change;
  const char* path;  // a part of it
  std::deque<BoxAnswer> answers;
  const char* said;  // among the boxes
  bool old_copy_stays;
};

TEST_F(DataCopyTest, FaultsOfACopyAreToldAndChangeNothingElse) {
  const std::vector<CopyFault> faults = {
      {"the last copy cannot be removed", "remove folder", "DBFCOPYS~", {kOk}, "could not be removed", true},
      {"nor stepped aside", "rename", "DBFCOPYS~", {kOk}, "could not be removed", true},
      {"no folder on a read-only disk", "create folder", "DBFCOPYS", {kOk}, "neither full nor", false},
      {"no room for the list", "write", "Copy_Files.txt", {kOk}, "neither full nor", false},
      {"a full disk, stopped",
       "copy",
       "ESCROW_WIRES",
       {kOk, kCancel},
       "ESCROW_WIRES_FNB.CDX was not copied.",
       false},
      {"a full disk, gone on", "copy", "ESCROW_WIRES", {kOk, kOk, kOk}, "may NOT have been copied", false},
      {"no stamp", "write", "Copy_Date.txt", {kOk}, "may NOT have been copied", false},
      {"no control file",
       "write",
       "Escrow_Control",
       {kOk},
       "SetupApplicationControlFile returned False...",
       false}};
  const std::string before = office_.Picture();
  for (const CopyFault& fault : faults) {
    office_.faulty.fails = {};
    ASSERT_TRUE(Copy().completed);
    office_.WriteFile("DBFCOPYS\\mark.txt", "the old copy");
    office_.faulty.fails = [&fault](std::string_view change, std::string_view path) {
      return change == fault.change && path.find(fault.path) != std::string_view::npos;
    };
    office_.boxes.shown.clear();
    EXPECT_FALSE(Copy(fault.answers).completed) << fault.what;
    EXPECT_THAT(office_.boxes.Texts(), Contains(HasSubstr(fault.said))) << fault.what;
    EXPECT_EQ(Copied("mark.txt"), fault.old_copy_stays) << fault.what;
    EXPECT_EQ(office_.Picture(), before) << fault.what;
  }
}

// A table may take minutes: whoever wants to stop is not kept waiting for its end.
TEST_F(DataCopyTest, EscStopsInTheMiddleOfAFile) {
  office_.WriteFile("Big.dat", std::string(std::size_t{3} << 20, 'x'));  // the first to be copied
  for (int at = 1; at <= 8; ++at) {
    office_.boxes.shown.clear();
    progress_.asked = 0;
    progress_.stop_after = at;
    EXPECT_EQ(Copy().message, "Copy Databases Aborted...");
    EXPECT_EQ(progress_.asked, at);
    EXPECT_EQ(office_.boxes.shown.size(), 2U) << "no file is said to have failed";
    EXPECT_THAT(office_.boxes.LastText(), HasSubstr("marked as incomplete; the copy before them is gone"));
    EXPECT_FALSE(Copied("Big.dat"));
  }
  progress_.stop_after = 0;
  EXPECT_TRUE(Copy().completed);
}

TEST_F(DataCopyTest, ACopyThatDiffersFromTheDataIsNotCompleted) {
  office_.faulty.copied = [](std::string_view path) {
    if (path.ends_with("ESCROW_XRFS.DBF")) SystemFileSystem().Append(path, "x");
  };
  EXPECT_FALSE(Copy({kOk, kOk}).completed);
  EXPECT_THAT(office_.boxes.Texts(), Contains("ESCROW_XRFS.DBF was not copied."));
  office_.faulty.copied = {};
  EXPECT_FALSE(Restore({kOk, kNo}).completed);
  EXPECT_THAT(office_.boxes.shown[1].text, HasSubstr("the copy was not completed"));
}

TEST_F(DataCopyTest, ACopyThatHasChangedIsRestoredOnlyWhenInsisted) {
  ASSERT_TRUE(Copy().completed);
  ASSERT_TRUE(office_.AddCheck("900", "24-0900"));
  office_.WriteFile("DBFCOPYS\\MICR_Print_FNB.dat", "NextCheckNumber=1");
  office_.WriteFile("DBFCOPYS\\Stranger.dat", "?");
  RemoveFromCopy("ESCROW_WIRES_FNB.CDX");
  const std::string now = office_.Picture();
  EXPECT_FALSE(Restore({kOk, kNo}).completed);
  const std::string& question = office_.boxes.shown[1].text;
  for (const char* problem : {"MICR_Print_FNB.dat has changed", "ESCROW_WIRES_FNB.CDX is missing",
                              "Stranger.dat did not belong to it"})
    EXPECT_THAT(question, HasSubstr(problem));
  EXPECT_EQ(office_.Picture(), now);
  EXPECT_TRUE(Restore({kOk, kYes, kNo, kNo}).completed);
  EXPECT_EQ(office_.Picture().find("24-0900"), std::string::npos);
  EXPECT_THAT(office_.boxes.LastText(), HasSubstr("not as it was made.  Have \"escrowctl verify\""));
}

// Opening the table corrects its count, after which nothing shows that records are missing.
TEST_F(DataCopyTest, ACutTableInACopyIsNamed) {
  ASSERT_TRUE(Copy().completed);
  const std::string xrefs = office_.ReadFile("DBFCOPYS\\ESCROW_XRFS.DBF");
  office_.WriteFile("DBFCOPYS\\ESCROW_XRFS.DBF", xrefs.substr(0, xrefs.size() - 40));
  EXPECT_TRUE(Restore({kOk, kYes, kNo, kNo, kOk}).completed);
  EXPECT_THAT(office_.boxes.LastText(), HasSubstr("number of records was not right in Escrow_Xrfs.dbf"));
}

TEST_F(DataCopyTest, TablesOfABankThatTheCopyDoesNotHaveAreNamed) {
  ASSERT_TRUE(Copy().completed);
  ASSERT_TRUE(office_.AddBank("NEW", "A New Bank"));
  {
    CheckTable checks(office_.session->Home());
    CheckRecord check;
    check.number = "100";
    ASSERT_GT(checks.Open("NEW"), 0);
    ASSERT_EQ(checks.Add(check), 0);
  }
  EXPECT_TRUE(Restore().completed);
  EXPECT_THAT(office_.boxes.LastText(),
              HasSubstr("of banks that the copy does not have: ESCROW_CHECKS_NEW (1 record)."));
}

// A bank table that does not open knows of no bank, and every table would look like a stranger's.
TEST_F(DataCopyTest, NoTableIsCalledAStrangersWhereTheBanksAreNotKnown) {
  ASSERT_TRUE(Copy().completed);
  const std::string banks = office_.ReadFile("DBFCOPYS\\ESCROW_BANKS.DBF");
  office_.WriteFile("DBFCOPYS\\ESCROW_BANKS.DBF", banks.substr(0, banks.size() - 200));
  for (const BoxAnswer repair : {kCancel, kOk}) {
    Restore({kOk, kYes, kNo, kNo, repair});
    for (const std::string& text : office_.boxes.Texts())
      EXPECT_THAT(text, Not(HasSubstr("These tables stay")));
  }
}

// Its line in the list of files would not be one line.
TEST_F(DataCopyTest, AFileThatNoListCanNameIsNotCopied) {
  office_.WriteFile("two\nlines.dat", "?");
  EXPECT_FALSE(Copy({kOk, kOk}).completed);
  EXPECT_THAT(office_.boxes.Texts(), Contains("two\nlines.dat was not copied."));
  EXPECT_TRUE(ParseManifest(office_.ReadFile("DBFCOPYS\\Copy_Files.txt")));
}

TEST_F(DataCopyTest, NoIndexOrMemoOfAnotherGenerationStays) {
  ASSERT_TRUE(Copy().completed);
  const std::string before = office_.Picture();
  DropManifest();  // as an earlier program left a copy
  RemoveFromCopy("ESCROW_CHECKS_FNB.CDX");
  for (int i = 0; i < 30; ++i) ASSERT_TRUE(office_.AddCheck(std::to_string(900 + i), "24-0900"));
  EXPECT_FALSE(Restore().completed);  // only when it is wanted
  EXPECT_THAT(office_.boxes.shown[1].text, HasSubstr("can not be proven"));
  EXPECT_TRUE(Restore({kOk, kYes, kNo, kNo}).completed);
  EXPECT_EQ(office_.Picture(), before);  // verified with its tags
  // A table that came without its memos is left as it is, when the user goes on.
  RemoveFromCopy("ESCROW_NOTES.FPT");
  office_.session->Company().notes.Save({"24-0001", "GEN", "Later"});
  const CopyOutcome outcome = Restore({kOk, kYes, kNo, kNo, kOk});
  EXPECT_THAT(outcome.failed, ElementsAre("Escrow_Notes.dbf"));
  EXPECT_THAT(office_.boxes.LastText(), HasSubstr("may NOT have been restored"));
  EXPECT_THAT(office_.Picture(), HasSubstr("Later"));
}

TEST_F(DataCopyTest, ARestoreThatEndsEarlyLeavesTheOldData) {
  ASSERT_TRUE(Copy().completed);
  ASSERT_TRUE(office_.AddCheck("900", "24-0900"));
  const std::string now = office_.Picture();
  const auto expect_untouched = [&](const std::string& what) {
    EXPECT_THAT(office_.boxes.LastText(), HasSubstr("Nothing has been changed")) << what;
    EXPECT_EQ(office_.Picture(), now) << what;
    EXPECT_THAT(SystemFileSystem().List(office_.folder.Held(), "*~"), ElementsAre()) << what;
  };
  int files = 0;
  office_.faulty.fails = [&files](std::string_view change, std::string_view path) {
    return change == "copy" && path.ends_with('~') && ++files == 8;
  };
  EXPECT_FALSE(Restore({kOk, kNo, kNo, kCancel}).completed);
  expect_untouched("a full disk");
  office_.faulty.fails = {};
  for (int at : {5, 23, 30}) {
    progress_.asked = 0;
    progress_.stop_after = at;
    EXPECT_FALSE(Restore().completed);
    if (office_.boxes.LastText() != "Restore Databases Aborted...") expect_untouched("Esc");
    EXPECT_EQ(office_.Picture(), now);
  }
  progress_.stop_after = 0;
  // Another workstation is at work.
  StartUpOutcome clerk = office_.Another();
  EXPECT_FALSE(Restore().completed);
  EXPECT_THAT(office_.boxes.Texts(), Contains("Could not get exclusive file access.  Try again later..."));
  EXPECT_EQ(office_.Picture(), now);
  clerk.session.reset();
  // Nobody gets in between.
  progress_.at_show = [&](std::string_view what) {
    if (!what.starts_with("Restoring ")) return;
    EXPECT_EQ(office_.Another().result, StartUpResult::kExclusive);
    EXPECT_EQ(office_.other_boxes.LastText(),
              "Escrow Accounting is in Exclusive Access Mode - Try again later...");
  };
  EXPECT_TRUE(Restore().completed);
}

TEST_F(DataCopyTest, ASelectedBankThatTheRestoreTakesAwayIsClosed) {
  ASSERT_TRUE(Copy().completed);
  ASSERT_TRUE(office_.AddBank("NEW", "A New Bank"));
  office_.session->SetBank("NEW", "A New Bank");
  EXPECT_TRUE(Restore().completed);
  EXPECT_EQ(office_.session->BankCode(), "");
}

TEST(CopyManifestTest, ReadsOnlyWholeTexts) {
  const CopyManifest manifest{true,
                              {{"A B.dat", 12, std::string(64, 'A')}, {"C.DBF", 0, std::string(64, '0')}}};
  const std::string text = ManifestText(manifest);
  const std::optional<CopyManifest> read = ParseManifest(text);
  ASSERT_TRUE(read);
  EXPECT_TRUE(read->complete);
  EXPECT_EQ(read->files, manifest.files);
  for (std::size_t cut = 0; cut < text.size(); ++cut) {
    const std::optional<CopyManifest> part = ParseManifest(text.substr(0, cut));
    EXPECT_TRUE(!part || part->files.size() < 2) << cut;
  }
}

}  // namespace
}  // namespace tallwick
