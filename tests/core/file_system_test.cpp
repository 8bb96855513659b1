// The system's files behind the port: names in any case, whole or old contents, appends that do not mix.
#include "core/file_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "core/system_ports.h"
#include "core/text.h"
#include "tests/support/temp_folder.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;

class SystemFiles : public ::testing::Test {
 protected:
  void Touch(std::string_view name, std::string_view contents = "x") {
    std::ofstream(folder_.Platform(name)) << contents;
  }

  testing::TempFolder folder_;
  FileSystem& files_ = SystemFileSystem();
};

TEST(Paths, Pieces) {
  EXPECT_EQ(WithBackslash("C:\\data"), "C:\\data\\");
  EXPECT_EQ(WithBackslash("C:\\data\\\\"), "C:\\data\\");
  EXPECT_EQ(WithBackslash("/srv/data/"), "/srv/data\\");
  EXPECT_EQ(WithBackslash("\\"), "\\");
  EXPECT_EQ(WithBackslash(""), "");
  EXPECT_EQ(WithoutBackslash("C:\\data\\"), "C:\\data");
  EXPECT_EQ(WithoutBackslash("\\"), "\\");
  EXPECT_EQ(FileNameOf("\\data\\Logs\\Audit.log"), "Audit.log");
  EXPECT_EQ(FileNameOf("Audit.log"), "Audit.log");
  EXPECT_EQ(BaseNameOf("\\da.ta\\Tallwick.old.exe"), "Tallwick.old");
  EXPECT_EQ(BaseNameOf("\\da.ta\\README"), "README");
  EXPECT_TRUE(SamePath("C:\\Data\\", "c:/data"));
  EXPECT_FALSE(SamePath("C:\\Data\\x", "C:\\Datax"));
}

TEST(Paths, Patterns) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"ESCROW_BANKS.DBF", "*.dbf", true},
      {"x.DBFX", "*.dbf", false},
      {"abc", "a?c", true},
      {"ac", "a?c", false},
      {"aXbXbc", "a*bc", true},
      {"", "*", true},
      {"", "?", false},
      {"a.b.dbf", "*.*.DBF", true},
      {"abcabd", "*ab?", true},
      {"abc", "abc**", true},
      {"abc", "", false},
      {"MICR_Print_1.dat", "micr_print_*", true},
  };
  for (const auto& [name, pattern, matches] : cases)
    EXPECT_EQ(MatchesPattern(name, pattern), matches) << name;
}

TEST_F(SystemFiles, NamesAreFoundInAnyCase) {
  std::filesystem::create_directories(folder_.Platform("Data/logs"));
  Touch("Data/escrow_banks.dbf");
  Touch("Data/both");
  Touch("Data/BOTH");
  const std::string found = folder_.Platform("Data/escrow_banks.dbf");
  EXPECT_EQ(files_.PlatformPath(folder_.Held("DATA\\ESCROW_BANKS.DBF")), found);
  EXPECT_EQ(files_.PlatformPath(folder_.Platform("data/Escrow_Banks.dbf")), found);
  EXPECT_EQ(files_.PlatformPath(found), found);
  EXPECT_EQ(files_.PlatformPath(folder_.Held("data\\both")), folder_.Platform("Data/both"));
  EXPECT_EQ(files_.PlatformPath(folder_.Held("data\\Both")), folder_.Platform("Data/BOTH"));
  EXPECT_EQ(files_.PlatformPath(folder_.Held("data\\New\\Name.txt")), folder_.Platform("Data/New/Name.txt"));
  EXPECT_EQ(files_.HeldPath("/srv/data"), "\\srv\\data");
  EXPECT_EQ(files_.PlatformPath(""), "");

  // A file written under another case replaces the one that is there.
  EXPECT_TRUE(files_.Write(folder_.Held("data\\Escrow_Banks.DBF"), "new"));
  EXPECT_EQ(files_.Read(folder_.Held("Data\\escrow_banks.dbf")), "new");
  EXPECT_THAT(files_.List(folder_.Held("DATA\\"), "*.dbf"), ElementsAre("escrow_banks.dbf"));
}

TEST_F(SystemFiles, FoldersAreMadeAndRemovedWithAllTheyHold) {
  const std::string deep = folder_.Held("Logs\\1\\");
  EXPECT_FALSE(files_.FolderExists(deep));
  EXPECT_TRUE(files_.CreateFolder(deep));
  EXPECT_TRUE(files_.CreateFolder(folder_.Held("LOGS\\1")));
  EXPECT_TRUE(files_.FolderExists(folder_.Held("logs")));
  EXPECT_FALSE(files_.FileExists(folder_.Held("logs")));
  Touch("file");
  EXPECT_FALSE(files_.CreateFolder(folder_.Held("file\\below")));
  EXPECT_FALSE(files_.RemoveFolder(folder_.Held("file")));
  EXPECT_FALSE(files_.Remove(folder_.Held("Logs")));
  EXPECT_TRUE(files_.RemoveFolder(folder_.Held("Logs\\")));
  EXPECT_TRUE(files_.RemoveFolder(folder_.Held("Logs\\")));
  EXPECT_FALSE(files_.RemoveFolder(""));
  EXPECT_FALSE(files_.RemoveFolder("\\"));
  EXPECT_THAT(files_.List(folder_.Held(), "*"), ElementsAre("file"));
}

TEST_F(SystemFiles, AFailedReplacementLeavesEverythingAsItWas) {
  const std::string path = folder_.Held("Launcher.xml");
  const std::string all_bytes("a\0b\r\n\xFF", 6);
  ASSERT_TRUE(files_.Write(path, "old"));
  ASSERT_TRUE(files_.Write(path, all_bytes));
  EXPECT_EQ(files_.Read(path), all_bytes);
  EXPECT_FALSE(files_.Copy(folder_.Held("missing"), path, {}));
  EXPECT_FALSE(files_.Copy(folder_.Held(), path, {}));
  EXPECT_FALSE(files_.Rename(folder_.Held("missing"), path));
  EXPECT_EQ(files_.Read(path), all_bytes);

  std::filesystem::create_directory(folder_.Platform("folder"));
  EXPECT_FALSE(files_.Write(folder_.Held("folder"), "x"));
  EXPECT_FALSE(files_.Write(folder_.Held("none\\file"), "x"));
  EXPECT_FALSE(files_.Append(folder_.Held("folder"), "x"));
  EXPECT_FALSE(files_.Read(folder_.Held("folder")).has_value());
  // What is no file is never put away for one.
  std::filesystem::create_symlink("/dev/null", folder_.Platform("device"));
  EXPECT_FALSE(files_.Write(folder_.Held("device"), "x"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Platform("device")));
  // Nothing half-written stays beside.
  EXPECT_THAT(files_.List(folder_.Held(), "*"), ElementsAre("Launcher.xml"));
}

TEST_F(SystemFiles, AFileThatCannotBeReadIsNotAMissingOne) {
  Touch("settings.dat", "a=1");
  std::filesystem::create_directory(folder_.Platform("folder.dat"));
  std::filesystem::create_symlink("nowhere", folder_.Platform("link.dat"));
  EXPECT_EQ(files_.ReadIfThere(folder_.Held("SETTINGS.DAT")), "a=1");
  EXPECT_EQ(files_.ReadIfThere(folder_.Held("none.dat")), "");
  EXPECT_EQ(files_.ReadIfThere(folder_.Held("none\\none.dat")), "");
  EXPECT_EQ(files_.ReadIfThere(folder_.Held("folder.dat")), std::nullopt);
  EXPECT_EQ(files_.ReadIfThere(folder_.Held("link.dat")), std::nullopt);
}

TEST_F(SystemFiles, CopyRenameRemove) {
  const std::string big(3'000'000, 'z');
  ASSERT_TRUE(files_.Write(folder_.Held("a.dat"), big));
  Touch("B.DAT", "old");
  std::filesystem::permissions(folder_.Platform("B.DAT"), std::filesystem::perms(0640));
  EXPECT_TRUE(files_.Copy(folder_.Held("A.DAT"), folder_.Held("b.dat"), {}));
  EXPECT_EQ(files_.Read(folder_.Held("b.dat")), big);
  EXPECT_EQ(std::filesystem::status(folder_.Platform("B.DAT")).permissions(), std::filesystem::perms(0640));
  EXPECT_EQ(files_.SizeOf(folder_.Held("b.dat")), 3'000'000U);
  EXPECT_TRUE(files_.Rename(folder_.Held("a.dat"), folder_.Held("c.dat")));
  EXPECT_THAT(files_.List(folder_.Held(), "*.dat"), ElementsAre("B.DAT", "c.dat"));
  EXPECT_TRUE(files_.Remove(folder_.Held("C.dat")));
  EXPECT_TRUE(files_.Remove(folder_.Held("C.dat")));
  EXPECT_FALSE(files_.SizeOf(folder_.Held("c.dat")).has_value());
  EXPECT_FALSE(files_.Modified(folder_.Held("c.dat")).has_value());
}

TEST_F(SystemFiles, TheTimeOfAChangeIsLocalTime) {
  const DateTime before = SystemClock().Now();
  ASSERT_TRUE(files_.Write(folder_.Held("a"), "x"));
  const DateTime changed = files_.Modified(folder_.Held("a")).value();
  EXPECT_LE(JulianDay(before.date), JulianDay(changed.date));
  EXPECT_LE(changed, SystemClock().Now());
  const auto seconds = [](const DateTime& at) { return at.hour * 3600 + at.minute * 60 + at.second; };
  // The file system's clock may lag by one tick; a day's end may lie between.
  EXPECT_LE(seconds(before) - seconds(changed), before.date == changed.date ? 1 : 86400);
}

TEST_F(SystemFiles, AppendsOfSeveralWritersDoNotMix) {
  const std::string path = folder_.Held("Audit_Trail.log");
  std::vector<std::thread> writers;
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    writers.emplace_back([this, &path, letter] {
      for (int i = 0; i < 100; ++i) files_.Append(path, std::string(200, letter) + "\n");
    });
  }
  for (std::thread& writer : writers) writer.join();
  const std::vector<std::string> lines = Split(files_.Read(path).value(), '\n');
  ASSERT_EQ(lines.size(), 401U);
  for (std::size_t i = 0; i < 400; ++i) ASSERT_EQ(lines[i], std::string(200, lines[i].front()));
}

}  // namespace
}  // namespace tallwick
