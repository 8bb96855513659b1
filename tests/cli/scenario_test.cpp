// Every drive script in tests/scenarios against its transcript. Lines that only this test reads:
//   #$ COMMAND        run by escrowctl before the script; must succeed
//   #! NAME: TEXT     a file of the data folder with this line in it
//   #> COMMAND        run after it; what it prints, and its exit status, follow the transcript
// A script SCRIPT.txt that ends as its SCRIPT.out says is one test. With TALLWICK_WRITE_SCENARIOS set the
// .out files are written instead, to be read before they are kept.
#include <algorithm>
#include <filesystem>
#include <vector>

#include <gtest/gtest.h>

#include "tests/cli/run_escrowctl.h"

namespace tallwick::testing {
namespace {

std::vector<std::string> Scripts() {
  std::vector<std::string> scripts;
  for (const auto& entry : std::filesystem::directory_iterator(TALLWICK_SOURCE_DIR "/tests/scenarios"))
    if (entry.path().extension() == ".txt") scripts.push_back(entry.path().stem().string());
  std::sort(scripts.begin(), scripts.end());
  return scripts;
}

class ScenarioTest : public ::testing::TestWithParam<std::string> {
 protected:
  // The transcript of the script and of the commands behind it.
  std::string Play(const std::string& path) {
    std::istringstream lines(ReadWhole(path));
    std::string script;
    std::vector<std::string> after;
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("#$ "))
        SetUpBy(line.substr(3));
      else if (line.starts_with("#! "))
        WriteFile(line.substr(3));
      else if (line.starts_with("#> "))
        after.push_back(line.substr(3));
      else
        script += line + '\n';
    }
    const std::string file = escrowctl_.Write("script.txt", script);
    std::string all = Printed(escrowctl_.Run("--company 'Lakeside Title' drive '" + file + "'"));
    for (const std::string& command : after) all += "$ " + command + '\n' + Printed(escrowctl_.Run(command));
    // The data folder is another one in every run.
    for (std::size_t at = 0; (at = all.find(escrowctl_.Data(), at)) != std::string::npos;)
      all.replace(at, escrowctl_.Data().size(), "<data>");
    return all;
  }

 private:
  void SetUpBy(const std::string& command) {
    const RunResult result = escrowctl_.Run(command);
    EXPECT_EQ(result.status, 0) << command << '\n' << result.err;
  }
  void WriteFile(const std::string& text) {
    const std::size_t colon = text.find(": ");
    std::ofstream(escrowctl_.Data(text.substr(0, colon))) << text.substr(colon + 2) << '\n';
  }
  static std::string Printed(const RunResult& result) {
    return result.out + (result.status == 0 ? "" : "exit " + std::to_string(result.status) + '\n');
  }

  Escrowctl escrowctl_;
};

TEST_P(ScenarioTest, EndsAsWritten) {
  const std::string path = TALLWICK_SOURCE_DIR "/tests/scenarios/" + GetParam();
  const std::string transcript = Play(path + ".txt");
  if (std::getenv("TALLWICK_WRITE_SCENARIOS") != nullptr)
    std::ofstream(path + ".out", std::ios::binary) << transcript;
  EXPECT_EQ(transcript, ReadWhole(path + ".out"));
}

INSTANTIATE_TEST_SUITE_P(Scripts, ScenarioTest, ::testing::ValuesIn(Scripts()),
                         [](const auto& script) { return script.param; });

}  // namespace
}  // namespace tallwick::testing
