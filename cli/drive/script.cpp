#include "cli/drive/script.h"

#include <algorithm>
#include <array>

#include "cli/boxes.h"
#include "cli/surroundings.h"
#include "core/text.h"

namespace tallwick::cli {

std::string ControlText(std::string_view name, int index) {
  return index == 0 ? std::string(name) : std::string(name) + "(" + std::to_string(index) + ")";
}

namespace {

// Cuts the first word off `rest`, with the one blank behind it.
std::string_view TakeWord(std::string_view* rest) {
  const std::size_t end = rest->find_first_of(" \t");
  const std::string_view word = rest->substr(0, end);
  rest->remove_prefix(end == std::string_view::npos ? rest->size() : end + 1);
  return word;
}

// 1 to 9999, or nullopt.
std::optional<int> Positive(std::string_view text) {
  const std::optional<int> value = SmallNumber(text);
  return value != 0 ? value : std::nullopt;
}

std::optional<ControlName> ParseControl(std::string_view word) {
  const std::size_t open = word.find('(');
  if (open == std::string_view::npos) {
    if (word.empty()) return std::nullopt;
    return ControlName{std::string(word), 0};
  }
  if (open == 0 || word.back() != ')') return std::nullopt;
  const std::optional<int> index = Positive(word.substr(open + 1, word.size() - open - 2));
  if (!index) return std::nullopt;
  return ControlName{std::string(word.substr(0, open)), *index};
}

// Each reads what stands behind a verb into the step; a text says what is wrong, "" that all is well.
using Reader = std::string (*)(std::string_view rest, Step& step);

std::string ReadNothing(std::string_view rest, Step&) {
  return Trim(rest).empty() ? "" : "nothing may follow";
}

std::string ReadWord(std::string_view rest, Step& step) {
  step.text = Trim(rest);
  if (step.text.empty()) return "a name must follow";
  return step.text.find(' ') == std::string::npos ? "" : "only one name may follow";
}

std::string ReadToday(std::string_view rest, Step& step) {
  rest = Trim(rest);
  const std::optional<Date> day = ParseIsoDate(TakeWord(&rest));
  if (!day) return "a day YYYY-MM-DD must follow";
  step.day = *day;
  if (Trim(rest).empty()) return {};
  step.time = ParseTimeOfDay(Trim(rest));
  return step.time ? "" : "behind the day only a time HH:MM:SS may stand";
}

std::string ReadSecurity(std::string_view rest, Step& step) {
  const std::string word = ToLower(Trim(rest));
  step.on = word == "on";
  return word == "on" || word == "off" ? "" : "on or off must follow";
}

std::string ReadAnswer(std::string_view rest, Step& step) {
  const std::optional<BoxAnswer> answer = ParseAnswer(Trim(rest));
  if (!answer) return "OK, Cancel, Yes, No or Retry must follow";
  step.answer = *answer;
  return {};
}

std::string ReadScreen(std::string_view rest, Step& step) {
  rest = Trim(rest);
  step.text = TakeWord(&rest);
  step.mode = Trim(rest);
  return step.text.empty() ? "a screen must follow" : "";
}

std::string ReadControl(std::string_view rest, Step& step) {
  const std::optional<ControlName> control = ParseControl(Trim(rest));
  if (!control) return "a control must follow";
  step.controls = {*control};
  return {};
}

std::string ReadValue(std::string_view rest, Step& step) {
  const std::optional<ControlName> control = ParseControl(TakeWord(&rest));
  if (!control) return "a control must follow";
  step.controls = {*control};
  step.text = rest;
  return {};
}

std::string ReadRow(std::string_view rest, Step& step) {
  rest = Trim(rest);
  const std::optional<ControlName> control = ParseControl(TakeWord(&rest));
  if (!control) return "a control must follow";
  step.controls = {*control};
  if (Trim(rest).empty()) return {};
  const std::optional<int> row = Positive(Trim(rest));
  step.row = row.value_or(0);
  return row ? "" : "behind the control only a row from 1 may stand";
}

std::string ReadControls(std::string_view rest, Step& step) {
  for (rest = Trim(rest); !rest.empty(); rest = Trim(rest)) {
    const std::optional<ControlName> control = ParseControl(TakeWord(&rest));
    if (!control) return "only controls may follow";
    step.controls.push_back(*control);
  }
  return step.controls.empty() ? "a control must follow" : "";
}

struct Grammar {
  std::string_view word;
  Verb verb;
  Reader read;
};

constexpr std::array<Grammar, 16> kGrammar{{
    {"today", Verb::kToday, ReadToday},
    {"user", Verb::kUser, ReadWord},
    {"security", Verb::kSecurity, ReadSecurity},
    {"bank", Verb::kBank, ReadWord},
    {"answer", Verb::kAnswer, ReadAnswer},
    {"open", Verb::kOpen, ReadScreen},
    {"close", Verb::kClose, ReadNothing},
    {"set", Verb::kSet, ReadValue},
    {"leave", Verb::kLeave, ReadNothing},
    {"check", Verb::kCheck, ReadControl},
    {"uncheck", Verb::kUncheck, ReadControl},
    {"choose", Verb::kChoose, ReadRow},
    {"click", Verb::kClick, ReadControl},
    {"menu", Verb::kMenu, ReadControl},
    {"key", Verb::kKey, ReadWord},
    {"show", Verb::kShow, ReadControls},
}};

}  // namespace

std::optional<Step> ParseStep(std::string_view line, std::string* wrong) {
  Step step;
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  if (line.empty() || line.front() == '#') return step;
  const std::string_view word = TakeWord(&line);
  for (const Grammar& form : kGrammar) {
    if (form.word != word) continue;
    step.verb = form.verb;
    *wrong = form.read(line, step);
    if (wrong->empty()) return step;
    *wrong = Quoted(word) + ": " + *wrong;
    return std::nullopt;
  }
  *wrong = Quoted(word) + " is no word of a script";
  return std::nullopt;
}

}  // namespace tallwick::cli
