// drive: plays a script on the screens and prints its transcript.
#include <fstream>
#include <iostream>

#include "cli/commands/command.h"
#include "cli/drive/player.h"
#include "core/text.h"

namespace tallwick::cli {

namespace {

struct DriveArguments {
  std::string script;  // "" = standard input
  std::string pdf;     // what the screens print; "" = they cannot print
};

int PlayAll(Office& office, std::istream& script) {
  Output& out = office.Out();
  out.StartList("lines");
  const auto tell = [&out](const std::string& line) { out.Item(line, line); };
  std::string error;
  {
    ScriptPlayer player(office, tell);
    std::string line;
    for (int number = 1; std::getline(script, line); ++number) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (Trim(line).empty()) continue;
      tell("> " + line);
      if (player.Play(line)) continue;
      error = "line " + std::to_string(number) + ": " + player.Error();
      tell("error " + error);
      break;
    }
  }
  out.EndList();
  if (error.empty()) return kDone;
  out.Fail(error);
  return office.Status() != kDone ? office.Status() : kRefused;
}

int Drive(Office& office, const DriveArguments& arguments) {
  if (!arguments.pdf.empty() && !office.PrintInto(arguments.pdf)) return office.Status();
  if (arguments.script.empty() || arguments.script == "-") return PlayAll(office, std::cin);
  // A folder can be opened as a file, but not read.
  std::ifstream file(arguments.script);
  file.peek();
  if (file.is_open() && !file.bad()) {
    file.clear();
    return PlayAll(office, file);
  }
  return office.Refuse("The script " + Quoted(arguments.script) +
                       " cannot be read.  Make sure that it is a file that you may read");
}

}  // namespace

void AddDriveCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<DriveArguments>();
  CLI::App* drive = app.add_subcommand("drive", "Drives the screens by control name, from a script");
  drive->add_option("SCRIPT", arguments->script, "A file; left out, standard input");
  drive->add_option("--pdf", arguments->pdf, "Lets screens print checks, into this PDF file");
  Choose(drive, chosen, arguments, Drive);
}

}  // namespace tallwick::cli
