// How long the program takes from the start of its process to a main window that can be used.
#pragma once

#include "ui/folder_suite.h"

namespace tallwick {

// Starts this program so many times over the company, one after the other, and prints each time and the
// median in milliseconds. 0, or 1 after a message when a start failed.
int MeasureStart(const FolderCompany& company, int runs);

// The process that is measured: opens the main window, says "ready" on standard output once it is drawn and
// waits for nothing, and ends.
int StartOnce(const FolderCompany& company);

}  // namespace tallwick
