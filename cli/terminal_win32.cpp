#include <io.h>
#include <stdio.h>
#include <windows.h>

#include "cli/terminal.h"

namespace tallwick::cli {

bool TerminalCanAnswer() {
  return _isatty(_fileno(stdin)) != 0 && _isatty(_fileno(stderr)) != 0;
}

// Here no file gets the place of a standard stream.
void KeepStandardStreams() {}

void ShowTyping(bool shown) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0;
  if (GetConsoleMode(input, &mode) == 0) return;
  SetConsoleMode(input, shown ? mode | ENABLE_ECHO_INPUT : mode & ~DWORD{ENABLE_ECHO_INPUT});
}

}  // namespace tallwick::cli
