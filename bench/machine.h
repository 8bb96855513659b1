// What measurements need of the machine.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <random>
#include <string>

namespace tallwick::bench {

// Returns when everything written so far, by anyone, is on the disk: one run's writes do not slow the next.
void SettleDisk();

// Reads a file from end to end in blocks of 128 KiB; the bytes read, 0 when it cannot be read.
std::int64_t ReadThrough(const std::string& path);

// The most memory that this process has had at once, in bytes.
std::int64_t PeakMemory();

// How long the work takes.
inline double Seconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// A folder of its own, removed at the end.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& parent)
      : path_(parent + "/tallwick-bench-" + std::to_string(std::random_device()())) {
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

// What a command prints; empty when it fails.
std::string OutputOf(const std::string& command);

}  // namespace tallwick::bench
