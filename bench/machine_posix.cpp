#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <vector>

#include "bench/machine.h"

namespace tallwick::bench {

void SettleDisk() {
  ::sync();
}

std::int64_t ReadThrough(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return 0;
  std::vector<char> block(std::size_t{128} << 10);
  std::int64_t total = 0;
  ssize_t got = 0;
  while ((got = ::read(file, block.data(), block.size())) > 0) total += got;
  ::close(file);
  return total;
}

// The resource usage that the system keeps for a process begins with what its parent had, so it does not
// serve.
std::int64_t PeakMemory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::int64_t kibibytes = 0;
    if (word == "VmHWM:" && status >> kibibytes) return kibibytes << 10;
  }
  return 0;
}

std::string OutputOf(const std::string& command) {
  FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return {};
  std::string output;
  std::array<char, 256> part{};
  while (std::fgets(part.data(), part.size(), pipe) != nullptr) output += part.data();
  return ::pclose(pipe) == 0 ? output : std::string();
}

}  // namespace tallwick::bench
