// The commands of the main window: one table says what each is called, which screen it opens, and what it
// needs. A screen that is not in the catalogue yet leaves its commands disabled, so that it plugs in by its
// name alone.
#pragma once

#include <span>
#include <string_view>

#include "shell/session.h"

namespace tallwick {

struct MainCommand {
  std::string_view control;
  std::string_view caption;
  std::string_view screen;  // "" for a command that the main window carries out itself
  std::string_view mode;
  int right = 0;              // see rights.h; 0 = none
  bool needs_bank = false;    // a bank must be selected
  bool transactions = false;  // disabled while transactions are locked
  // The same command by another control name: posting commands are known with the verb before and behind the
  // noun.
  std::string_view other_name = {};
};

// In menu order.
std::span<const MainCommand> MainCommands();

// The right that a command asks for, by either of its names; 0 = none, or no such command.
int RightOfCommand(std::string_view control);

// For the work behind a command, whoever has called it: true when the current user may do it, else false
// after a message.
bool MayCarryOut(Session& session, std::string_view control);

// True when the screen, in this mode, enters or changes transactions.
bool EntersTransactions(std::string_view screen, std::string_view mode);

}  // namespace tallwick
