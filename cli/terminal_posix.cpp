#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <initializer_list>

#include "cli/terminal.h"

namespace tallwick::cli {

bool TerminalCanAnswer() {
  return isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

// A file that is opened gets the lowest free number, and none may do what the stream is for.
void KeepStandardStreams() {
  for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) == -1) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
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
