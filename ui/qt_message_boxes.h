// Message boxes on the screen, above the window that asks.
#pragma once

#include "core/message_boxes.h"

namespace tallwick {

class QtMessageBoxes : public MessageBoxes {
 public:
  // Enter presses the box's own preset where it is one of its buttons, else the answer that changes nothing;
  // Esc and the window's cross always give the latter.
  BoxAnswer Show(const Box& box) override;
  std::optional<std::string> AskSecret(std::string_view title, std::string_view prompt) override;
};

}  // namespace tallwick
