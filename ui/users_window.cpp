#include "ui/users_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QStatusBar>

#include "ui/flow_layout.h"
#include "ui/layout_helpers.h"

namespace tallwick {
namespace {

QLayout* UserList() {
  auto* list = Named(new QListWidget, "lstUsers");
  list->setMinimumWidth(160);
  QVBoxLayout* column = CaptionAbove("&Users:", list);
  auto* buttons = Spaced(new QHBoxLayout, 0, 8);
  buttons->addWidget(Named(new QPushButton, "cmdNew"));
  buttons->addWidget(Named(new QPushButton, "cmdDelete"));
  buttons->addStretch();
  column->addSpacing(4);
  column->addLayout(buttons);
  return column;
}

QLayout* Account() {
  auto* column = Spaced(new QVBoxLayout, 0, 8);
  column->addWidget(RoleLabel("Account", "heading"));
  QFormLayout* rows = FieldRows();
  auto* login = Named(new QLineEdit, "txtLogin");
  login->setProperty("required", true);
  AddField(*rows, "&Login Name:", login);
  auto* name = Named(new QLineEdit, "txtUserName");
  name->setProperty("required", true);
  AddField(*rows, "Full Na&me:", name);
  AddField(*rows, "&Group:", Named(new QComboBox, "cboGroup"));
  rows->addRow("", Named(new QCheckBox, "chkMustChange"));
  rows->addRow("", Named(new QCheckBox, "chkDisabled"));
  rows->addRow(new QLabel("Last login:"), Named(new QLabel, "lblLastLogin"));
  rows->addRow(new QLabel("Last saved:"), Named(new QLabel, "lblLastUpdated"));
  column->addLayout(rows);
  column->addSpacing(8);
  auto* banks = CheckList("lstBanks", 3);
  column->addLayout(CaptionAbove("&Banks:", banks), 1);
  auto* status = Named(new QLabel, "lblStatus");
  status->setWordWrap(true);
  status->setMinimumHeight(40);
  status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  column->addWidget(status);
  auto* buttons = Spaced(new QHBoxLayout, 0, 8);
  buttons->addWidget(MainButton("cmdSave"));
  buttons->addStretch();
  buttons->addWidget(Named(new QPushButton, "cmdClose"));
  column->addLayout(buttons);
  return column;
}

QLayout* Rights() {
  QVBoxLayout* column = CaptionAbove("&Rights:", CheckList("lstRights", 12));
  auto* buttons = Spaced(new FlowLayout, 0, 8);
  buttons->addWidget(Named(new QPushButton, "cmdGrantAll"));
  buttons->addWidget(Named(new QPushButton, "cmdDenyAll"));
  buttons->addWidget(Named(new QPushButton, "cmdForceResets"));
  column->addSpacing(4);
  column->addLayout(buttons);
  return column;
}

}  // namespace

std::unique_ptr<QWidget> MakeUsersWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName("frmEditUsers");
  window->resize(1120, 680);
  auto* content = new QWidget;
  auto* row = Spaced(new QHBoxLayout(content), 24, 24);
  row->addLayout(UserList(), 3);
  row->addLayout(Account(), 4);
  row->addLayout(Rights(), 4);
  window->setCentralWidget(content);
  window->statusBar()->setProperty("panels", QStringList{"lblKeys"});
  return window;
}

}  // namespace tallwick
