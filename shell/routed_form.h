// A screen that leads to others: its commands of screen_routes.h open them, that of the ledger for the escrow
// file at hand.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "core/form.h"
#include "shell/screen_routes.h"
#include "shell/session.h"

namespace tallwick {

class RoutedForm : public Form {
 protected:
  // `opener` opens the screens and outlives the form; null where nobody can.
  RoutedForm(std::string name, Session& session, ScreenOpener* opener)
      : Form(std::move(name), session.Boxes()), session_(session), opener_(opener) {}

  // Adds commands, enabled where the user has their right.
  void AddRoutes(std::initializer_list<std::string_view> commands);
  // Opens the screen of a command; one that is not there is told. False where the command leads nowhere.
  bool GoTo(std::string_view command);
  // Shows the item in the screen that it was posted with.
  void OpenItem(const ItemRoute& item) {
    if (opener_ != nullptr) opener_->OpenItem(item.screen, kViewingMode, item.key);
  }
  // The escrow file at hand, "" for none.
  virtual std::string CurrentFile() { return {}; }

  void OnMenu(Control& control) override { GoTo(control.name); }

  Session& session_;
  ScreenOpener* opener_;
};

}  // namespace tallwick
