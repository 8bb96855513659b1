#include "cli/drive/player.h"

#include <algorithm>

#include "cli/drive/transcript.h"
#include "core/text.h"
#include "shell/bank_select.h"

namespace tallwick::cli {

// One screen of the stack, and the face that its form talks to.
class ScriptPlayer::Screen : public Form::Face {
 public:
  Screen(std::unique_ptr<Form> form, const Teller& tell) : form_(std::move(form)), tell_(tell) {
    form_->Attach(this);
  }
  ~Screen() override { form_->Attach(nullptr); }

  Form& TheForm() { return *form_; }

  void ControlChanged(const Control&) override {}
  void FocusMoved(const Control& control) override {
    tell_("focus " + ControlText(control.name, control.index));
  }
  void CaptionChanged() override {}
  void Closed() override { tell_("closed " + form_->Name()); }

 private:
  std::unique_ptr<Form> form_;
  const Teller& tell_;
};

ScriptPlayer::ScriptPlayer(Office& office, Teller tell) : office_(office), tell_(std::move(tell)) {
  office_.SetScreenOpener(this);
  office_.Boxes().NeverAsk();
  office_.Boxes().Watch([this](const ShownBox& shown) {
    tell_(BoxLine(shown));
    unanswered_ = unanswered_ || !shown.answered;
  });
}

ScriptPlayer::~ScriptPlayer() {
  office_.SetScreenOpener(nullptr);
  office_.Boxes().Watch({});
  while (!screens_.empty()) screens_.pop_back();
}

bool ScriptPlayer::Fail(std::string why) {
  error_ = std::move(why);
  return false;
}

bool ScriptPlayer::Play(std::string_view line) {
  std::string wrong;
  const std::optional<Step> step = ParseStep(line, &wrong);
  if (!step) return Fail(wrong);
  const bool played = Run(*step);
  Sweep();
  if (!played) return false;
  return unanswered_ ? Fail("a question had no answer") : true;
}

bool ScriptPlayer::Run(const Step& step) {
  switch (step.verb) {
    case Verb::kComment:
      return true;
    case Verb::kAnswer:
      office_.Boxes().QueueAnswer(step.answer);
      return true;
    case Verb::kToday:
    case Verb::kUser:
    case Verb::kSecurity:
    case Verb::kBank:
      return RunSurroundings(step);
    case Verb::kOpen:
      return OpenStep(step);
    default:
      return Top() != nullptr ? RunOnScreen(step) : Fail("no screen is open");
  }
}

bool ScriptPlayer::RunSurroundings(const Step& step) {
  if (step.verb == Verb::kToday) {
    office_.TheClock().Hold(step.day, step.time);
    return true;
  }
  if (step.verb == Verb::kUser) office_.Options().user = step.text;
  if (step.verb == Verb::kSecurity) office_.Options().security = step.on;
  if (step.verb != Verb::kBank) {
    office_.ReloadUser();
    return true;
  }
  Session* session = office_.Open();
  if (session == nullptr) return Fail("the company could not be opened");
  return SelectBank(*session, step.text) || unanswered_ ||
         Fail("the bank " + Quoted(step.text) + " is not selected");
}

bool ScriptPlayer::OpenStep(const Step& step) {
  if (!ScreenCatalogue::Knows(step.text)) return Fail("there is no screen " + Quoted(step.text));
  if (!ScreenCatalogue::Knows(step.text, step.mode))
    return Fail(step.text + " has no mode " + Quoted(step.mode));
  Session* session = office_.Options().bank.empty() ? office_.Open() : office_.OpenBank();
  if (session == nullptr) return Fail("the company could not be opened");
  // A refusal to open has shown its box, which is all that a clerk would see.
  if (std::unique_ptr<Form> form = office_.Screens().Make(step.text, step.mode)) Push(std::move(form));
  return true;
}

void ScriptPlayer::OpenScreen(std::string_view screen, std::string_view mode) {
  std::unique_ptr<Form> form = office_.Screens().Make(screen, mode);
  if (!form) return;
  tell_("opened " + std::string(screen));
  Push(std::move(form));
}

void ScriptPlayer::OpenItem(std::string_view screen, std::string_view mode, const std::vector<KeyText>& key) {
  OpenScreen(screen, mode);
  if (Form* form = Top(); form != nullptr && form->Name() == screen) EnterTexts(*form, key);
}

bool ScriptPlayer::Offers(std::string_view screen, std::string_view mode) const {
  return ScreenCatalogue::Knows(screen, mode);
}

void ScriptPlayer::Push(std::unique_ptr<Form> form) {
  screens_.push_back(std::make_unique<Screen>(std::move(form), tell_));
  screens_.back()->TheForm().Opened();
}

Form* ScriptPlayer::Top() {
  return screens_.empty() ? nullptr : &screens_.back()->TheForm();
}

void ScriptPlayer::Sweep() {
  const auto closed = std::erase_if(
      screens_, [](const std::unique_ptr<Screen>& screen) { return !screen->TheForm().IsOpen(); });
  if (closed == 0) return;
  if (Session* session = office_.Open()) session->NotifyChanged(SessionChange::kScreenClosed);
}

bool ScriptPlayer::RunOnScreen(const Step& step) {
  switch (step.verb) {
    case Verb::kClose:
      Top()->Close();
      return true;
    case Verb::kLeave:
      Top()->Leave();
      return true;
    case Verb::kKey:
      Top()->Key(step.text);
      return true;
    case Verb::kShow:
      return Show(step);
    default:
      return RunOnControl(step);
  }
}

Control* ScriptPlayer::Named(const ControlName& name) {
  Control* control = Top()->Find(name.name, name.index);
  // Behind a check list the index is a row.
  if (control == nullptr && name.index != 0) {
    Control* list = Top()->Find(name.name);
    if (list != nullptr && list->kind == ControlKind::kCheckList) control = list;
  }
  if (control == nullptr) Fail(Top()->Name() + " has no control " + ControlText(name.name, name.index));
  return control;
}

namespace {

bool IsTyped(ControlKind kind) {
  switch (kind) {
    case ControlKind::kText:
    case ControlKind::kCombo:
    case ControlKind::kAmount:
    case ControlKind::kDate:
    case ControlKind::kPeriod:
    case ControlKind::kNumber:
    case ControlKind::kMasked:
      return true;
    default:
      return false;
  }
}

bool FitsKind(Verb verb, ControlKind kind) {
  switch (verb) {
    case Verb::kSet:
      return IsTyped(kind);
    case Verb::kCheck:
    case Verb::kUncheck:
      return kind == ControlKind::kCheck || kind == ControlKind::kOption || kind == ControlKind::kCheckList;
    case Verb::kChoose:
      return kind == ControlKind::kList || kind == ControlKind::kCombo || kind == ControlKind::kGrid ||
             kind == ControlKind::kOption || kind == ControlKind::kCheckList;
    default:
      return kind == ControlKind::kButton || kind == ControlKind::kMenu;
  }
}

}  // namespace

// A control of another kind makes the line wrong. One that is disabled or hidden is met by clerks too, to no
// effect.
bool ScriptPlayer::CanTake(const Step& step, const Control& control) {
  const std::string name = ControlText(control.name, control.index);
  if (!FitsKind(step.verb, control.kind)) return Fail(name + " is no control for this");
  if (control.enabled && control.visible) return true;
  tell_((control.visible ? "disabled " : "hidden ") + name);
  return false;
}

bool ScriptPlayer::RunOnControl(const Step& step) {
  const Control* control = Named(step.controls.front());
  if (control == nullptr) return false;
  if (!CanTake(step, *control)) return error_.empty();
  Form& form = *Top();
  const std::string& name = control->name;
  const int index = control->index;
  if (control->kind == ControlKind::kCheckList && step.verb != Verb::kChoose) return MarkRow(step, *control);
  switch (step.verb) {
    case Verb::kSet:
      form.Change(name, step.text, index);
      return true;
    case Verb::kCheck:
      form.SetCheck(name, 1, index);
      return true;
    case Verb::kUncheck:
      form.SetCheck(name, 0, index);
      return true;
    case Verb::kChoose:
      return SelectOption(step, *control);
    default:
      if (control->kind == ControlKind::kMenu)
        form.Menu(name);
      else
        form.Click(name, index);
      return true;
  }
}

bool ScriptPlayer::MarkRow(const Step& step, const Control& list) {
  const int row = step.controls.front().index;
  if (row < 1 || static_cast<std::size_t>(row) > list.rows.size())
    return Fail(list.name + " has " + std::to_string(list.rows.size()) + " rows");
  Top()->Mark(list.name, row, step.verb == Verb::kCheck);
  return true;
}

bool ScriptPlayer::SelectOption(const Step& step, const Control& control) {
  if (control.kind == ControlKind::kOption) {
    Top()->SetCheck(control.name, 1, control.index);
    return true;
  }
  if (step.row == 0) return Fail("choose needs a row");
  const std::size_t rows = RowCount(control);
  if (static_cast<std::size_t>(step.row) > rows)
    return Fail(control.name + " has " + std::to_string(rows) + " rows");
  Top()->Choose(control.name, step.row, control.index);
  return true;
}

// An index that the form does not know as a member of an array is a row of a list or grid.
bool ScriptPlayer::Show(const Step& step) {
  for (const ControlName& name : step.controls) {
    const Control* control = Top()->Find(name.name, name.index);
    const Control* rows = control == nullptr && name.index != 0 ? Top()->Find(name.name) : nullptr;
    const bool has_rows =
        rows != nullptr && (rows->kind == ControlKind::kList || rows->kind == ControlKind::kCombo ||
                            rows->kind == ControlKind::kGrid || rows->kind == ControlKind::kCheckList);
    if (control == nullptr && !has_rows) return Named(name) != nullptr;
    tell_(control != nullptr ? ControlLine(*control) : RowLine(*rows, name.index));
  }
  return true;
}

}  // namespace tallwick::cli
