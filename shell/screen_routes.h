// The screens to which other screens lead, as data: a command opens its screen by the name that the catalogue
// knows it by.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"

namespace tallwick {

struct ScreenRoute {
  std::string_view command;
  std::string_view caption;
  std::string_view screen;
  std::string_view mode;
  int right = 0;         // see rights.h; 0 = none
  bool of_file = false;  // the screen is opened for the escrow file at hand instead of in a mode
};

// Opens the ledger of the file at hand, from every screen that has one.
inline constexpr std::string_view kLedgerCommand = "mnuViewFileLedgers";

// Null for a command that leads nowhere.
const ScreenRoute* FindRoute(std::string_view command);

// The screen that shows a posted item in its mode "Viewing", and the texts that look it up there.
struct ItemRoute {
  std::string_view screen;
  std::vector<KeyText> key;
};
inline constexpr std::string_view kViewingMode = "Viewing";
// `kind` is "Check", "Wire", "Voucher" or "Deposit"; `dated` (as typed) is part of a deposit's key only.
ItemRoute RouteToItem(std::string_view kind, std::string_view number, std::string_view dated);

// The escrow file of a grid's chosen row: what stands under the heading "File"; "" where no row is chosen, or
// it stands for no file or for several.
std::string FileOfChosenRow(const Control& grid);

}  // namespace tallwick
