// Runs the built escrowctl as a process of its own, as scripts and people do.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "tests/support/temp_folder.h"

namespace tallwick::testing {

struct RunResult {
  int status = -1;
  std::string out;  // standard output
  std::string err;  // standard error

  // The one object that --json prints; a discarded value when the output is anything else.
  nlohmann::json Json() const { return nlohmann::json::parse(out, nullptr, false); }
};

inline std::string ReadWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

// A company folder, and escrowctl with the options that hold time and place still.
class Escrowctl {
 public:
  // `arguments` are words of a shell's line; standard input is empty unless they redirect it.
  RunResult Run(const std::string& arguments) const {
    return RunPlain("--data '" + Data() + "' --today 2024-03-15 --time 09:30:00 --computer FRONTDESK " +
                    arguments);
  }
  // Without any option given.
  RunResult RunPlain(const std::string& arguments) const {
    const std::string out = folder_.Platform("out.txt");
    const std::string err = folder_.Platform("err.txt");
    const std::string line = before + "'" TALLWICK_BIN_DIR "/escrowctl' " + arguments + " >'" + out +
                             "' 2>'" + err + "'" +
                             (arguments.find('<') == std::string::npos ? " </dev/null" : "");
    const int code = std::system(line.c_str());
    return {(code >> 8) & 0xFF, ReadWhole(out), ReadWhole(err)};
  }
  // The company's folder, and a file in it.
  std::string Data(const std::string& name = {}) const {
    return folder_.Platform(name.empty() ? "data" : "data/" + name);
  }
  // Begins each shell's line, as "ulimit -f 800; ".
  std::string before;

  // A file beside the company's folder.
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_.Platform(name), std::ios::binary) << text;
    return folder_.Platform(name);
  }

 private:
  TempFolder folder_;
};

}  // namespace tallwick::testing
