// Printing the checks of a bank: what is refused before paper is touched, and that exactly what went to paper
// is noted as printed.

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

#include "app/screen_catalogue.h"
#include "checks/check_batch.h"
#include "checks/layout_file.h"
#include "checks/sign_password.h"
#include "checks/stock_check_printer.h"
#include "tests/support/faulty_files.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class NarrowLetters : public SheetMeasure {
 public:
  double Width(const SheetFont&, std::string_view text) const override {
    return static_cast<double>(text.size());
  }
};

struct FakeSheets : SheetPrinter {
  bool HasFont(std::string_view family) override { return family == "Bank E13B"; }
  const SheetMeasure& Measure() override { return letters; }
  SheetEnd Preview(const SheetMaker& make) override { return Print(make); }
  SheetEnd Print(const SheetMaker& make) override {
    sheets = make(NarrowLetters(), {"Front desk", prints_chosen});
    ++prints;
    if (meanwhile) std::exchange(meanwhile, nullptr)();
    return end;
  }
  NarrowLetters letters;
  SheetDocument sheets;
  int prints = 0;
  int prints_chosen = 0;
  SheetEnd end = SheetEnd::kPrinted;
  std::function<void()> meanwhile;  // done once, while the printer's dialog stands open
};

class CheckPrintingTest : public ::testing::Test {
 protected:
  CheckPrintingTest() { office_.sheets = &sheets_; }
  void Open(const std::string& routing = "041200050") {
    ASSERT_TRUE(office_.Open([&](BankRecord& bank) { bank.routing_number = routing; }));
    tables_ = std::make_unique<BankTables>(office_.session->Home());
    ASSERT_TRUE(tables_->Open("FNB"));
    for (int number = 10; number < 14; ++number) AddCheck(std::to_string(number), "O");
    printer_ = std::make_unique<StockCheckPrinter>(*office_.session, "FNB");
  }
  void AddCheck(const std::string& number, const std::string& status, std::int64_t cents = 1250'00) {
    CheckRecord check;
    check.number = number;
    check.payee = "SMITH TITLE CO";
    check.amount = Currency::FromCents(cents);
    check.status = status;
    check.voucher_number = "31";
    ASSERT_EQ(tables_->checks.Add(check), 0);
  }
  CheckBatch Collect(const std::vector<std::string>& numbers) { return CollectChecks(*tables_, numbers); }
  bool PrintAll(const std::vector<std::string>& numbers) {
    const CheckBatch batch = Collect(numbers);
    EXPECT_EQ(batch.problem, "");
    return printer_->PrintAll(batch.checks, *office_.session->Company().banks.Find("FNB"), {});
  }
  std::string Log() { return office_.ReadFile("Logs\\FNB\\Checks_Printed.log"); }

  testing::Office office_;
  FakeSheets sheets_;
  std::unique_ptr<BankTables> tables_;
  std::unique_ptr<StockCheckPrinter> printer_;
};

TEST_F(CheckPrintingTest, ABatchIsNotedOnceItIsOnPaper) {
  Open();
  office_.WriteFile("Check_Print_FNB.dat", "Offset.front desk=1,2\r\n");
  sheets_.end = SheetEnd::kNothing;
  EXPECT_FALSE(PrintAll({"11-13", "10", "11"}));
  EXPECT_THAT(Log(), HasSubstr("[NOT PRINTED: "));
  EXPECT_THAT(*printer_->Printed().Read(), IsEmpty());
  sheets_.end = SheetEnd::kPrinted;
  EXPECT_TRUE(PrintAll({"11-13", "10", "11"}));
  EXPECT_EQ(sheets_.sheets.pages.size(), 4U);
  EXPECT_DOUBLE_EQ(sheets_.sheets.pages[0].texts.front().box.x, 10) << "moved for this printer";
  EXPECT_THAT(Log(), ContainsRegex(R"(\[NUMBER: 10\]\[DATE: 03/15/2024\]\[TIME: 09:30:00\]\[LOGIN: jdoe\])"
                                   R"(\[COMPUTER: FRONTDESK2\]\[PRINT: [0-9a-f]+\])"
                                   R"(\[AMOUNT: 1,250.00\]\[FILE: \]\[PAYEE: SMITH TITLE CO\])"));
  EXPECT_EQ(printer_->Printed().Read()->size(), 4U);

  const std::string noted = Log();
  EXPECT_FALSE(PrintAll({"12"})) << "the safe answer is not to print it again";
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre("Check 12 was printed on 03/15/2024 09:30:00 by jdoe.\r\nPrint again?"));
  EXPECT_EQ(Log(), noted);
  office_.boxes.answers = {BoxAnswer::kYes};
  EXPECT_TRUE(PrintAll({"12"}));
  EXPECT_GT(Log().size(), noted.size());
}

// Some of the pages may lie in the tray.
TEST_F(CheckPrintingTest, WhatAPrinterThatFailedMayHavePrintedIsAskedAbout) {
  Open();
  sheets_.end = SheetEnd::kUnknown;
  EXPECT_FALSE(PrintAll({"10-11"}));
  sheets_.end = SheetEnd::kPrinted;
  EXPECT_FALSE(PrintAll({"11"}));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Check 11 was printed on")));
}

TEST_F(CheckPrintingTest, OfTwoAtOnceOnePrints) {
  Open();
  const char* question = "Check 11 was printed on 03/15/2024 09:30:00 by jdoe.\r\nPrint again?";
  sheets_.meanwhile = [&] { EXPECT_FALSE(PrintAll({"11-13"})) << "the other's dialog stands open"; };
  EXPECT_TRUE(PrintAll({"10-11"}));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(question));
  // Both have asked, and both were told to go on.
  PrintedChecks log(*office_.files, office_.session->DataPath(), "FNB");
  const LastPrints known = *log.Read();
  const CheckBatch batch = Collect({"11-12"});
  const PrintNote note{office_.session->TheClock().Now(), "bob", "DESK"};
  EXPECT_EQ(log.Note(batch.checks, note, known).problem, "");
  EXPECT_EQ(log.Note(batch.checks, note, known).problem,
            "Check 11 was given to a printer meanwhile, on 03/15/2024 09:30:00 by bob.");
  EXPECT_EQ(sheets_.prints, 1);
}

TEST_F(CheckPrintingTest, NothingIsPrintedThatCannotBeNoted) {
  testing::FaultyFiles files;
  office_.files = &files;
  Open();
  const auto fail = [&](const std::string& wanted) {
    files.fails = [wanted](std::string_view change, std::string_view) { return change == wanted; };
  };
  for (const char* change : {"create folder", "append"}) {
    fail(change);
    EXPECT_FALSE(PrintAll({"10"})) << change;
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Checks_Printed.log could not be written")));
    EXPECT_EQ(sheets_.prints, 0);
  }
  files.fails = nullptr;
  sheets_.end = SheetEnd::kNothing;
  sheets_.meanwhile = [&] { fail("append"); };
  EXPECT_FALSE(PrintAll({"10"}));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("stay noted as printed")));
  // A line that a full disk has cut short takes no other with it.
  files.fails = nullptr;
  sheets_.end = SheetEnd::kPrinted;
  office_.WriteFile("Logs\\FNB\\Checks_Printed.log", "[NUMBER: 12][DA");
  EXPECT_TRUE(PrintAll({"10"}));
  EXPECT_EQ(printer_->Printed().Read()->size(), 2U);
}

TEST_F(CheckPrintingTest, PrintsChosenAtThePrinterAreCopies) {
  Open();
  office_.WriteFile("Check_Print_FNB.dat", "Copies=2\r\n");
  EXPECT_TRUE(PrintAll({"10"}));
  EXPECT_EQ(sheets_.sheets.prints, 2);
  sheets_.prints_chosen = 3;
  EXPECT_TRUE(PrintAll({"11"}));
  EXPECT_EQ(sheets_.sheets.pages.size(), 3U);
  sheets_.prints_chosen = 99;
  EXPECT_TRUE(PrintAll({"12"}));
  EXPECT_EQ(sheets_.sheets.pages.size(), 9U);
}

TEST_F(CheckPrintingTest, TheBranchStandsOnItsChecksAndTheCompanyWhereThereIsNone) {
  Open();
  const auto has = [&](std::string_view text) {
    const std::vector<SheetText>& texts = sheets_.sheets.pages[0].texts;
    return std::any_of(texts.begin(), texts.end(), [&](const SheetText& one) { return one.text == text; });
  };
  EXPECT_TRUE(PrintAll({"10"}));
  EXPECT_TRUE(has("Lakeside Title"));
  office_.suite.branch = "Harbor";
  office_.WriteFile("Harbor.SSP", "Lakeside Title, Harbor\r\n\r\n7 Pier Road\r\n\r\nLakeside, OH 43440\r\n");
  EXPECT_TRUE(PrintAll({"11"}));
  for (const char* line : {"Lakeside Title, Harbor", "ESCROW ACCOUNT", "7 Pier Road", "Lakeside, OH 43440"})
    EXPECT_TRUE(has(line)) << line;
  EXPECT_FALSE(has("Lakeside Title"));
}

TEST_F(CheckPrintingTest, WhoMayNotPostChecksPrintsNone) {
  Open();
  ScreenCatalogue screens(*office_.session, office_);
  const std::unique_ptr<Form> form = screens.Make("frmEditChecksPost", "Posting");
  form->Opened();
  form->Choose("lstCheckNumbers", 1);
  office_.suite.security = true;
  office_.session->ReloadUser();
  EXPECT_FALSE(PrintAll({"10"}));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("do not have the right to print checks")));
  // The right was withdrawn while the screen stood open.
  form->Menu("mnuFilePrint");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("do not have the right to print checks")));
  EXPECT_EQ(sheets_.prints, 0);
  EXPECT_EQ(Log(), "");
}

TEST_F(CheckPrintingTest, ThePasswordToSignIsAskedForWhereTheOfficeHasSetOne) {
  Open();
  EXPECT_TRUE(PrintAll({"10"}));
  EXPECT_THAT(office_.boxes.prompts, IsEmpty());
  office_.WriteFile("Check_Print_FNB.dat", "; ours\r\nCopies=1\r\n");
  ASSERT_TRUE(SetSignPassword(*office_.session, "FNB", "open sesame"));
  EXPECT_THAT(office_.ReadFile("Check_Print_FNB.dat"), ::testing::Not(HasSubstr("sesame")));
  office_.boxes.secrets = {"open sesame", "Open Sesame", ""};
  EXPECT_TRUE(PrintAll({"11", "12"})) << "once for all of them";
  EXPECT_FALSE(PrintAll({"13"}));
  EXPECT_FALSE(PrintAll({"13"}));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("not the password"), HasSubstr("not the password")));
  EXPECT_FALSE(PrintAll({"13"})) << "thought better of";
  EXPECT_EQ(sheets_.prints, 2);
  EXPECT_THAT(Log(), ::testing::Not(HasSubstr("NUMBER: 13")));
  EXPECT_THAT(office_.boxes.prompts, ::testing::Each("Password to Sign Check:"));
  ASSERT_TRUE(SetSignPassword(*office_.session, "FNB", ""));
  EXPECT_TRUE(PrintAll({"13"}));
  office_.suite.security = true;
  office_.session->ReloadUser();
  EXPECT_FALSE(SetSignPassword(*office_.session, "FNB", "mine"));
}

TEST_F(CheckPrintingTest, NothingIsPrintedWhenOneIsRefused) {
  Open("041200051");
  EXPECT_FALSE(PrintAll({"10", "11"}));
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("Check 10: The routing number \"041200051\" is wrong")));
  office_.WriteFile("Check_Print_FNB.dat", "Micr=off\r\nWrods=off\r\n");
  EXPECT_FALSE(PrintAll({"10"}));
  EXPECT_THAT(office_.TakeTexts(),
              ElementsAre(HasSubstr("Check_Print_FNB.dat in the company's data folder")));
  EXPECT_EQ(sheets_.prints, 0);
  office_.WriteFile("Check_Print_FNB.dat", "Micr=off\r\n");
  EXPECT_TRUE(PrintAll({"10"}));
}

// A file that another program holds is not one that the office has never made: on its defaults a check would
// name another account, or go to paper twice.
TEST_F(CheckPrintingTest, NothingIsPrintedWhereAFileCannotBeRead) {
  testing::FaultyFiles files;
  office_.files = &files;
  office_.suite.branch = "Main";
  Open();
  office_.WriteFile("MICR_Print_FNB.dat", "OnUs={account}D99C\r\n");
  office_.WriteFile("Main.SSP", "Lakeside Title\r\n");
  office_.WriteFile("Check_Print_FNB.dat", "Offset=1,1\r\n");
  ASSERT_TRUE(PrintAll({"10"}));
  const std::string noted = Log();
  ScreenCatalogue screens(*office_.session, office_);
  const auto hold = [&](const std::string& name) {
    files.unreadable = [name](std::string_view path) { return FileNameOf(path) == name; };
  };
  for (const std::string name :
       {"MICR_Print_FNB.dat", "Main.SSP", "Check_Print_FNB.dat", "Checks_Printed.log"}) {
    hold(name);
    office_.boxes.answers = {BoxAnswer::kYes};
    EXPECT_FALSE(PrintAll({"10"})) << name;
    EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("The file " + name + " cannot be read.")));
    EXPECT_EQ(sheets_.prints, 1) << name;
    EXPECT_EQ(Log(), noted);
    office_.boxes.answers.clear();
  }
  hold("Checks_Printed.log");
  const std::unique_ptr<Form> form = screens.Make("frmPrintChecks", "");
  form->Opened();
  EXPECT_EQ(testing::Seen(*form, "txtNumbers"), "") << "nobody knows what was printed";
  EXPECT_THAT(testing::Seen(*form, "lblCount"), HasSubstr("Checks_Printed.log cannot be read"));
}

// On a line that was passed over, checks would carry another MICR line than the bank wants.
TEST_F(CheckPrintingTest, NothingIsPrintedWithAMicrSettingThatIsNotUnderstood) {
  Open();
  for (const char* line : {"On-Us={account}D99C", "OnUs {account}C", "OnUs=", "NumberDigits=eight",
                           "NumberDigits=13", "NumberDigits=-3", "NextCheckNumber=x", "font=Bank E13B"}) {
    office_.WriteFile("MICR_Print_FNB.dat", "; ours\r\nFont=Bank E13B\r\n\r\n" + std::string(line) + "\r\n");
    EXPECT_FALSE(PrintAll({"10"})) << line;
    EXPECT_THAT(office_.TakeTexts(),
                ElementsAre(HasSubstr("The line \"" + std::string(line) + "\" of MICR_Print_FNB.dat")));
  }
  EXPECT_EQ(sheets_.prints, 0);
  office_.WriteFile("MICR_Print_FNB.dat",
                    "; ours\r\nonus={account}D99C\r\nNumberDigits=12\r\nAuxiliaryOnUs=\r\n");
  EXPECT_TRUE(PrintAll({"10"}));
}

TEST_F(CheckPrintingTest, ACheckWithoutRoomForItsWordsIsRefused) {
  Open();
  office_.WriteFile("Check_Print_FNB.dat", "Words=9,37,6,10,10,left\r\n");
  EXPECT_FALSE(PrintAll({"10", "11"}));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(HasSubstr("Check 10: its amount in words has no room")));
  EXPECT_EQ(sheets_.prints, 0);
  EXPECT_EQ(Log(), "");
}

TEST_F(CheckPrintingTest, OnlyOutstandingChecksAreCollected) {
  Open();
  VoucherRecord voucher;
  voucher.number = "31";
  voucher.reason = "Payoff of loan 4711";
  ASSERT_EQ(tables_->vouchers.Add(voucher), 0);
  for (const char* status : {"V", "S", "C", "H"})
    AddCheck(std::string("2") + std::to_string(status[0] % 10), status);
  struct Case {
    const char *number, *part;
  };
  const Case cases[] = {{"99", "is not posted"}, {"26", "is voided"},         {"23", "payment stopped"},
                        {"27", "has cleared"},   {"22", "written by hand"},   {"13-10", "is no range"},
                        {"1-x", "is no range"},  {"20-29", "No outstanding"}, {"1-9999", "is no range"}};
  for (const Case& one : cases)
    EXPECT_THAT(Collect({"10", one.number}).problem, HasSubstr(one.part)) << one.number;
  const CheckBatch batch = Collect({"13-29"});
  ASSERT_EQ(batch.checks.size(), 1U);
  EXPECT_EQ(batch.checks[0].remittance_advice, "Payoff of loan 4711");
  EXPECT_THAT(batch.left_out, ElementsAre("14-29"));
  EXPECT_THAT(Collect({"9-11", "12-15"}).left_out, ElementsAre("9", "14-15"));
  EXPECT_EQ(Collect({"10-13", "11-12"}).checks.size(), 4U) << "named twice, printed once";
  AddCheck("50", "O", 0);
  EXPECT_FALSE(AgreesToPrint(Collect({"50"}), office_.boxes, "Print Checks"));
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Check 50\r\nCheck Amount is Zero...  Print ?"));
}

// As any editor may have saved it.
TEST_F(CheckPrintingTest, ALayoutIsReadInTheEncodingOfItsFile) {
  Open();
  for (const char* text : {"AccountTitle=Dep\xF3sito\r\n",
                           "\xEF\xBB\xBF"
                           "AccountTitle=Dep\xC3\xB3sito\r\n"}) {
    office_.WriteFile("Check_Print_FNB.dat", text);
    const LayoutReading reading = ReadLayoutFile(office_.session->Files(), office_.session->DataPath(),
                                                 *office_.session->Company().banks.Find("FNB"));
    EXPECT_EQ(reading.problem, "");
    EXPECT_EQ(reading.layout.account_title, "Dep\u00f3sito");
  }
}

TEST_F(CheckPrintingTest, AMissingFontSwitchesTheScreensPrintingOff) {
  Open();
  ScreenCatalogue screens(*office_.session, office_);
  const auto prints = [&] {
    const std::unique_ptr<Form> form = screens.Make("frmEditChecksPost", "Posting");
    form->Opened();
    return form->Find("cmdPrint")->enabled;
  };
  EXPECT_TRUE(prints());
  office_.WriteFile("MICR_Print_FNB.dat", "Font=Bank E13B\r\n");
  EXPECT_TRUE(prints());
  EXPECT_TRUE(PrintAll({"10"}));
  const std::vector<SheetText>& texts = sheets_.sheets.pages[0].texts;
  const auto of_font = [](const SheetText& text) { return text.font.family == "Bank E13B"; };
  EXPECT_EQ(std::count_if(texts.begin(), texts.end(), of_font), 8 + 11 + 9) << "auxiliary, transit, on-us";
  office_.WriteFile("MICR_Print_FNB.dat", "Font=Another\r\n");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  EXPECT_FALSE(prints());
  EXPECT_FALSE(PrintAll({"11"}));
  const char* missing = "MICR Fonts not installed - Printing Checks disabled...";
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(missing, missing));
}

TEST_F(CheckPrintingTest, TheScreenPrintsSeveralInOneGo) {
  Open();
  ScreenCatalogue screens(*office_.session, office_);
  const std::unique_ptr<Form> form = screens.Make("frmPrintChecks", "");
  form->Opened();
  EXPECT_EQ(testing::Seen(*form, "txtNumbers"), "") << "nothing was printed yet that could be gone on from";
  form->Enter("txtNumbers");
  form->Change("txtNumbers", "10, 12-14");
  form->Key("Enter");
  const char* left_out = "Left out, since no check to be printed has the number: 14.";
  EXPECT_EQ(testing::Seen(*form, "lblCount"), std::string("3 checks.  ") + left_out);
  form->Click("cmdPrint");
  EXPECT_EQ(sheets_.sheets.pages.size(), 3U);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre(left_out));
  EXPECT_THAT(form->Find("grdChecks")->source->Row(2),
              ElementsAre("13", "", "SMITH TITLE CO", "$1,250.00", "", "03/15/2024 09:30:00 by jdoe"));
  AddCheck("14", "O");
  AddCheck("15", "O");
  const std::unique_ptr<Form> later = screens.Make("frmPrintChecks", "");
  later->Opened();
  EXPECT_EQ(testing::Seen(*later, "txtNumbers"), "14-15");
  later->Change("txtNumbers", "99");
  later->Click("cmdPrint");
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Check 99 is not posted.  Post it first."));
  EXPECT_EQ(later->Focus()->name, "txtNumbers");
}

}  // namespace
}  // namespace tallwick
