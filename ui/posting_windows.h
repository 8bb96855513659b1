// The windows of the screens of deposits, wires and vouchers.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeDepositWindow();
std::unique_ptr<QWidget> MakeDepositClearingWindow();
std::unique_ptr<QWidget> MakeWireWindow();
std::unique_ptr<QWidget> MakeVoucherWindow();

}  // namespace tallwick
