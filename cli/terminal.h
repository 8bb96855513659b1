// The person in front of the program, and the streams to them.
#pragma once

namespace tallwick::cli {

// True where standard input and standard error are both a terminal, so that a question can be asked.
bool TerminalCanAnswer();

// Keeps the places of standard streams that were closed from files that are opened: what is printed would be
// written into one of them. Printing to such a stream fails.
void KeepStandardStreams();

// Whether the terminal shows what is typed.
void ShowTyping(bool shown);

}  // namespace tallwick::cli
