// The letters of everything that is printed.
#pragma once

#include <QFont>

namespace tallwick {

// Columns, fields and lines are laid out for the widths of Times and Arial. The families named here have
// them, letter by letter; where none is installed, another of the kind draws, and what no longer fits is set
// smaller. Without kerning a text is as wide as its letters together.
inline QFont PrintFont(bool serif) {
  QFont font(serif ? QStringList{"Times New Roman", "Liberation Serif", "Nimbus Roman"}
                   : QStringList{"Arial", "Liberation Sans", "Nimbus Sans"});
  font.setStyleHint(serif ? QFont::Serif : QFont::SansSerif);
  font.setKerning(false);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace tallwick
