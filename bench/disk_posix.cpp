#include <fcntl.h>
#include <unistd.h>

#include <vector>

#include "bench/disk.h"

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

}  // namespace tallwick::bench
