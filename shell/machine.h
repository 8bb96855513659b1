// The port to what the About box says about the machine.
#pragma once

#include <string>

#include "core/date.h"

namespace tallwick {

enum class WindowsEdition {
  kNone,  // the platform does not say
  kWorkstation,
  kServer,
  kAdvancedServer,
  kEmbedded,
  kHome,
  kMediaCenter,
  kProfessional,
  kStarter,
  kTablet,
  kBusiness,
  kEnterprise,
  kHomeBasic,
  kHomePremium,
  kHomeServer,
  kUltimate,
};

// The version information of a Windows system, as the platform gives it.
struct WindowsVersion {
  int platform = 0;  // 1 = the 95 line, 2 = the NT line, 0 = no Windows
  int major = 0;
  int minor = 0;
  WindowsEdition edition = WindowsEdition::kNone;
  bool release_2 = false;    // of Server 2003: R2; of 95: OSR 2
  std::string service_pack;  // "Service Pack 2"
};

// One of the fixed names; "" for a version that has none.
std::string WindowsName(const WindowsVersion& version);

struct MachineFacts {
  std::string program_file;  // held path
  std::string os_name;       // a fixed Windows name, elsewhere the system's own
  std::string os_version;
  std::string system_folder;
  bool is_64_bit = false;
  std::string ip_address;  // "" without a network
};

class Machine {
 public:
  virtual ~Machine() = default;
  virtual MachineFacts Facts() = 0;
};

Machine& SystemMachine();

}  // namespace tallwick
