#include "cli/boxes.h"

#include <algorithm>
#include <iostream>

#include "cli/terminal.h"
#include "core/text.h"

namespace tallwick::cli {

std::optional<BoxAnswer> ParseAnswer(std::string_view word) {
  for (BoxAnswer answer :
       {BoxAnswer::kOk, BoxAnswer::kCancel, BoxAnswer::kYes, BoxAnswer::kNo, BoxAnswer::kRetry})
    if (EqualsIgnoreCase(word, AnswerWord(answer))) return answer;
  return std::nullopt;
}

std::vector<BoxAnswer> AnswersOf(const Box& box) {
  switch (box.buttons) {
    case BoxButtons::kOkCancel:
      return {BoxAnswer::kOk, BoxAnswer::kCancel};
    case BoxButtons::kYesNo:
      return {BoxAnswer::kYes, BoxAnswer::kNo};
    case BoxButtons::kYesNoCancel:
      return {BoxAnswer::kYes, BoxAnswer::kNo, BoxAnswer::kCancel};
    case BoxButtons::kRetryCancel:
      return {BoxAnswer::kRetry, BoxAnswer::kCancel};
    case BoxButtons::kOk:
      break;
  }
  return {BoxAnswer::kOk};
}

std::string TerminalText(const Box& box) {
  const std::string_view icon = IconWord(box.icon);
  std::string all = "[" + std::string(icon.empty() ? "message" : icon) + "] " + box.title + ": ";
  for (std::size_t i = 0; i < box.text.size(); ++i) {
    const char c = box.text[i];
    if (c == '\r' && i + 1 < box.text.size() && box.text[i + 1] == '\n') continue;
    if (c == '\r' || c == '\n')
      all += "\n    ";
    else
      all += c;
  }
  return all;
}

namespace {

bool Offers(const Box& box, BoxAnswer answer) {
  const std::vector<BoxAnswer> offered = AnswersOf(box);
  return std::find(offered.begin(), offered.end(), answer) != offered.end();
}

// Reads lines until one is an answer of the box, or its first letters. An empty line presses the preset
// button.
BoxAnswer AskTerminal(const Box& box) {
  std::string choices;
  for (BoxAnswer answer : AnswersOf(box))
    choices += (choices.empty() ? "" : "/") + std::string(AnswerWord(answer));
  std::string line;
  while (std::cerr << "    " << choices << "? " << std::flush, std::getline(std::cin, line)) {
    const std::string typed = ToLower(Trim(line));
    if (typed.empty()) return Offers(box, box.preset) ? box.preset : SafeAnswer(box);
    for (BoxAnswer answer : AnswersOf(box))
      if (ToLower(AnswerWord(answer)).starts_with(typed)) return answer;
  }
  return SafeAnswer(box);
}

}  // namespace

BoxAnswer CommandLineBoxes::AnswerOf(const Box& box, bool* answered) {
  *answered = true;
  if (!IsQuestion(box)) return BoxAnswer::kOk;
  if (!answers_.empty()) {
    const BoxAnswer answer = answers_.front();
    answers_.pop_front();
    if (Offers(box, answer)) return answer;
    std::cerr << "escrowctl: the answer " << AnswerWord(answer) << " does not fit this question\n";
    *answered = false;
    return SafeAnswer(box);
  }
  *answered = false;
  return may_ask_ && TerminalCanAnswer() ? AskTerminal(box) : SafeAnswer(box);
}

std::optional<std::string> CommandLineBoxes::AskSecret(std::string_view, std::string_view prompt) {
  if (!may_ask_) return std::nullopt;
  std::cerr << prompt << " " << std::flush;
  const bool at_terminal = TerminalCanAnswer();
  if (at_terminal) ShowTyping(false);
  std::string line;
  const bool read = static_cast<bool>(std::getline(std::cin, line));
  if (at_terminal) ShowTyping(true);
  std::cerr << std::endl;
  if (!read) return std::nullopt;
  return std::string(TrimRight(line));
}

BoxAnswer CommandLineBoxes::Show(const Box& box) {
  std::cerr << TerminalText(box) << std::endl;
  ShownBox shown{box, BoxAnswer::kOk, true};
  shown.answer = AnswerOf(box, &shown.answered);
  shown_.push_back(shown);
  if (watcher_) watcher_(shown);
  return shown.answer;
}

}  // namespace tallwick::cli
