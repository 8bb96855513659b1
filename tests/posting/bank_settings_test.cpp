// The settings files of a bank, beside the check screen that reads them.

#include <gmock/gmock.h>

#include "posting/bank_settings.h"
#include "tests/posting/check_screen_fixture.h"
#include "tests/support/faulty_files.h"

namespace tallwick {
namespace {

using ::testing::HasSubstr;
using testing::Seen;

class BankSettingsTest : public testing::CheckScreenTest {};

TEST_F(BankSettingsTest, SettingsOfABankKeepTheirOtherLines) {
  OpenOffice();
  office_.WriteFile("MICR_Print_FNB.dat", "; by hand\nOffset=3\nnextchecknumber = 9 \nNextCheckNumber=8\n");
  BankSettings settings(SystemFileSystem(), office_.session->DataPath(), kMicrSettings, "FNB     ");
  EXPECT_EQ(settings.Get("NEXTCHECKNUMBER"), "9");
  EXPECT_EQ(settings.Get("Layout"), std::nullopt);
  ASSERT_TRUE(settings.Set(kNextCheckNumber, "500"));
  ASSERT_TRUE(settings.Set("Font", "E13B"));
  EXPECT_EQ(office_.ReadFile("MICR_Print_FNB.dat"),
            "; by hand\r\nOffset=3\r\nNextCheckNumber=500\r\nFont=E13B\r\n");
  office_.WriteFile("MICR_Print_FNB.dat", "\xEF\xBB\xBFNextCheckNumber=7\n");  // as some editors save it
  EXPECT_EQ(BankSettings(SystemFileSystem(), office_.session->DataPath(), kMicrSettings, "FNB")
                .Get(kNextCheckNumber),
            "7");
}

TEST_F(BankSettingsTest, SettingsThatCannotBeReadAreNotTakenForNone) {
  testing::FaultyFiles files;
  office_.files = &files;
  OpenOffice();
  const std::string text = "NextCheckNumber=500\r\nFont=E13B\r\n";
  office_.WriteFile("MICR_Print_FNB.dat", text);
  files.unreadable = [](std::string_view path) { return path.ends_with("MICR_Print_FNB.dat"); };
  BankSettings settings(files, office_.session->DataPath(), kMicrSettings, "FNB");
  EXPECT_THAT(settings.Problem(), HasSubstr("MICR_Print_FNB.dat cannot be read"));
  EXPECT_FALSE(settings.Set("Font", "Another"));
  OpenForm();
  form_->Enter("txtCheckNumber");
  EXPECT_EQ(Seen(*form_, "lblLastCheckNumber"), "Last Check Number: 0 (the next one is not known)");
  files.unreadable = {};
  EXPECT_EQ(office_.ReadFile("MICR_Print_FNB.dat"), text);
  ASSERT_TRUE(settings.Set("Font", "Another"));
  EXPECT_EQ(settings.Get(kNextCheckNumber), "500");
}

}  // namespace
}  // namespace tallwick
