// From the start of the process to the point where the main window may open.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shell/session.h"

namespace tallwick {

// The name under which this program registers with the suite.
inline constexpr std::string_view kProgramName = "Tallwick Escrow Accounting";

// What is said where another workstation holds the tables for itself.
inline constexpr std::string_view kExclusiveText =
    "Escrow Accounting is in Exclusive Access Mode - Try again later...";

enum class StartUpResult {
  kStarted,
  kNoSuite,        // the suite's main program does not run
  kNoDataPath,     // the company's folder is missing or cannot be read
  kNoEngine,       // the record engine did not start
  kExclusive,      // another workstation holds the tables for itself
  kTablesRefused,  // a company-wide table could not be opened or made
  kOutOfDate,      // one lacks fields, and the user wants the tables brought to the present layout
};

struct StartUpOutcome {
  StartUpResult result = StartUpResult::kNoSuite;
  // Null unless started; of kOutOfDate one that is for the update alone, and then done with.
  std::unique_ptr<Session> session;
  std::vector<std::string> made_tables;  // names of company-wide tables that were missing and have been made
};

// "Company Data Path error: " with what is wrong with the company's folder and the folder itself; "" when it
// exists and can be read.
std::string DataPathProblem(const FileSystem& files, std::string_view data_path);

// Attaches, registers, proves the data path, starts the engine, loads the user, opens the company-wide tables
// (made where they are missing). Every failure has shown its message.
StartUpOutcome StartUp(const Ports& ports, const SuiteFactory& attach);

}  // namespace tallwick
