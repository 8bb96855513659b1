// Which checks went to paper: "Logs\<bank>\Checks_Printed.log" in the data path, a line for every print, only
// ever added to. Check tables have no room for it, and a check may be printed before it is posted.
//
// A print is noted before it goes to paper, so that no second one passes meanwhile and none goes unnoted; a
// line that names it strikes it out where nothing came of it. Where the printer fails, or the program ends in
// between, nobody knows what came out: such a print counts, and is asked about.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/date.h"
#include "core/file_system.h"
#include "posting/check_ports.h"

namespace tallwick {

struct PrintNote {
  DateTime when;
  std::string login;
  std::string computer;
};

// The last print of a check.
struct LastPrint {
  std::string when;   // "03/15/2024 09:30:00 by jdoe"
  std::string print;  // names the print that it was part of; "" in lines of earlier versions
  friend bool operator==(const LastPrint&, const LastPrint&) = default;
};
using LastPrints = std::map<std::string, LastPrint>;  // by check number

// A print that may go to paper, or why it may not.
struct NotedPrint {
  std::string print;
  std::string problem;  // "" when it may
};

class PrintedChecks {
 public:
  // `data_path` ends with "\".
  PrintedChecks(FileSystem& files, std::string_view data_path, std::string_view bank_code);
  // nullopt when the log is there and cannot be read: nobody knows what was printed.
  std::optional<LastPrints> Read() const;
  // What to say then.
  std::string Problem() const { return CannotBeReadText(path_); }
  // Notes the checks as printed. `known` is what was read when it was decided to print them: a check that
  // somebody else has noted since is a problem, and so is a log that cannot be written. Nothing stands noted
  // then.
  NotedPrint Note(std::span<const CheckOnPaper> checks, const PrintNote& note, const LastPrints& known);
  // Nothing of this print went to paper. False when that could not be written: its checks are then asked
  // about as if they had been printed.
  bool StrikeOut(const std::string& print, const PrintNote& note);

 private:
  FileSystem& files_;
  const std::string folder_;
  const std::string path_;
};

}  // namespace tallwick
