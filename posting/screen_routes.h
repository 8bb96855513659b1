// The other screens to which the posting screens lead, as data: a command opens its screen by the name that
// the catalogue knows it by.
#pragma once

#include <string_view>

namespace tallwick {

struct ScreenRoute {
  std::string_view command;
  std::string_view caption;
  std::string_view screen;
  std::string_view mode;
  int right = 0;         // see rights.h; 0 = none
  bool of_file = false;  // the screen is opened for the escrow file at hand instead of in a mode
};

// Null for a command that leads nowhere.
const ScreenRoute* FindRoute(std::string_view command);

}  // namespace tallwick
