// The user's registry where the platform has none of its own.
#include <cstdlib>

#include "shell/registry.h"

namespace tallwick {

std::unique_ptr<Registry> UserRegistry(const FileSystem& files) {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  const char* home = std::getenv("HOME");
  std::string folder = config != nullptr ? config : "";
  if (folder.empty() && home != nullptr) folder = std::string(home) + "/.config";
  return std::make_unique<IniRegistry>(files, files.HeldPath(folder + "/tallwick/Registry.ini"));
}

}  // namespace tallwick
