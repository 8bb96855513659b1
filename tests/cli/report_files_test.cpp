// Reports into files: --pdf and --rtf of the ledger and the trial balance.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/cli/run_escrowctl.h"

namespace tallwick::testing {
namespace {

using ::testing::StartsWith;

TEST(ReportFilesTest, WritesWhatIsAskedForAndSaysWhenItCannot) {
  Escrowctl escrowctl;
  ASSERT_EQ(escrowctl.Run("init").status, 0);
  const std::string pdf = escrowctl.Data("report.pdf");
  const std::string rtf = escrowctl.Data("report.rtf");
  const bool prints = std::filesystem::exists(TALLWICK_BIN_DIR "/libtallwick_print.so");
  for (const std::string command : {"ledger 24-0117", "trial-balance"}) {
    const RunResult written = escrowctl.Run("--json " + command + " --rtf '" + rtf + "'");
    EXPECT_EQ(written.status, 0) << written.out << written.err;
    EXPECT_EQ(written.Json()["rtf"], rtf);
    EXPECT_THAT(ReadWhole(rtf), StartsWith("{\\rtf1"));
    std::filesystem::remove(rtf);
    if (!prints) continue;
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

}  // namespace
}  // namespace tallwick::testing
