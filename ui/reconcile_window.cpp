#include "ui/reconcile_window.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QStatusBar>

#include "ui/field_scroll.h"
#include "ui/layout_helpers.h"
#include "ui/register_view.h"
#include "ui/report_menu.h"

namespace tallwick {
namespace {

constexpr int kAmountWidth = 128;
constexpr int kDateWidth = 112;

QLineEdit* Field(const char* name, const char* help, int width) {
  auto* field = Named(new QLineEdit, name);
  field->setWhatsThis(QObject::tr(help));
  field->setFixedWidth(width);
  return field;
}

// A figure that nobody types.
QLineEdit* Figure(const char* name, const char* spoken) {
  auto* field = Named(new QLineEdit, name);
  field->setProperty("role", "figure");
  field->setAccessibleName(QObject::tr(spoken));
  field->setFixedWidth(kAmountWidth);
  return field;
}

// The name of a figure, which shows what it is made of.
QPushButton* FigureName(const char* name) {
  auto* button = PlainButton(name);
  button->setProperty("link", true);
  button->setCursor(Qt::PointingHandCursor);
  button->setWhatsThis(QObject::tr("Shows the items that the figure is made of."));
  return button;
}

// A text that takes the room that there is: the window stays as wide as it is.
QLabel* InRoomLeft(QLabel* label) {
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return label;
}

// Both sides of the reconciliation, row beside row.
class Sides {
 public:
  Sides() : grid_(Spaced(new QGridLayout, 0, 4)) {
    grid_->setHorizontalSpacing(8);
    grid_->setColumnMinimumWidth(2, 16);
    grid_->setColumnStretch(5, 1);
  }
  QGridLayout* Grid() { return grid_; }
  void NextRow() { ++row_; }

  void AddHeading(int side, const char* text) {
    grid_->addWidget(RoleLabel(QObject::tr(text), "heading"), row_, side * 3, 1, 2);
  }
  QLineEdit& AddEntry(int side, const char* name, const char* help) {
    QLineEdit* field = Field(name, help, kAmountWidth);
    auto* label = new QLabel;
    label->setBuddy(field);
    Place(side, label, field);
    return *field;
  }
  void AddFigure(int side, const char* button, const char* name, const char* spoken) {
    Place(side, FigureName(button), Figure(name, spoken));
  }
  void AddTotal(int side, const char* name, const char* text) {
    Place(side, RoleLabel(QObject::tr(text), "heading"), Figure(name, text));
  }
  void AddLine() {
    for (int side : {0, 1}) {
      auto* line = new QFrame;
      line->setFrameShape(QFrame::HLine);
      line->setProperty("role", "line");
      grid_->addWidget(line, row_, side * 3, 1, 2);
    }
    ++row_;
  }

 private:
  void Place(int side, QWidget* caption, QWidget* field) {
    grid_->addWidget(caption, row_, side * 3, Qt::AlignRight | Qt::AlignVCenter);
    grid_->addWidget(field, row_, side * 3 + 1);
  }

  QGridLayout* grid_;
  int row_ = 0;
};

QLayout* BothSides() {
  Sides sides;
  sides.AddHeading(0, "Bank Statement");
  sides.AddHeading(1, "Check Book");
  sides.NextRow();
  sides.AddEntry(0, "txtBankStatementBalance", "The ending balance that the bank statement prints.")
      .setProperty("required", true);
  sides.AddEntry(1, "txtBeginningCheckBookBalance",
                 "The check book balance of the last reconciliation, from which this one begins.");
  sides.NextRow();
  sides.AddFigure(0, "cmdOutstandingDeposits", "txtPlusOutstandingDeposits", "plus Outstanding Deposits");
  sides.AddFigure(1, "cmdDeposits", "txtPlusDeposits", "plus Deposits");
  sides.NextRow();
  sides.AddFigure(0, "cmdOutstandingChecks", "txtLessOutstandingChecks", "less Outstanding Checks");
  sides.AddFigure(1, "cmdVoidedChecks", "txtPlusVoidedChecks", "plus Voided Checks");
  sides.NextRow();
  sides.AddFigure(0, "cmdOutstandingWires", "txtLessOutstandingWires", "less Outstanding Wire Transfers");
  sides.AddFigure(1, "cmdDisbursements", "txtLessDisbursements", "less Disbursements");
  sides.NextRow();
  sides.AddEntry(0, "txtAdjustmentsinTransit",
                 "What the statement has wrong and the bank will put right; with a minus where it lowers the "
                 "balance.");
  sides.AddEntry(1, "txtPlusBankCredits", "Interest and other credits that the bank has given.");
  sides.NextRow();
  sides.AddEntry(1, "txtLessBankCharges", "What the bank has charged.");
  sides.NextRow();
  sides.AddLine();
  sides.AddTotal(0, "txtAdjustedBalance", "Adjusted Statement Balance");
  sides.AddTotal(1, "txtEndingCheckBookBalance", "Ending Check Book Balance");
  sides.NextRow();
  sides.AddTotal(1, "txtDifferenceBalances", "Difference of");
  return sides.Grid();
}

QLayout* ClearedAndProof() {
  auto* row = Spaced(new QHBoxLayout, 0, 24);
  auto* cleared = Spaced(new QGridLayout, 0, 4);
  cleared->setHorizontalSpacing(8);
  cleared->addWidget(RoleLabel(QObject::tr("Cleared on this statement"), "heading"), 0, 0, 1, 3);
  const struct {
    const char *button, *count, *figure, *spoken;
  } lines[] = {
      {"cmdClearedChecks", "lblClearedChecksCount", "txtClearedChecksThisBankStmt", "Cleared Checks"},
      {"cmdClearedWires", "lblClearedWiresCount", "txtClearedWiresThisBankStmt", "Cleared Wire Transfers"},
      {"cmdClearedDeposits", nullptr, "txtClearedDepositsThisBankStmt", "Cleared Deposits"}};
  int at = 1;
  for (const auto& line : lines) {
    cleared->addWidget(FigureName(line.button), at, 0, Qt::AlignRight | Qt::AlignVCenter);
    if (line.count != nullptr) {
      auto* count = Named(new QLabel, line.count);
      count->setMinimumWidth(48);
      count->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
      cleared->addWidget(count, at, 1);
    }
    cleared->addWidget(Figure(line.figure, line.spoken), at++, 2);
  }
  cleared->setRowStretch(at, 1);
  row->addLayout(cleared);
  auto* proof = Spaced(new QGridLayout, 0, 4);
  proof->setHorizontalSpacing(8);
  proof->addWidget(RoleLabel(QObject::tr("Three-way proof"), "heading"), 0, 0, 1, 2);
  proof->addWidget(FigureName("cmdFiles"), 1, 0, Qt::AlignRight | Qt::AlignVCenter);
  proof->addWidget(Figure("txtFileLedgersTotal", "Sum of File Ledgers"), 1, 1);
  auto* text = Named(new QLabel, "lblProof");
  text->setWordWrap(true);
  text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  text->setMinimumHeight(56);
  proof->addWidget(text, 2, 0, 1, 2);
  proof->setRowStretch(2, 1);
  row->addLayout(proof, 1);
  return row;
}

QLayout* Steps() {
  auto* column = Spaced(new QVBoxLayout, 0, 2);
  for (int step = 1; step <= 5; ++step) {
    auto* label = RoleLabel({}, "muted");
    label->setObjectName(QString("lblSteps_%1").arg(step));
    label->setWordWrap(true);
    column->addWidget(label);
  }
  return column;
}

QLayout* StatementDate() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  auto* field = Field("txtStatementDate",
                      "The date of the bank statement, in the form that the bank uses. F2 opens a calendar.",
                      kDateWidth);
  field->setProperty("required", true);
  auto* label = new QLabel;
  label->setBuddy(field);
  row->addWidget(label);
  row->addWidget(field);
  row->addWidget(InRoomLeft(Named(RoleLabel({}, "muted"), "lblStatementNote")), 1);
  return row;
}

QLayout* State() {
  auto* column = Spaced(new QVBoxLayout, 0, 4);
  column->addWidget(Named(RoleLabel({}, "heading"), "lblStatus"));
  auto* progress = new QWidget;
  progress->setFixedHeight(24);
  auto* row = Spaced(new QHBoxLayout(progress), 0, 8);
  auto* bar = Named(new QProgressBar, "prgProgress");
  bar->setTextVisible(false);
  row->addWidget(bar, 1);
  row->addWidget(Named(RoleLabel({}, "muted"), "lblProgress"));
  column->addWidget(progress);
  return column;
}

QLayout* Buttons() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  row->addWidget(MainButton("cmdCompute"));
  for (const char* name : {"cmdUpdateBankRecord", "cmdPreview", "cmdPrint", "cmdPdf", "cmdRtf"}) {
    row->addWidget(PlainButton(name));
  }
  row->addStretch(1);
  auto* close = PlainButton("cmdClose");
  row->addWidget(close);
  return row;
}

QLayout* TakeBack() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  auto* through = Named(new QLineEdit, "txtReconciledThrough");
  through->setProperty("role", "figure");
  through->setFixedWidth(88);
  auto* last = new QLabel;
  last->setBuddy(through);
  auto* reason = Named(new QLineEdit, "txtTakeBackReason");
  reason->setWhatsThis(QObject::tr("Why the last reconciliation is taken back; the audit log keeps it."));
  auto* caption = new QLabel;
  caption->setBuddy(reason);
  auto* button = PlainButton("cmdTakeBack");
  row->addWidget(last);
  row->addWidget(through);
  row->addWidget(caption);
  row->addWidget(reason, 1);
  row->addWidget(button);
  return row;
}

QLayout* Items() {
  auto* column = Spaced(new QVBoxLayout, 0, 8);
  column->addWidget(InRoomLeft(Named(RoleLabel({}, "heading"), "lblItems")));
  auto* find = Named(new QLineEdit, "boxFind");
  find->setProperty("finds", "grdItems");
  find->setPlaceholderText(QObject::tr("Ctrl+F: number, payee, file, amount"));
  find->setAccessibleName(QObject::tr("Find"));
  column->addWidget(find);
  auto* view = Named(new RegisterView, "grdItems");
  view->setAccessibleName(QObject::tr("Items behind the figure"));
  view->SetEmptyText(QObject::tr("Compute, then click the name of a figure to see what it is made of."));
  view->setProperty("wideColumn", 5);
  view->setProperty("totalsLine", false);
  column->addWidget(view, 1);
  auto* foot = Spaced(new QHBoxLayout, 0, 8);
  foot->addStretch(1);
  auto* open = PlainButton("cmdOpenItem");
  foot->addWidget(open);
  column->addLayout(foot);
  return column;
}

QLayout* Entry() {
  auto* fields = new QWidget;
  auto* column = Spaced(new QVBoxLayout(fields), 0, 8);
  column->setContentsMargins(0, 0, FieldScroll::kBarMargin, 0);
  column->addLayout(Steps());
  auto* information = Named(new QLabel, "lblInformation");
  information->setWordWrap(true);
  column->addWidget(information);
  column->addLayout(StatementDate());
  column->addLayout(BothSides());
  column->addLayout(ClearedAndProof());
  column->addStretch(1);
  auto* foot = Spaced(new QVBoxLayout, 0, 12);
  foot->setContentsMargins(0, 0, FieldScroll::kBarMargin, 0);
  foot->addLayout(State());
  foot->addLayout(Buttons());
  foot->addLayout(TakeBack());
  auto* entry = Spaced(new QVBoxLayout, 0, 12);
  entry->addWidget(new FieldScroll(fields), 1);
  entry->addLayout(foot);
  return entry;
}

}  // namespace

std::unique_ptr<QWidget> MakeReconcileWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName("frmReconcileAccount");
  window->resize(1280, 760);
  AddReportMenu(*window);
  AddLedgerMenu(*window);
  auto* content = new QWidget;
  auto* row = Spaced(new QHBoxLayout(content), 16, 24 - FieldScroll::kBarMargin);
  row->addLayout(Entry());
  row->addLayout(Items(), 1);
  window->setCentralWidget(content);
  window->statusBar()->setProperty("panels", QStringList{"lblKeys"});
  return window;
}

}  // namespace tallwick
