#include <unistd.h>

#include "cli/terminal.h"

namespace tallwick::cli {

bool TerminalCanAnswer() {
  return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

}  // namespace tallwick::cli
