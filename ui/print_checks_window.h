// The window in which several checks are printed.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakePrintChecksWindow();

}  // namespace tallwick
