// The layout that posting windows share: the entry on the left in the order in which it is typed, what the
// program says about it below, the buttons at the foot; on the right the register with its find box and the
// buttons that choose what it lists.
#pragma once

#include <QBoxLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <initializer_list>
#include <span>

#include "ui/register_view.h"

namespace tallwick {

// A field of the entry, named as its control.
struct FieldLook {
  const char* name;
  const char* help;  // for F1
  int width = 0;     // pixels; 0 = as wide as there is room
  bool required = false;
  bool looks_up = false;  // F4 shows a list of what it may hold
};

// The help of an entry that takes an amount.
inline constexpr const char* kAmountHelp = "Dollars and cents, as 1250, 1,250.00 or $1250.";

// A list in which a person looks for what an entry may hold, with its search box and buttons.
struct LookUpLook {
  const char *find, *list, *use, *close;
  const char* help;   // for F1 in the search box
  const char* empty;  // what the list says when nothing is found
  int wide_column;
};
inline constexpr LookUpLook kPayeeLookUp{"txtFindPayee",
                                         "lstPayees",
                                         "cmdUsePayee",
                                         "cmdClosePayees",
                                         "Type any part of the name or the address.",
                                         "No payee has this in name or address.",
                                         0};
inline constexpr LookUpLook kFileLookUp{"txtFindFile",
                                        "lstFiles",
                                        "cmdUseFile",
                                        "cmdCloseFiles",
                                        "Type the beginning of the file number.",
                                        "No file number begins with this.",
                                        1};

struct CommandLook {
  const char* name = "";  // "" parts what stands above from what stands below
  const char* shortcut = "";
};

struct RegisterLook {
  const char* name;
  const char* heading;
  const char* empty;  // what an empty register says
  const char* find;   // what the find box says while it is empty
  int wide_column;
  std::span<const char* const> list_buttons;
};

class PostingLayout {
 public:
  // Builds into `window`, whose object name is the form's; the entry is at least `entry_width` wide and grows
  // with the window where `grows`.
  PostingLayout(QMainWindow& window, int entry_width, bool grows);

  // The fields.
  QWidget& Entry() { return *entry_; }
  QVBoxLayout& EntryColumn() { return *entry_column_; }

  // A grid for labelled fields, under a heading.
  QGridLayout& AddGroup(const char* heading);
  // The next row of the grid: the label of the control, and the field.
  QLineEdit& AddField(QGridLayout& grid, const FieldLook& look);
  // The same with something of the field's kind beside it.
  QLineEdit& AddFieldBeside(QGridLayout& grid, const FieldLook& look, QWidget* beside);
  // A payee with the button that opens their list.
  void AddPayeeField(QGridLayout& grid, const FieldLook& look);
  QLineEdit* MakeField(const FieldLook& look);
  // A label that shows a control's caption.
  QLabel* MakeLabel(const char* name, const char* role = "");

  // A button on the entry's side, named as its control.
  QPushButton* MakeButton(const char* name);
  // One that stands beside a field and takes no focus of its own.
  QPushButton* MakeBesideButton(const char* name, const char* help);

  // The place under the entry where the program speaks: first the state, as a heading.
  void AddNotes(std::initializer_list<const char*> labels);
  // The posting button at the left, the others at the right.
  void AddButtons(std::initializer_list<const char*> others);
  void AddRegister(const RegisterLook& look);
  void AddLookUp(const LookUpLook& look);  // before the register
  void AddMenu(const char* title, std::initializer_list<CommandLook> commands);
  void AddStatusBar();

 private:
  QMainWindow& window_;
  QVBoxLayout* pane_column_;  // the entry, what is said about it, the buttons
  QWidget* entry_;
  QVBoxLayout* entry_column_;
  QVBoxLayout* register_column_;
};

}  // namespace tallwick
