// The user's registry on Windows.
#include <windows.h>

#include <array>

#include "core/text.h"
#include "shell/registry.h"

namespace tallwick {
namespace {

constexpr const char* kBranch = "SOFTWARE\\VB and VBA Program Settings\\";
constexpr DWORD kLongestName = 2000;

class WindowsRegistry : public Registry {
 public:
  std::vector<std::string> Subkeys(std::string_view key) const override {
    std::vector<std::string> names;
    HKEY opened = nullptr;
    const std::string path = kBranch + std::string(key);
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return names;
    std::array<char, kLongestName> name{};
    for (DWORD i = 0;; ++i) {
      DWORD length = kLongestName;
      if (RegEnumKeyExA(opened, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        break;
      names.emplace_back(Trim(std::string_view(name.data(), length)));
    }
    RegCloseKey(opened);
    return names;
  }
  std::string Value(std::string_view key, std::string_view subkey, std::string_view name) const override {
    const std::string path = kBranch + std::string(key) + "\\" + std::string(subkey);
    std::array<char, kLongestName> value{};
    DWORD length = kLongestName;
    if (RegGetValueA(HKEY_CURRENT_USER, path.c_str(), std::string(name).c_str(), RRF_RT_REG_SZ, nullptr,
                     value.data(), &length) != ERROR_SUCCESS) {
      return {};
    }
    return std::string(Trim(value.data()));
  }
};

}  // namespace

std::unique_ptr<Registry> UserRegistry(const FileSystem&) {
  return std::make_unique<WindowsRegistry>();
}

}  // namespace tallwick
