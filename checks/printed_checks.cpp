#include "checks/printed_checks.h"

#include <array>
#include <cstdio>
#include <random>
#include <set>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::string_view kLog = "Checks_Printed.log";

std::string Bracketed(std::string_view name, std::string_view value) {
  return "[" + std::string(name) + ": " + std::string(value) + "]";
}

// What stands behind "[NAME: " up to "]"; "" when it is not there.
std::string Part(std::string_view line, std::string_view name) {
  const std::string begin = "[" + std::string(name) + ": ";
  const std::size_t at = line.find(begin);
  if (at == std::string_view::npos) return {};
  const std::string_view rest = line.substr(at + begin.size());
  return std::string(rest.substr(0, rest.find(']')));
}

// Of a line that strikes a print out. It begins with that, as no other line does, whatever its payee is.
std::string StruckOut(std::string_view line) {
  constexpr std::string_view kName = "NOT PRINTED";
  return line.starts_with("[NOT PRINTED: ") ? Part(line, kName) : std::string();
}

std::set<std::string> StruckOutIn(std::string_view log) {
  std::set<std::string> prints;
  for (const std::string& line : Split(log, '\n')) prints.insert(StruckOut(line));
  prints.erase("");
  return prints;
}

// The prints that stand in this piece of the log.
LastPrints PrintsIn(std::string_view piece, const std::set<std::string>& struck_out) {
  LastPrints prints;
  for (const std::string& line : Split(piece, '\n')) {
    const std::string number = Part(line, "NUMBER");
    const std::string print = Part(line, "PRINT");
    if (number.empty() || struck_out.contains(print)) continue;
    const std::string login = FromWindows1252(Part(line, "LOGIN"));
    prints[number] = {Part(line, "DATE") + " " + Part(line, "TIME") + (login.empty() ? "" : " by " + login),
                      print};
  }
  return prints;
}

// No two prints have the same, of whatever program or workstation.
std::string NewPrint() {
  std::random_device random;
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%08x%08x", random(), random());
  return digits.data();
}

std::string NoteText(const PrintNote& note) {
  return Bracketed("DATE", DisplayDate(note.when.date)) +
         Bracketed("TIME", FormatDateTime(note.when, "hh:nn:ss")) + Bracketed("LOGIN", note.login) +
         Bracketed("COMPUTER", note.computer);
}

std::string OnDisk(const std::string& line) {
  return ToWindows1252(line).value_or(line) + "\r\n";
}

// The number first and the payee last: a payee may hold brackets.
std::string LineOf(const CheckRecord& check, const PrintNote& note, const std::string& print) {
  return OnDisk(Bracketed("NUMBER", check.number) + NoteText(note) + Bracketed("PRINT", print) +
                Bracketed("AMOUNT", FormatNumber(check.amount, "#,###,###,###.00")) +
                Bracketed("FILE", check.file_number) + Bracketed("PAYEE", check.payee));
}

// Which of the checks somebody has noted beyond what was known; "" when none.
std::string OthersPrint(std::span<const CheckOnPaper> checks, const LastPrints& noted,
                        const LastPrints& known) {
  for (const CheckOnPaper& paper : checks) {
    const auto found = noted.find(paper.check.number);
    const auto expected = known.find(paper.check.number);
    if (found == noted.end() || (expected != known.end() && expected->second == found->second)) continue;
    return "Check " + found->first + " was given to a printer meanwhile, on " + found->second.when + ".";
  }
  return {};
}

}  // namespace

PrintedChecks::PrintedChecks(FileSystem& files, std::string_view data_path, std::string_view bank_code)
    : files_(files),
      folder_(std::string(data_path) + "Logs\\" + std::string(Trim(bank_code)) + "\\"),
      path_(folder_ + std::string(kLog)) {}

std::optional<LastPrints> PrintedChecks::Read() const {
  const std::optional<std::string> log = files_.ReadIfThere(path_);
  if (!log) return std::nullopt;
  return PrintsIn(*log, StruckOutIn(*log));
}

// All lines go in with one write, so that of two programs the one whose lines stand first has the print, and
// both see it.
NotedPrint PrintedChecks::Note(std::span<const CheckOnPaper> checks, const PrintNote& note,
                               const LastPrints& known) {
  NotedPrint noted{NewPrint(), {}};
  const std::string before = files_.ReadIfThere(path_).value_or("");
  std::string lines = before.empty() || before.ends_with('\n') ? "" : "\r\n";  // behind a torn line
  for (const CheckOnPaper& paper : checks) lines += LineOf(paper.check, note, noted.print);
  const bool written = files_.CreateFolder(folder_) && files_.Append(path_, lines);
  const std::string log = files_.ReadIfThere(path_).value_or("");
  const std::size_t own = log.find(Bracketed("PRINT", noted.print));
  if (!written || own == std::string::npos) {
    noted.problem = "The file " + std::string(kLog) +
                    " could not be written in the folder Logs of the company's data.  It says which checks "
                    "were printed.  Make sure that you may write there and that there is room.";
  } else {
    const LastPrints earlier =
        PrintsIn(std::string_view(log).substr(0, log.rfind('\n', own) + 1), StruckOutIn(log));
    noted.problem = OthersPrint(checks, earlier, known);
  }
  if (!noted.problem.empty() && own != std::string::npos) StrikeOut(noted.print, note);
  return noted;
}

bool PrintedChecks::StrikeOut(const std::string& print, const PrintNote& note) {
  return files_.Append(path_, OnDisk(Bracketed("NOT PRINTED", print) + NoteText(note)));
}

}  // namespace tallwick
