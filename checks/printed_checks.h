// Which checks went to paper: "Logs\<bank>\Checks_Printed.log" in the data path, a line for every print, only
// ever added to. Check tables have no room for it, and a check may be printed before it is posted.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/date.h"
#include "core/file_system.h"
#include "tables/check_table.h"

namespace tallwick {

struct PrintNote {
  DateTime when;
  std::string login;
  std::string computer;
};

class PrintedChecks {
 public:
  // `data_path` ends with "\".
  PrintedChecks(FileSystem& files, std::string_view data_path, std::string_view bank_code);
  // By check number, what is known of its last print: "03/15/2024 09:30:00 by jdoe". nullopt when the log is
  // there and cannot be read: nobody knows what was printed.
  std::optional<std::map<std::string, std::string>> Read() const;
  // What to say then.
  std::string Problem() const { return CannotBeReadText(path_); }
  // False when it could not be noted.
  bool Add(const CheckRecord& check, const PrintNote& note);

 private:
  FileSystem& files_;
  const std::string folder_;
  const std::string path_;
};

}  // namespace tallwick
