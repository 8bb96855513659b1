#include <iostream>

#include "cli/command_line.h"

int main(int count, char** values) {
  std::ios::sync_with_stdio(false);
  return tallwick::cli::RunCommandLine({values + 1, values + count}, std::cout);
}
