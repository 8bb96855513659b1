// A screen with look-ups: lists in which a person finds what an entry may hold. F4 in the entry shows its
// list with the cursor in the search box; what is typed there narrows the list, Up and Down mark another row,
// Enter takes it, Esc closes. One list is shown at a time; what was searched for is gone when it closes.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "shell/routed_form.h"

namespace tallwick {

struct LookUp {
  std::string_view entry;  // the control that it fills, alone or as a member of an array
  // Its own controls: search box, list, and the buttons that take the row and close.
  std::string_view find, list, use, close;
  // Looks anew at what there is; false after a message when that is nothing at all.
  std::function<bool()> begin;
  std::shared_ptr<RowSource> rows;
  // Has the rows be those that the text finds, all of them for "".
  std::function<void(std::string_view text)> search;
  // Fills the entry, whose index is given, from a row, from 0. False when it was given up.
  std::function<bool(std::size_t row, int index)> take;
};

class LookUpForm : public RoutedForm {
 protected:
  using RoutedForm::RoutedForm;

  struct Captions {
    std::string_view find, list, use, close;
  };
  void AddLookUp(LookUp look_up, const Captions& captions);
  // Shows the list of the entry, where that may be changed.
  void OpenLookUp(std::string_view entry, int index = 0);
  // Closes the list that is shown; a cursor within it goes back into the entry.
  void CloseLookUp();
  bool LooksUp() const { return open_ != nullptr; }

  void OnChange(Control& control) override;
  void OnClick(Control& control) override;
  bool OnKey(std::string_view key) override;

 private:
  void Show(const LookUp& look_up, bool visible);
  void SearchFor(const std::string& typed);
  void ShowFound();
  bool MarkBeside(int rows);
  void TakeRow();
  bool IsWithin();  // the cursor is in the open list, its search box or one of its buttons

  std::vector<std::unique_ptr<const LookUp>> look_ups_;
  const LookUp* open_ = nullptr;
  int index_ = 0;  // of the entry
};

}  // namespace tallwick
