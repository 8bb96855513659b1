// The port to the per-user store in which earlier versions of the suite kept their settings. It is only read.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"

namespace tallwick {

class Registry {
 public:
  virtual ~Registry() = default;
  // Names of the subkeys of a program's key ("KVR_Launcher"), in the store's order; none when it is missing.
  virtual std::vector<std::string> Subkeys(std::string_view key) const = 0;
  // "" when there is no such value.
  virtual std::string Value(std::string_view key, std::string_view subkey, std::string_view name) const = 0;
};

// The same store as an INI file: a section [key\subkey] for each subkey, a line "name=value" for each value.
// Names are compared without regard to case; lines that are neither, and a missing file, say nothing.
class IniRegistry : public Registry {
 public:
  IniRegistry(const FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
  std::vector<std::string> Subkeys(std::string_view key) const override;
  std::string Value(std::string_view key, std::string_view subkey, std::string_view name) const override;

 private:
  const FileSystem& files_;
  std::string path_;
};

// The user's own: the platform's store on Windows, elsewhere the INI file "tallwick/Registry.ini" in the
// user's folder of settings.
std::unique_ptr<Registry> UserRegistry(const FileSystem& files);

}  // namespace tallwick
