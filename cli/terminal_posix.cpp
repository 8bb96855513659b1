#include <termios.h>
#include <unistd.h>

#include "cli/terminal.h"

namespace tallwick::cli {

bool TerminalCanAnswer() {
  return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

void ShowTyping(bool shown) {
  termios settings{};
  if (tcgetattr(STDIN_FILENO, &settings) != 0) return;
  if (shown) {
    settings.c_lflag |= ECHO;
  } else {
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  }
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings);
}

}  // namespace tallwick::cli
