// The window of frmEditUsers.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeUsersWindow();

}  // namespace tallwick
