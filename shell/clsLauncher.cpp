#include "shell/clsLauncher.h"

#include "core/text.h"
#include "shell/settings_xml.h"

namespace tallwick {
namespace {

constexpr std::string_view kRoot = "Launcher";
constexpr std::string_view kEntry = "AppName";
constexpr std::string_view kRegistryKey = "KVR_Launcher";

struct Setting {
  std::string_view element;
  std::string_view registry_value;
  std::string clsLauncher::*member;
};

constexpr Setting kSettings[] = {{"AppPath", "Application Folder", &clsLauncher::AppPath},
                                 {"UpdatePath", "Updates Folder", &clsLauncher::UpdatePath},
                                 {"StopUpdates", "Stop Updates", &clsLauncher::StopUpdates}};

XmlElement AppendEntry(const XmlFile& file, std::string_view name) {
  XmlElement entry = file.Root().Append(kEntry);
  entry.SetAttribute("name", name);
  return entry;
}

}  // namespace

clsLauncher::clsLauncher(FileSystem& files, const Registry* registry, std::string_view settings_path)
    : files_(files), settings_path_(WithBackslash(Trim(settings_path))) {
  if (settings_path_.empty()) return;
  const std::string folder = WithoutBackslash(settings_path_);
  if (!files_.FolderExists(folder) && !files_.CreateFolder(folder)) return;
  if (registry != nullptr && !files_.FileExists(Path())) Migrate(*registry);
}

void clsLauncher::Migrate(const Registry& registry) {
  XmlFile file(files_, Path(), kRoot);
  file.Start();
  for (const std::string& name : registry.Subkeys(kRegistryKey)) {
    XmlElement entry = AppendEntry(file, Trim(name));
    for (const Setting& setting : kSettings) {
      entry.Append(setting.element).SetText(Trim(registry.Value(kRegistryKey, name, setting.registry_value)));
    }
  }
  file.Save();
}

void clsLauncher::SetAppName(std::string_view name) {
  app_name_ = name;
  if (!name.empty()) text_file_ = std::string(BaseNameOf(name)) + ".txt";
}

void clsLauncher::Load() {
  XmlFile file(files_, Path(), kRoot);
  const bool loaded = !settings_path_.empty() && file.Load();
  const XmlElement entry = loaded ? file.Named(kEntry, app_name_) : XmlElement();
  for (const Setting& setting : kSettings) this->*setting.member = entry.Child(setting.element).Text();
}

bool clsLauncher::Save() {
  if (settings_path_.empty()) return false;
  XmlFile file(files_, Path(), kRoot);
  if (!file.Load()) file.Start();
  XmlElement entry = file.Named(kEntry, app_name_);
  if (!entry) entry = AppendEntry(file, app_name_);
  for (const Setting& setting : kSettings) entry.ChildOrNew(setting.element).SetText(this->*setting.member);
  return file.Save();
}

}  // namespace tallwick
