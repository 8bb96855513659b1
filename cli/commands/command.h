// The commands. Each registers its words, arguments and options with the parser; the one that the command
// line names becomes the chosen action, which runs after everything has been read.
#pragma once

#include <functional>
#include <memory>

#include <CLI/CLI.hpp>

#include "cli/office.h"
#include "cli/output.h"

namespace tallwick::cli {

// Does the work, prints through the office's output and gives the exit status.
using Action = std::function<int(Office&)>;

// Hooks `run` behind a parsed command: its arguments live as long as the action does.
template <typename Arguments>
void Choose(CLI::App* command, Action& chosen, std::shared_ptr<Arguments> arguments,
            int (*run)(Office&, const Arguments&)) {
  command->callback([&chosen, arguments, run] {
    chosen = [arguments, run](Office& office) { return run(office, *arguments); };
  });
}
// The same for a command without arguments.
inline void Choose(CLI::App* command, Action& chosen, int (*run)(Office&)) {
  command->callback([&chosen, run] { chosen = run; });
}

void AddInitCommand(CLI::App& app, Action& chosen);
void AddDemoCommand(CLI::App& app, Action& chosen);
void AddBankCommands(CLI::App& app, Action& chosen);
void AddWordsCommand(CLI::App& app, Action& chosen);
void AddPeriodCommand(CLI::App& app, Action& chosen);
void AddTableCommands(CLI::App& app, Action& chosen);
void AddCheckCommands(CLI::App& app, Action& chosen);
// Adds to the command "check".
void AddCheckPrintCommands(CLI::App& check, Action& chosen);
void AddDepositCommands(CLI::App& app, Action& chosen);
void AddWireCommands(CLI::App& app, Action& chosen);
void AddVoucherCommands(CLI::App& app, Action& chosen);
void AddFileCommand(CLI::App& app, Action& chosen);
void AddLedgerCommand(CLI::App& app, Action& chosen);
void AddReconCommand(CLI::App& app, Action& chosen);
void AddTrialBalanceCommand(CLI::App& app, Action& chosen);
void AddUserCommands(CLI::App& app, Action& chosen);
void AddAuditCommand(CLI::App& app, Action& chosen);
void AddMaintenanceCommands(CLI::App& app, Action& chosen);
void AddVerifyCommand(CLI::App& app, Action& chosen);
void AddDriveCommand(CLI::App& app, Action& chosen);

}  // namespace tallwick::cli
