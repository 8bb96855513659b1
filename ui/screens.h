// The windows of the screens by name: which layout, and how it stands on the desktop. What a screen does is
// its form's business; a new screen is a layout and a line here.
#pragma once

#include <QWidget>
#include <memory>
#include <string_view>

namespace tallwick {

// A new window for the screen, or null where the screen has no layout. Its property "waits" is true for a
// dialog that must be dealt with before anything else.
std::unique_ptr<QWidget> MakeScreenWindow(std::string_view screen);
bool HasScreenWindow(std::string_view screen);

}  // namespace tallwick
