// The global options of the command line, as they were given.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "core/date.h"
#include "core/message_boxes.h"

namespace tallwick::cli {

struct GlobalOptions {
  std::string data;      // company data path in the platform's form; "" = not given
  std::string settings;  // "" = the data path
  std::string company;
  std::string company_number;
  std::string branch;  // whose name and address stand on checks; "" = the company's name
  std::string user;
  bool security = false;
  std::string bank;
  std::optional<Date> today;
  std::optional<DateTime> time;   // its time of day only
  std::string computer;           // "" = the system's name
  std::deque<BoxAnswer> answers;  // for the questions to come, in order
  bool json = false;
};

// What the program ends with.
enum ExitStatus : int {
  kDone = 0,
  kRefused = 1,  // refused or failed, and a message said why
  kWrongUsage = 2,
  kNoTables = 3,  // the tables could not be opened
};

}  // namespace tallwick::cli
