// The machine as a POSIX system describes it.
#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <fstream>

#include "core/system_ports.h"
#include "core/text.h"
#include "shell/machine.h"

namespace tallwick {
namespace {

std::string ProgramFile() {
  std::array<char, 4096> path{};
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
  return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : std::string();
}

// The name that the system gives itself: PRETTY_NAME of os-release.
std::string SystemName() {
  std::ifstream file("/etc/os-release");
  constexpr std::string_view kKey = "PRETTY_NAME=";
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(kKey, 0) != 0) continue;
    std::string name = line.substr(kKey.size());
    std::erase(name, '"');
    return name;
  }
  return {};
}

// The first address of a network that is up, the loop back to this machine left aside.
std::string IpAddress() {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return {};
  std::string address;
  for (const ifaddrs* one = list; one != nullptr && address.empty(); one = one->ifa_next) {
    if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET) continue;
    if ((one->ifa_flags & IFF_UP) == 0 || (one->ifa_flags & IFF_LOOPBACK) != 0) continue;
    std::array<char, NI_MAXHOST> text{};
    if (getnameinfo(one->ifa_addr, sizeof(sockaddr_in), text.data(), text.size(), nullptr, 0,
                    NI_NUMERICHOST) == 0) {
      address = text.data();
    }
  }
  freeifaddrs(list);
  return address;
}

class PosixMachine : public Machine {
 public:
  MachineFacts Facts() override {
    utsname system{};
    uname(&system);
    MachineFacts facts;
    facts.program_file = SystemFileSystem().HeldPath(ProgramFile());
    facts.os_name = SystemName();
    if (facts.os_name.empty()) facts.os_name = system.sysname;
    facts.os_version = system.release;
    facts.system_folder = SystemFileSystem().HeldPath("/usr/lib");
    facts.is_64_bit = std::string_view(system.machine).find("64") != std::string_view::npos;
    facts.ip_address = IpAddress();
    return facts;
  }
};

}  // namespace

Machine& SystemMachine() {
  static PosixMachine machine;
  return machine;
}

}  // namespace tallwick
