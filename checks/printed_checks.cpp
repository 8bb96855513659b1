#include "checks/printed_checks.h"

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::string_view kLog = "Checks_Printed.log";

// What stands behind "[NAME: " up to "]"; "" when it is not there.
std::string Part(std::string_view line, std::string_view name) {
  const std::string begin = "[" + std::string(name) + ": ";
  const std::size_t at = line.find(begin);
  if (at == std::string_view::npos) return {};
  const std::string_view rest = line.substr(at + begin.size());
  return std::string(rest.substr(0, rest.find(']')));
}

}  // namespace

PrintedChecks::PrintedChecks(FileSystem& files, std::string_view data_path, std::string_view bank_code)
    : files_(files),
      folder_(std::string(data_path) + "Logs\\" + std::string(Trim(bank_code)) + "\\"),
      path_(folder_ + std::string(kLog)) {}

std::optional<std::map<std::string, std::string>> PrintedChecks::Read() const {
  const std::optional<std::string> text = files_.ReadIfThere(path_);
  if (!text) return std::nullopt;
  std::map<std::string, std::string> printed;
  for (const std::string& line : Split(*text, '\n')) {
    const std::string number = Part(line, "NUMBER");
    const std::string login = FromWindows1252(Part(line, "LOGIN"));
    if (!number.empty())
      printed[number] = Part(line, "DATE") + " " + Part(line, "TIME") + (login.empty() ? "" : " by " + login);
  }
  return printed;
}

// The number first and the payee last: a payee may hold brackets.
bool PrintedChecks::Add(const CheckRecord& check, const PrintNote& note) {
  if (!files_.CreateFolder(folder_)) return false;
  const std::string line = "[NUMBER: " + check.number + "][DATE: " + DisplayDate(note.when.date) +
                           "][TIME: " + FormatDateTime(note.when, "hh:nn:ss") + "][LOGIN: " + note.login +
                           "][COMPUTER: " + note.computer +
                           "][AMOUNT: " + FormatNumber(check.amount, "#,###,###,###.00") +
                           "][FILE: " + check.file_number + "][PAYEE: " + check.payee + "]\r\n";
  return files_.Append(path_, ToWindows1252(line).value_or(line));
}

}  // namespace tallwick
