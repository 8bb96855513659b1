#include "core/form.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tallwick {

namespace {

// The row's text; lists and combos show it as their own.
void ShowRow(Control& control) {
  if (control.kind != ControlKind::kList && control.kind != ControlKind::kCombo) return;
  if (control.selected > 0) {
    control.text = control.rows[static_cast<std::size_t>(control.selected - 1)];
  } else if (control.kind == ControlKind::kList) {
    control.text.clear();
  }
}

// The row that a text names, from 1; 0 = none.
int RowOf(const Control& control, std::string_view text) {
  for (std::size_t row = 0; row < control.rows.size(); ++row) {
    if (control.rows[row] == text) return static_cast<int>(row + 1);
  }
  return 0;
}

// Lists and combos mark the row that their text names.
void MarkRow(Control& control) {
  const bool has_rows = control.kind == ControlKind::kList || control.kind == ControlKind::kCombo;
  if (has_rows) control.selected = RowOf(control, control.text);
}

bool HasRow(const Control& control, int row) {
  if (row < 1) return false;
  if (control.kind == ControlKind::kGrid) {
    const auto rows = static_cast<std::size_t>(row);
    return control.source && (rows <= control.source->RowsKnown() || rows <= control.source->RowCount());
  }
  return static_cast<std::size_t>(row) <= control.rows.size();
}

bool HasMark(const Control& control, int row) {
  return row >= 1 && static_cast<std::size_t>(row) <= control.marks.size();
}

bool HasValue(const Control& control, int value) {
  const int highest = control.kind == ControlKind::kCheck ? 2 : control.kind == ControlKind::kOption ? 1 : -1;
  return value >= 0 && value <= highest;
}

// Puts a value in place; false where it was there already.
template <typename T>
bool Replace(T& held, T value) {
  if (held == value) return false;
  held = std::move(value);
  return true;
}

}  // namespace

Form::Form(std::string name, MessageBoxes& boxes) : name_(std::move(name)), boxes_(boxes) {}

Control* Form::Find(std::string_view name, int index) {
  for (Control& control : controls_) {
    if (control.index == index && control.name == name) return &control;
  }
  return nullptr;
}

bool Form::TakesEvents(const Control* control) const {
  if (!open_ || control == nullptr) return false;
  if (control->kind == ControlKind::kLabel || control->kind == ControlKind::kFrame) return false;
  return control->enabled && control->visible;
}

void Form::Tell(const Control& control) {
  if (face_ != nullptr) face_->ControlChanged(control);
}

// Events.

void Form::Opened() {
  if (open_) OnOpen();
}

bool Form::LeaveCurrent() {
  if (leaving_)
    return false;  // a box shown by OnLeave takes the focus and gives it back: no event of the user's
  if (TakesEvents(focus_)) {
    leaving_ = true;
    leave_refused_ = false;
    OnLeave(*focus_);
    leaving_ = false;
    if (leave_refused_) return false;
  }
  focus_ = nullptr;
  return true;
}

void Form::TakeFocus(Control& control) {
  focus_ = &control;
  OnEnter(control);
}

void Form::Enter(std::string_view name, int index) {
  Control* control = Find(name, index);
  if (control == focus_ || !TakesEvents(control) || !LeaveCurrent()) return;
  if (TakesEvents(control)) TakeFocus(*control);
}

void Form::Leave() {
  LeaveCurrent();
}

Control* Form::EnterFor(std::string_view name, int index) {
  Control* control = Find(name, index);
  if (control == nullptr || !open_) return nullptr;
  Enter(name, index);
  if (control == focus_ && TakesEvents(control)) return control;
  Tell(*control);
  return nullptr;
}

void Form::Change(std::string_view name, std::string text, int index) {
  Control* control = EnterFor(name, index);
  if (control == nullptr) return;
  if (!Replace(control->text, std::move(text))) return OnRetype(*control);
  control->refused = false;
  MarkRow(*control);
  Tell(*control);
  OnChange(*control);
}

void Form::SetCheck(std::string_view name, int value, int index) {
  Control* control = EnterFor(name, index);
  if (control == nullptr || !HasValue(*control, value) || !Replace(control->value, value)) return;
  control->refused = false;
  Tell(*control);
  if (control->kind == ControlKind::kOption && value == 1) {
    for (Control& other : controls_) {  // members of one array exclude each other
      if (&other != control && other.name == control->name) SetValue(other.name, 0, other.index);
    }
  }
  OnChange(*control);
}

void Form::Choose(std::string_view name, int row, int index) {
  Control* control = EnterFor(name, index);
  if (control == nullptr || !HasRow(*control, row)) return;
  Select(*control, row);
  OnChoose(*control);  // also for the row chosen already: a second click opens it again
}

void Form::Mark(std::string_view name, int row, bool checked) {
  Control* control = EnterFor(name, 0);
  if (control == nullptr || !HasMark(*control, row)) return;
  if (control->marks[static_cast<std::size_t>(row) - 1] == checked) return;
  SetMark(name, row, checked);
  OnMark(*control, row);
}

void Form::Click(std::string_view name, int index) {
  if (Control* control = EnterFor(name, index)) OnClick(*control);
}

void Form::Menu(std::string_view name) {
  Control* control = Find(name);
  if (TakesEvents(control) && LeaveCurrent() && TakesEvents(control)) OnMenu(*control);
}

bool Form::Key(std::string_view key) {
  return open_ && OnKey(key);
}

bool Form::UseMode(std::string_view mode) {
  if (!open_) return false;
  return !LeaveCurrent() || OnMode(mode);
}

void Form::LetWork() {
  if (face_ != nullptr && face_->TakesWork()) return;
  while (WorkOn(std::chrono::hours(1))) {
  }
}

bool Form::Close() {
  if (!open_) return true;
  if (!LeaveCurrent() || !OnClose()) return false;
  open_ = false;
  if (face_ != nullptr) face_->Closed();
  return true;
}

// For the logic of a screen.

Control& Form::Add(ControlKind kind, std::string name, std::string caption, int index) {
  Control control;
  control.kind = kind;
  control.name = std::move(name);
  control.caption = std::move(caption);
  control.index = index;
  return controls_.emplace_back(std::move(control));
}

Control& Form::At(std::string_view name, int index) {
  Control* control = Find(name, index);
  if (control != nullptr) return *control;
  std::fprintf(stderr, "%s has no control %.*s(%d)\n", name_.c_str(), static_cast<int>(name.size()),
               name.data(), index);
  std::abort();
}

const std::string& Form::Text(std::string_view name, int index) {
  return At(name, index).text;
}

void Form::SetText(std::string_view name, std::string text, int index) {
  Control& control = At(name, index);
  if (!Replace(control.text, std::move(text))) return;
  control.refused = false;
  MarkRow(control);
  Tell(control);
}

void Form::SetCaption(std::string_view name, std::string caption, int index) {
  Control& control = At(name, index);
  if (Replace(control.caption, std::move(caption))) Tell(control);
}

void Form::SetValue(std::string_view name, int value, int index) {
  Control& control = At(name, index);
  if (Replace(control.value, value)) Tell(control);
}

void Form::SetEnabled(std::string_view name, bool enabled, int index) {
  Control& control = At(name, index);
  if (Replace(control.enabled, enabled)) Tell(control);
}

void Form::SetVisible(std::string_view name, bool visible, int index) {
  Control& control = At(name, index);
  if (Replace(control.visible, visible)) Tell(control);
}

void Form::SetRows(std::string_view name, std::vector<std::string> rows, int selected) {
  Control& control = At(name);
  const bool changed = Replace(control.rows, std::move(rows));
  const int typed = control.kind == ControlKind::kCombo ? RowOf(control, control.text) : 0;
  const int row = HasRow(control, selected) ? selected : typed;
  if (!changed && control.selected == row) return;
  control.selected = row;
  ShowRow(control);
  Tell(control);
}

void Form::SetMarkedRows(std::string_view name, std::vector<std::string> rows, std::vector<bool> marks,
                         std::vector<int> levels) {
  Control& control = At(name);
  marks.resize(rows.size());
  levels.resize(rows.size());
  const bool changed = Replace(control.rows, std::move(rows));
  const bool marked = Replace(control.marks, std::move(marks));
  const bool moved = Replace(control.levels, std::move(levels));
  if (!HasRow(control, control.selected)) control.selected = 0;
  if (changed || marked || moved) Tell(control);
}

void Form::SetMark(std::string_view name, int row, bool checked) {
  Control& control = At(name);
  if (!HasMark(control, row) || control.marks[static_cast<std::size_t>(row) - 1] == checked) return;
  control.marks[static_cast<std::size_t>(row) - 1] = checked;
  Tell(control);
}

void Form::SetSource(std::string_view name, std::shared_ptr<RowSource> source) {
  Control& control = At(name);
  if (!Replace(control.source, std::move(source))) return;
  control.selected = 0;
  Tell(control);
}

void Form::RowsChanged(std::string_view name) {
  Control& control = At(name);
  if (!HasRow(control, control.selected)) control.selected = 0;
  Tell(control);
}

void Form::SetSelected(std::string_view name, int row) {
  Control& control = At(name);
  Select(control, HasRow(control, row) ? row : 0);
}

void Form::Select(Control& control, int row) {
  if (!Replace(control.selected, row)) return;
  control.refused = false;
  ShowRow(control);
  Tell(control);
}

void Form::SetFormCaption(std::string caption) {
  if (Replace(caption_, std::move(caption)) && face_ != nullptr) face_->CaptionChanged();
}

void Form::SetFocus(std::string_view name, int index) {
  Control& control = At(name, index);
  if (leaving_) {
    PutFocus(control);
  } else {
    Enter(name, index);
    TellFocus(control);
  }
}

void Form::Refuse(std::string_view text, std::string_view control_name, int index) {
  boxes_.Critical(caption_, text);
  MarkRefused(control_name, index);
}

void Form::MarkRefused(std::string_view control_name, int index) {
  Control& control = At(control_name, index);
  if (Replace(control.refused, true)) Tell(control);
  PutFocus(control);
}

void Form::PutFocus(Control& control) {
  if (leaving_) leave_refused_ = true;
  if (!TakesEvents(&control)) return;
  TakeFocus(control);
  TellFocus(control);
}

void Form::TellFocus(const Control& control) {
  if (focus_ == &control && face_ != nullptr) face_->FocusMoved(control);
}

std::string ControlValue(const Control& control) {
  switch (control.kind) {
    case ControlKind::kCheck:
      return control.value == 1   ? "Checked"
             : control.value == 0 ? "Unchecked"
             : control.value == 2 ? "Grayed"
                                  : "";
    case ControlKind::kOption:
      return control.value != 0 ? "True" : "False";
    case ControlKind::kText:
    case ControlKind::kCombo:
    case ControlKind::kList:
    case ControlKind::kAmount:
    case ControlKind::kDate:
    case ControlKind::kPeriod:
    case ControlKind::kNumber:
    case ControlKind::kMasked:
      return control.text;
    case ControlKind::kCheckList:
    case ControlKind::kGrid:
    case ControlKind::kLabel:
    case ControlKind::kButton:
    case ControlKind::kMenu:
    case ControlKind::kFrame:
      break;
  }
  return {};
}

std::string WithoutMnemonic(std::string caption) {
  std::erase(caption, '&');
  return caption;
}

void EnterTexts(Form& form, const std::vector<KeyText>& texts) {
  for (const KeyText& text : texts) {
    form.Enter(text.control);
    form.Change(text.control, text.text);
  }
  form.Leave();
}

}  // namespace tallwick
