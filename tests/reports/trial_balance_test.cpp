// The trial balance: its sums are those of the files' ledgers, whatever was posted; and what each list takes.

#include "reports/trial_balance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "reports/ledger_reader.h"
#include "reports/report_rtf.h"
#include "tests/support/office.h"
#include "tests/support/spoil_field.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::Office;

class TrialBalanceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office_.session = std::move(office_.Start().session);
    ASSERT_TRUE(office_.session);
    ASSERT_TRUE(office_.AddBank("FNB", "First") && office_.AddBank("SAV", "Savings"));
  }
  void Check(BankTables& tables, const char* file, std::int64_t cents, const char* status, Period accounting,
             Period statement = {}) {
    CheckRecord check;
    check.number = std::to_string(++number_);
    check.file_number = file;
    check.dated = {accounting.year, accounting.month, 10};
    check.amount = Currency::FromCents(cents);
    check.status = status;
    check.accounting = accounting;
    check.statement = statement;
    ASSERT_EQ(tables.checks.Add(check), 0);
  }
  void Deposit(BankTables& tables, const char* dated, Period accounting,
               const std::vector<std::pair<std::string, std::int64_t>>& items) {
    DepositRecord deposit;
    deposit.dated = dated;
    deposit.sequence = std::to_string(++slips_ % 99 + 1);
    deposit.accounting = accounting;
    for (std::size_t i = 0; i < items.size(); ++i) {
      deposit.items[i] = {
          std::to_string(i + 1), items[i].first, "", Currency::FromCents(items[i].second), {}, "O"};
      ASSERT_EQ(tables.deposit_xrefs.Add({items[i].first, dated, deposit.sequence, std::to_string(i + 1)}),
                0);
    }
    ASSERT_EQ(tables.deposits.Add(deposit), 0);
  }
  std::vector<std::string> Listed(const TrialTerms& terms) {
    std::vector<std::string> listed;
    for (const TrialFile& file : ReadTrialBalance(*office_.session, terms, {}).files)
      listed.push_back(ShownFileNumber(file.file_number) + " " + file.Balance().ToText() +
                       (file.bank_code.empty() ? "" : " in " + file.bank_name));
    return listed;
  }

  Office office_;
  int number_ = 0;
  int slips_ = 0;
};

TEST_F(TrialBalanceTest, ListsWhatFilesHoldAsOfADay) {
  {
    BankTables tables(office_.session->Home());
    ASSERT_TRUE(tables.Open("FNB"));
    Deposit(tables, "20230605", {6, 0, 2023}, {{"24-0001", 100'00}, {"24-0002", 50'00}, {"24-0003", 10'00}});
    Check(tables, "24-0001", 99'99, "O", {3, 0, 2024});
    Check(tables, "24-0002", 60'00, "C", {3, 0, 2024});
    Check(tables, "24-0002", 5'00, "V", {2, 0, 2024}, {3, 0, 2024});
    Check(tables, "", 1'00, "O", {2, 0, 2024});
    Check(tables, "24-0005", 7'00, "O", {3, 0, 2024});
    ASSERT_TRUE(tables.Open("SAV"));
    Deposit(tables, "20240301", {3, 0, 2024}, {{"24-0004", 1'00}, {"24-0002", 10'00}});
    Check(tables, "24-0004", 1'00, "H", {3, 0, 2024});
    Check(tables, "24-0005", 3'00, "O", {3, 0, 2024});
  }
  EXPECT_THAT(Listed({}), ElementsAre("(no file) -1.00", "24-0001 0.01", "24-0002 0.00", "24-0003 10.00",
                                      "24-0004 0.00", "24-0005 -10.00"));
  // The check voided in March was still out at the end of February.
  EXPECT_THAT(Listed({"", {2024, 2, 29}, TrialKind::kAll}),
              ElementsAre("(no file) -1.00", "24-0001 100.00", "24-0002 45.00", "24-0003 10.00"));
  // What a file holds in another bank covers nothing here.
  const auto overdrawn = ElementsAre("(no file) -1.00 in First", "24-0002 -10.00 in First",
                                     "24-0005 -7.00 in First", "24-0005 -3.00 in Savings");
  EXPECT_THAT(Listed({"", {}, TrialKind::kOverdrawn}), overdrawn);
  EXPECT_THAT(Listed({"", {}, TrialKind::kOpen}),
              ElementsAre("(no file) -1.00", "24-0001 0.01", "24-0003 10.00", "24-0005 -10.00"));
  EXPECT_THAT(Listed({"", {2024, 3, 15}, TrialKind::kDormant}), ElementsAre("24-0003 10.00"));
  EXPECT_THAT(Listed({"", {2024, 3, 15}, TrialKind::kDormant, 284}), ElementsAre());

  const TrialBalance all = ReadTrialBalance(*office_.session, {}, {});
  EXPECT_EQ(all.Balance().ToText(), "-0.99");
  EXPECT_EQ(ReadTrialBalance(*office_.session, {"fnb", {}, TrialKind::kOverdrawn}, {}).files.size(), 3U);
  EXPECT_EQ(all.files[2].last_activity, (Date{2024, 3, 10}));
  EXPECT_THAT(all.banks, ElementsAre("FNB", "SAV"));
  EXPECT_THAT(ReadTrialBalance(*office_.session, {"XYZ", {}, TrialKind::kAll}, {}).message,
              HasSubstr("no bank"));
  const TrialBalance stopped = ReadTrialBalance(
      *office_.session, {}, [](std::string_view, std::int64_t, std::int64_t) { return false; });
  EXPECT_EQ(stopped.end, PassEnd::kStopped);
  EXPECT_TRUE(stopped.files.empty());
}

TEST_F(TrialBalanceTest, AnAmountThatIsNoNumberGivesNoFigures) {
  BankTables tables(office_.session->Home());
  ASSERT_TRUE(tables.Open("FNB"));
  Check(tables, "24-1", 100, "O", {3, 1, 2024});
  Deposit(tables, "20240301", {3, 1, 2024}, {{"24-2", 500}, {"24-1", 700}});
  WireRecord wire;
  wire.number = "W1";
  wire.file_number = "24-1";
  ASSERT_EQ(tables.wires.Add(wire), 0);
  VoucherRecord voucher;
  voucher.number = "1";
  voucher.file_number = "24-1";
  ASSERT_EQ(tables.vouchers.Add(voucher), 0);
  const struct {
    TableBase& table;
    const char *field, *text;
  } kCases[] = {{tables.checks, "CHXAMOUNT", "12a4567890.0"},
                {tables.deposits, "DEPOAMT2", "1,234.56"},
                {tables.wires, "WIREAMOUNT", "-"},
                {tables.vouchers, "VCHRAMOUNT", "************"}};
  for (const auto& one : kCases) {
    testing::SpoilField(one.table, 1, one.field, one.text);
    const std::string text = "Record 1 of " + one.table.Name() + " holds an amount that is no number";
    office_.TakeTexts();
    if (&one.table != &tables.vouchers) {
      EXPECT_EQ(ReadTrialBalance(*office_.session, {}, {}).end, PassEnd::kUnreadable) << one.field;
      EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr(text)));
    }
    const LedgerReading reading = ReadFileLedger(*office_.session, "24-1");
    EXPECT_FALSE(reading.complete);
    EXPECT_THAT(reading.message, HasSubstr(text));
    testing::SpoilField(one.table, 1, one.field, "");
  }
  EXPECT_EQ(ReadFileLedger(*office_.session, "24-1").ledger.FileBalance(), Currency()) << "blank is zero";
}

// A period of a bank kept by the month holds all of its days.
TEST_F(TrialBalanceTest, SaysHowFarMonthsAreCounted) {
  ASSERT_TRUE(office_.AddBank("DAY", "By the Day", [](BankRecord& bank) { bank.accounting.day = 15; }));
  BankTables tables(office_.session->Home());
  ASSERT_TRUE(tables.Open("FNB"));
  Deposit(tables, "20240324", {3, 0, 2024}, {{"24-0001", 100'00}});
  struct Case {
    const char* bank;
    Date as_of;
    const char* note;
  };
  const char* march = "Bank accounts whose periods are months are counted through March 2024.";
  for (const Case& one : {Case{"", {2024, 3, 1}, march}, Case{"FNB", {2024, 3, 1}, march},
                          Case{"", {2024, 3, 31}, ""}, Case{"", {}, ""}, Case{"DAY", {2024, 3, 1}, ""}}) {
    const TrialTerms terms{one.bank, one.as_of, TrialKind::kAll};
    const TrialBalance balance = ReadTrialBalance(*office_.session, terms, {});
    EXPECT_EQ(balance.month_note, one.note) << one.bank;
    const std::string rtf = MakeRtf(MakeTrialReport(balance, terms, {}));
    EXPECT_EQ(rtf.find(march) != std::string::npos, *one.note != 0);
  }
  EXPECT_THAT(Listed({"FNB", {2024, 3, 1}, TrialKind::kAll}), ElementsAre("24-0001 100.00"));
}

TEST_F(TrialBalanceTest, AgreesWithTheLedgerOfEveryFile) {
  std::mt19937 random(7);
  const char* statuses[] = {"O", "H", "C", "V", "S"};
  const char* files[] = {"24-0001", "24-0002", "a-3", "24-00041"};
  for (const char* bank : {"FNB", "SAV"}) {
    BankTables tables(office_.session->Home());
    ASSERT_TRUE(tables.Open(bank));
    for (int i = 0; i < 60; ++i) {
      Check(tables, files[random() % 4], static_cast<std::int64_t>(random() % 1'000'000),
            statuses[random() % 5], {3, 0, 2024});
      WireRecord wire;
      wire.number = "W" + std::to_string(i);
      wire.file_number = files[random() % 4];
      wire.amount = Currency::FromCents(static_cast<std::int64_t>(random() % 1000));
      wire.status = "O";
      ASSERT_EQ(tables.wires.Add(wire), 0);
      Deposit(
          tables, "20240301", {3, 0, 2024},
          {{files[random() % 4], static_cast<std::int64_t>(random() % 5'000'000)}, {files[random() % 4], 5}});
    }
  }
  const TrialBalance balance = ReadTrialBalance(*office_.session, {}, {});
  ASSERT_EQ(balance.files.size(), 4U);
  Currency sum;
  for (const FileStanding& file : balance.files) {
    const LedgerReading reading = ReadFileLedger(*office_.session, file.file_number);
    EXPECT_EQ(file.Balance(), reading.ledger.FileBalance()) << file.file_number;
    EXPECT_EQ(file.Condition(), reading.ledger.Condition());
    sum += reading.ledger.FileBalance();
  }
  EXPECT_EQ(balance.Balance(), sum);
}

}  // namespace
}  // namespace tallwick
