// The suite's settings files: launcher, branches, branch addresses; and what the program says about itself.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "shell/about.h"
#include "shell/clsBranch.h"
#include "shell/clsLauncher.h"
#include "shell/help.h"
#include "shell/machine.h"
#include "shell/registry.h"
#include "tests/support/office.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::Office;
using ::testing::SizeIs;

class SettingsTest : public ::testing::Test {
 protected:
  void Write(const std::string& name, std::string_view text) { files_.Write(folder_.Held(name), text); }
  std::string Read(const std::string& name) { return files_.Read(folder_.Held(name)).value_or("(none)"); }
  clsBranch Saved(clsBranch branch) {
    EXPECT_TRUE(branches_.Save(branch));
    return branch;
  }

  testing::TempFolder folder_;
  FileSystem& files_ = SystemFileSystem();
  BranchFile branches_{files_, folder_.Held()};
};

TEST_F(SettingsTest, LauncherTakesOverTheRegistryOnce) {
  Write("Registry.ini",
        "[KVR_Launcher\\Tallwick.exe]\nApplication Folder= C:\\Suite \nupdates folder=U:\\\nStop Updates=No\n"
        "not a line\n[KVR_Launcher\\Informant.exe]\nStop Updates=Yes\n[Other\\X]\nStop Updates=1\n");
  const IniRegistry registry(files_, folder_.Held("Registry.ini"));
  EXPECT_THAT(registry.Subkeys("kvr_launcher"), ElementsAre("Tallwick.exe", "Informant.exe"));
  const std::string settings = folder_.Held("made\\here");  // the folder does not exist yet
  // A program without a registry, come first, keeps nothing from being taken over.
  EXPECT_EQ(clsLauncher(files_, nullptr, settings).AppPath, "");
  clsLauncher launcher(files_, &registry, settings);
  launcher.SetAppName("Tallwick.exe");
  launcher.Load();
  EXPECT_EQ(launcher.TextFileName(), "Tallwick.txt");
  EXPECT_EQ(launcher.AppPath, "C:\\Suite");
  EXPECT_EQ(launcher.UpdatePath, "U:\\");
  EXPECT_EQ(launcher.StopUpdates, "No");

  launcher.StopUpdates = "<Yes & more>";
  EXPECT_TRUE(launcher.Save());
  clsLauncher again(files_, &registry, settings);  // the registry is not read a second time
  again.SetAppName("Tallwick.exe");
  again.Load();
  EXPECT_EQ(again.StopUpdates, "<Yes & more>");
  again.SetAppName("Unknown.exe");
  again.Load();
  EXPECT_EQ(again.AppPath, "");
}

TEST_F(SettingsTest, LauncherFileCountsAsEmptyWhenItCannotBeRead) {
  const IniRegistry nothing(files_, folder_.Held("Registry.ini"));
  clsLauncher fresh(files_, &nothing, folder_.Held());
  EXPECT_THAT(Read("Launcher.xml"), HasSubstr("version=\"1.0\" encoding=\"UTF-8\""));
  EXPECT_THAT(Read("Launcher.xml"), HasSubstr("<Launcher"));
  for (const char* text :
       {"", "<Launcher><AppName name=\"Tallwick.exe\"><AppPath>C:\\", "<Wrong/>", "no xml"}) {
    Write("Launcher.xml", text);
    clsLauncher launcher(files_, nullptr, folder_.Held());
    launcher.SetAppName("Tallwick.exe");
    launcher.Load();
    EXPECT_EQ(launcher.AppPath, "") << text;
    EXPECT_EQ(Read("Launcher.xml"), text) << "reading changes nothing";
    launcher.AppPath = "C:\\";
    EXPECT_TRUE(launcher.Save());
    clsLauncher again(files_, nullptr, folder_.Held());
    again.SetAppName("Tallwick.exe");
    again.Load();
    EXPECT_EQ(again.AppPath, "C:\\") << text;
  }
  // A settings path that is a file can be neither made nor written.
  Write("file", "x");
  clsLauncher nowhere(files_, nullptr, folder_.Held("file"));
  nowhere.SetAppName("Tallwick.exe");
  nowhere.Load();
  EXPECT_FALSE(nowhere.Save());
}

TEST_F(SettingsTest, BranchSavesAndLoadsWhole) {
  clsBranch branch;
  branch.Name = "Lakeside \"Main\" & 'Co'";
  branch.Path = folder_.Held();
  branch.EmailFriendlyName = "Jürgen\x01 ";
  branch.Files[1] = "24-0001";
  branch.Files[3] = "24-0003";
  branch.Files[5] = "24-0005";
  Saved(branch);
  const std::string text = Read("Branches.xml");
  EXPECT_THAT(text, HasSubstr("<Files><LastFile_1>24-0001</LastFile_1><LastFile_2>24-0003</LastFile_2>"
                              "<LastFile_3>24-0005</LastFile_3></Files>"));
  const clsBranch loaded = branches_.Load(branch.Name);
  EXPECT_TRUE(loaded.PathExists);
  EXPECT_EQ(loaded.Path, folder_.Held());
  EXPECT_EQ(loaded.EmailFriendlyName, "Jürgen ") << "what XML cannot hold is left out, blanks stay";
  EXPECT_THAT(std::vector<std::string>(loaded.Files.Entries().begin(), loaded.Files.Entries().begin() + 4),
              ElementsAre("24-0001", "24-0003", "24-0005", ""));
  Saved(loaded);
  EXPECT_EQ(Read("Branches.xml"), text) << "saving what was loaded changes nothing";
}

TEST_F(SettingsTest, BranchPathEndsWithOneBackslash) {
  const std::string folder = folder_.Held("office");
  files_.CreateFolder(folder);
  Write("Branches.xml", "<Branches><Branch name=\"a\"><Path>" + folder +
                            "</Path></Branch><Branch name=\"b\"><Path>" + folder +
                            "\\</Path></Branch><Branch name=\"c\"><Path>" + folder +
                            "x</Path></Branch><Branch name=\"d\"/></Branches>");
  const std::vector<clsBranch> all = branches_.LoadAll();
  ASSERT_THAT(all, SizeIs(4));
  EXPECT_EQ(all[0].Path, all[1].Path);
  EXPECT_EQ(all[0].Path.back(), '\\');
  EXPECT_TRUE(all[0].PathExists && all[1].PathExists);
  EXPECT_FALSE(all[2].PathExists);
  EXPECT_EQ(all[3].Path, "");
  EXPECT_FALSE(all[3].PathExists);
}

TEST_F(SettingsTest, RenameKeepsTheElementAndWhatOthersWroteInIt) {
  Write("Branches.xml",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Branches>\r\n  <!-- by hand -->\r\n  <Branch "
        "name=\"East\" "
        "x=\"1\"><Fax>555</Fax><Reports><Old>R1</Old> <Any>R2</Any></Reports></Branch>\r\n  <Branch "
        "name=\"West\"/>\r\n</Branches>");
  clsBranch branch = branches_.Load("East");
  EXPECT_EQ(branch.Reports[2], "R2") << "entries count by their order, not their names";
  branch.Name = "EAST";  // another spelling is no other name
  branch = Saved(branch);
  EXPECT_THAT(branches_.LoadAll(), SizeIs(2));
  for (const char* other : {"West", "WEST"}) {
    branch.Name = other;
    EXPECT_FALSE(branches_.Save(branch)) << "that is another branch";
  }
  branch.Name = "North";
  branch = Saved(branch);
  EXPECT_EQ(branches_.Load("East").Reports[1], "");
  EXPECT_THAT(Read("Branches.xml"),
              HasSubstr("<!-- by hand -->\r\n  <Branch name=\"North\" x=\"1\"><Fax>555</Fax>"));
  EXPECT_THAT(Read("Branches.xml"),
              HasSubstr("<LastReport_1>R1</LastReport_1><LastReport_2>R2</LastReport_2>"));
  EXPECT_THAT(Read("Branches.xml"), Not(HasSubstr("<Old>")));
  EXPECT_TRUE(branches_.Delete("West"));
  EXPECT_TRUE(branches_.Delete("nowhere"));
  ASSERT_THAT(branches_.LoadAll(), SizeIs(1));
  EXPECT_EQ(branches_.LoadAll()[0].Name, "North");
}

TEST_F(SettingsTest, WhatOthersWroteInAnotherWayBecomesNoSecondBranch) {
  Write("Branches.xml",
        "<Branches><Branch name=\"MAIN\"><Files><LastFile_2>2</LastFile_2><LastFile_3>3</LastFile_3> "
        "<LastFile_1>1</LastFile_1></Files></Branch></Branches>");
  clsBranch branch = branches_.Load("Main");
  EXPECT_EQ(branch.Files[1], "2") << "read as they stand";
  branch.Files.Add("new");
  branch = Saved(branch);
  EXPECT_THAT(branches_.LoadAll(), SizeIs(1));
  const std::vector<std::string> files = branches_.Load("Main").Files.Entries();
  EXPECT_THAT(std::vector<std::string>(files.begin(), files.begin() + 4), ElementsAre("new", "2", "3", "1"));
  EXPECT_THAT(Read("Branches.xml"), HasSubstr("name=\"MAIN\""));
  clsBranch fresh;
  fresh.Name = "main";
  Saved(fresh);
  EXPECT_THAT(branches_.LoadAll(), SizeIs(1));
  EXPECT_TRUE(branches_.Delete("main"));
  EXPECT_THAT(branches_.LoadAll(), IsEmpty());
}

TEST_F(SettingsTest, UnreadableBranchesReadAsNone) {
  for (const char* text :
       {"", "<Branches><Branch name=\"East\"><Pa", "<Other><Branch name=\"East\"/></Other>"}) {
    Write("Branches.xml", text);
    EXPECT_THAT(branches_.LoadAll(), IsEmpty());
    EXPECT_EQ(branches_.Load("East").Name, "East");
    EXPECT_TRUE(branches_.Delete("East"));
    EXPECT_EQ(Read("Branches.xml"), text);
  }
  Saved(branches_.Load("East"));
  EXPECT_THAT(branches_.LoadAll(), SizeIs(1));
}

TEST(RecentListTest, TheNewestComesFirst) {
  RecentList list(3);
  for (const char* entry : {"a", "b", "", "c", "a", "d"}) list.Add(entry);
  EXPECT_THAT(list.Entries(), ElementsAre("d", "a", "c"));
  list[1] = "";
  list.Add("e");  // the free slot is used before the last one drops off
  EXPECT_THAT(list.Entries(), ElementsAre("e", "a", "c"));
  list[2] = "";
  list.Compact();
  EXPECT_THAT(list.Entries(), ElementsAre("e", "c", ""));
}

TEST_F(SettingsTest, AddressFileOfAnyLengthIsRead) {
  Write("Main.SSP", " Lakeside Title \r\nB. Agent\r\n300 Second\r\n");
  BranchAddress address = ReadBranchAddress(files_, folder_.Held(), " Main ");
  EXPECT_EQ(address.Text("Branch Name"), "Lakeside Title");
  EXPECT_EQ(address.Text("Branch Street 1"), "300 Second");
  EXPECT_EQ(address.Text("Branch City, State  ZIP"), "");
  std::string lines;
  for (int i = 1; i <= 14; ++i) lines += std::to_string(i) + "\n";
  Write("Long.SSP", lines);
  address = ReadBranchAddress(files_, folder_.Held(), "Long");
  EXPECT_EQ(address.Text("Branch City, State  ZIP"), "5");
  EXPECT_EQ(address.Text("Branch Phone 2"), "11");
  EXPECT_EQ(address.last_line, "12");
  for (const char* text : {"\xEF\xBB\xBFM\xC3\xBCller", "M\xC3\xBCller", "M\xFCller"}) {
    Write("Edited.SSP", text);
    EXPECT_EQ(ReadBranchAddress(files_, folder_.Held(), "Edited").Text("Branch Name"), "M\xC3\xBCller")
        << text;
  }
  EXPECT_EQ(ReadBranchAddress(files_, folder_.Held(), "  ").Text("Branch Name"), "");
  EXPECT_EQ(ReadBranchAddress(files_, folder_.Held(), "None").Text("Branch Name"), "");
}

TEST(AboutTest, NamesEveryWindows) {
  using enum WindowsEdition;
  const std::pair<WindowsVersion, const char*> cases[] = {
      {{1, 4, 0, kNone, true, ""}, "Windows 95 OSR 2"},
      {{1, 4, 90, kNone, false, ""}, "Windows ME"},
      {{2, 4, 0, kServer, false, "Service Pack 1"}, "Windows NT4 Server"},
      {{2, 5, 1, kHome, false, "Service Pack 2"}, "Windows XP SP2"},
      {{2, 5, 1, kTablet, false, "Service Pack 2"}, "Windows XP Tablet"},
      {{2, 5, 1, kHome, false, ""}, "Windows XP Home"},
      {{2, 5, 2, kServer, true, ""}, "Windows 2003 Server R2"},
      {{2, 6, 0, kUltimate, false, ""}, "Windows Vista Ultimate"},
      {{2, 6, 1, kUltimate, false, "Service Pack 1"}, "Windows 7"},
      {{2, 10, 0, kNone, false, ""}, ""},
      {{}, ""},
  };
  for (const auto& [version, name] : cases) EXPECT_EQ(WindowsName(version), name);
}

class FakeMachine : public Machine {
 public:
  MachineFacts Facts() override { return {program, "Windows 7", "6.1", "C:\\Windows\\", true, "10.0.0.7"}; }
  std::string program;
};

TEST(AboutTest, TellsVersionCompanyAndMachine) {
  EXPECT_EQ(VersionTextOf({3, 5, 123, 7}), "3.05.0123");
  EXPECT_EQ(ShortVersion({3, 5, 123, 7}), "3.05");
  EXPECT_EQ(LongVersion({3, 5, 123, 7}), "3.05.0123 - Build: 7");
  Office office;
  FakeMachine machine;
  office.machine = &machine;
  office.suite.company = "Müller {Title}\\";
  ASSERT_TRUE(office.Open());
  const std::string text = AboutRtf(*office.session);
  EXPECT_THAT(text, HasSubstr("Arial"));
  EXPECT_THAT(text, HasSubstr("\\b Company:\\b0  M\\'fcller \\{Title\\}\\\\ (12)\\par"));
  EXPECT_THAT(text, HasSubstr("\\b OS Name:\\b0  Windows 7 (64-bit)\\par"));
  EXPECT_THAT(text, HasSubstr("\\b Computer Name:\\b0  FRONTDESK2\\par"));
}

TEST(HelpTest, BooksHaveNumbersAndPagesHaveScreens) {
  EXPECT_EQ(HelpFile("C:\\Suite", 2), "C:\\Suite\\kpEscrowHelp.chm");
  EXPECT_EQ(HelpFile("C:\\Suite\\", 6), "C:\\Suite\\kpInformantHelp.chm");
  EXPECT_EQ(HelpFile("C:\\Suite\\", 7), "");
  Office office;
  FakeMachine machine;
  machine.program = SystemFileSystem().HeldPath(TALLWICK_BIN_DIR "/tallwick-escrow");
  office.machine = &machine;
  ASSERT_TRUE(office.Open());
  OpenHelp(*office.session, office, 2, {HelpCommand::kContext, 20, {}});
  EXPECT_THAT(office.opened, ElementsAre("frmHelp context:20"));
  OpenHelp(*office.session, office, 1, {});
  EXPECT_THAT(office.TakeTexts(), ElementsAre(HasSubstr("kpHelp.chm")));

  const std::pair<const char*, const char*> topics[] = {{"frmBankSelect", "Choosing a bank account"},
                                                        {"context:30", "Posting checks"},
                                                        {"keyword:F4", "Keys"},
                                                        {"keyword:bal", "The main window"},
                                                        {"frmNothing", "Contents"}};
  for (const auto& [topic, title] : topics) {
    FrmHelp help(*office.session, topic);
    help.Opened();
    EXPECT_EQ(help.Find("lstTopics")->text, title);
    EXPECT_THAT(help.Find("txtPage")->text, HasSubstr("<h1>"));
  }
  FrmHelp help(*office.session, "keyword:pineapple");
  help.Opened();
  EXPECT_EQ(office.boxes.shown.back().title, "Keyword Not Found");
  help.Change("txtPage", "keys.html");  // a link
  EXPECT_EQ(help.Find("lstTopics")->text, "Keys");

  // Every page is there, and every link on it leads to one.
  std::set<int> contexts;
  for (const HelpPage& page : HelpPages()) {
    EXPECT_TRUE(contexts.insert(page.context).second) << page.file;
    const std::string text =
        SystemFileSystem().Read(HelpFolder(*office.session) + std::string(page.file)).value_or("");
    EXPECT_THAT(text, HasSubstr("<h1>")) << page.file;
    for (std::size_t at = text.find("href=\""); at != std::string::npos; at = text.find("href=\"", at + 1)) {
      const std::string link = text.substr(at + 6, text.find('"', at + 6) - at - 6);
      EXPECT_TRUE(SystemFileSystem().FileExists(HelpFolder(*office.session) + link)) << link;
    }
  }
}

}  // namespace
}  // namespace tallwick
