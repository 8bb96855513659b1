#include <iostream>
#include <new>

#include "cli/command_line.h"
#include "cli/terminal.h"

int main(int count, char** values) {
  tallwick::cli::KeepStandardStreams();
  std::ios::sync_with_stdio(false);
  try {
    return tallwick::cli::RunCommandLine({values + 1, values + count}, std::cout);
  } catch (const std::bad_alloc&) {
    // A file's head may promise more than any memory holds; nothing has been written for it.
    std::cerr << "There is not enough memory for this.  Look the company over with \"escrowctl verify\".\n";
    return 3;
  }
}
