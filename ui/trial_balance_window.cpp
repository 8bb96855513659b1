#include "ui/trial_balance_window.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QProgressBar>
#include <QStatusBar>

#include "ui/field_scroll.h"
#include "ui/layout_helpers.h"
#include "ui/register_view.h"
#include "ui/report_menu.h"

namespace tallwick {
namespace {

constexpr int kSideWidth = 296;

QListWidget* Choices(const char* name, int height) {
  auto* list = Named(new QListWidget, name);
  list->setFixedHeight(height);
  return list;
}

// A field below its caption, which the control gives, so that both vanish together.
QLayout* Field(const char* name, const char* caption_text, const char* hint, const char* help) {
  auto* field = Named(new QLineEdit, name);
  field->setPlaceholderText(hint);
  field->setWhatsThis(help);
  auto* caption = new QLabel(caption_text);
  caption->setBuddy(field);
  auto* column = Spaced(new QVBoxLayout, 0, 4);
  column->addWidget(caption);
  column->addWidget(field);
  return column;
}

QWidget* Terms() {
  auto* fields = new QWidget;
  auto* column = Spaced(new QVBoxLayout(fields), 0, 16);
  column->setContentsMargins(0, 0, FieldScroll::kBarMargin, 0);
  column->addLayout(CaptionAbove("&Bank", Choices("lstBanks", 112)));
  column->addLayout(CaptionAbove("F&iles", Choices("lstKinds", 96)));
  column->addLayout(Field("txtAsOf", "Posted &Through", "every item posted",
                          "Items of later accounting periods are left out. F2 opens a calendar."));
  column->addLayout(Field("txtDormantDays", "&Days without Activity", "",
                          "A dormant file holds money and has not moved for longer than this."));
  auto* buttons = Spaced(new QHBoxLayout, 0, 8);
  buttons->addWidget(MainButton("cmdCompute"));
  buttons->addStretch(1);
  column->addLayout(buttons);
  auto* progress = Named(new QLabel, "lblProgress");
  progress->setWordWrap(true);
  column->addWidget(progress);
  column->addWidget(Named(new QProgressBar, "prgProgress"));
  auto* note = Named(RoleLabel("", "muted"), "lblMonthNote");
  note->setWordWrap(true);
  column->addWidget(note);
  column->addStretch(1);
  auto* side = new FieldScroll(fields);
  side->setFixedWidth(kSideWidth + FieldScroll::kBarMargin);
  return side;
}

QLayout* Sums() {
  auto* row = Spaced(new QHBoxLayout, 0, 16);
  auto* count = Named(RoleLabel("", "heading"), "lblCount");
  count->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // the sums come first
  row->addWidget(count, 1);
  for (const auto& [caption, name] :
       {std::pair("Receipts", "lblReceipts"), std::pair("Disbursements", "lblDisbursements"),
        std::pair("Balance", "lblBalance")}) {
    row->addWidget(RoleLabel(caption, "muted"));
    auto* sum = Named(RoleLabel("", "heading"), name);
    sum->setAccessibleName(caption);
    row->addWidget(sum);
  }
  return row;
}

QLayout* Files() {
  auto* column = Spaced(new QVBoxLayout, 0, 8);
  column->addLayout(Sums());
  auto* view = Named(new RegisterView, "grdFiles");
  view->setAccessibleName("Files");
  view->SetEmptyText("No file is of this kind.");
  view->SetTotalsLine(false);
  view->setProperty("wideColumn", 4);
  column->addWidget(view, 1);
  auto* foot = Spaced(new QHBoxLayout, 0, 8);
  auto* find = Named(new QLineEdit, "txtFind");
  find->setPlaceholderText("Find a file (Ctrl+F)");
  find->setAccessibleName("Find a file");
  find->setProperty("finds", "grdFiles");
  find->setFixedWidth(240);
  foot->addWidget(find);
  foot->addStretch(1);
  auto* open = PlainButton("cmdOpenLedger");
  foot->addWidget(open);
  column->addLayout(foot);
  return column;
}

}  // namespace

std::unique_ptr<QWidget> MakeTrialBalanceWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName("frmViewTrialBalance");
  window->resize(1200, 800);
  AddReportMenu(*window);
  AddLedgerMenu(*window);
  auto* content = new QWidget;
  auto* row = Spaced(new QHBoxLayout(content), 24, 24 - FieldScroll::kBarMargin);
  row->addWidget(Terms());
  row->addLayout(Files(), 1);
  window->setCentralWidget(content);
  window->statusBar()->setProperty("panels", QStringList{"lblKeys"});
  return window;
}

}  // namespace tallwick
