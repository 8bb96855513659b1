// Whole programs beside each other: the second start of one, and one that is locked out by another
// workstation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QUuid>

#include "tests/support/office.h"
#include "ui/suite_protocol.h"

namespace tallwick {
namespace {

using ::testing::HasSubstr;
using testing::Office;

constexpr int kWaitMs = 30'000;

class TwoDesktopsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    for (const QString& socket : {here_, there_}) {
      ASSERT_EQ(
          QProcess::execute(TALLWICK_BIN_DIR "/tallwick-suite", {"--data", office_.folder.Platform().c_str(),
                                                                 "--background", "--socket", socket}),
          0);
    }
  }
  ~TwoDesktopsTest() override {
    for (const QString& socket : {here_, there_}) AskSuite(socket, {{"ask", "quit"}});
  }

  static void Start(QProcess& process, const QString& socket) {
    process.start(TALLWICK_BIN_DIR "/tallwick-escrow", {"--no-boxes", "--socket", socket});
  }
  static std::string FirstLine(QProcess& process) {
    return process.waitForReadyRead(kWaitMs) ? process.readLine().trimmed().toStdString() : "(nothing)";
  }
  static int ExitCode(QProcess& process) {
    return process.waitForFinished(kWaitMs) ? process.exitCode() : -1;
  }
  static void Kill(QProcess& process) {
    process.kill();
    process.waitForFinished(kWaitMs);
  }

  Office office_;
  // Two workstations: on one, a program and its suite belong together by the socket's name.
  const QString here_ = "tallwick-here-" + QUuid::createUuid().toString(QUuid::WithoutBraces);
  const QString there_ = "tallwick-there-" + QUuid::createUuid().toString(QUuid::WithoutBraces);
};

TEST_F(TwoDesktopsTest, ASecondStartEndsWithoutAWord) {
  QProcess first;
  Start(first, here_);
  ASSERT_EQ(FirstLine(first), "ready");
  QProcess second;
  Start(second, here_);
  EXPECT_EQ(ExitCode(second), 0);
  EXPECT_EQ(second.readAllStandardOutput(), "");
  EXPECT_FALSE(second.readAllStandardError().contains("Tallwick")) << "no message";
  EXPECT_EQ(FirstLine(first), "shown");
  QProcess elsewhere;
  Start(elsewhere, there_);
  EXPECT_EQ(FirstLine(elsewhere), "ready") << "another workstation is another instance";
  Kill(elsewhere);
  Kill(first);  // and leaves its lock behind
  QProcess again;
  Start(again, here_);
  EXPECT_EQ(FirstLine(again), "ready");
  Kill(again);
}

TEST_F(TwoDesktopsTest, ExclusiveAccessKeepsTheOtherOut) {
  QProcess desktop;
  Start(desktop, there_);
  ASSERT_EQ(FirstLine(desktop), "ready");
  CompanyTables& company = office_.session->Company();
  company.xrefs.Close();
  EXPECT_LE(company.xrefs.OpenExclusive(), 0) << "a desktop stands open";
  Kill(desktop);
  ASSERT_GT(company.xrefs.OpenExclusive(), 0);
  Start(desktop, there_);
  EXPECT_EQ(ExitCode(desktop), 1);
  EXPECT_THAT(
      desktop.readAllStandardError().toStdString(),
      HasSubstr(
          "information: Tallwick Escrow Accounting: Escrow Accounting is in Exclusive Access Mode - Try "
          "again later..."));
  company.xrefs.Close();
  office_.session->Data().SetSharedAccess();
  Start(desktop, there_);
  EXPECT_EQ(FirstLine(desktop), "ready");
  Kill(desktop);
}

}  // namespace
}  // namespace tallwick
