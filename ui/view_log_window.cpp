#include "ui/view_log_window.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>

#include "ui/layout_helpers.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

constexpr int kEntryWidth = 368;  // a hand's breadth

QComboBox* SearchBox(const char* name) {
  auto* combo = Named(new QComboBox, name);
  combo->setEditable(true);
  combo->setMaxVisibleItems(20);
  combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  return combo;
}

QRadioButton* Member(const char* array, int index) {
  auto* option = new QRadioButton;
  option->setObjectName(QString("%1_%2").arg(array).arg(index));
  return option;
}

void AddMenus(QMainWindow& window) {
  QMenu* menu = window.menuBar()->addMenu("&File");
  const auto add = [&](const char* name) {
    auto* action = Named(new QAction(&window), name);
    menu->addAction(action);
  };
  for (const char* name : {"mnuFileRefresh", "mnuFilePreview", "mnuFilePrint", "mnuFilePdf"}) add(name);
  menu->addSeparator();
  add("mnuFileProve");
  menu->addSeparator();
  add("mnuFileExit");
}

QLayout* Dates() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  for (const auto& [caption, name] : {std::pair("From:", "txtFrom"), std::pair("To:", "txtTo")}) {
    auto* edit = Named(new QLineEdit, name);
    edit->setPlaceholderText("mm/dd/yyyy");
    auto* label = new QLabel(caption);
    label->setBuddy(edit);
    row->addWidget(label);
    row->addWidget(edit, 1);
  }
  return row;
}

QWidget* Grids() {
  auto* box = Named(new QWidget, "fraGrids");
  auto* column = Spaced(new QVBoxLayout(box), 0, 8);
  column->addWidget(RoleLabel("Grids", "heading"));
  auto* choose = Spaced(new QHBoxLayout, 0, 8);
  choose->addWidget(Named(new QComboBox, "cboGrids"), 1);
  choose->addWidget(Named(new QPushButton, "cmdAddGrid"));
  choose->addWidget(Named(new QPushButton, "cmdDeleteGrid"));
  column->addLayout(choose);
  auto* list = Named(new QListWidget, "lstGrids");
  list->setFixedHeight(64);
  column->addWidget(list);
  auto* options = Spaced(new QHBoxLayout, 0, 8);
  for (int option = 1; option <= 2; ++option) options->addWidget(Member("optGridSelect", option));
  options->addStretch();
  column->addLayout(options);
  auto* up_to = Spaced(new QHBoxLayout, 0, 8);
  up_to->addWidget(Member("optGridSelect", 3));
  auto* number = Named(new QLineEdit, "txtGridColumns");
  number->setFixedWidth(40);
  up_to->addWidget(number);
  up_to->addStretch();
  column->addLayout(up_to);
  column->addWidget(CheckList("lstColumnList", 4));
  column->addWidget(Named(new QCheckBox, "chkPrintEntireGrid"));
  auto* note = Named(new QLabel, "lblGridNote");
  note->setProperty("role", "muted");
  column->addWidget(note);
  return box;
}

QLayout* Options() {
  auto* column = Spaced(new QVBoxLayout, 0, 8);
  column->addWidget(Named(new QCheckBox, "chkMeetAllValues"));
  auto* order = Spaced(new QHBoxLayout, 0, 16);
  order->addWidget(new QLabel("Date Order:"));
  order->addWidget(Member("optOrder", 1));
  order->addWidget(Member("optOrder", 2));
  order->addStretch();
  column->addLayout(order);
  column->addWidget(Named(new QCheckBox, "chkLandscape"));
  return column;
}

QWidget* Criteria() {
  auto* panel = new QWidget;
  auto* column = Spaced(new QVBoxLayout(panel), 0, 8);
  column->addWidget(RoleLabel("Search Criteria", "heading"));
  QFormLayout* rows = FieldRows();
  AddField(*rows, "Reference Number:", SearchBox("cboReferenceNum"));
  AddField(*rows, "Login Name:", SearchBox("cboLogin"));
  AddField(*rows, "Computer Name:", SearchBox("cboCompName"));
  column->addLayout(rows);
  column->addLayout(Dates());
  auto* lists = Spaced(new QHBoxLayout, 0, 8);
  lists->addLayout(CaptionAbove("TX Code:", CheckList("lstTXCode", 8)), 1);
  lists->addLayout(CaptionAbove("&Entries:", CheckList("lstEntries", 8)), 1);
  column->addLayout(lists);
  column->addLayout(CaptionAbove("&Controls:", CheckList("lstControls", 4)), 1);
  column->addWidget(Grids());
  column->addLayout(Options());
  return panel;
}

QLayout* EntrySide() {
  auto* scroll = new QScrollArea;
  scroll->setWidget(Criteria());
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFixedWidth(kEntryWidth);
  scroll->setFocusPolicy(Qt::NoFocus);
  auto* column = Spaced(new QVBoxLayout, 0, 8);
  column->addWidget(scroll, 1);
  auto* buttons = Spaced(new QHBoxLayout, 0, 8);
  buttons->addWidget(MainButton("cmdSearch"));
  buttons->addWidget(Named(new QPushButton, "cmdClear"));
  buttons->addStretch();
  column->addLayout(buttons);
  return column;
}

QLayout* ResultSide() {
  auto* column = Spaced(new QVBoxLayout, 0, 8);
  auto* top = Spaced(new QHBoxLayout, 0, 16);
  auto* found = RoleLabel("", "heading");
  top->addWidget(Named(found, "lblFound"), 1);
  auto* find = Named(new QLineEdit, "txtFind");
  find->setPlaceholderText("Find in the entries (Ctrl+F)");
  find->setAccessibleName("Find in the entries");
  find->setProperty("finds", "grdEntries");
  find->setFixedWidth(240);
  top->addWidget(find);
  column->addLayout(top);
  auto* view = Named(new RegisterView, "grdEntries");
  view->SetEmptyText("No entry meets the search. Take criteria away, or clear them all.");
  view->SetTotalsLine(false);
  view->setProperty("wideColumn", 6);
  column->addWidget(view, 1);
  return column;
}

}  // namespace

std::unique_ptr<QWidget> MakeViewLogWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName("frmViewLog");
  window->resize(1400, 800);
  AddMenus(*window);
  auto* content = new QWidget;
  auto* column = Spaced(new QVBoxLayout(content), 24, 16);
  auto* file = Named(new QLineEdit, "txtLogFile");
  file->setAccessibleName("Log file");
  column->addWidget(file);
  auto* row = Spaced(new QHBoxLayout, 0, 24);
  row->addLayout(EntrySide());
  row->addLayout(ResultSide(), 1);
  column->addLayout(row, 1);
  window->setCentralWidget(content);
  window->statusBar()->setProperty("panels", QStringList{"lblProof", "lblKeys"});
  return window;
}

}  // namespace tallwick
