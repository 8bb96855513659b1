// The pictures of the maintenance screens, taken while their work runs.
#pragma once

#include <QString>
#include <deque>
#include <functional>
#include <string_view>

#include "core/message_boxes.h"
#include "ui/desktop.h"

namespace tallwick {

// Needs a bank selected. Questions take the answers put into `answers`; `take` saves a picture of an open
// screen. The data stay as they are; a copy of them is made beside.
void TakeMaintenancePictures(Desktop& desktop, std::deque<BoxAnswer>& answers,
                             const std::function<void(std::string_view screen, const QString& name)>& take);

}  // namespace tallwick
