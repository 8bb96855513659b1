// Plays the steps of a drive script on the screens' own logic and tells what each caused, in order.
// Invariant: screens lie on a stack as windows do. The topmost takes the steps; one that a screen opens goes
// on top, and one that has closed leaves the stack after the step that closed it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cli/drive/script.h"
#include "cli/office.h"
#include "core/form.h"

namespace tallwick::cli {

class ScriptPlayer : private ScreenOpener {
 public:
  using Teller = std::function<void(const std::string& line)>;

  // `tell` receives the lines of the transcript.
  ScriptPlayer(Office& office, Teller tell);
  ~ScriptPlayer() override;

  // Plays one line of the script. False when the script ends here: the line is wrong, names what does not
  // exist, or a question had no answer. Error() then says why.
  bool Play(std::string_view line);
  const std::string& Error() const { return error_; }

 private:
  class Screen;

  void OpenScreen(std::string_view screen, std::string_view mode) override;
  void OpenItem(std::string_view screen, std::string_view mode, const std::vector<KeyText>& key) override;
  bool Offers(std::string_view screen, std::string_view mode) const override;

  bool Run(const Step& step);
  bool RunSurroundings(const Step& step);
  bool RunOnScreen(const Step& step);
  bool RunOnControl(const Step& step);
  bool OpenStep(const Step& step);
  bool Show(const Step& step);
  bool MarkRow(const Step& step, const Control& list);
  bool SelectOption(const Step& step, const Control& control);
  bool Fail(std::string why);
  // The control a step names on the topmost screen; null after Fail.
  Control* Named(const ControlName& name);
  bool CanTake(const Step& step, const Control& control);
  Form* Top();
  void Push(std::unique_ptr<Form> form);
  void Sweep();

  Office& office_;
  Teller tell_;
  std::vector<std::unique_ptr<Screen>> screens_;
  bool unanswered_ = false;
  std::string error_;
};

}  // namespace tallwick::cli
