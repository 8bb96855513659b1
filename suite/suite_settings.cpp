#include "suite/suite_settings.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace tallwick {

bool ReadFileList(const QString& path, SuiteSettings& settings) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
  QStringList numbers;
  while (!file.atEnd()) {
    const QString number = QString::fromUtf8(file.readLine()).trimmed().toUpper();
    if (!number.isEmpty()) numbers << number;
  }
  settings.file_list = numbers;
  return true;
}

void SetBranches(const QStringList& names, SuiteSettings& settings) {
  QStringList branches;
  for (const QString& name : names) {
    if (!name.trimmed().isEmpty()) branches << name.trimmed();
  }
  if (branches.isEmpty()) return;
  settings.branches = branches;
  settings.branch = branches.front();
}

bool ReadSettings(const QString& path, SuiteSettings& settings) {
  if (!QFileInfo(path).isReadable()) return false;
  const QSettings ini(path, QSettings::IniFormat);
  if (ini.status() != QSettings::NoError) return false;
  const auto take = [&ini](const char* key, QString& value) {
    value = ini.value(QLatin1String(key), value).toString();
  };
  take("Company/Name", settings.company_name);
  take("Company/Number", settings.company_number);
  take("Company/DataPath", settings.data_path);
  take("Company/ApplicationPath", settings.application_path);
  take("Company/SettingsPath", settings.settings_path);
  take("Company/UpdatePath", settings.update_path);
  take("Company/InactiveBanksPath", settings.inactive_banks_path);
  // Older files name one branch.
  const QVariant branches =
      ini.contains("Company/Branches") ? ini.value("Company/Branches") : ini.value("Company/Branch");
  SetBranches(branches.toStringList(), settings);
  take("User/Login", settings.login);
  settings.security_on = ini.value("User/SecurityOn", settings.security_on).toBool();
  const QString list = ini.value("Company/FileList").toString();
  return list.isEmpty() || ReadFileList(list, settings);
}

}  // namespace tallwick
