#include "ui/ledger_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QScrollArea>
#include <QStatusBar>

#include "ui/field_scroll.h"
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
constexpr int kLeastSectionHeight = 52;  // the heading and a row
constexpr int kPayeeColumn = 2;

struct SectionLook {
  const char* grid;
  const char* caption;
  int share;  // of the height
};
constexpr SectionLook kSections[] = {{"grdChecks", "Checks", 4},
                                     {"grdWires", "Wire Transfers", 2},
                                     {"grdDeposits", "Deposits", 3},
                                     {"grdVouchers", "Vouchers", 2}};

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

RegisterView* Grid(const char* name, const char* caption, int wide_column) {
  auto* view = Named(new RegisterView, name);
  view->setAccessibleName(caption);
  view->SetTotalsLine(false);
  view->setProperty("wideColumn", wide_column);
  return view;
}

QWidget* FileSide() {
  auto* fields = new QWidget;
  auto* column = Spaced(new QVBoxLayout(fields), 0, 8);
  column->setContentsMargins(0, 0, FieldScroll::kBarMargin, 0);
  column->addLayout(FileChoice());
  auto* message = Named(new QLabel, "lblMessage");
  message->setWordWrap(true);
  column->addWidget(message);
  column->addLayout(Figures());
  auto* banks = Named(new QListWidget, "lstBanks");
  banks->setFixedHeight(kBanksHeight);
  column->addLayout(CaptionAbove("&Banks", banks));
  RegisterView* totals = Grid("grdTotals", "Totals", 0);
  totals->setMinimumHeight(kLeastTotalsHeight);
  totals->setMaximumHeight(kTotalsHeight);
  column->addWidget(totals, 10);
  column->addWidget(RoleLabel("Notes", "heading"));
  column->addWidget(Notes(), 1);
  auto* side = new FieldScroll(fields);
  side->setFixedWidth(kSideWidth + FieldScroll::kBarMargin);
  return side;
}

QLayout* ItemSide(QPushButton* open) {
  auto* column = Spaced(new QVBoxLayout, 0, 4);
  for (const SectionLook& section : kSections) {
    column->addWidget(RoleLabel(section.caption, "heading"));
    RegisterView* view = Grid(section.grid, section.caption, kPayeeColumn);
    view->setMinimumHeight(kLeastSectionHeight);
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
  auto* row = Spaced(new QHBoxLayout(content), 24, 24 - FieldScroll::kBarMargin);
  auto* open = PlainButton("cmdOpenItem");
  row->addWidget(FileSide());
  row->addLayout(ItemSide(open), 1);
  window->setCentralWidget(content);
  window->statusBar()->setProperty("panels", QStringList{"lblKeys"});
  return window;
}

}  // namespace tallwick
