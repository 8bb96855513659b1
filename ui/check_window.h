// The window of the check screen.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeCheckWindow();

}  // namespace tallwick
