// How the desktop looks: one set of colours for a light and one for a dark system, the style sheet, and the
// icons. The colours travel in the application's palette (see the roles below), so no widget asks for a
// scheme.
#pragma once

#include <QApplication>
#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QString>

namespace tallwick {

enum class Scheme { kSystem, kLight, kDark };

// Where the palette keeps the colours that have no role of their own in Qt. Every text colour stands at least
// 4.5 to 1 on the window's and on the field's background.
inline constexpr QPalette::ColorRole kMutedRole = QPalette::PlaceholderText;  // explanations, cleared rows
inline constexpr QPalette::ColorRole kAlarmRole = QPalette::BrightText;  // negative money, stopped, refused
inline constexpr QPalette::ColorRole kAccentRole = QPalette::Highlight;  // default button, selection, focus

// Sets style, palette, style sheet and window icon. kSystem takes the scheme of the palette that the system
// gave.
void ApplyStyle(QApplication& app, Scheme scheme);

// Gives labels with the dynamic property "role" their type: "title", "heading", "figure" (large, tabular
// digits), "muted". Sizes are multiples of the system font's.
void ApplyRoles(QWidget& root);

// One of the drawn icons ("open", "checks", ...), in a colour of the palette at any scale.
QIcon DrawnIcon(const QString& name, QPalette::ColorRole color = QPalette::ButtonText);

// Sets a dynamic property that the style sheet selects by ("refused", "negative"), and has the widget drawn
// anew when it changed.
void SetStyleProperty(QWidget& widget, const char* property, bool value);

}  // namespace tallwick
