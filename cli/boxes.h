// Message boxes on a command line: written to standard error, answered from a queue, by the person at the
// terminal, or with the answer that changes nothing. Every box is kept, in order, for the JSON object.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/message_boxes.h"

namespace tallwick::cli {

// "OK", "Cancel", "Yes", "No", "Retry" in any case.
std::optional<BoxAnswer> ParseAnswer(std::string_view word);
// The answers a box offers, in the order of its buttons.
std::vector<BoxAnswer> AnswersOf(const Box& box);
// The text on one or more lines for a terminal: each line break starts a new line, indented.
std::string TerminalText(const Box& box);

struct ShownBox {
  Box box;
  BoxAnswer answer = BoxAnswer::kOk;
  // False for a question that nothing in the queue answered (it then got the terminal's or the safe answer).
  bool answered = true;
};

class CommandLineBoxes : public MessageBoxes {
 public:
  explicit CommandLineBoxes(std::deque<BoxAnswer> answers) : answers_(std::move(answers)) {}

  BoxAnswer Show(const Box& box) override;
  // One line of standard input; at a terminal it is not shown.
  std::optional<std::string> AskSecret(std::string_view title, std::string_view prompt) override;

  void QueueAnswer(BoxAnswer answer) { answers_.push_back(answer); }
  // Questions are never put to the terminal from here on.
  void NeverAsk() { may_ask_ = false; }
  // Called behind every box.
  void Watch(std::function<void(const ShownBox&)> watcher) { watcher_ = std::move(watcher); }
  const std::vector<ShownBox>& Shown() const { return shown_; }

 private:
  BoxAnswer AnswerOf(const Box& box, bool* answered);

  std::deque<BoxAnswer> answers_;
  bool may_ask_ = true;
  std::function<void(const ShownBox&)> watcher_;
  std::vector<ShownBox> shown_;
};

}  // namespace tallwick::cli
