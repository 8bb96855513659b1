// The window of a file's ledger: what the file holds and its notes at the left, its items bank by bank at the
// right.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeLedgerWindow();

}  // namespace tallwick
