// The window of the check screen: the check with its payee and what it is charged to on the left; on the
// right the posted checks and, above them while it is open, the list of payees.
#include "ui/check_window.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/posting_layout.h"

namespace tallwick {
namespace {

constexpr int kEntryWidth = 488;
constexpr int kShort = 112;
constexpr int kMiddle = 144;
constexpr int kLabelWidth = 120;  // of all groups, so that their fields stand in one line

constexpr const char* kLists[] = {"cmdListAll", "cmdListOutstanding", "cmdListCleared", "cmdListVoids",
                                  "cmdListStopPayment"};

constexpr FieldLook kNumber{
    "txtCheckNumber",
    "The number printed on the check. A new check gets the number after the last one "
    "posted; type another to change it, or the number of a posted check to see that one.",
    kShort, true};
constexpr FieldLook kDated{
    "txtCheckDated", "The date on the check: month, day, year, as 3/15/2024 or 031524. F2 opens a calendar.",
    kShort, true};
constexpr FieldLook kPayee{
    "txtCheckPayee",
    "Who the check is made out to. Payees known from earlier checks are offered as you "
    "type; F4 opens their list.",
    0, true, true};
constexpr FieldLook kAddress[] = {
    {"txtCheckAddr1", "The first line of the payee's address."},
    {"txtCheckAddr2", "The second line of the payee's address."},
    {"txtCheckCityState", "City, state and ZIP code of the payee."},
};
constexpr FieldLook kCharge[] = {
    {"txtCheckAmount", kAmountHelp, kMiddle, true},
    {"txtCheckFileNumber", "The escrow file that the check is charged to. F4 opens a list.", kMiddle, true,
     true},
    {"txtCheckAcctPeriod",
     "The accounting period in which the check counts. It must lie after the last reconciliation. F2 opens a "
     "calendar.",
     kShort, true},
    {"txtCheckVoucherNumber",
     "The voucher that authorises the check, where there is one. F4 takes the next unused one of the file.",
     kShort, false, true},
};
constexpr FieldLook kMore[] = {
    {"txtTIN", "The payee's taxpayer number.", kMiddle},
    {"txtCheckControl", "The operator's name or a control number.", kMiddle},
};
constexpr FieldLook kStatus[] = {
    {"txtCheckStmtPeriod",
     "The bank statement on which the check was cleared, voided or stopped. F2 opens a calendar.", kShort,
     true},
    {"txtCheckReason", "Why the check is voided or stopped.", 0, true},
};

QGridLayout& AddGroup(PostingLayout& layout, const char* heading) {
  QGridLayout& grid = layout.AddGroup(heading);
  grid.setColumnMinimumWidth(0, kLabelWidth);
  return grid;
}

void AddPayee(PostingLayout& layout) {
  QGridLayout& grid = AddGroup(layout, "Payee");
  layout.AddPayeeField(grid, kPayee);
  for (const FieldLook& look : kAddress) layout.AddField(grid, look);
  layout.Entry()
      .findChild<QLineEdit*>("txtCheckAddr2")
      ->setAccessibleName(QObject::tr("Address, second line"));
}

void AddAdvice(PostingLayout& layout, QGridLayout& grid) {
  auto* advice = new QPlainTextEdit(&layout.Entry());
  advice->setObjectName("txtRemittanceAdvice");
  advice->setWhatsThis(QObject::tr("Text for the stub of the check. Ctrl+Enter posts from here."));
  advice->setFixedHeight(40);
  auto* caption = new QLabel(&layout.Entry());
  caption->setBuddy(advice);
  caption->setAlignment(Qt::AlignRight | Qt::AlignTop);
  const int row = grid.rowCount();
  grid.addWidget(caption, row, 0);
  grid.addWidget(advice, row, 1);
  auto* by_hand = new QCheckBox(&layout.Entry());
  by_hand->setObjectName("chkHandwritten");
  by_hand->setWhatsThis(QObject::tr("Mark a check that was written by hand and is not to be printed."));
  grid.addWidget(by_hand, row + 1, 1);
}

void AddEntry(PostingLayout& layout) {
  QGridLayout& check = AddGroup(layout, "Check");
  layout.AddFieldBeside(check, kNumber, layout.MakeLabel("lblLastCheckNumber", "muted"));
  QPushButton* calendar = layout.MakeBesideButton("cmdCalendar", "Opens a calendar for the date (F2).");
  calendar->setProperty("calendarOf", "txtCheckDated");
  layout.AddFieldBeside(check, kDated, calendar);
  AddPayee(layout);
  QGridLayout& charge = AddGroup(layout, "Amount and file");
  for (const FieldLook& look : kCharge) layout.AddField(charge, look);
  QGridLayout& more = AddGroup(layout, "More");
  for (const FieldLook& look : kMore) layout.AddField(more, look);
  AddAdvice(layout, more);
  for (const FieldLook& look : kStatus) layout.AddField(more, look);
}

void AddMenus(PostingLayout& layout) {
  layout.AddMenu("&File", {{"mnuFilePrint"}, {"mnuFilePrintChecks"}});
  layout.AddMenu("&Edit", {{"mnuEditPostChecks"},
                           {"mnuEditClearChecks"},
                           {"mnuEditVoidChecks"},
                           {"mnuEditStopPaymentChecks"},
                           {},
                           {"mnuEditRenumberCheck"},
                           {"mnuEditRemoveCheck"},
                           {"mnuEditUseNextHigherCheckNumber", "Ctrl+H"},
                           {"mnuEditAddressBook"},
                           {},
                           {"mnuEditPostDeposits"},
                           {"mnuEditVouchers"},
                           {"mnuEditWireTransfers"},
                           {"mnuEditReconcileAccount", "Ctrl+R"}});
  layout.AddMenu("&View",
                 {{"mnuViewNumber"}, {"mnuViewPayee"}, {"mnuViewAmount"}, {}, {"mnuViewFileLedgers"}});
  layout.AddMenu("Opt&ions", {{"mnuOptionsAll"},
                              {"mnuOptionsOutstanding"},
                              {"mnuOptionsCleared"},
                              {"mnuOptionsVoids"},
                              {"mnuOptionsStopPayment"},
                              {},
                              {"mnuOptionsWarnHigherNumber"},
                              {"mnuOptionsUsePrintPreview"},
                              {"mnuOptionsDefaultPeriod"}});
  layout.AddMenu(
      "Reports",
      {{"mnuReportsChecks"}, {"mnuReportsDeposits"}, {"mnuReportsVouchers"}, {"mnuReportsEscrowAnalysis"}});
  layout.AddMenu("Tools", {{"mnuToolsCalculator"}, {"mnuToolsCalendar"}});
}

}  // namespace

std::unique_ptr<QWidget> MakeCheckWindow() {
  auto window = std::make_unique<QMainWindow>();
  window->setObjectName("frmEditChecksPost");
  PostingLayout layout(*window, kEntryWidth, false);
  AddEntry(layout);
  layout.AddNotes({"lblCheckStatus", "lblEditMessage", "lblHighestCheckNumber", "lblVoucherInformation"});
  layout.AddButtons({"cmdSetOutstanding", "cmdPrint", "cmdDone"});
  for (const LookUpLook& look : {kPayeeLookUp, kFileLookUp}) layout.AddLookUp(look);
  layout.AddRegister({"lstCheckNumbers", "Posted checks",
                      "No check has been posted to this bank account yet. Enter the first one at the left.",
                      "Ctrl+F: number, payee, amount, file", 2, kLists});
  window->findChild<RegisterView*>("lstCheckNumbers")
      ->setProperty("headingCommands",
                    QStringList{"mnuViewNumber", "", "mnuViewPayee", "mnuViewAmount", "", ""});
  AddMenus(layout);
  window->findChild<QAction*>("mnuToolsCalendar")->setProperty("calendarOf", "txtCheckDated");
  layout.AddStatusBar();
  return window;
}

}  // namespace tallwick
