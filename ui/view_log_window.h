// The window of frmViewLog.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeViewLogWindow();

}  // namespace tallwick
