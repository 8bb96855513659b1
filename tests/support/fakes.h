// Ports that tests hold still: a clock that stands, message boxes answered from a list, a named workstation.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/message_boxes.h"
#include "core/workstation.h"

namespace tallwick::testing {

class FakeClock : public Clock {
 public:
  DateTime Now() override { return now; }
  void Sleep(int milliseconds) override { slept_ms += milliseconds; }

  DateTime now{{2024, 3, 15}, 9, 30, 0};
  long long slept_ms = 0;
};

class FakeWorkstation : public Workstation {
 public:
  std::string ComputerName() override { return name; }
  int ProcessId() override { return process; }
  std::string BootId() override { return boot; }

  std::string name = "FRONTDESK2";
  int process = 4711;
  std::string boot;
};

// Records every box. A question takes the next of `answers`, without one its safe answer.
class ScriptedBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const Box& box) override {
    shown.push_back(box);
    if (on_show) on_show(box);
    if (!IsQuestion(box) || answers.empty()) return SafeAnswer(box);
    const BoxAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }

  // The next of `secrets`; none when there is none left.
  std::optional<std::string> AskSecret(std::string_view, std::string_view prompt) override {
    prompts.emplace_back(prompt);
    if (secrets.empty()) return std::nullopt;
    const std::string secret = secrets.front();
    secrets.pop_front();
    return secret;
  }

  std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const Box& box : shown) texts.push_back(box.text);
    return texts;
  }
  std::string LastText() const { return shown.empty() ? std::string() : shown.back().text; }

  std::vector<Box> shown;
  std::deque<BoxAnswer> answers;
  std::function<void(const Box&)> on_show;  // what happens while the box waits for its answer
  std::vector<std::string> prompts;
  std::deque<std::string> secrets;
};

}  // namespace tallwick::testing
