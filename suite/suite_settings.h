// What the stand-in publishes, and the INI file it is read from:
//   [Company] Name, Number, DataPath, ApplicationPath, SettingsPath, UpdatePath, InactiveBanksPath, Branches,
//             FileList
//   [User]    Login, SecurityOn
// Paths are written with "/". Branches are parted by commas; the first is selected at first. FileList is a
// text file with one escrow file number a line.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace tallwick {

struct SuiteSettings {
  QString company_name = "Tallwick";
  QString company_number = "1";
  QString data_path;
  QString application_path;
  QString settings_path;  // the data path when left out
  QString update_path;
  QString inactive_banks_path;  // the data path when left out
  QStringList branches = {"Main Office"};
  QString branch = branches.front();  // the selected one
  QString login;
  bool security_on = false;
  std::optional<QStringList> file_list;  // upper case; nothing where no list is kept
};

// Reads the file over `settings`. False when it cannot be read.
bool ReadSettings(const QString& path, SuiteSettings& settings);

// Takes the names for the branches and selects the first; blank ones are left out.
void SetBranches(const QStringList& names, SuiteSettings& settings);

// The lines of a file list. False when it cannot be read.
bool ReadFileList(const QString& path, SuiteSettings& settings);

}  // namespace tallwick
