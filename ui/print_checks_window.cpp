#include "ui/print_checks_window.h"

#include <QCheckBox>
#include <QDialog>
#include <QHBoxLayout>
#include <QLineEdit>

#include "ui/layout_helpers.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

QLayout* Numbers() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  auto* field = Named(new QLineEdit, "txtNumbers");
  field->setPlaceholderText("10452-10460, 10470");
  field->setWhatsThis("Numbers and ranges of posted checks. Of a range, the outstanding ones are printed.");
  auto* caption = new QLabel("C&hecks");
  caption->setBuddy(field);
  row->addWidget(caption);
  row->addWidget(field, 1);
  auto* list = PlainButton("cmdList");
  row->addWidget(list);
  return row;
}

QLayout* Buttons() {
  auto* row = Spaced(new QHBoxLayout, 0, 8);
  auto* preview = Named(new QCheckBox, "chkPreview");
  preview->setWhatsThis("Shows the sheets before they are printed.");
  row->addWidget(preview);
  row->addStretch(1);
  row->addWidget(MainButton("cmdPrint"));
  auto* done = PlainButton("cmdDone");
  row->addWidget(done);
  return row;
}

}  // namespace

std::unique_ptr<QWidget> MakePrintChecksWindow() {
  auto window = std::make_unique<QDialog>();
  window->setObjectName("frmPrintChecks");
  window->setProperty("waits", true);
  window->resize(880, 560);
  auto* column = Spaced(new QVBoxLayout(window.get()), 24, 16);
  column->addLayout(Numbers());
  auto* view = Named(new RegisterView, "grdChecks");
  view->setAccessibleName("Checks");
  view->SetEmptyText("The checks that the numbers name appear here.");
  view->setProperty("wideColumn", 2);
  column->addWidget(view, 1);
  auto* count = Named(new QLabel, "lblCount");
  count->setWordWrap(true);
  column->addWidget(count);
  column->addLayout(Buttons());
  return window;
}

}  // namespace tallwick
