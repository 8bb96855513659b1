// The lines of a drive script, read one at a time.
//
//   # ...                              comment
//   today YYYY-MM-DD [HH:MM:SS]        user [LOGIN]     security on|off       bank CODE
//   answer OK|Cancel|Yes|No|Retry
//   open SCREEN [MODE]                 close
//   set CONTROL[(INDEX)] VALUE         VALUE is the rest of the line as it stands, and may be empty
//   check CONTROL   uncheck CONTROL    of a check list CONTROL(ROW)
//   choose CONTROL[(INDEX)] [ROW]
//   click CONTROL   menu CONTROL       key NAME         leave
//   show CONTROL[(INDEX)]...
//
// LOGIN and CODE are the rest of the line without blanks around it. An index stands in parentheses directly
// behind the name. A line is one step or it is wrong; there is no nesting.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/date.h"
#include "core/message_boxes.h"

namespace tallwick::cli {

enum class Verb {
  kComment,  // also an empty line
  kToday,
  kUser,
  kSecurity,
  kBank,
  kAnswer,
  kOpen,
  kClose,
  kSet,
  kLeave,
  kCheck,
  kUncheck,
  kChoose,
  kClick,
  kMenu,
  kKey,
  kShow,
};

struct ControlName {
  std::string name;
  int index = 0;  // 0 = none given
};

// "txtAmounts(3)" or "txtAmounts", as scripts and transcripts spell a control.
std::string ControlText(std::string_view name, int index);

struct Step {
  Verb verb = Verb::kComment;
  std::vector<ControlName> controls;  // one, or those to show
  std::string text;                   // the value to set, screen, login, bank code, key
  std::string mode;                   // of open
  int row = 0;                        // of choose, from 1; 0 = none given
  bool on = false;                    // of security
  BoxAnswer answer = BoxAnswer::kOk;
  Date day;                      // of today
  std::optional<DateTime> time;  // of today
};

// The step on a line; nullopt with `wrong` saying why it is none.
std::optional<Step> ParseStep(std::string_view line, std::string* wrong);

}  // namespace tallwick::cli
