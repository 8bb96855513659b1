// The window of the reconcile screen: at the left the steps, both sides of the reconciliation beside each
// other and what comes of them, at the right the items behind the figure whose name was clicked.
#pragma once

#include <QWidget>
#include <memory>

namespace tallwick {

std::unique_ptr<QWidget> MakeReconcileWindow();

}  // namespace tallwick
