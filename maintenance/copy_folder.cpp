#include "maintenance/copy_folder.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "shell/clsSecurity.h"
#include "shell/transactions_switch.h"

namespace tallwick {
namespace {

constexpr std::string_view kSharedTables[] = {"Escrow_Agent.dbf", "Escrow_Banks.dbf", "Escrow_Xrfs.dbf",
                                              "Escrow_Notes.dbf"};

std::string UpperBase(std::string_view name) {
  return ToUpper(name.substr(0, name.find('.')));
}

bool IsShared(std::string_view name) {
  return std::any_of(std::begin(kSharedTables), std::end(kSharedTables),
                     [&](std::string_view shared) { return UpperBase(shared) == UpperBase(name); });
}

bool HasExtension(std::string_view name, std::string_view extension) {
  return ToUpper(name).ends_with(extension);
}

// Files that other work is just putting in place, and a table's old form while it is rebuilt.
bool IsOnItsWay(std::string_view name) {
  return name.ends_with('~') || HasExtension(name, ".TMP") || HasExtension(name, ".SAV") ||
         HasExtension(name, ".SAV.FPT");
}

// A table's companions are its own, even where a settings file shares its name.
std::vector<std::string> Companions(const FileSystem& files, std::string_view folder, std::string_view name) {
  const std::string stem(name.substr(0, name.size() - 3));
  const bool is_table = HasExtension(name, ".DBF");
  const bool beside_table = !is_table && !files.List(folder, stem + "DBF").empty();
  if (beside_table) return {std::string(name)};
  std::vector<std::string> names = files.List(folder, stem + "*");
  std::erase_if(names, [&](const std::string& one) {
    return IsOnItsWay(one) || (is_table && HasExtension(one, ".DAT"));
  });
  return names;
}

constexpr std::string_view kDateForm = "dddd, mmmm d, yyyy";
constexpr std::string_view kTimeForm = "hh:nn AM/PM";
constexpr std::size_t kLongestUser = 64;

int NumberIn(std::string_view digits) {
  return IsAllDigits(digits) && digits.size() <= 4 ? std::stoi(std::string(digits)) : 0;
}

// "Friday, March 15, 2024"; a text that is not the form of any day is no date.
bool IsStampDate(const std::string& text) {
  const std::vector<std::string> words = Split(text, ' ');
  if (words.size() != 4 || words[2].empty()) return false;
  Date date{NumberIn(words[3]), 0, NumberIn(words[2].substr(0, words[2].size() - 1))};
  for (date.month = 1; date.month <= 12; ++date.month) {
    if (IsValidDate(date) && EqualsIgnoreCase(FormatDate(date, kDateForm), text)) return true;
  }
  return false;
}

// "09:30 AM"
bool IsStampTime(std::string_view text) {
  if (text.size() != 8) return false;
  DateTime when{{2000, 1, 1}, NumberIn(text.substr(0, 2)) % 12, NumberIn(text.substr(3, 2)), 0};
  if (EqualsIgnoreCase(text.substr(6), "PM")) when.hour += 12;
  return when.minute < 60 && EqualsIgnoreCase(FormatDateTime(when, kTimeForm), text);
}

bool IsStampUser(std::string_view text) {
  return !text.empty() && text.size() <= kLongestUser &&
         std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string UserOfCopy(const Session& session) {
  for (const std::string& name :
       {session.User().sUserName, session.Login(), session.TheWorkstation().ComputerName()}) {
    if (!Trim(name).empty()) return std::string(Trim(name));
  }
  return "N/A";
}

}  // namespace

std::string CopyFolder(const Session& session) {
  return session.DataPath() + "DBFCOPYS\\";
}

CopyStamp ReadStamp(const Session& session) {
  CopyStamp stamp;
  const std::optional<std::string> text =
      session.Files().Read(CopyFolder(session) + std::string(CopyStamp::kFileName));
  if (!text) return stamp;
  const std::vector<std::string> lines = Split(FromWindows1252(*text), '\n');
  const auto line = [&lines](std::size_t i) { return i < lines.size() ? std::string(Trim(lines[i])) : ""; };
  if (!IsStampDate(line(0))) return stamp;
  stamp.date = line(0);
  if (IsStampTime(line(1))) stamp.time = line(1);
  if (IsStampUser(line(2))) stamp.user = line(2);
  return stamp;
}

bool WriteStamp(Session& session) {
  const DateTime now = session.TheClock().Now();
  const std::string text = FormatDateTime(now, kDateForm) + "\r\n" + FormatDateTime(now, kTimeForm) + "\r\n" +
                           UserOfCopy(session) + "\r\n";
  return session.Files().Write(CopyFolder(session) + std::string(CopyStamp::kFileName),
                               ToWindows1252(text).value_or(text));
}

std::vector<FileGroup> WalkedGroups(const FileSystem& files, std::string_view folder) {
  std::vector<FileGroup> groups;
  for (std::string_view pattern : {"*.DAT", "*.DBF"}) {
    for (const std::string& name : files.List(folder, pattern)) {
      if (IsShared(name) || IsOnItsWay(UpperBase(name)) || EqualsIgnoreCase(name, kFormerSwitchFile))
        continue;
      groups.push_back({name, Companions(files, folder, name), HasExtension(name, ".DAT")});
    }
  }
  return groups;
}

std::vector<FileGroup> SharedGroups(const FileSystem& files, std::string_view folder) {
  std::vector<FileGroup> groups;
  for (std::string_view name : kSharedTables) {
    FileGroup group{std::string(name), {}, false};
    if (!files.List(folder, name).empty()) group.files = Companions(files, folder, name);
    groups.push_back(std::move(group));
  }
  return groups;
}

std::uint64_t SizeOf(const FileSystem& files, std::string_view folder, const std::vector<FileGroup>& groups) {
  std::uint64_t size = 0;
  for (const FileGroup& group : groups) {
    for (const std::string& name : group.files) size += files.SizeOf(std::string(folder) + name).value_or(0);
  }
  return size;
}

}  // namespace tallwick
