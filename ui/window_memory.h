// What a user's windows remember from one run to the next: places, sizes, splitters and columns.
#pragma once

#include <QByteArray>
#include <QWidget>

namespace tallwick {

// Takes the window to where it was, on a screen that still exists; a window that was never placed gets
// `size`.
void RestoreWindow(QWidget& window, QSize size);
// Where it was, and which commands with the property "remembered" are checked.
void RememberWindow(const QWidget& window);
// Gives those commands until they are as they were; once the window's form is open.
void RestoreChoices(const QWidget& window);

// One remembered state of a widget, kept under its window's and its own object name; empty when there is
// none.
QByteArray RememberedState(const QWidget& widget, const char* what);
void RememberState(const QWidget& widget, const char* what, const QByteArray& state);

}  // namespace tallwick
