// clsLauncher: what "Launcher.xml" in the settings path says about one program of the suite.
//
//   <Launcher><AppName name="Tallwick.exe"><AppPath/><UpdatePath/><StopUpdates/></AppName>...</Launcher>
//
// A file that cannot be read reads as empty; when it is to be written, a new one takes its place.
#pragma once

#include <string>
#include <string_view>

#include "core/file_system.h"
#include "shell/registry.h"

namespace tallwick {

class clsLauncher {
 public:
  // Makes the settings folder where it is missing, and "Launcher.xml" from what `registry` holds under
  // "KVR_Launcher"; without a registry the file is left for a program that has one. A disk that takes neither
  // is no error: the settings are empty then. Nothing is done without a settings path.
  clsLauncher(FileSystem& files, const Registry* registry, std::string_view settings_path);

  // The program the entry is for: its file name. Sets the text file's name too, unless it is empty.
  void SetAppName(std::string_view name);
  const std::string& AppName() const { return app_name_; }
  const std::string& TextFileName() const { return text_file_; }  // "Tallwick.txt" of "Tallwick.exe"

  std::string AppPath;
  std::string UpdatePath;
  std::string StopUpdates;  // as the text found

  // Reads the program's entry; one that is not to be had reads as empty.
  void Load();
  // Writes it. False when the file could not be written.
  bool Save();

 private:
  std::string Path() const { return settings_path_ + "Launcher.xml"; }
  void Migrate(const Registry& registry);

  FileSystem& files_;
  std::string settings_path_;  // "" or ending with "\"
  std::string app_name_;
  std::string text_file_;
};

}  // namespace tallwick
