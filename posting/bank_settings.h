// Settings in small text files of the data path: one "name=value" a line, names without regard to case.
// "MICR_Print_<bank>.dat" holds a bank's MICR line and next check number, "Check_Print_<bank>.dat" its check
// layout, "Reconcile_<bank>.dat" what may be entered into its reconciliations; "User_Options_<login>.dat"
// what a user has chosen on the posting screens. A line that is no setting stays as it is.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/file_system.h"

namespace tallwick {

inline constexpr std::string_view kMicrSettings = "MICR_Print_";
inline constexpr std::string_view kCheckLayoutSettings = "Check_Print_";
inline constexpr std::string_view kReconcileSettings = "Reconcile_";
inline constexpr std::string_view kUserOptions = "User_Options_";

// In the MICR settings: the number that the next check gets where it is higher than the last one posted.
inline constexpr std::string_view kNextCheckNumber = "NextCheckNumber";

// The settings as they were when the object was made, or set through it.
class BankSettings {
 public:
  // `kind` is one of the names above; `data_path` ends with "\". `owner` is the code of a bank or the login
  // of a user, of which the file's name takes what file names can hold.
  BankSettings(FileSystem& files, std::string_view data_path, std::string_view kind, std::string_view owner);
  // "MICR_Print_FNB.dat"
  std::string Name() const { return std::string(FileNameOf(path_)); }
  // Why the settings are not known, in words for a person; "" for a file that was read, or is missing.
  std::string Problem() const;
  // The trimmed value; nullopt when there is none, or the settings are not known.
  std::optional<std::string> Get(std::string_view name) const;
  // The first line, trimmed, that is neither blank, nor a remark behind ";", nor the first one that sets one
  // of `names`; "" when there is none.
  std::string UnknownLine(std::span<const std::string_view> names) const;
  // False when the file could not be read or written; it is then as it was.
  bool Set(std::string_view name, std::string_view value);

 private:
  FileSystem& files_;
  const std::string path_;
  std::optional<std::string> text_;  // "" for a missing file; none when it could not be read
};

}  // namespace tallwick
