// The screens of the program by name, for the desktop, the command line and the scripts alike.
// Every label of a form, and every status panel, speaks through its caption; its lines end with "\r" or
// "\r\n".
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

class ScreenCatalogue {
 public:
  // Forms that open other screens call `opener`. Both must outlive the forms made.
  ScreenCatalogue(Session& session, ScreenOpener& opener) : session_(session), opener_(opener) {}

  // "frmMainEscrowAccounting", "frmBankSelect", "frmEditChecksPost", "frmEditUsers", "frmViewLog".
  static std::vector<std::string_view> Names();
  // Modes of a screen; empty where it has only one way to open. The first is taken when none is named.
  static std::vector<std::string_view> Modes(std::string_view screen);
  static bool Knows(std::string_view screen, std::string_view mode = {});

  // A new form, before Form::Opened. Null for an unknown screen or mode, and null after a critical box when
  // the screen cannot open now: no bank is selected, the user lacks the right, or a table is not to be had.
  std::unique_ptr<Form> Make(std::string_view screen, std::string_view mode);

 private:
  Session& session_;
  ScreenOpener& opener_;
};

}  // namespace tallwick
