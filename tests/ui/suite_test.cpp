// The stand-in as a process of its own, and the program beside it: attached, and without it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QUuid>

#include "shell/start_up.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"
#include "ui/desktop.h"
#include "ui/single_instance.h"
#include "ui/suite_client.h"
#include "ui/suite_protocol.h"

namespace tallwick {
namespace {

class SuiteTest : public ::testing::Test {
 protected:
  ~SuiteTest() override { Run({"--stop"}); }
  // Exit code of a run of the stand-in on this test's socket.
  int Run(QStringList arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(TALLWICK_BIN_DIR "/tallwick-suite", arguments << "--socket" << socket_);
    return process.waitForFinished(20'000) ? process.exitCode() : -1;
  }
  std::unique_ptr<Suite> Attach() { return AttachToSuite(socket_, SystemFileSystem()); }
  QString WriteFile(const char* name, const QByteArray& text) {
    QFile file(QString::fromStdString(folder_.Platform(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    return file.fileName();
  }

  const QString socket_ = "tallwick-test-" + QUuid::createUuid().toString(QUuid::WithoutBraces);
  testing::TempFolder folder_;
};

TEST_F(SuiteTest, PublishesItsCompanyToWhoeverAttaches) {
  const QByteArray data = QByteArray::fromStdString(folder_.Platform());
  const QString list = WriteFile("files.txt", "24-0117\n 24-0118 \n");
  const QString settings =
      WriteFile("suite.ini", "[Company]\nName=Lakeside \"Title\", Inc.\nNumber=12\nDataPath=" + data +
                                 "\nBranches=Main, North Office\nFileList=" + list.toUtf8() +
                                 "\n[User]\nLogin=maryk\n");
  ASSERT_EQ(Run({"--settings", settings, "--security", "on", "--number", "13", "--background"}), 0);
  const std::unique_ptr<Suite> suite = Attach();
  ASSERT_NE(suite, nullptr);
  EXPECT_EQ(suite->CompanyNumber(), "13") << "an option goes before the file";
  EXPECT_EQ(WithBackslash(suite->DataPath()), folder_.Held());
  EXPECT_EQ(suite->SettingsPath(), suite->DataPath());
  EXPECT_EQ(suite->Login(), "maryk");
  EXPECT_TRUE(suite->SecurityOn());
  EXPECT_EQ(suite->KnowsFile("24-0118"), true);
  EXPECT_EQ(suite->KnowsFile("24-0119"), false);
  EXPECT_EQ(suite->Files(), (std::vector<std::string>{"24-0117", "24-0118"}));
  EXPECT_TRUE(suite->RegisterProgram(kProgramName, 4711));
  EXPECT_EQ(suite->BranchName(), "Main");
  EXPECT_EQ(Run({"--branch", "North Office"}), 0);
  EXPECT_EQ(Run({"--branch", "South"}), 1);
  EXPECT_EQ(suite->BranchName(), "North Office") << "asked anew";

  EXPECT_EQ(Run({"--data", folder_.Platform().c_str()}), 1) << "a second suite on the socket";
  EXPECT_TRUE(AskSuite(socket_, {{"ask", "anything"}}).contains("error"));
  ASSERT_EQ(Run({"--stop"}), 0);
  EXPECT_EQ(suite->Login(), "maryk") << "a suite that has ended is remembered";
  EXPECT_FALSE(suite->RegisterProgram(kProgramName, 4711));
  EXPECT_EQ(suite->KnowsFile("24-0118"), std::nullopt);
  EXPECT_EQ(suite->Files(), std::nullopt);
}

TEST_F(SuiteTest, ReadsTheBranchOfOlderSettings) {
  const QByteArray data = QByteArray::fromStdString(folder_.Platform());
  const QString settings = WriteFile("suite.ini", "[Company]\nDataPath=" + data + "\nBranch=North Office\n");
  ASSERT_EQ(Run({"--settings", settings, "--background"}), 0);
  const std::unique_ptr<Suite> suite = Attach();
  ASSERT_NE(suite, nullptr);
  EXPECT_EQ(suite->BranchName(), "North Office");
}

TEST_F(SuiteTest, RefusesToStartOnHalfASetting) {
  EXPECT_EQ(Run({}), 1) << "no data path";
  EXPECT_EQ(Run({"--settings", "/no/such/file"}), 1);
  EXPECT_EQ(Run({"--data", folder_.Platform().c_str(), "--security", "maybe"}), 1);
  EXPECT_EQ(Run({"--data", folder_.Platform().c_str(), "--files", "/no/such/file"}), 1);
}

TEST_F(SuiteTest, AnInstanceThatCannotMakeItsLockRunsUnderItsOwnName) {
  const QByteArray temporary = qgetenv("TMPDIR");
  qputenv("TMPDIR", QByteArray::fromStdString(folder_.Platform("gone")));
  SingleInstance instance(socket_);
  temporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", temporary);
  EXPECT_TRUE(instance.IsFirst());
  EXPECT_NE(QGuiApplication::applicationDisplayName(), "unwanted instance");
}

TEST_F(SuiteTest, WithoutASuiteTheProgramSaysSoAndEnds) {
  testing::FakeClock clock;
  testing::FakeWorkstation workstation;
  testing::ScriptedBoxes boxes;
  Desktop desktop({boxes, SystemFileSystem(), clock, workstation});
  EXPECT_FALSE(desktop.Start([this] { return Attach(); }));
  ASSERT_EQ(boxes.shown.size(), 1U);
  EXPECT_EQ(boxes.shown.front().icon, BoxIcon::kCritical);
  EXPECT_THAT(boxes.LastText(), ::testing::HasSubstr("Tallwick Escrow Accounting"));
}

}  // namespace
}  // namespace tallwick
