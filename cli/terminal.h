// The person in front of the program.
#pragma once

namespace tallwick::cli {

// True where standard input and standard error are both a terminal, so that a question can be asked.
bool TerminalCanAnswer();

// Whether the terminal shows what is typed.
void ShowTyping(bool shown);

}  // namespace tallwick::cli
