#include "cli/command_line.h"

#include <algorithm>
#include <iostream>

#include <CLI/CLI.hpp>

#include "cli/commands/command.h"
#include "cli/office.h"
#include "cli/parser_words.h"
#include "core/text.h"
#include "shell/about.h"

namespace tallwick::cli {

namespace {

// Global options as texts, before they have been understood.
struct RawOptions {
  std::string security;
  std::string today;
  std::string time;
  std::vector<std::string> answers;
};

std::string ReadableAnswer(const std::string& word) {
  return ParseAnswer(word) ? "" : "an answer is OK, Cancel, Yes, No or Retry";
}
std::string ReadableDate(const std::string& text) {
  return ParseIsoDate(text) ? "" : "a day is written YYYY-MM-DD";
}
std::string ReadableTime(const std::string& text) {
  return ParseTimeOfDay(text) ? "" : "a time is written HH:MM:SS";
}

void AddGlobalOptions(CLI::App& app, GlobalOptions& options, RawOptions& raw) {
  app.add_option("--data", options.data, "Company data path (needed by all but words and period)");
  app.add_option("--settings", options.settings, "Settings path; the data path when left out");
  app.add_option("--company", options.company, "Name of the current company");
  app.add_option("--company-number", options.company_number, "Its number");
  app.add_option("--branch", options.branch, "Name of the current branch, of which there is an .SSP file");
  app.add_option("--user", options.user, "Login of the current user");
  app.add_option("--security", raw.security, "on or off (off unless said)")
      ->check(CLI::IsMember({"on", "off"}));
  app.add_option("--bank", options.bank, "Code of the selected bank");
  app.add_option("--today", raw.today, "A fixed day YYYY-MM-DD in place of the clock's")
      ->check(CLI::Validator(ReadableDate, "YYYY-MM-DD"));
  app.add_option("--time", raw.time, "A fixed time HH:MM:SS in place of the clock's")
      ->check(CLI::Validator(ReadableTime, "HH:MM:SS"));
  app.add_option("--computer", options.computer, "Workstation name written to logs");
  app.add_option("--answer", raw.answers,
                 "Answer to the next question: OK, Cancel, Yes, No or Retry; may be repeated")
      ->allow_extra_args(false)
      ->check(CLI::Validator(ReadableAnswer, "WORD"));
  app.add_flag("--json", options.json, "One JSON object on standard output");
}

void Understand(const RawOptions& raw, GlobalOptions& options) {
  options.security = raw.security == "on";
  if (!raw.today.empty()) options.today = ParseIsoDate(raw.today);
  if (!raw.time.empty()) options.time = ParseTimeOfDay(raw.time);
  for (const std::string& word : raw.answers) options.answers.push_back(*ParseAnswer(word));
}

void AddCommands(CLI::App& app, Action& chosen) {
  AddInitCommand(app, chosen);
  AddDemoCommand(app, chosen);
  AddBankCommands(app, chosen);
  AddWordsCommand(app, chosen);
  AddPeriodCommand(app, chosen);
  AddCheckCommands(app, chosen);
  AddDepositCommands(app, chosen);
  AddWireCommands(app, chosen);
  AddVoucherCommands(app, chosen);
  AddFileCommand(app, chosen);
  AddLedgerCommand(app, chosen);
  AddReconCommand(app, chosen);
  AddTrialBalanceCommand(app, chosen);
  AddAuditCommand(app, chosen);
  AddUserCommands(app, chosen);
  AddMaintenanceCommands(app, chosen);
  AddVerifyCommand(app, chosen);
  AddTableCommands(app, chosen);
  AddDriveCommand(app, chosen);
}

// Global options may stand behind the command too.
void LetOptionsFallThrough(CLI::App& app) {
  for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
    command->fallthrough();
    LetOptionsFallThrough(*command);
  }
}

// How a person calls the command: "escrowctl bank add".
std::string CalledAs(const CLI::App& command) {
  const CLI::App* above = command.get_parent();
  return (above == nullptr ? "" : CalledAs(*above) + " ") + command.get_name();
}

int AnswerWrongUsage(const std::string& what, const CLI::App& command, Output& out) {
  const char* tells = command.get_parent() == nullptr ? " --help lists the commands)" : " --help tells more)";
  out.Fail(WithoutSigns(what) + " (" + CalledAs(command) + tells);
  return kWrongUsage;
}

// What a command line asks for when it is not a command: help, the version, or nothing that can be
// understood.
int AnswerWithoutCommand(const CLI::App& app, const CLI::ParseError& error, const CLI::App& command,
                         Output& out) {
  if (error.get_exit_code() != 0) {
    // A mistyped command is, to the parser, a command that is missing and a word left over.
    const std::vector<std::string> left_over = app.remaining(true);
    const bool mistyped = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && !left_over.empty();
    return AnswerWrongUsage(mistyped ? Quoted(left_over.front()) + " is not understood" : error.what(),
                            command, out);
  }
  const bool version = dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr;
  const std::string text = version ? app.version() : app.help();
  out.Set(version ? "version" : "help", text);
  out.Line(text);
  return kDone;
}

// Wanted even where the rest of the line cannot be understood.
bool WantsJson(const std::vector<std::string>& arguments) {
  const auto end = std::find(arguments.begin(), arguments.end(), "--");
  return std::find(arguments.begin(), end, "--json") != end;
}

// Ends the output. What was done stays done where nobody could be told.
int Finish(int status, const std::vector<ShownBox>& shown, Output& out) {
  if (out.Finish(shown)) return status;
  std::cerr << "escrowctl: The output could not be written whole"
            << (status == kDone ? ".  What the command was to do is done: look before you repeat it" : "")
            << std::endl;
  return status == kDone ? kRefused : status;
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& stream) {
  Output out(WantsJson(arguments), stream);
  GlobalOptions options;
  RawOptions raw;
  Action chosen;
  CLI::App app("escrowctl: escrow accounting from the command line", "escrowctl");
  app.set_version_flag("--version", "escrowctl " + VersionTextOf({}));
  app.require_subcommand(1);
  AddGlobalOptions(app, options, raw);
  AddCommands(app, chosen);
  LetOptionsFallThrough(app);
  TakeBracketsBack(app);
  ParserWords ready = ReadyForParser(app, arguments);
  if (!ready.wrong.empty()) return Finish(AnswerWrongUsage(ready.wrong, *ready.command, out), {}, out);
  // The parser takes its words from the back.
  std::reverse(ready.words.begin(), ready.words.end());
  try {
    app.parse(ready.words);
  } catch (const CLI::ParseError& error) {
    return Finish(AnswerWithoutCommand(app, error, *ready.command, out), {}, out);
  }
  Understand(raw, options);
  CommandLineBoxes boxes(options.answers);
  int status = kDone;
  {
    Office office(options, boxes, out);
    status = chosen(office);
    if (status == kDone && !office.ReadWhole()) status = kRefused;
  }
  return Finish(status, boxes.Shown(), out);
}

}  // namespace tallwick::cli
