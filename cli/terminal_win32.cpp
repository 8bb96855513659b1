#include <io.h>
#include <stdio.h>

#include "cli/terminal.h"

namespace tallwick::cli {

bool TerminalCanAnswer() {
  return _isatty(_fileno(stdin)) != 0 && _isatty(_fileno(stderr)) != 0;
}

}  // namespace tallwick::cli
