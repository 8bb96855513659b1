// The catalogue: which screens there are, and when they open.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "app/application.h"
#include "core/text.h"
#include "shell/clsSecurity.h"
#include "shell/help.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using testing::FakeSuite;
using ::testing::HasSubstr;
using testing::Office;

TEST(ScreenCatalogueTest, EveryScreenHasItsPageInTheHelpBook) {
  for (std::string_view screen : ScreenCatalogue::Names()) {
    if (screen == "frmHelp") continue;
    int pages = 0;
    for (const HelpPage& page : HelpPages()) {
      const std::vector<std::string> screens = Split(page.screens, ' ');
      if (std::find(screens.begin(), screens.end(), screen) == screens.end()) continue;
      ++pages;
      EXPECT_TRUE(
          std::ifstream(std::string(TALLWICK_SOURCE_DIR "/docs/help/") + std::string(page.file)).good())
          << page.file;
    }
    EXPECT_EQ(pages, 1) << screen;
  }
}

// An older program's table keeps the program from starting, but not from being brought up to date.
TEST(ApplicationTest, ATableOfAnOlderProgramIsUpdatedBeforeTheStart) {
  Office office;
  ASSERT_TRUE(office.Open());
  office.session.reset();
  std::string table = office.ReadFile("ESCROW_BANKS.DBF");
  table[table.find("SECLINEANG")] = 'X';
  office.WriteFile("ESCROW_BANKS.DBF", table);
  const Ports ports{office.boxes, *office.files, office.clock, office.workstation};
  for (const bool wanted : {false, true}) {
    office.boxes.answers = {wanted ? BoxAnswer::kYes : BoxAnswer::kNo, BoxAnswer::kNo, BoxAnswer::kOk};
    const StartUpOutcome outcome =
        StartUpOrUpdate(ports, [&] { return std::make_unique<FakeSuite>(office.suite); });
    EXPECT_EQ(outcome.session != nullptr, wanted);
    EXPECT_THAT(office.TakeTexts().front(),
                HasSubstr("It lacks the field SECLINEANG.  Update Database Versions"));
    EXPECT_EQ(wanted, office.ReadFile("ESCROW_BANKS.DBF") != table);
  }
}

TEST(ScreenCatalogueTest, OpensWhatTheBankAndTheRightsAllow) {
  Office office;
  ASSERT_TRUE(office.Open());
  ScreenCatalogue screens(*office.session, office);
  for (std::string_view name : ScreenCatalogue::Names()) {
    const std::unique_ptr<Form> form = screens.Make(name, "");
    ASSERT_NE(form, nullptr) << name;
    EXPECT_EQ(form->Name(), name);
  }
  EXPECT_THAT(ScreenCatalogue::Modes("frmEditChecksPost"),
              ElementsAre("Posting", "Viewing", "Clearing", "Voiding", "Stop Payment"));
  EXPECT_FALSE(ScreenCatalogue::Knows("frmEditChecksPost", "Guessing"));
  EXPECT_EQ(screens.Make("frmNothing", ""), nullptr);
  EXPECT_THAT(office.TakeTexts(), ElementsAre());

  office.session->SetBank("", "");
  EXPECT_EQ(screens.Make("frmEditChecksPost", "Posting"), nullptr);
  EXPECT_THAT(office.TakeTexts(), ElementsAre(HasSubstr("Open a bank account first")));
  office.suite.security = true;
  office.session->ReloadUser();
  EXPECT_EQ(screens.Make("frmEditChecksPost", "Posting"), nullptr);
  EXPECT_THAT(office.TakeTexts(), ElementsAre(HasSubstr("do not have the right")));
  EXPECT_NE(screens.Make("frmBankSelect", ""), nullptr);

  // A bank that was open before its user came is not the user's for that.
  clsSecurity clerk;
  clerk.osLogin = office.suite.login;
  ASSERT_EQ(clerk.SaveUserSecurity(office.session->Home(), office.clock.Now()), 0);
  office.session->SetBank("FNB", "First National Trust");
  office.session->ReloadUser();
  for (const char* screen : {"frmEditChecksPost", "frmViewLog"})
    EXPECT_EQ(screens.Make(screen, ""), nullptr) << screen;
  EXPECT_THAT(office.TakeTexts(),
              ElementsAre(HasSubstr("is not among your banks"), HasSubstr("is not among")));
}

TEST(ScreenCatalogueTest, NamesEachScreenOnce) {
  std::vector<std::string_view> names = ScreenCatalogue::Names();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST(ApplicationTest, TellsWhyItDidNotStart) {
  Office office;
  office.suite.data_path = office.folder.Held("gone");
  const auto attach = [&office] { return std::make_unique<FakeSuite>(office.suite); };
  const Ports ports{office.boxes, SystemFileSystem(), office.clock, office.workstation};
  EXPECT_EQ(StartUpOrUpdate(ports, attach).result, StartUpResult::kNoDataPath);
  office.suite.data_path = office.folder.Held();
  EXPECT_NE(StartApplication(ports, attach, office), nullptr);
}

}  // namespace
}  // namespace tallwick
