// A folder of a test's own, gone with everything in it when the test ends.
#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <string_view>

#include "core/system_ports.h"

namespace tallwick::testing {

class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("tallwick-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~TempFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // As the program holds folders ("\tmp\tallwick-1\"), with a name or a path in it behind.
  std::string Held(std::string_view name = {}) const {
    return WithBackslash(SystemFileSystem().HeldPath(path_.string())) + std::string(name);
  }
  // As the platform has it ("/tmp/tallwick-1"; "/tmp/tallwick-1/name").
  std::string Platform(std::string_view name = {}) const {
    return name.empty() ? path_.string() : (path_ / name).string();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tallwick::testing
