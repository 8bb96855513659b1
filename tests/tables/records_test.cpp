// Records written and read whole, how numbers stand in their fields, and the look-ups of each table.

#include "tables/agent_table.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"
#include "tables/notes_table.h"
#include "tables/status_text.h"
#include "tables/users_table.h"
#include "tables/xref_table.h"
#include "tests/tables/company_fixture.h"

namespace tallwick {
namespace {

class RecordsTest : public testing::CompanyTest {};

CheckRecord SampleCheck(std::string number, std::string file = "2024-001") {
  CheckRecord check;
  check.number = std::move(number);
  check.dated = {2024, 3, 15};
  check.payee = "Société d’Égout";
  check.address1 = "1 Main";
  check.address2 = "Suite 2";
  check.city_state = "Dover, DE";
  check.amount = Currency::FromCents(123456);
  check.accounting = {3, 15, 2024};
  check.statement = {4, 1, 2024};
  check.status = "O";
  check.control = "AB";
  check.voucher_number = "17";
  check.file_number = std::move(file);
  check.tin = "12-3456789";
  check.reason = "none";
  return check;
}

// The file format, field by field and tag by tag, as other programs on the share rely on it.
TEST_F(RecordsTest, LayoutsAreTheAgreedOnes) {
  BankTable banks(home_);
  XrefTable xrefs(home_);
  NotesTable notes(home_);
  AgentTable agent(home_);
  BankTables tables(home_);
  std::vector<TableBase*> all = {&banks, &xrefs, &notes, &agent};
  for (TableBase* table : tables.All()) all.push_back(table);
  std::string listing;
  for (TableBase* table : all) {
    ASSERT_EQ(table->Create("FNB"), 0);
    DataHandle data = table->Open("FNB");
    listing += table->Name() + "\n";
    for (const FieldProperties& field : data_.FieldList(data)) {
      listing += "  " + field.name + " " + field.type + " " + std::to_string(field.width) + " " +
                 std::to_string(field.decimals) + "\n";
    }
    for (const std::string& name : data_.TagNames(data)) {
      TagProperties tag = *data_.GetTagProperties(data, name);
      listing += "  tag " + tag.name + " | " + tag.expression + " | " + tag.filter + " |" +
                 (tag.unique == engine::kUnique ? " unique\n" : "\n");
    }
    EXPECT_EQ(table->CheckVersion(), LayoutState::kCurrent) << table->Name();
  }
  EXPECT_EQ(listing, SystemFileSystem().Read(TALLWICK_SOURCE_DIR "/tests/tables/layouts.txt"));
}

TEST_F(RecordsTest, ChecksGoThroughUnharmed) {
  CheckTable checks(home_);
  ASSERT_GT(checks.Open("FNB"), 0);
  EXPECT_EQ(checks.LastNumber(), "");
  ASSERT_EQ(checks.Add(SampleCheck("99")), 0);
  ASSERT_EQ(checks.Add(SampleCheck("1000")), 0);
  EXPECT_EQ(Raw(checks, "CHXNUMBER"), "        1000");
  EXPECT_EQ(Raw(checks, "CHXVCHRNO"), "          17");
  EXPECT_EQ(Raw(checks, "CHXFILENO"), "2024-001      ");
  EXPECT_EQ(checks.LastNumber(), "1000") << "the highest number is the last";
  ASSERT_TRUE(checks.SeekNumber("99"));
  EXPECT_EQ(checks.Read(), SampleCheck("99"));
  EXPECT_FALSE(checks.SeekNumber("9"));

  EXPECT_EQ(checks.Add(SampleCheck("99", "another file"), true), engine::kUnique);
  EXPECT_EQ(checks.RecordCount(), 2);
}

TEST_F(RecordsTest, LeftAlignedNumbersOfOtherProgramsAreFoundAndKept) {
  CheckTable checks(home_);
  ASSERT_GT(checks.Open("FNB"), 0);
  ASSERT_EQ(checks.Add(SampleCheck("501")), 0);
  Plant(checks, "CHXNUMBER", "501");
  ASSERT_TRUE(checks.SeekNumber("501"));
  CheckRecord check = checks.Read();
  check.amount = Currency::FromCents(1);
  ASSERT_EQ(checks.Update(check), 0);
  EXPECT_EQ(Raw(checks, "CHXNUMBER"), "501         ");
  EXPECT_EQ(Raw(checks, "CHXAMOUNT"), "        0.01");
}

TEST_F(RecordsTest, RefusedRecordWritesNothing) {
  CheckTable checks(home_);
  ASSERT_GT(checks.Open("FNB"), 0);
  ASSERT_EQ(checks.Add(SampleCheck("1")), 0);
  CheckRecord wide = SampleCheck("2");
  wide.payee = std::string(61, 'x');
  EXPECT_EQ(checks.Add(wide), engine::kErrorFieldValue);
  EXPECT_EQ(data_.LastFieldProblem().field, "CHXPAYEE");
  EXPECT_EQ(checks.RecordCount(), 1);
  ASSERT_TRUE(checks.SeekNumber("1"));
  CheckRecord large = SampleCheck("1");
  large.payee = "changed";
  large.amount = Currency::FromCents(100'000'000'000);
  EXPECT_EQ(checks.Update(large), engine::kErrorFieldValue);
  EXPECT_EQ(data_.LastFieldProblem().field, "CHXAMOUNT");
  EXPECT_EQ(checks.Read(), SampleCheck("1"));
  CheckTable theirs(other_home_);
  ASSERT_GT(theirs.Open("FNB"), 0);
  ASSERT_TRUE(theirs.SeekNumber("1"));
  EXPECT_EQ(theirs.Lock(true), 0) << "a refused update must leave no lock behind";
}

TEST_F(RecordsTest, UpdateWorksOnWhatIsInTheTableNow) {
  CheckTable mine(home_);
  CheckTable theirs(other_home_);
  ASSERT_GT(mine.Open("FNB"), 0);
  ASSERT_GT(theirs.Open("FNB"), 0);
  ASSERT_EQ(mine.Add(SampleCheck("1")), 0);
  ASSERT_TRUE(theirs.SeekNumber("1"));
  ASSERT_EQ(theirs.Lock(), 0);
  boxes_.answers = {BoxAnswer::kCancel};
  EXPECT_EQ(mine.Update(SampleCheck("1")), engine::kLocked);
  theirs.Unlock();
  ASSERT_EQ(theirs.Delete(), 0);
  EXPECT_EQ(mine.Update(SampleCheck("1")), engine::kNoRecord) << "deleted meanwhile";
}

TEST_F(RecordsTest, DepositUsesOnlyItsItems) {
  DepositTable deposits(home_);
  ASSERT_GT(deposits.Open("FNB"), 0);
  DepositRecord deposit;
  deposit.dated = "20240315";
  deposit.sequence = "1";
  deposit.accounting = {3, 0, 2024};
  deposit.item_count = 3;
  for (int n = 1; n <= 3; ++n) {
    auto i = static_cast<std::size_t>(n - 1);
    deposit.items[i] = {
        std::to_string(n), "F" + std::to_string(n), "Buyer", Currency::FromCents(n), {4, 2, 2024}, "O"};
  }
  deposit.items[14].source = "last";
  ASSERT_EQ(deposits.Add(deposit), 0);
  EXPECT_EQ(Raw(deposits, "DEPOSEQNC"), " 1");
  EXPECT_EQ(Raw(deposits, "DEPOITEM3"), " 3");
  EXPECT_EQ(Raw(deposits, "DEPOSTYR3"), "2024");
  for (std::string_view field : {"DEPOITEM4", "DEPOAMT4", "DEPOSTMO15", "DEPOSTAT10"}) {
    EXPECT_EQ(Raw(deposits, field).find_first_not_of(' '), std::string::npos) << field;
  }
  ASSERT_TRUE(deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(deposits.Read(), deposit);
  EXPECT_EQ(deposits.Add(deposit, true), engine::kUnique);
  EXPECT_FALSE(deposits.SeekDeposit("20240315", "10"));
}

TEST_F(RecordsTest, WiresAndVouchersGoThroughUnharmed) {
  BankTables tables(home_);
  ASSERT_TRUE(tables.Open("FNB"));
  WireRecord wire{"0042",       "F1",         {2024, 1, 2}, "Payee", Currency::FromCents(5),
                  {1, 2, 2024}, {2, 3, 2025}, "O",          "C9",    "s"};
  ASSERT_EQ(tables.wires.Add(wire), 0);
  EXPECT_EQ(Raw(tables.wires, "WIRENUMBER"), "0042        ") << "confirmations stand on the left";
  ASSERT_TRUE(tables.wires.SeekNumber("0042"));
  EXPECT_EQ(tables.wires.Read(), wire);

  VoucherRecord voucher{"7",          "F1", {2024, 1, 2}, "Payee", "Tax", Currency::FromCents(-5),
                        {1, 0, 2024}, "O",  "1001",       "s"};
  ASSERT_EQ(tables.vouchers.Add(voucher), 0);
  EXPECT_EQ(Raw(tables.vouchers, "VCHRCHKNUM"), "        1001");
  ASSERT_TRUE(tables.vouchers.SeekNumber("7"));
  EXPECT_EQ(tables.vouchers.Read(), voucher);

  DepositXrefRecord item{"F1", "20240315", "1", "12"};
  ASSERT_EQ(tables.deposit_xrefs.Add(item), 0);
  EXPECT_TRUE(tables.deposit_xrefs.SeekItem(item));
}

TEST_F(RecordsTest, FileWalkEndsWithItsFile) {
  CheckTable checks(home_);
  ASSERT_GT(checks.Open("FNB"), 0);
  for (auto [number, file] : {std::pair("3", "A1"), {"1", "A1"}, {"2", "A12"}, {"4", "a1"}, {"5", "É1"}}) {
    ASSERT_EQ(checks.Add(SampleCheck(number, file)), 0);
  }
  auto numbers = [&](std::string_view file) {
    std::string found;
    for (bool on = checks.FirstOfFile(file); on; on = checks.NextOfFile(file)) found += checks.Read().number;
    return found;
  };
  EXPECT_EQ(numbers("A1"), "134");
  EXPECT_EQ(numbers("A12"), "2");
  EXPECT_EQ(numbers("é1"), "5");
  EXPECT_EQ(numbers("A"), "");
}

// The first record's file number is changed without its tag: a walk must come to an end all the same.
TEST_F(RecordsTest, FileWalkOfADamagedTableEnds) {
  CheckTable checks(home_);
  ASSERT_GT(checks.Open("FNB"), 0);
  for (const char* number : {"1", "2", "3"}) ASSERT_EQ(checks.Add(SampleCheck(number, "A-77")), 0);
  checks.Close();
  std::string bytes = *SystemFileSystem().Read(checks.Path());
  bytes.replace(bytes.find("A-77"), 4, "B-88");
  ASSERT_TRUE(SystemFileSystem().Write(checks.Path(), bytes));
  ASSERT_GT(checks.Open("FNB"), 0);
  int steps = 0;
  for (bool on = checks.FirstOfFile("A-77"); on && steps < 9; on = checks.NextOfFile("A-77")) ++steps;
  EXPECT_LT(steps, 9);
}

TEST_F(RecordsTest, FileLookUpCountsKindsAndBanks) {
  XrefTable xrefs(home_);
  ASSERT_EQ(xrefs.Create(), 0);
  ASSERT_GT(xrefs.Open(), 0);
  for (const XrefRecord& record :
       {CheckXref("F1", "ZB", "1001"), CheckXref("F1", "ZB", "1002"),
        DepositItemXref("F1", "AB", "20240315", "1", 12), WireXref("F12", "CB", "7"),
        VoucherXref("F12", "CB", "7"), CheckXref("F12", "CB", "1001")}) {
    ASSERT_EQ(xrefs.Add(record), 0) << record.reference;
  }
  EXPECT_EQ(xrefs.Add(CheckXref("F1", "ZB", "1002"), true), engine::kUnique);
  FileReferences found = xrefs.LookUpFile(" f1 ");
  EXPECT_EQ(found.banks, (std::vector<std::string>{"AB", "ZB"}));
  EXPECT_EQ(found.checks, 2);
  EXPECT_EQ(found.deposits, 1);
  EXPECT_EQ(found.wires + found.vouchers, 0);
  found = xrefs.LookUpFile("F12");
  EXPECT_EQ(found.banks, std::vector<std::string>{"CB"});
  EXPECT_EQ(found.checks + found.wires + found.vouchers, 3);
  EXPECT_TRUE(xrefs.LookUpFile("  ").banks.empty());
  EXPECT_TRUE(xrefs.LookUpFile("F").banks.empty());

  const struct {
    const char* beginning;
    std::size_t most;
    std::vector<std::string> files;
  } beginnings[] = {
      {"", 9, {"F12", "F1"}}, {"", 1, {"F12"}}, {"f1", 9, {"F12", "F1"}},         {"F12", 9, {"F12"}},
      {"E", 9, {}},           {"G", 9, {}},     {"F12 and more than fits", 9, {}}};
  for (const auto& one : beginnings)
    EXPECT_EQ(xrefs.LastFiles(one.beginning, one.most), one.files) << one.beginning;

  ASSERT_TRUE(xrefs.SeekReference({"F1", "AB", "D", "20240315 112"}));
  EXPECT_EQ(xrefs.Read().reference, "20240315 112");
  ASSERT_TRUE(xrefs.SeekReference({"F1", "ZB", "C", "1002"}));
  EXPECT_EQ(xrefs.Read().reference, "        1002") << "leading blanks are part of a reference";
}

TEST_F(RecordsTest, NotesHoldOneTextOfEachKind) {
  NotesTable notes(home_);
  ASSERT_EQ(notes.Create(), 0);
  ASSERT_GT(notes.Open(), 0);
  std::string text = "Löschen\r\n" + std::string(5000, 'n');
  ASSERT_EQ(notes.Add({"F1", "B", text}), 0);
  EXPECT_EQ(notes.Add({"f1", "b", "x"}, true), engine::kUnique);
  ASSERT_EQ(notes.Save({"F1", "A", "first"}), 0);
  ASSERT_EQ(notes.Save({"F1", "A", "second"}), 0);
  ASSERT_EQ(notes.Save({"F12", "A", "other file"}), 0);
  std::vector<NoteRecord> found = notes.NotesOf("F1");
  ASSERT_EQ(found.size(), 2U);
  EXPECT_EQ(found[0].text, "second");
  EXPECT_EQ(found[1].text, text);
  ASSERT_EQ(notes.Save({"F1", "B", ""}), 0);
  EXPECT_EQ(notes.NotesOf("F1").size(), 1U);
  EXPECT_TRUE(notes.Top("DEL4REUSE"));
}

TEST_F(RecordsTest, AgentIsOneRecord) {
  AgentTable agent(home_);
  ASSERT_EQ(agent.Create(), 0);
  ASSERT_GT(agent.Open(), 0);
  EXPECT_EQ(agent.Load(), AgentRecord());
  AgentRecord record{"Agent", "1", "2", "3", "FNB", "T", 8, 9, {12, "Arial", 1, 0}, {10, "Times", 0, 1}};
  ASSERT_EQ(agent.Save(record), 0);
  record.detail.name = "Courier";
  ASSERT_EQ(agent.Save(record), 0);
  EXPECT_EQ(agent.Load(), record);
  EXPECT_EQ(agent.RecordCount(), 1);
}

TEST_F(RecordsTest, UsersKeepTheirRightsByPosition) {
  UsersTable users(home_);
  UserBanksTable banks(home_);
  ASSERT_EQ(users.Create(), 0);
  ASSERT_EQ(banks.Create(), 0);
  ASSERT_GT(users.Open(), 0);
  ASSERT_GT(banks.Open(), 0);
  UserRecord user{2, "Ann", " secret", "Ann Lee", std::string(64, 'A'), "u", "l", 1, 0, "  0 0"};
  ASSERT_EQ(users.Add(user), 0);
  user.id = 1;
  user.login = "Anna";
  ASSERT_EQ(users.Add(user), 0);
  ASSERT_TRUE(users.SeekLogin("ANN"));
  EXPECT_EQ(users.Read().security, "  0 0");
  EXPECT_EQ(users.Read().password, " secret");
  EXPECT_FALSE(users.SeekLogin("An"));
  for (auto [id, bank] : {std::pair(2, "ZB"), {1, "CB"}, {2, "AB"}}) ASSERT_EQ(banks.Add({id, bank}), 0);
  EXPECT_EQ(banks.BanksOf(2), (std::vector<std::string>{"ZB", "AB"}));
  EXPECT_TRUE(banks.BanksOf(3).empty());
}

TEST(StatusText, IsExact) {
  for (auto [code, check, wire] : {std::tuple("H", "Handwritten", "undefined status code (H)"),
                                   {"O", "Outstanding", "Outstanding"},
                                   {"V", "Voided ", "undefined status code (V)"},
                                   {"C ", "Cleared ", "Cleared "},
                                   {"S", "Stopped Payment ", "undefined status code (S)"},
                                   {"", "undefined status code ()", "undefined status code ()"}}) {
    EXPECT_EQ(CheckStatusText(code), check);
    EXPECT_EQ(WireStatusText(code), wire);
  }
}

}  // namespace
}  // namespace tallwick
