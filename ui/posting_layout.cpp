#include "ui/posting_layout.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>

#include "ui/field_scroll.h"
#include "ui/flow_layout.h"

namespace tallwick {
namespace {

constexpr int kGap = 8;
constexpr int kLineGap = 4;
constexpr int kNotesHeight = 56;  // at least, where the screen is low; what is longer scrolls
constexpr int kFindWidth = 256;   // where the window has room
constexpr int kLeastFindWidth = 56;

// A label that names the field beside it.
QLabel* MakeCaption(QWidget& field, QWidget& parent) {
  auto* label = new QLabel(&parent);
  label->setBuddy(&field);
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  return label;
}

QPushButton* NewButton(const char* name, QWidget& parent) {
  auto* button = new QPushButton(&parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

PostingLayout::PostingLayout(QMainWindow& window, int entry_width, bool grows) : window_(window) {
  window_.resize(1280, 800);
  window_.setProperty("escCloses", true);
  auto* splitter = new QSplitter(Qt::Horizontal, &window_);
  splitter->setObjectName("splitEntry");
  splitter->setChildrenCollapsible(false);
  splitter->setHandleWidth(1);
  auto* entry_pane = new QWidget(splitter);
  if (!grows) entry_pane->setMaximumWidth(entry_width + 48);
  pane_column_ = new QVBoxLayout(entry_pane);
  pane_column_->setContentsMargins(0, 0, 0, 16);
  pane_column_->setSpacing(kGap);
  entry_ = new QWidget;
  entry_->setMinimumWidth(entry_width);
  entry_column_ = new QVBoxLayout(entry_);
  entry_column_->setContentsMargins(24, kGap, FieldScroll::kBarMargin, 0);
  entry_column_->setSpacing(kGap);
  pane_column_->addWidget(new FieldScroll(entry_));
  auto* register_pane = new QWidget(splitter);
  register_column_ = new QVBoxLayout(register_pane);
  register_column_->setContentsMargins(16, kGap, 24, 16);
  register_column_->setSpacing(kGap);
  splitter->setStretchFactor(1, 1);
  window_.setCentralWidget(splitter);
}

QGridLayout& PostingLayout::AddGroup(const char* heading) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(16);
  grid->setVerticalSpacing(kLineGap);
  grid->setColumnStretch(1, 1);
  auto* label = new QLabel(QObject::tr(heading), entry_);
  label->setProperty("role", "heading");
  grid->addWidget(label, 0, 0, 1, 2);
  entry_column_->addLayout(grid);
  return *grid;
}

QLineEdit* PostingLayout::MakeField(const FieldLook& look) {
  auto* field = new QLineEdit(entry_);
  field->setObjectName(look.name);
  field->setWhatsThis(QObject::tr(look.help));
  if (look.width > 0) field->setFixedWidth(look.width);
  if (look.required) field->setProperty("required", true);
  if (look.looks_up) field->setProperty("lookUp", true);
  return field;
}

QLineEdit& PostingLayout::AddField(QGridLayout& grid, const FieldLook& look) {
  QLineEdit* field = MakeField(look);
  const int row = grid.rowCount();
  grid.addWidget(MakeCaption(*field, *entry_), row, 0);
  grid.addWidget(field, row, 1, look.width > 0 ? Qt::AlignLeft : Qt::Alignment());
  return *field;
}

QLineEdit& PostingLayout::AddFieldBeside(QGridLayout& grid, const FieldLook& look, QWidget* beside) {
  QLineEdit& field = AddField(grid, look);
  auto* row = new QHBoxLayout;
  row->setSpacing(kGap);
  const int at = grid.rowCount() - 1;
  grid.removeWidget(&field);
  row->addWidget(&field);
  row->addWidget(beside);
  if (look.width > 0) row->addStretch(1);
  grid.addLayout(row, at, 1);
  return field;
}

void PostingLayout::AddPayeeField(QGridLayout& grid, const FieldLook& look) {
  QPushButton* list = MakeBesideButton("cmdRolodex", "Opens the list of payees (F4).");
  AddFieldBeside(grid, look, list);
}

QLabel* PostingLayout::MakeLabel(const char* name, const char* role) {
  auto* label = new QLabel(entry_);
  label->setObjectName(name);
  if (*role != 0) label->setProperty("role", role);
  return label;
}

QPushButton* PostingLayout::MakeButton(const char* name) {
  return NewButton(name, *entry_);
}

QPushButton* PostingLayout::MakeBesideButton(const char* name, const char* help) {
  QPushButton* button = MakeButton(name);
  button->setFocusPolicy(Qt::NoFocus);
  button->setWhatsThis(QObject::tr(help));
  return button;
}

void PostingLayout::AddNotes(std::initializer_list<const char*> labels) {
  auto* notes = new QWidget;
  auto* column = new QVBoxLayout(notes);
  column->setContentsMargins(24, kGap, FieldScroll::kBarMargin, kGap);
  column->setSpacing(kLineGap);
  const char* role = "heading";
  for (const char* name : labels) {
    QLabel* label = MakeLabel(name, role);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setProperty("showWith", QString(name));  // an empty one would take a line
    column->addWidget(label);
    role = "";
  }
  column->addStretch(1);
  auto* scroll = new QScrollArea;
  scroll->setWidget(notes);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setMinimumHeight(kNotesHeight);
  scroll->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);  // the fields come first
  pane_column_->addWidget(scroll, 1);
}

void PostingLayout::AddButtons(std::initializer_list<const char*> others) {
  QWidget& pane = *pane_column_->parentWidget();
  auto* row = new QHBoxLayout;
  row->setContentsMargins(24, 0, FieldScroll::kBarMargin, 0);
  row->setSpacing(kGap);
  QPushButton* post = NewButton("cmdOk", pane);
  post->setProperty("main", true);
  post->setDefault(true);
  post->setMinimumWidth(120);
  row->addWidget(post);
  row->addStretch(1);
  for (const char* name : others) row->addWidget(NewButton(name, pane));
  pane_column_->addLayout(row);
}

void PostingLayout::AddRegister(const RegisterLook& look) {
  QWidget& pane = *register_column_->parentWidget();
  auto* head = new QHBoxLayout;
  head->setSpacing(kGap);
  auto* heading = new QLabel(QObject::tr(look.heading), &pane);
  heading->setProperty("role", "heading");
  auto* find = new QLineEdit(&pane);
  find->setObjectName("boxFind");
  find->setProperty("finds", look.name);
  find->setPlaceholderText(QObject::tr(look.find));
  find->setMinimumWidth(kLeastFindWidth);
  find->setMaximumWidth(kFindWidth);
  QLabel* caption = MakeCaption(*find, pane);
  caption->setText(QObject::tr("Find"));
  caption->setProperty("role", "muted");
  head->addWidget(heading);
  head->addStretch(1);
  head->addWidget(caption);
  head->addWidget(find, kFindWidth);  // before the gap takes any room
  register_column_->addLayout(head);
  auto* buttons = new FlowLayout;
  buttons->setSpacing(kGap);
  for (const char* name : look.list_buttons) buttons->addWidget(NewButton(name, pane));
  register_column_->addLayout(buttons);
  auto* view = new RegisterView(&pane);
  view->setObjectName(look.name);
  view->setAccessibleName(QObject::tr(look.heading));
  view->SetEmptyText(QObject::tr(look.empty));
  view->setProperty("wideColumn", look.wide_column);
  register_column_->addWidget(view, 1);
}

void PostingLayout::AddLookUp(const LookUpLook& look) {
  QWidget& pane = *register_column_->parentWidget();
  auto* head = new QHBoxLayout;
  head->setSpacing(kGap);
  auto* find = new QLineEdit(&pane);
  find->setObjectName(look.find);
  find->setWhatsThis(QObject::tr(look.help));
  find->setProperty("searches", true);
  head->addWidget(MakeCaption(*find, pane));
  head->addWidget(find, 1);
  for (const char* name : {look.use, look.close}) head->addWidget(NewButton(name, pane));
  register_column_->addLayout(head);
  auto* view = new RegisterView(&pane);
  view->setObjectName(look.list);
  view->setProperty("wideColumn", look.wide_column);
  view->SetEmptyText(QObject::tr(look.empty));
  view->setProperty("searches", true);
  register_column_->addWidget(view, 1);
}

void PostingLayout::AddMenu(const char* title, std::initializer_list<CommandLook> commands) {
  QMenu* menu = window_.menuBar()->addMenu(QObject::tr(title));
  for (const CommandLook& command : commands) {
    if (*command.name == 0) {
      menu->addSeparator();
      continue;
    }
    auto* action = new QAction(&window_);
    action->setObjectName(command.name);
    action->setShortcut(QKeySequence(command.shortcut));
    menu->addAction(action);
  }
}

void PostingLayout::AddStatusBar() {
  window_.statusBar()->setProperty("panels", QStringList{"lblKeys"});
}

}  // namespace tallwick
