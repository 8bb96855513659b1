#include "ui/posting_windows.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <span>
#include <string_view>

#include "tables/deposit_table.h"
#include "ui/posting_layout.h"

namespace tallwick {
namespace {

constexpr int kDateWidth = 112;
constexpr int kAmountWidth = 120;
constexpr int kEntryWidth = 488;
constexpr int kDepositEntryWidth = 640;
constexpr int kLineHeight = 24;  // of lines that come and go

constexpr FieldLook kWireFields[] = {
    {"txtWireNumber", "The confirmation number that the bank gave. Type that of a posted wire to see it.",
     144, true},
    {"txtWireDated", "The date of the wire: month, day, year, as 3/15/2024. F2 opens a calendar.", kDateWidth,
     true},
    {"txtWirePayee", "Who the money goes to. F4 opens the list of payees.", 0, true, true},
    {"txtWireAmount", kAmountHelp, 144, true},
    {"txtWireFileNumber", "The escrow file that the wire is charged to. F4 opens a list.", 144, true, true},
    {"txtWireControl", "Operator or control number.", 144},
    {"txtWireAcctPeriod", "The accounting period, in the form that the bank uses. F2 opens a calendar.",
     kDateWidth, true},
    {"txtWireStmtPeriod",
     "The bank statement on which the wire has cleared. Left empty, the wire stays outstanding.", kDateWidth},
};

constexpr FieldLook kVoucherFields[] = {
    {"txtVCHRNumber", "The voucher's number. Type that of a posted voucher to see it.", 112, true},
    {"txtVCHRFileNumber", "The escrow file whose money is set aside. F4 opens a list.", 144, true, true},
    {"txtVCHRDated", "The date of the voucher: month, day, year. F2 opens a calendar.", kDateWidth, true},
    {"txtVCHRPayee", "Who will be paid. F4 opens the list of payees.", 0, true, true},
    {"txtVCHRReason", "What the payment is for."},
    {"txtVCHRAmount", kAmountHelp, 144, true},
    {"txtVCHRAcctPeriod", "The accounting period, in the form that the bank uses. F2 opens a calendar.",
     kDateWidth, true},
    {"txtVCHRCheckNumber", "The check that has used the voucher; it is set when that check is posted.", 112},
};

constexpr FieldLook kClearingFields[] = {
    {"txtDepositDated", "The date of the posted deposit: month, day, year. F2 opens a calendar.", kDateWidth,
     true},
    {"txtDateSequence", "Which deposit of the date it is.", 48, true},
    {"txtStmtPeriod", "The bank statement on which the marked items have cleared.", kDateWidth, true},
};

constexpr const char* kItemLists[] = {"cmdListAll", "cmdListOutstanding", "cmdListCleared"};
constexpr const char* kDepositLists[] = {"cmdListDeposits", "cmdListAll", "cmdListOutstanding",
                                         "cmdListCleared"};

constexpr RegisterLook kDeposits{
    "lstDepositDates",
    "Posted deposits",
    "No deposit has been posted to this bank account yet. Enter the first one at the left.",
    "Ctrl+F: date, file, source, amount",
    4,
    kDepositLists};
constexpr RegisterLook kDepositsToClear{"lstDepositDates",
                                        "Posted deposits",
                                        "No deposit has been posted to this bank account yet.",
                                        "Ctrl+F: date, file, amount",
                                        4,
                                        {}};
constexpr RegisterLook kWires{
    "lstWireNumbers",
    "Posted wires",
    "No wire has been posted to this bank account yet. Enter the first one at the left.",
    "Ctrl+F: number, payee, amount, file",
    2,
    kItemLists};
constexpr RegisterLook kVouchers{
    "lstVCHRNumbers",
    "Posted vouchers",
    "No voucher has been posted to this bank account yet. Enter the first one at the left.",
    "Ctrl+F: number, payee, amount, file",
    2,
    kItemLists};

std::unique_ptr<QMainWindow> NamedWindow(const char* name) {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName(name);
  return window;
}

QLabel* MutedLabel(const char* text, QWidget& parent) {
  auto* label = new QLabel(QObject::tr(text), &parent);
  label->setProperty("role", "muted");
  return label;
}

void AddItemFields(PostingLayout& layout, QGridLayout& grid, std::span<const FieldLook> fields,
                   std::string_view payee) {
  for (const FieldLook& look : fields) {
    if (look.name == payee) {
      layout.AddPayeeField(grid, look);
    } else {
      layout.AddField(grid, look);
    }
  }
}

void FinishItemWindow(PostingLayout& layout, const RegisterLook& look, const char* remove) {
  for (const LookUpLook& one : {kPayeeLookUp, kFileLookUp}) layout.AddLookUp(one);
  layout.AddRegister(look);
  layout.AddMenu("&Edit", {{remove}});
  layout.AddMenu("&View", {{"mnuViewFileLedgers"}});
  layout.AddStatusBar();
}

// Date, sequence and period stand in one row above the lines.
void AddDepositHead(PostingLayout& layout) {
  QGridLayout& grid = layout.AddGroup("Deposit");
  grid.setColumnStretch(1, 0);
  grid.setColumnStretch(6, 1);
  const FieldLook fields[] = {
      {"txtDepositDated", "The date of the deposit: month, day, year, as 3/15/2024. F2 opens a calendar.",
       kDateWidth, true},
      {"txtDateSequence", "Which deposit of the date this is; the next free number is proposed.", 48, true},
      {"txtDepositAcctPeriod", "The accounting period, in the form that the bank uses. F2 opens a calendar.",
       kDateWidth, true},
  };
  int column = 0;
  for (const FieldLook& look : fields) {
    QLineEdit* field = layout.MakeField(look);
    auto* caption = new QLabel(&layout.Entry());
    caption->setBuddy(field);
    caption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid.addWidget(caption, 1, column++);
    grid.addWidget(field, 1, column++);
  }
  grid.addWidget(layout.MakeLabel("lblLastReconciled", "muted"), 0, 2, 1, 5,
                 Qt::AlignRight | Qt::AlignVCenter);
}

// One line of the deposit. Its widgets are named "<control>_<line>".
void AddDepositLine(PostingLayout& layout, QGridLayout& grid, int line) {
  const QString suffix = "_" + QString::number(line);
  const QString lead = QObject::tr("Line %1 ").arg(line);
  const auto named = [&](QWidget* widget, const char* name, const QString& spoken) {
    widget->setObjectName(name + suffix);
    if (!spoken.isEmpty()) widget->setAccessibleName(lead + spoken);
    return widget;
  };
  QLabel* number = layout.MakeLabel("", "muted");
  number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  QLineEdit* file = layout.MakeField(
      {"", "The escrow file that the money is for. F4 opens a list. Emptied, a posted line is deleted.", 128,
       false, true});
  QLineEdit* source = layout.MakeField({"", "Who the money came from."});
  QLineEdit* amount = layout.MakeField({"", kAmountHelp, kAmountWidth});
  auto* wire_in = new QCheckBox(&layout.Entry());
  wire_in->setProperty("ownText", true);
  wire_in->setWhatsThis(QObject::tr("Mark a line whose money came in by wire."));
  grid.addWidget(named(number, "lblItemNumbers", {}), line, 0);
  grid.addWidget(named(file, "txtFileNumbers", QObject::tr("File Number")), line, 1);
  grid.addWidget(named(source, "txtSources", QObject::tr("Source")), line, 2);
  grid.addWidget(named(amount, "txtAmounts", QObject::tr("Amount")), line, 3);
  grid.addWidget(named(wire_in, "chkWireIn", QObject::tr("Wire In")), line, 4, Qt::AlignCenter);
  grid.addWidget(named(layout.MakeLabel("", "muted"), "lblItemStatus", {}), line, 5);
}

void AddDepositLines(PostingLayout& layout) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(2);
  grid->setColumnStretch(2, 1);
  grid->setColumnMinimumWidth(4, 64);
  grid->setColumnMinimumWidth(5, 80);
  const std::pair<const char*, Qt::Alignment> headings[] = {{"File Number", Qt::AlignLeft},
                                                            {"Source", Qt::AlignLeft},
                                                            {"Amount", Qt::AlignRight},
                                                            {"Wire In", Qt::AlignHCenter}};
  int column = 1;
  for (const auto& [heading, side] : headings)
    grid->addWidget(MutedLabel(heading, layout.Entry()), 0, column++, side);
  for (int line = 1; line <= kDepositItems; ++line) AddDepositLine(layout, *grid, line);
  const int foot = kDepositItems + 1;
  grid->addWidget(layout.MakeLabel("lblItemCount", "muted"), foot, 2, Qt::AlignRight);
  grid->addWidget(layout.MakeLabel("lblDepositTotal", "heading"), foot, 3, Qt::AlignRight);
  layout.EntryColumn().addLayout(grid);
}

}  // namespace

std::unique_ptr<QWidget> MakeDepositWindow() {
  auto window = NamedWindow("frmEditDepositsPost");
  PostingLayout layout(*window, kDepositEntryWidth, false);
  AddDepositHead(layout);
  AddDepositLines(layout);
  layout.AddNotes({"lblDepositStatus", "lblEditMessage", "lblPasteBuffer"});
  layout.AddButtons({"cmdDepositSlip", "cmdCalendar", "cmdClose"});
  auto* calendar = window->findChild<QPushButton*>("cmdCalendar");
  calendar->setProperty("calendarOf", "txtDepositAcctPeriod");
  calendar->setProperty("calendarTitle", QObject::tr("Deposit Accounting Period"));
  layout.AddLookUp(kFileLookUp);
  layout.AddRegister(kDeposits);
  layout.AddMenu("&Edit", {{"mnuEditUseTodaysDateandNextSequence", "Ctrl+H"},
                           {"mnuEditInsertCurrentFile", "Ctrl+I"},
                           {},
                           {"mnuEditCutLineItems", "Ctrl+Shift+X"},
                           {"mnuEditPasteLineItems", "Ctrl+Shift+V"},
                           {"mnuEditClearPasteBuffer"}});
  layout.AddMenu("&View", {{"mnuViewFileLedgers"}});
  layout.AddMenu("Opt&ions", {{"mnuOptionsFreeFormatPostedDates"}, {"mnuOptionsFileCheck"}});
  layout.AddStatusBar();
  return window;
}

std::unique_ptr<QWidget> MakeDepositClearingWindow() {
  auto window = NamedWindow("frmEditDepositsClear");
  PostingLayout layout(*window, kDepositEntryWidth, false);
  QGridLayout& grid = layout.AddGroup("Clear deposit");
  for (const FieldLook& look : kClearingFields) layout.AddField(grid, look);
  grid.addWidget(layout.MakeLabel("lblLastReconciled", "muted"), grid.rowCount(), 1);
  auto* items = new QGridLayout;
  items->setColumnStretch(1, 1);
  items->setColumnMinimumWidth(3, 80);
  items->setHorizontalSpacing(16);
  items->setVerticalSpacing(0);
  for (int item = 1; item <= kDepositItems; ++item) {
    const QString suffix = "_" + QString::number(item);
    auto* cleared = new QCheckBox(&layout.Entry());
    cleared->setObjectName("chkCleared" + suffix);
    cleared->setProperty("ownText", true);
    cleared->setText(QString::number(item));
    cleared->setAccessibleName(QObject::tr("Item %1 cleared").arg(item));
    items->addWidget(cleared, item, 0);
    const std::pair<const char*, Qt::Alignment> parts[] = {
        {"lblItems", Qt::AlignLeft}, {"lblItemAmounts", Qt::AlignRight}, {"lblItemPeriods", Qt::AlignLeft}};
    int column = 1;
    for (const auto& [name, side] : parts) {
      QLabel* shown = layout.MakeLabel("");
      shown->setObjectName(name + suffix);
      items->addWidget(shown, item, column++, side | Qt::AlignVCenter);
    }
    items->setRowMinimumHeight(item, kLineHeight);
  }
  layout.EntryColumn().addLayout(items);
  layout.AddNotes({"lblDepositStatus"});
  layout.AddButtons({"cmdMarkAll", "cmdClose"});
  layout.AddRegister(kDepositsToClear);
  layout.AddMenu("&View", {{"mnuViewFileLedgers"}});
  layout.AddStatusBar();
  return window;
}

std::unique_ptr<QWidget> MakeWireWindow() {
  auto window = NamedWindow("frmEditWiresPost");
  PostingLayout layout(*window, kEntryWidth, false);
  QGridLayout& grid = layout.AddGroup("Outgoing wire");
  AddItemFields(layout, grid, kWireFields, "txtWirePayee");
  grid.addWidget(layout.MakeLabel("lblLastReconciled", "muted"), grid.rowCount(), 1);
  layout.AddNotes({"lblWireStatus", "lblEditMessage", "lblWireIn"});
  layout.AddButtons({"cmdDone"});
  FinishItemWindow(layout, kWires, "mnuEditRemoveWire");
  return window;
}

std::unique_ptr<QWidget> MakeVoucherWindow() {
  auto window = NamedWindow("frmEditVouchersPost");
  PostingLayout layout(*window, kEntryWidth, false);
  QGridLayout& grid = layout.AddGroup("Voucher");
  AddItemFields(layout, grid, kVoucherFields, "txtVCHRPayee");
  auto* cleared = new QCheckBox(&layout.Entry());
  cleared->setObjectName("chkVCHRCleared");
  cleared->setWhatsThis(QObject::tr("Mark a voucher that needs no money set aside any more."));
  grid.addWidget(cleared, grid.rowCount(), 1);
  layout.AddNotes({"lblVCHRStatus", "lblEditMessage"});
  layout.AddButtons({"cmdNextVCHRNumber", "cmdDone"});
  FinishItemWindow(layout, kVouchers, "mnuEditRemoveVoucher");
  return window;
}

}  // namespace tallwick
