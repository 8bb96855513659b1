// The machine's name, the process and the time zone on POSIX systems.
#include <unistd.h>

#include <array>
#include <ctime>
#include <fstream>

#include "core/system_ports.h"

namespace tallwick {

namespace {

class PosixWorkstation : public Workstation {
 public:
  // The host's name without its domain.
  std::string ComputerName() override {
    std::array<char, 256> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) return {};
    const std::string text(name.data());
    return text.substr(0, text.find('.'));
  }
  int ProcessId() override { return getpid(); }
  std::string BootId() override {
    std::ifstream file("/proc/sys/kernel/random/boot_id");
    std::string id;
    std::getline(file, id);
    return id;
  }
};

}  // namespace

Workstation& SystemWorkstation() {
  static PosixWorkstation workstation;
  return workstation;
}

DateTime LocalTime(std::time_t seconds) {
  std::tm local{};
  if (localtime_r(&seconds, &local) == nullptr) return {};
  return {{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday}, local.tm_hour, local.tm_min, local.tm_sec};
}

}  // namespace tallwick
