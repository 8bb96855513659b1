// Which files count as closed, and that a purge takes them whole or not at all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "maintenance/exclusive_access.h"
#include "maintenance/purge.h"
#include "maintenance/xref_check.h"
#include "tests/maintenance/maintained_office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using testing::FaultyFiles;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Office;
using testing::WatchedProgress;

constexpr Period kThrough{12, 0, 2023};
constexpr Period kBefore{11, 0, 2023};

// A bank reconciled through January 2024. Each file has one check of 10.00; what it was deposited with, and
// how it stands, a test says.
class PurgeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office_.files = &files_;
    ASSERT_TRUE(office_.Open());
  }

  void AddCheck(const std::string& file, const std::string& status, Period accounting = kBefore,
                const std::string& bank_code = "FNB") {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open(bank_code));
    CheckRecord check;
    check.number = std::to_string(++number_);
    check.file_number = file;
    check.amount = Currency::FromCents(1000);
    check.status = status;
    check.accounting = accounting;
    if (status == "C") check.statement = accounting;
    ASSERT_EQ(bank.checks.Add(check), 0);
    ASSERT_EQ(office_.session->Company().xrefs.Add(CheckXref(file, bank_code, check.number)), 0);
  }
  // A cleared ticket with 10.00 for each of the files.
  void AddTicket(const std::vector<std::string>& files, const std::string& status = "C") {
    BankTables bank(office_.session->Home());
    ASSERT_TRUE(bank.Open("FNB"));
    DepositRecord deposit;
    deposit.dated = "20231101";
    deposit.sequence = std::to_string(++sequence_);
    deposit.accounting = kBefore;
    for (std::size_t i = 0; i < files.size(); ++i) {
      const int item = static_cast<int>(i) + 1;
      deposit.items[i] = {std::to_string(item),      files[i], "BUYER",
                          Currency::FromCents(1000), kBefore,  status};
      ASSERT_EQ(office_.session->Company().xrefs.Add(
                    DepositItemXref(files[i], "FNB", deposit.dated, deposit.sequence, item)),
                0);
      ASSERT_EQ(bank.deposit_xrefs.Add({files[i], deposit.dated, deposit.sequence, std::to_string(item)}), 0);
    }
    ASSERT_EQ(bank.deposits.Add(deposit), 0);
  }
  std::vector<std::string> Closed(const Period& through = kThrough) {
    std::vector<std::string> numbers;
    search_ = FindClosedFiles(*office_.session, through, progress_);
    EXPECT_TRUE(search_.whole);
    for (const ClosedFile& file : search_.files) numbers.push_back(file.number);
    return numbers;
  }

  FaultyFiles files_;
  Office office_;
  WatchedProgress progress_;
  PurgeSearch search_;
  int number_ = 100;
  int sequence_ = 0;
};

TEST_F(PurgeTest, AFileIsClosedWhenNothingOfItIsOpen) {
  AddTicket({"A-CLOSED"});
  AddCheck("A-CLOSED", "C");
  AddTicket({"B-OUTSTANDING"});
  AddCheck("B-OUTSTANDING", "O");
  AddTicket({"C-FUNDS", "C-FUNDS"});
  AddCheck("C-FUNDS", "C");
  AddTicket({"D-DEPOSIT"}, "O");
  AddCheck("D-DEPOSIT", "C");
  AddTicket({"E-LATER"});
  AddCheck("E-LATER", "C", {1, 0, 2024});
  AddTicket({"F-UNRECONCILED"});
  AddCheck("F-UNRECONCILED", "C", {2, 0, 2024});
  AddCheck("G-VOIDED", "V");
  AddTicket({"H-STOPPED"});
  AddCheck("H-STOPPED", "S");
  AddCheck("VOID", "V");
  // A ticket keeps its files together: one that is open keeps the other, and that one a third.
  AddTicket({"I-CHAIN", "J-CHAIN"});
  AddTicket({"J-CHAIN", "K-CHAIN"});
  for (const char* file : {"I-CHAIN", "J-CHAIN", "J-CHAIN"}) AddCheck(file, "C");
  EXPECT_THAT(Closed(), ElementsAre("A-CLOSED", "G-VOIDED"));
  EXPECT_THAT(Closed({1, 31, 2024}), ElementsAre("A-CLOSED", "E-LATER", "G-VOIDED"));
  EXPECT_THAT(Closed({12, 0, 2030}), ElementsAre("A-CLOSED", "E-LATER", "G-VOIDED"));
  EXPECT_THAT(Closed({10, 0, 2023}), IsEmpty());
}

// What would leave a bank's ledgers short of its book balance stays, and what only the records tell counts.
TEST_F(PurgeTest, AFileIsClosedInEachBankAndByItsRecords) {
  ASSERT_TRUE(office_.AddBank("SND", "Second Savings"));
  AddTicket({"A-CLOSED"});
  AddCheck("A-CLOSED", "C");
  AddTicket({"B-ACROSS"});
  AddCheck("B-ACROSS", "C", kBefore, "SND");
  AddTicket({"C-BESIDE", ""});
  AddCheck("C-BESIDE", "C");
  AddCheck("D-HIDDEN", "O");
  std::vector<TagLayout> tags(kCheckLayout.tags.begin(), kCheckLayout.tags.end());
  for (TagLayout& tag : tags) tag.filter = "CHXSTATUS <> 'O' .AND. .NOT. Deleted ()";
  ASSERT_EQ(office_.session->Data().RebuildIndex(office_.folder.Held("ESCROW_CHECKS_FNB.DBF"), tags), 0);
  EXPECT_THAT(Closed(), ElementsAre("A-CLOSED"));
}

TEST_F(PurgeTest, SaysThatTheLogIsNotWritten) {
  AddCheck("VOIDED", "V");
  ASSERT_THAT(Closed(), ElementsAre("VOIDED"));
  files_.fails = [](std::string_view, std::string_view path) { return path.ends_with("Purged_Files.log"); };
  ExclusiveAccess access(*office_.session);
  ASSERT_TRUE(access.Take("Purge Files"));
  const PurgeResult result = PurgeFiles(*office_.session, search_.files, kThrough, progress_);
  EXPECT_EQ(result.code, 0);
  EXPECT_FALSE(result.logged);
}

TEST_F(PurgeTest, TakesTheFileWithItsReferencesOrNothing) {
  AddTicket({"A-CLOSED", "B-CLOSED"});
  AddCheck("A-CLOSED", "C");
  AddCheck("B-CLOSED", "C");
  AddCheck("STAYS", "O");
  ASSERT_THAT(Closed(), ElementsAre("A-CLOSED", "B-CLOSED"));
  ExclusiveAccess access(*office_.session);
  ASSERT_TRUE(access.Take("Purge Files"));
  progress_.stop_after = 1;
  EXPECT_EQ(PurgeFiles(*office_.session, search_.files, kThrough, progress_).code, engine::kStopped);
  progress_.stop_after = 0;
  EXPECT_THAT(Closed(), ElementsAre("A-CLOSED", "B-CLOSED"));
  EXPECT_EQ(PurgeFiles(*office_.session, search_.files, kThrough, progress_).code, 0);
  access.Return();
  EXPECT_EQ(office_.session->Company().banks.Find("FNB")->purged, kBefore);
  EXPECT_THAT(office_.ReadFile("Logs\\Purged_Files.log"), HasSubstr("  A-CLOSED (2 items)\r\n"));
  EXPECT_EQ(office_.session->Company().xrefs.LookUpFile("A-CLOSED").checks, 0);
  const XrefCheckResult check = CheckXReferences(*office_.session, {}, progress_);
  EXPECT_TRUE(check.completed);
  EXPECT_THAT(check.findings, IsEmpty());
  EXPECT_EQ(check.examined, 2);  // the check that stays and its reference
}

// A reconciliation may be taken back as long as nothing that it settled is gone.
TEST_F(PurgeTest, NotesTheLastPeriodThatWasReallyPurged) {
  const struct {
    Period of_check;
    Period through;
    Period noted;
  } purges[] = {{{11, 0, 2023}, {10, 0, 2030}, {11, 0, 2023}},
                {{9, 0, 2023}, {9, 0, 2023}, {11, 0, 2023}},  // an earlier one lowers nothing
                {{1, 0, 2024}, {1, 31, 2024}, {1, 0, 2024}}};
  for (const auto& purge : purges) {
    AddCheck("VOIDED", "V", purge.of_check);
    ASSERT_THAT(Closed(purge.through), ElementsAre("VOIDED"));
    ExclusiveAccess access(*office_.session);
    ASSERT_TRUE(access.Take("Purge Files"));
    ASSERT_EQ(PurgeFiles(*office_.session, search_.files, purge.through, progress_).code, 0);
    access.Return();
    EXPECT_EQ(office_.session->Company().banks.Find("FNB")->purged, purge.noted);
  }
}

}  // namespace
}  // namespace tallwick
