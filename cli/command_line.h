// The program: reads the command line, runs the command it names and prints what came of it.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tallwick::cli {

// `arguments` without the program's name. Prints to `stream` (standard output); boxes and errors go to
// standard error. The exit status: 0 done, 1 refused or failed (also where `stream` took no more), 2 wrong
// usage, 3 the tables could not be opened.
int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& stream);

}  // namespace tallwick::cli
