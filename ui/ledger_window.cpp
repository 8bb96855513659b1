#include "ui/ledger_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QScrollArea>
#include <QStatusBar>

#include "ui/layout_helpers.h"
#include "ui/register_view.h"
#include "ui/report_menu.h"

namespace tallwick {
namespace {

constexpr int kSideWidth = 368;  // a hand's breadth
constexpr int kBanksHeight = 64;
constexpr int kTotalsHeight = 344;       // of every line, where there is room
constexpr int kLeastTotalsHeight = 200;  // on a low screen
constexpr int kLeastNotesHeight = 40;
constexpr int kPayeeColumn = 2;

struct SectionLook {
  const char* grid;
  const char* caption;
  const char* empty;
  int share;  // of the height
};
constexpr SectionLook kSections[] = {
    {"grdChecks", "Checks", "No check of this bank account is charged to the file.", 4},
    {"grdWires", "Wire Transfers", "No wire of this bank account is charged to the file.", 2},
    {"grdDeposits", "Deposits", "Nothing in this bank account has been received for the file.", 3},
    {"grdVouchers", "Vouchers", "No voucher of this bank account is charged to the file.", 2}};

QLayout* FileChoice() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  auto* file = Named(new QLineEdit, "txtFileNumber");
  file->setWhatsThis("The number of the escrow file. Enter shows its ledger.");
  auto* caption = new QLabel;
  caption->setBuddy(file);
  row->addWidget(caption);
  row->addWidget(file, 1);
  row->addWidget(MainButton("cmdShow"));
  return row;
}

QLayout* Figures() {
  auto* grid = Spaced(new QGridLayout, 0, 4);
  grid->setHorizontalSpacing(16);
  grid->setColumnStretch(1, 1);
  constexpr std::pair<const char*, const char*> kRows[] = {{"File balance", "lblFileBalance"},
                                                           {"Escrow condition", "lblCondition"},
                                                           {"Status", "lblStatus"},
                                                           {"Multiple banks", "lblMultipleBanks"},
                                                           {"Vouchered", "lblVouchered"}};
  for (const auto& [caption, name] : kRows) {
    const int row = grid->rowCount();
    auto* heading = RoleLabel(caption, "muted");
    heading->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(heading, row, 0);
    const bool first = row == 1;
    auto* figure = Named(first ? RoleLabel("", "figure") : new QLabel, name);
    figure->setAccessibleName(caption);
    grid->addWidget(figure, row, 1);
  }
  return grid;
}

QWidget* Notes() {
  auto* notes = Named(new QLabel, "lblNotes");
  notes->setWordWrap(true);
  notes->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  notes->setTextInteractionFlags(Qt::TextSelectableByMouse);
  notes->setAccessibleName("Notes of the file");
  auto* scroll = new QScrollArea;
  scroll->setWidget(notes);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setMinimumHeight(kLeastNotesHeight);
  return scroll;
}

RegisterView* Grid(const char* name, const char* caption, const char* empty, int wide_column) {
  auto* view = Named(new RegisterView, name);
  view->setAccessibleName(caption);
  view->SetEmptyText(empty);
  view->SetTotalsLine(false);
  view->setProperty("wideColumn", wide_column);
  return view;
}

QWidget* FileSide() {
  auto* side = new QWidget;
  side->setFixedWidth(kSideWidth);
  auto* column = Spaced(new QVBoxLayout(side), 0, 8);
  column->addLayout(FileChoice());
  auto* message = Named(new QLabel, "lblMessage");
  message->setWordWrap(true);
  column->addWidget(message);
  column->addLayout(Figures());
  auto* banks = Named(new QListWidget, "lstBanks");
  banks->setFixedHeight(kBanksHeight);
  column->addLayout(CaptionAbove("&Banks", banks));
  RegisterView* totals = Grid("grdTotals", "Totals", "", 0);
  totals->setMinimumHeight(kLeastTotalsHeight);
  totals->setMaximumHeight(kTotalsHeight);
  column->addWidget(totals, 10);
  column->addWidget(RoleLabel("Notes", "heading"));
  column->addWidget(Notes(), 1);
  return side;
}

QLayout* ItemSide(QPushButton* open) {
  auto* column = Spaced(new QVBoxLayout, 0, 4);
  for (const SectionLook& section : kSections) {
    column->addWidget(RoleLabel(section.caption, "heading"));
    RegisterView* view = Grid(section.grid, section.caption, section.empty, kPayeeColumn);
    view->setMinimumHeight(72);
    column->addWidget(view, section.share);
  }
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  row->addStretch(1);
  row->addWidget(open);
  column->addLayout(row);
  return column;
}

}  // namespace

std::unique_ptr<QWidget> MakeLedgerWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName("frmViewFileLedgers");
  window->resize(1400, 864);
  window->setProperty("perTopic", true);
  AddReportMenu(*window);
  auto* content = new QWidget;
  auto* row = Spaced(new QHBoxLayout(content), 24, 24);
  auto* open = PlainButton("cmdOpenItem");
  row->addWidget(FileSide());
  row->addLayout(ItemSide(open), 1);
  window->setCentralWidget(content);
  window->statusBar()->setProperty("panels", QStringList{"lblKeys"});
  return window;
}

}  // namespace tallwick
