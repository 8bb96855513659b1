// The fixed names of the Windows versions.
#include <array>

#include "shell/machine.h"

namespace tallwick {
namespace {

constexpr int kAny = -1;

// The first row that fits names the version; a row without an edition or service pack stands behind those
// with one.
struct NameRow {
  int platform;
  int major;
  int minor;
  WindowsEdition edition;  // kNone = any
  int release_2;           // 1 = only release 2
  std::string_view service_pack;
  std::string_view name;
};

using enum WindowsEdition;

constexpr std::array kNames = std::to_array<NameRow>({
    {1, 4, 0, kNone, 1, "", "Windows 95 OSR 2"},
    {1, 4, 0, kNone, kAny, "", "Windows 95"},
    {1, 4, 10, kNone, kAny, "", "Windows 98"},
    {1, 4, 90, kNone, kAny, "", "Windows ME"},
    {2, 4, 0, kServer, kAny, "", "Windows NT4 Server"},
    {2, 4, 0, kAdvancedServer, kAny, "", "Windows NT4 Server"},
    {2, 4, 0, kWorkstation, kAny, "", "Windows NT4 Workstation"},
    {2, 4, 0, kNone, kAny, "", "Windows NT4"},
    {2, 5, 0, kAdvancedServer, kAny, "", "Windows 2000 Advanced Server"},
    {2, 5, 0, kServer, kAny, "", "Windows 2000 Server"},
    {2, 5, 0, kWorkstation, kAny, "", "Windows 2000 Workstation"},
    {2, 5, 0, kNone, kAny, "", "Windows 2000"},
    {2, 5, 1, kEmbedded, kAny, "", "Windows XP Embedded"},
    {2, 5, 1, kMediaCenter, kAny, "", "Windows XP Media Center"},
    {2, 5, 1, kStarter, kAny, "", "Windows XP Starter"},
    {2, 5, 1, kTablet, kAny, "", "Windows XP Tablet"},
    {2, 5, 1, kNone, kAny, "Service Pack 3", "Windows XP SP3"},
    {2, 5, 1, kNone, kAny, "Service Pack 2", "Windows XP SP2"},
    {2, 5, 1, kHome, kAny, "", "Windows XP Home"},
    {2, 5, 1, kProfessional, kAny, "", "Windows XP Pro"},
    {2, 5, 1, kNone, kAny, "", "Windows XP"},
    {2, 5, 2, kHomeServer, kAny, "", "Windows Vista Home Server"},
    {2, 5, 2, kNone, 1, "", "Windows 2003 Server R2"},
    {2, 5, 2, kNone, kAny, "", "Windows 2003 Server"},
    {2, 6, 0, kNone, kAny, "Service Pack 1", "Windows Vista SP1"},
    {2, 6, 0, kBusiness, kAny, "", "Windows Vista Business"},
    {2, 6, 0, kEnterprise, kAny, "", "Windows Vista Enterprise"},
    {2, 6, 0, kHomeBasic, kAny, "", "Windows Vista Home Basic"},
    {2, 6, 0, kHomePremium, kAny, "", "Windows Vista Home Premium"},
    {2, 6, 0, kHomeServer, kAny, "", "Windows Vista Home Server"},
    {2, 6, 0, kUltimate, kAny, "", "Windows Vista Ultimate"},
    {2, 6, 0, kNone, kAny, "", "Windows Vista"},
    {2, 6, 1, kNone, kAny, "", "Windows 7"},
});

bool Fits(const NameRow& row, const WindowsVersion& version) {
  if (row.platform != version.platform || row.major != version.major || row.minor != version.minor)
    return false;
  if (row.edition != kNone && row.edition != version.edition) return false;
  if (row.release_2 == 1 && !version.release_2) return false;
  return version.service_pack.find(row.service_pack) != std::string::npos;
}

}  // namespace

std::string WindowsName(const WindowsVersion& version) {
  for (const NameRow& row : kNames) {
    if (Fits(row, version)) return std::string(row.name);
  }
  return {};
}

}  // namespace tallwick
