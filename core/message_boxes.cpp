#include "core/message_boxes.h"

namespace tallwick {

namespace {

Box OkBox(BoxIcon icon, std::string_view title, std::string_view text) {
  return {icon, std::string(title), std::string(text), BoxButtons::kOk, BoxAnswer::kOk};
}

}  // namespace

void MessageBoxes::Critical(std::string_view title, std::string_view text) {
  Show(OkBox(BoxIcon::kCritical, title, text));
}

void MessageBoxes::Exclaim(std::string_view title, std::string_view text) {
  Show(OkBox(BoxIcon::kExclamation, title, text));
}

void MessageBoxes::Inform(std::string_view title, std::string_view text) {
  Show(OkBox(BoxIcon::kInformation, title, text));
}

bool IsQuestion(const Box& box) {
  return box.buttons != BoxButtons::kOk;
}

BoxAnswer SafeAnswer(const Box& box) {
  switch (box.buttons) {
    case BoxButtons::kOkCancel:
    case BoxButtons::kYesNoCancel:
    case BoxButtons::kRetryCancel:
      return BoxAnswer::kCancel;
    case BoxButtons::kYesNo:
      return BoxAnswer::kNo;
    case BoxButtons::kOk:
      break;
  }
  return BoxAnswer::kOk;
}

std::string_view AnswerWord(BoxAnswer answer) {
  switch (answer) {
    case BoxAnswer::kOk:
      return "OK";
    case BoxAnswer::kCancel:
      return "Cancel";
    case BoxAnswer::kYes:
      return "Yes";
    case BoxAnswer::kNo:
      return "No";
    case BoxAnswer::kRetry:
      return "Retry";
  }
  return {};
}

std::string_view IconWord(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kCritical:
      return "critical";
    case BoxIcon::kQuestion:
      return "question";
    case BoxIcon::kExclamation:
      return "exclamation";
    case BoxIcon::kInformation:
      return "information";
    case BoxIcon::kNone:
      break;
  }
  return {};
}

}  // namespace tallwick
