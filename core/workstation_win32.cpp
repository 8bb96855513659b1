// The machine's name, the process and the time zone on Windows.
#include <windows.h>

#include <array>
#include <ctime>

#include "core/system_ports.h"

namespace tallwick {

namespace {

class Win32Workstation : public Workstation {
 public:
  std::string ComputerName() override {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
    DWORD length = static_cast<DWORD>(name.size());
    return GetComputerNameA(name.data(), &length) != 0 ? std::string(name.data(), length) : std::string();
  }
  int ProcessId() override { return static_cast<int>(GetCurrentProcessId()); }
};

}  // namespace

Workstation& SystemWorkstation() {
  static Win32Workstation workstation;
  return workstation;
}

DateTime LocalTime(std::time_t seconds) {
  std::tm local{};
  if (localtime_s(&local, &seconds) != 0) return {};
  return {{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday}, local.tm_hour, local.tm_min, local.tm_sec};
}

}  // namespace tallwick
