// What stands around the texts of a check on blank stock: small captions, rules to write on, the box around
// the figures. All of it lies within the field that it belongs to.
#pragma once

#include <string_view>
#include <vector>

#include "checks/check_layout.h"
#include "core/sheet.h"

namespace tallwick {

struct FieldFrame {
  FieldPlace inside;  // what is left for the text
  enum class Stand { kTop, kMiddle, kBottom } stand = Stand::kTop;
  std::string_view caption;  // "" = none
  FieldPlace caption_place;
  std::vector<SheetRect> rules;
};

// A field that is too low for its caption beside a line of text has none.
FieldFrame FrameOf(CheckField field, const CheckLayout& layout);

}  // namespace tallwick
