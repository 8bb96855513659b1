// Pictures of every screen for the documentation and for a look before a release: made with real windows over
// a company's data, which stay as they are; a copy of them is made beside.
#pragma once

#include <QString>

#include "core/date.h"

namespace tallwick {

struct ScreenshotOrder {
  QString folder;
  QString data_path;  // of a company with at least one bank account
  QString company_name;
  QString company_number;
  Date today;  // empty: the system's
};

// Takes the pictures at this process's scale and scheme: "check-posting.png", with "-dark" and "-200" where
// they apply. Returns the process's exit code.
int TakeScreenshots(const ScreenshotOrder& order, bool dark);

// Runs this program once for each of 100% and 200%, light and dark.
int TakeAllScreenshots(const QStringList& arguments);

}  // namespace tallwick
