// Work in processes of their own, as on workstations of their own.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace tallwick::testing {

// The exit status is the result of `work`. Neither the test framework nor any other destructor of the parent
// runs in it.
template <class Work>
pid_t Spawn(Work work) {
  const pid_t child = fork();
  if (child == 0) _exit(work());
  return child;
}

// The exit status; 255 for one that was killed, also by us because it did not end in time.
inline int ExitOf(pid_t child, std::chrono::seconds patience) {
  const auto until = std::chrono::steady_clock::now() + patience;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > until) kill(child, SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

// A number from the environment, for runs that are longer than usual.
inline int Setting(const char* variable, int usual) {
  const char* text = std::getenv(variable);
  return text == nullptr ? usual : std::atoi(text);
}

}  // namespace tallwick::testing
