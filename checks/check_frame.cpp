#include "checks/check_frame.h"

namespace tallwick {
namespace {

constexpr double kRule = 0.25;       // thickness
constexpr double kAboveRule = 0.4;   // between a text and its rule
constexpr double kBesideEdge = 1.4;  // between a text and its box
constexpr double kCaptionPoints = 5.5;

enum class Rules { kNone, kBelow, kAbove, kBox };

struct Look {
  std::string_view caption;
  CheckField field;
  Rules rules;
};
constexpr Look kLooks[] = {
    {"DATE", CheckField::kDate, Rules::kBelow},
    {"", CheckField::kPayee, Rules::kBelow},
    {"", CheckField::kFigures, Rules::kBox},
    {"", CheckField::kWords, Rules::kBelow},
    {"", CheckField::kSignature, Rules::kAbove},
    {"", CheckField::kStubBranch, Rules::kBelow},
    {"", CheckField::kStubNumber, Rules::kBelow},
    {"DATE", CheckField::kStubDate, Rules::kNone},
    {"PAID TO", CheckField::kStubPayee, Rules::kNone},
    {"FILE NO.", CheckField::kStubFileNumber, Rules::kNone},
    {"AMOUNT", CheckField::kStubFigures, Rules::kNone},
    {"REMITTANCE ADVICE", CheckField::kStubRemittance, Rules::kNone},
};

void AddCaption(std::string_view caption, FieldFrame& frame) {
  SheetRect& box = frame.inside.box;
  const double height = SheetLineHeight(kCaptionPoints);
  if (caption.empty() || box.height < height + SheetLineHeight(frame.inside.points)) return;
  frame.caption = caption;
  frame.caption_place = {
      true, {box.x, box.y, box.width, height}, kCaptionPoints, frame.inside.alignment, false};
  box.y += height;
  box.height -= height;
}

void RuleBelow(FieldFrame& frame) {
  SheetRect& box = frame.inside.box;
  frame.rules.push_back({box.x, box.Bottom() - kRule, box.width, kRule});
  box.height -= kRule + kAboveRule;
  frame.stand = FieldFrame::Stand::kBottom;
}

// The person signs above the rule: the words stand at the foot of the field.
void RuleAbove(FieldFrame& frame) {
  SheetRect& box = frame.inside.box;
  const double line = SheetLineHeight(frame.inside.points);
  box = {box.x, box.Bottom() - line, box.width, line};
  frame.rules.push_back({box.x, box.y - kRule, box.width, kRule});
}

void BoxAround(FieldFrame& frame) {
  SheetRect& box = frame.inside.box;
  frame.rules = {{box.x, box.y, box.width, kRule},
                 {box.x, box.Bottom() - kRule, box.width, kRule},
                 {box.x, box.y, kRule, box.height},
                 {box.Right() - kRule, box.y, kRule, box.height}};
  box = {box.x + kBesideEdge, box.y + kRule, box.width - 2 * kBesideEdge, box.height - 2 * kRule};
  frame.stand = FieldFrame::Stand::kMiddle;
}

}  // namespace

FieldFrame FrameOf(CheckField field, const CheckLayout& layout) {
  FieldFrame frame;
  frame.inside = layout.Place(field);
  if (!layout.lines) return frame;
  for (const Look& look : kLooks) {
    if (look.field != field) continue;
    AddCaption(look.caption, frame);
    if (look.rules == Rules::kBelow) RuleBelow(frame);
    if (look.rules == Rules::kAbove) RuleAbove(frame);
    if (look.rules == Rules::kBox) BoxAround(frame);
  }
  return frame;
}

}  // namespace tallwick
