// The port through which every layer asks or tells the user something.
// The desktop shows real boxes; the command line and the scripts answer from a list.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallwick {

enum class BoxIcon { kNone, kCritical, kQuestion, kExclamation, kInformation };
enum class BoxButtons { kOk, kOkCancel, kYesNo, kYesNoCancel, kRetryCancel };
enum class BoxAnswer { kOk, kCancel, kYes, kNo, kRetry };

// One message box as it is to be shown. Texts are UTF-8; line breaks are "\r" or "\r\n", as the message says.
struct Box {
  BoxIcon icon = BoxIcon::kNone;
  std::string title;
  std::string text;
  BoxButtons buttons = BoxButtons::kOk;
  // The button that Enter presses.
  BoxAnswer preset = BoxAnswer::kOk;
};

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  // Shows the box and waits for its answer, which is always one of the box's buttons.
  virtual BoxAnswer Show(const Box& box) = 0;

  // Asks for a word that nobody else is to see, such as a password. Nullopt when the person has thought
  // better of it, and where there is nobody who could be asked.
  virtual std::optional<std::string> AskSecret(std::string_view /*title*/, std::string_view /*prompt*/) {
    return std::nullopt;
  }

  // Short forms for boxes with the single button OK.
  void Critical(std::string_view title, std::string_view text);
  void Exclaim(std::string_view title, std::string_view text);
  void Inform(std::string_view title, std::string_view text);
};

// True where the box asks something, that is, has more than the button OK.
bool IsQuestion(const Box& box);

// The answer that changes nothing: Cancel where the box has it, else No, else OK.
BoxAnswer SafeAnswer(const Box& box);

// "OK", "Cancel", "Yes", "No", "Retry", as the command line spells answers.
std::string_view AnswerWord(BoxAnswer answer);

// "critical", "question", "exclamation", "information" or "".
std::string_view IconWord(BoxIcon icon);

}  // namespace tallwick
