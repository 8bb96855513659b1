// The window of the trial balance: what is asked for at the left, the files at the right.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeTrialBalanceWindow();

}  // namespace tallwick
