// Menus that windows share.
#pragma once

#include <QMainWindow>

namespace tallwick {

// "File" of a window that shows a report: refresh (where the form has it), the ways of the report, exit.
void AddReportMenu(QMainWindow& window);

// "View" with the ledger of the file at hand.
void AddLedgerMenu(QMainWindow& window);

// Ctrl+L opens the ledger of the file at hand in every window whose form has the command.
void AddLedgerKey(QWidget& window);

}  // namespace tallwick
