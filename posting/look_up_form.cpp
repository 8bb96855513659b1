#include "posting/look_up_form.h"

#include <algorithm>
#include <utility>

namespace tallwick {

void LookUpForm::AddLookUp(LookUp look_up, const Captions& captions) {
  Add(ControlKind::kText, std::string(look_up.find), std::string(captions.find));
  Add(ControlKind::kGrid, std::string(look_up.list), std::string(captions.list));
  Add(ControlKind::kButton, std::string(look_up.use), std::string(captions.use));
  Add(ControlKind::kButton, std::string(look_up.close), std::string(captions.close));
  SetSource(look_up.list, look_up.rows);
  Show(look_up, false);
  look_ups_.push_back(std::make_unique<const LookUp>(std::move(look_up)));
}

void LookUpForm::Show(const LookUp& look_up, bool visible) {
  for (std::string_view control : {look_up.find, look_up.list, look_up.use, look_up.close}) {
    SetVisible(control, visible);
  }
}

void LookUpForm::OpenLookUp(std::string_view entry, int index) {
  const auto found = std::find_if(look_ups_.begin(), look_ups_.end(),
                                  [&](const auto& look_up) { return look_up->entry == entry; });
  if (found == look_ups_.end() || !At(entry, index).enabled || !(*found)->begin()) return;
  CloseLookUp();
  open_ = found->get();
  index_ = index;
  Show(*open_, true);
  ShowFound();
  SetFocus(open_->find);
}

void LookUpForm::CloseLookUp() {
  if (open_ == nullptr) return;
  const bool returns = IsWithin();
  const LookUp& closed = *std::exchange(open_, nullptr);
  if (returns) SetFocus(closed.entry, index_);
  SetText(closed.find, {});
  Show(closed, false);
}

// For what was typed in the entry, or for everything where that is found nowhere.
void LookUpForm::SearchFor(const std::string& typed) {
  SetText(open_->find, typed);
  ShowFound();
  if (typed.empty() || At(open_->list).source->RowCount() > 0) return;
  SetText(open_->find, {});
  ShowFound();
}

void LookUpForm::ShowFound() {
  open_->search(Text(open_->find));
  RowsChanged(open_->list);
  SetSelected(open_->list, 1);
}

bool LookUpForm::MarkBeside(int rows) {
  const Control& list = At(open_->list);
  const int last = static_cast<int>(list.source->RowCount());
  SetSelected(list.name, std::clamp(list.selected + rows, std::min(1, last), last));
  return true;
}

void LookUpForm::TakeRow() {
  const int row = At(open_->list).selected;
  if (row > 0 && open_->take(static_cast<std::size_t>(row) - 1, index_)) CloseLookUp();
}

void LookUpForm::OnChange(Control& control) {
  if (open_ != nullptr && control.name == open_->find) ShowFound();
}

void LookUpForm::OnClick(Control& control) {
  if (open_ == nullptr) return;
  if (control.name == open_->use) {
    TakeRow();
  } else if (control.name == open_->close) {
    CloseLookUp();
  }
}

bool LookUpForm::IsWithin() {
  if (open_ == nullptr || Focus() == nullptr) return false;
  const std::string_view at = Focus()->name;
  return at == open_->find || at == open_->list || at == open_->use || at == open_->close;
}

bool LookUpForm::OnKey(std::string_view key) {
  if (key == "F4" && Focus() != nullptr && !IsWithin()) {
    const Control& entry = *Focus();
    OpenLookUp(entry.name, entry.index);
    if (IsWithin()) SearchFor(entry.text);
    return IsWithin();
  }
  if (open_ != nullptr && key == "Esc") {
    CloseLookUp();
    return true;
  }
  if (!IsWithin()) return false;
  if (key == "Enter") {
    TakeRow();
    return true;
  }
  const bool searches = Focus()->name == open_->find;
  if (searches && key == "Down") return MarkBeside(1);
  return searches && key == "Up" && MarkBeside(-1);
}

}  // namespace tallwick
