// Reports into files: --pdf and --rtf of the ledger and the trial balance.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/cli/run_escrowctl.h"

namespace tallwick::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST(ReportFilesTest, WritesWhatIsAskedForAndSaysWhenItCannot) {
  Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("init").status, 0);
  const std::string pdf = escrowctl.Data("report.pdf");
  const std::string rtf = escrowctl.Data("report.rtf");
  ASSERT_TRUE(std::filesystem::exists(TALLWICK_BIN_DIR "/libtallwick_print.so"));
  for (const std::string command : {"ledger 24-0117", "trial-balance"}) {
    const RunResult written = escrowctl.Run("--json " + command + " --rtf '" + rtf + "'");
    EXPECT_EQ(written.status, 0) << written.out << written.err;
    EXPECT_EQ(written.Json()["rtf"], rtf);
    EXPECT_THAT(ReadWhole(rtf), StartsWith("{\\rtf1"));
    std::filesystem::remove(rtf);
    const RunResult printed = escrowctl.Run("--json " + command + " --pdf '" + pdf + "'");
    EXPECT_EQ(printed.status, 0) << printed.out << printed.err;
    EXPECT_EQ(printed.Json()["pdf"], pdf);
    EXPECT_THAT(ReadWhole(pdf), StartsWith("%PDF"));
    EXPECT_EQ(printed.err, "");
    std::filesystem::remove(pdf);
    EXPECT_EQ(escrowctl.Run(command + " --pdf '" + escrowctl.Data("none/report.pdf") + "'").status, 1);
  }
  EXPECT_EQ(escrowctl.Run("ledger 24-0117 --rtf '" + escrowctl.Data("none/report.rtf") + "'").status, 1);
}

TEST(ReportFilesTest, NothingIsRecordedWhereTheReportCannotBeWritten) {
  Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("init").status, 0);
  EXPECT_THAT(escrowctl.Run("trial-balance").out, Not(HasSubstr("TOTAL"))) << "there are no banks";
  ASSERT_EQ(escrowctl.Run("bank add FNT BANKNAME=First BANKACCTMO=3 BANKACCTYR=2024").status, 0);
  const std::string update = "--bank FNT recon --statement 3/2024 --balance 0 --update";
  EXPECT_EQ(escrowctl.Run(update + " --rtf '" + escrowctl.Data("none/report.rtf") + "'").status, 1);
  EXPECT_EQ(escrowctl.Run(update + " --rtf '" + escrowctl.Data() + "'").status, 1) << "a folder";
  const std::string rtf = escrowctl.Data("report.rtf");
  const RunResult recorded = escrowctl.Run(update + " --rtf '" + rtf + "'");
  EXPECT_EQ(recorded.status, 0) << recorded.err;
  EXPECT_THAT(ReadWhole(rtf), StartsWith("{\\rtf1"));
  EXPECT_FALSE(std::filesystem::exists(rtf + ".try"));
  const RunResult no_reason = escrowctl.Run("--bank FNT recon take-back --reason ' '");
  EXPECT_EQ(no_reason.status, 1);
  EXPECT_THAT(no_reason.out + no_reason.err, HasSubstr("Enter why it is taken back."));
}

TEST(ReportFilesTest, AnEmptyWordIsNoFileAndNoFileNumber) {
  Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("init").status, 0);
  for (const char* usage : {"ledger 24-0117 --rtf ''", "trial-balance --pdf ''", "check print 1001 --pdf ''"})
    EXPECT_EQ(escrowctl.Run(usage).status, 2) << usage;
  const RunResult ledger = escrowctl.Run("ledger ' '");
  EXPECT_EQ(ledger.status, 1);
  EXPECT_THAT(ledger.out + ledger.err, HasSubstr("A ledger needs a file number."));
}

}  // namespace
}  // namespace tallwick::testing
