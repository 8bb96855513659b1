// Lines of an audit log that nobody recorded when they were written, and what can be said of their writer.
//
// This program records what it writes, and writes neither grid changes nor transactions other than the seven
// of its own: an entry with either came from another program of the suite, or from somebody who wants it to
// look so. Any other line has the form of this program's own entries, or of none.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallwick {

struct UnrecordedLines {
  std::int64_t first = 0;  // lines of the log are counted from 1
  std::int64_t last = 0;
  std::int64_t entries = 0;    // 0: lines that belong to no entry of this stretch
  bool other_program = false;  // of a form that this program never writes
  std::string sample;  // the first entry, "Post Check 10452, Mar 04, 2024 @ 02:07:31 PM, jdoe on DESK"

  // "Line 7", "Lines 7 to 12".
  std::string Place() const;
};

// The lines that begin within bytes `begin` to `end` of the log (Windows-1252), in their order; neighbours of
// one kind are taken together, and empty lines around entries left out.
std::vector<UnrecordedLines> FindUnrecordedLines(std::string_view log, std::int64_t begin, std::int64_t end);

}  // namespace tallwick
