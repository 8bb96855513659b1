// The machine as Windows describes it.
#include <winsock2.h>
//
#include <windows.h>
#include <ws2tcpip.h>

#include <array>

#include "core/system_ports.h"
#include "shell/machine.h"

namespace tallwick {
namespace {

WindowsEdition EditionOf(const OSVERSIONINFOEXA& system) {
  if (system.wProductType != VER_NT_WORKSTATION) {
    if ((system.wSuiteMask & VER_SUITE_WH_SERVER) != 0) return WindowsEdition::kHomeServer;
    return (system.wSuiteMask & VER_SUITE_ENTERPRISE) != 0 ? WindowsEdition::kAdvancedServer
                                                           : WindowsEdition::kServer;
  }
  if (system.dwMajorVersion < 6) {
    if (GetSystemMetrics(SM_TABLETPC) != 0) return WindowsEdition::kTablet;
    if (GetSystemMetrics(SM_MEDIACENTER) != 0) return WindowsEdition::kMediaCenter;
    if (GetSystemMetrics(SM_STARTER) != 0) return WindowsEdition::kStarter;
    if ((system.wSuiteMask & VER_SUITE_EMBEDDEDNT) != 0) return WindowsEdition::kEmbedded;
    if ((system.wSuiteMask & VER_SUITE_PERSONAL) != 0) return WindowsEdition::kHome;
    return system.dwMinorVersion == 1 ? WindowsEdition::kProfessional : WindowsEdition::kWorkstation;
  }
  DWORD product = 0;
  GetProductInfo(system.dwMajorVersion, system.dwMinorVersion, 0, 0, &product);
  switch (product) {
    case PRODUCT_BUSINESS:
      return WindowsEdition::kBusiness;
    case PRODUCT_ENTERPRISE:
      return WindowsEdition::kEnterprise;
    case PRODUCT_HOME_BASIC:
      return WindowsEdition::kHomeBasic;
    case PRODUCT_HOME_PREMIUM:
      return WindowsEdition::kHomePremium;
    case PRODUCT_HOME_SERVER:
      return WindowsEdition::kHomeServer;
    case PRODUCT_ULTIMATE:
      return WindowsEdition::kUltimate;
    default:
      return WindowsEdition::kNone;
  }
}

std::string IpAddress() {
  WSADATA started{};
  std::array<char, 256> name{};
  if (WSAStartup(MAKEWORD(2, 2), &started) != 0) return {};
  std::string address;
  addrinfo hints{};
  hints.ai_family = AF_INET;
  addrinfo* found = nullptr;
  if (gethostname(name.data(), static_cast<int>(name.size())) == 0 &&
      getaddrinfo(name.data(), nullptr, &hints, &found) == 0 && found != nullptr) {
    std::array<char, NI_MAXHOST> text{};
    if (getnameinfo(found->ai_addr, static_cast<socklen_t>(found->ai_addrlen), text.data(),
                    static_cast<DWORD>(text.size()), nullptr, 0, NI_NUMERICHOST) == 0) {
      address = text.data();
    }
    freeaddrinfo(found);
  }
  WSACleanup();
  return address;
}

class WindowsMachine : public Machine {
 public:
  MachineFacts Facts() override {
    OSVERSIONINFOEXA system{};
    system.dwOSVersionInfoSize = sizeof(system);
    GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&system));
    WindowsVersion version{static_cast<int>(system.dwPlatformId),   static_cast<int>(system.dwMajorVersion),
                           static_cast<int>(system.dwMinorVersion), EditionOf(system),
                           GetSystemMetrics(SM_SERVERR2) != 0,      system.szCSDVersion};
    MachineFacts facts;
    std::array<char, MAX_PATH> path{};
    GetModuleFileNameA(nullptr, path.data(), MAX_PATH);
    facts.program_file = path.data();
    GetSystemDirectoryA(path.data(), MAX_PATH);
    facts.system_folder = path.data();
    facts.os_name = WindowsName(version);
    if (facts.os_name.empty()) facts.os_name = "Windows";
    facts.os_version = std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
                       std::to_string(system.dwBuildNumber) + " " + version.service_pack;
    SYSTEM_INFO processor{};
    GetNativeSystemInfo(&processor);
    facts.is_64_bit = processor.wProcessorArchitecture != PROCESSOR_ARCHITECTURE_INTEL;
    facts.ip_address = IpAddress();
    return facts;
  }
};

}  // namespace

Machine& SystemMachine() {
  static WindowsMachine machine;
  return machine;
}

}  // namespace tallwick
