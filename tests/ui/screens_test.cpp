// The real windows over a real company, driven by keys and clicks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

#include "shell/main_commands.h"
#include "tests/support/desktop_test.h"
#include "ui/field_scroll.h"
#include "ui/form_binder.h"
#include "ui/register_view.h"
#include "ui/rtf_text.h"
#include "ui/screens.h"
#include "ui/window_room.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ScreensTest : public testing::DesktopTest {
 protected:
  void SetUp() override {
    office_.suite.files = {"24-0117"};
    ASSERT_TRUE(office_.Open());
    StartDesktop();
  }
  // Opens the bank by the dialog, as a clerk does who takes the one that is marked.
  void OpenBank() {
    QTimer::singleShot(20, qApp, [this] {
      Window("frmBankSelect").activateWindow();
      QTest::keyClick(Get<QListWidget>("frmBankSelect", "lstBankNames"), Qt::Key_Return);
    });
    Get<QAction>("frmMainEscrowAccounting", "mnuFileOpen")->trigger();
  }
  void OpenChecks() {
    OpenBank();
    Get<QAction>("frmMainEscrowAccounting", "mnuEditChecksPost")->trigger();
    ASSERT_NE(desktop_->Find("frmEditChecksPost"), nullptr);
    Activate("frmEditChecksPost");
  }
  void TypeInto(const char* field, const char* text) {
    auto* edit = Get<QLineEdit>("frmEditChecksPost", field);
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, text);
  }
};

constexpr std::string_view kMain = "frmMainEscrowAccounting";
constexpr std::string_view kChecks = "frmEditChecksPost";

TEST_F(ScreensTest, OpensABankAndShowsIt) {
  EXPECT_FALSE(Get<QAction>(kMain, "mnuEditChecksPost")->isEnabled());
  EXPECT_TRUE(Get<QWidget>(kMain, "pageNoBank")->isVisible());
  OpenBank();
  EXPECT_EQ(desktop_->Find("frmBankSelect"), nullptr);
  EXPECT_EQ(Get<QLabel>(kMain, "BankName")->text(), "First National Trust");
  EXPECT_EQ(Get<QLabel>(kMain, "lblAcctPeriod")->text(), "March 2024");
  EXPECT_FALSE(Get<QWidget>(kMain, "pageNoBank")->isVisible());
  EXPECT_TRUE(Get<QAction>(kMain, "mnuEditChecksPost")->isEnabled());
  EXPECT_EQ(Window(kMain).windowTitle(), "Tallwick Escrow Accounting - Lakeside Title (12)");
}

TEST_F(ScreensTest, ACheckIsPostedByKeysAlone) {
  OpenChecks();
  TypeInto("txtCheckNumber", "10452");
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtCheckDated");
  EXPECT_EQ(Get<QLabel>(kChecks, "lblKeys")->text(),
            "Enter next field     F2 calendar     F1 help     Esc back");
  TypeInto("txtCheckPayee", "SMITH TITLE CO");
  TypeInto("txtCheckAmount", "$1250");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Get<QLineEdit>(kChecks, "txtCheckAmount")->text(), "1,250.00");
  EXPECT_EQ(Focus(), "txtCheckFileNumber");
  QTest::keyClicks(QApplication::focusWidget(), "24-0117");
  Press(Qt::Key_Return);
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());

  BankTables tables(desktop_->TheSession().Home());
  ASSERT_TRUE(tables.Open("FNB"));
  ASSERT_TRUE(tables.checks.SeekNumber("10452"));
  const CheckRecord check = tables.checks.Read();
  EXPECT_EQ(check.payee, "SMITH TITLE CO");
  EXPECT_EQ(check.amount, Currency::FromCents(125000));
  EXPECT_EQ(check.accounting, (Period{3, 0, 2024}));
  EXPECT_TRUE(desktop_->TheSession().Company().xrefs.SeekReference(CheckXref("24-0117", "FNB", "10452")));
  auto* checks = Get<RegisterView>(kChecks, "lstCheckNumbers");
  ASSERT_EQ(checks->Model().rowCount(), 1);
  EXPECT_EQ(checks->Model().index(0, 2).data().toString(), "SMITH TITLE CO");
  EXPECT_EQ(Get<RegisterView>(kMain, "grdLatestPostings")->Model().rowCount(), 1);
  EXPECT_EQ(Get<QLineEdit>(kChecks, "txtCheckNumber")->text(), "10453") << "ready for the next one";

  QTest::keyClick(&Window(kChecks), Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(Focus(), "boxFind");
  QTest::keyClicks(QApplication::focusWidget(), "smith");
  EXPECT_TRUE(QTest::qWaitFor([&] { return checks->Table().currentIndex().isValid(); }));
  Press(Qt::Key_Down);
  EXPECT_EQ(Get<QLineEdit>(kChecks, "txtCheckNumber")->text(), "10452");
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtCheckNumber") << "from the register back to the entry";
}

TEST_F(ScreensTest, ARefusedEntryIsMarkedWhereTheCursorStands) {
  OpenChecks();
  TypeInto("txtCheckPayee", "SMITH TITLE CO");
  TypeInto("txtCheckAmount", "1250");
  QTest::mouseClick(Get<QPushButton>(kChecks, "cmdOk"), Qt::LeftButton);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("File Number is Required..."));
  EXPECT_EQ(Focus(), "txtCheckFileNumber");
  auto* file = Get<QLineEdit>(kChecks, "txtCheckFileNumber");
  EXPECT_TRUE(file->property("refused").toBool());
  QTest::keyClicks(file, "2");
  EXPECT_FALSE(file->property("refused").toBool());
  EXPECT_EQ(Get<QLineEdit>(kChecks, "txtCheckPayee")->text(), "SMITH TITLE CO");
}

TEST_F(ScreensTest, AnEntryIsNotThrownAwayUnasked) {
  OpenChecks();
  TypeInto("txtCheckPayee", "SMITH TITLE CO");
  Window(kChecks).resize(1300, 790);
  office_.boxes.answers = {BoxAnswer::kCancel, BoxAnswer::kCancel};
  EXPECT_FALSE(Window(kChecks).close());
  Window(kMain).close();
  EXPECT_NE(desktop_->Find(kMain), nullptr) << "the main window stays with the entry";
  EXPECT_EQ(Get<QLineEdit>(kChecks, "txtCheckPayee")->text(), "SMITH TITLE CO");
  office_.boxes.answers = {BoxAnswer::kNo};
  bool ended = false;
  QObject::connect(desktop_.get(), &Desktop::Ended, [&ended] { ended = true; });
  Window(kMain).close();
  EXPECT_TRUE(ended);
  EXPECT_EQ(desktop_->Find(kChecks), nullptr);

  desktop_->OpenScreen(kChecks, "Posting");
  EXPECT_EQ(Window(kChecks).size(), QSize(1300, 790)) << "remembered";
}

TEST_F(ScreensTest, ChecksOfAnotherBankHaveAWindowOfTheirOwn) {
  OpenChecks();
  TypeInto("txtCheckPayee", "SMITH TITLE CO");
  QWidget& first = Window(kChecks);
  Session& session = desktop_->TheSession();
  BankRecord other;
  other.code = "LSB";
  other.name = "Lakeside Savings";
  other.accounting = {3, 0, 2024};
  ASSERT_EQ(session.Company().banks.AddBank(other), engine::kSuccess);
  ASSERT_TRUE(SelectBank(session, "LSB"));
  desktop_->OpenScreen(kChecks, "Posting");
  EXPECT_EQ(Window(kChecks).windowTitle(), "Post Checks - Lakeside Savings");
  EXPECT_EQ(Get<QLineEdit>(kChecks, "txtCheckPayee")->text(), "");
  EXPECT_TRUE(first.isVisible());
  ASSERT_TRUE(SelectBank(session, "FNB"));
  desktop_->OpenScreen(kChecks, "Posting");
  EXPECT_EQ(desktop_->Find(kChecks)->BankCode(), "LSB") << "the first bank's came to the front, as it was";
}

TEST_F(ScreensTest, FilesAreFoundAndHelpIsReadByKeys) {
  OpenBank();
  Window(kMain).activateWindow();
  QTest::qWait(1);
  QTest::keyClick(&Window(kMain), Qt::Key_F, Qt::ControlModifier);
  auto* box = Get<QComboBox>(kMain, "txtFindFile");
  ASSERT_TRUE(box->hasFocus());
  QTest::keyClicks(box, "24-0117");
  QTest::keyClick(box, Qt::Key_Return);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("24-0117 does NOT have any transactions posted."));
  EXPECT_EQ(Get<QAction>(kMain, "mnuFileCopyDatabases")->isEnabled(), HasScreenWindow("frmCopyDatabases"));

  Get<RegisterView>(kMain, "grdLatestPostings")->Table().setFocus();
  QTest::keyClick(&Window(kMain), Qt::Key_F1);  // no field has a help of its own here
  ASSERT_NE(desktop_->Find("frmHelp"), nullptr);
  EXPECT_EQ(Get<QListWidget>("frmHelp", "lstTopics")->currentItem()->text(), "The main window");
  auto* page = Get<QTextBrowser>("frmHelp", "txtPage");
  emit page->anchorClicked(QUrl("keys.html"));
  EXPECT_EQ(Get<QListWidget>("frmHelp", "lstTopics")->currentItem()->text(), "Keys");
  desktop_->OpenScreen("frmHelp", "frmBankSelect");
  EXPECT_EQ(Get<QListWidget>("frmHelp", "lstTopics")->currentItem()->text(), "Choosing a bank account");
}

TEST_F(ScreensTest, HelpOverADialogCanBeUsed) {
  QTimer::singleShot(20, qApp, [this] {
    QTimer::singleShot(20, qApp, [this] {
      ASSERT_NE(desktop_->Find("frmHelp"), nullptr);
      EXPECT_EQ(QApplication::activeModalWidget(), &Window("frmHelp"));
      EXPECT_EQ(Get<QListWidget>("frmHelp", "lstTopics")->currentItem()->text(), "Choosing a bank account");
      desktop_->Find("frmHelp")->Close();
    });
    QTest::keyClick(Get<QListWidget>("frmBankSelect", "lstBankNames"), Qt::Key_F1);
    EXPECT_EQ(desktop_->Find("frmHelp"), nullptr);
    desktop_->Find("frmBankSelect")->Close();
  });
  Get<QAction>(kMain, "mnuFileOpen")->trigger();
  EXPECT_EQ(desktop_->Find("frmBankSelect"), nullptr);
}

TEST_F(ScreensTest, ShiftF1OpensTheBookFromAFieldThatHasAHelpOfItsOwn) {
  OpenChecks();
  auto* payee = Get<QLineEdit>(kChecks, "txtCheckPayee");
  ASSERT_FALSE(payee->whatsThis().isEmpty());
  payee->setFocus(Qt::TabFocusReason);
  QTest::keyClick(payee, Qt::Key_F1, Qt::ShiftModifier);
  EXPECT_NE(desktop_->Find("frmHelp"), nullptr);
}

TEST(RtfTextTest, ShowsBoldLinesAndEscapes) {
  EXPECT_EQ(
      HtmlOfRtf(
          "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs20\n\\b A:\\b0  1 < 2 \\{M\\'fcller\\}\\par\nB}"),
      QString::fromUtf8("<p><b>A:</b> 1 &lt; 2 {Müller}<br>B</p>"));
  EXPECT_EQ(HtmlOfRtf("{\\rtf1 \\b"), "<p><b></p>") << "a text cut short";
  EXPECT_EQ(HtmlOfRtf("{\\rtf1 \\'f"), "<p>'f</p>");
}

// Fields from top to bottom, and from left to right in a row, as Tab reaches them.
void ExpectReadingOrder(QWidget& window) {
  QPoint last(-1, -1);
  QString last_name;
  for (QWidget* widget = window.nextInFocusChain(); widget != &window; widget = widget->nextInFocusChain()) {
    if (qobject_cast<QLineEdit*>(widget) == nullptr || widget->property("finds").isValid()) continue;
    if (!widget->isVisibleTo(&window)) continue;
    const QPoint at = widget->mapTo(&window, QPoint(0, 0));
    EXPECT_TRUE(at.y() > last.y() + 4 || at.x() > last.x())
        << widget->objectName().toStdString() << " after " << last_name.toStdString();
    last = at;
    last_name = widget->objectName();
  }
}

// What a screen of 1366 by 768 pixels leaves below the title and within the frame: with every field in sight,
// and with the buttons in sight where all is drawn one and a half times as large.
TEST_F(ScreensTest, EveryScreenFitsASmallLaptop) {
  OpenBank();
  testing::Office& office = office_;
  ScreenCatalogue catalogue(desktop_->TheSession(), office);
  for (const std::string_view screen : ScreenCatalogue::Names()) {
    std::vector<std::string_view> modes = ScreenCatalogue::Modes(screen);
    if (modes.empty()) modes.emplace_back();
    for (const std::string_view mode : modes) {
      const std::unique_ptr<Form> form = catalogue.Make(screen, mode);
      const std::unique_ptr<QWidget> window = MakeScreenWindow(screen);
      ASSERT_TRUE(form && window) << screen << " " << mode;
      const FormBinder binder(*form, *window);
      window->ensurePolished();
      const QSize least = window->minimumSizeHint();
      EXPECT_LE(least.width(), 902) << screen;
      EXPECT_LE(least.height(), 484) << screen;
      window->resize(1350, 728);
      window->show();
      for (const FieldScroll* fields : window->findChildren<FieldScroll*>()) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return fields->verticalScrollBar()->maximum() == 0; }, 1000))
            << screen;
      }
    }
  }
}

TEST_F(ScreensTest, EveryScreenShowsItsControls) {
  OpenChecks();
  int looked_at = 0;
  for (std::string_view screen : {kMain, kChecks}) {
    Form& form = desktop_->Find(screen)->TheForm();
    QWidget& window = Window(screen);
    for (const Control& control : form.Controls()) {
      auto* object = window.findChild<QObject*>(QString::fromStdString(control.name));
      if (control.name == "txtCheckStatus") continue;  // for the audit trail only, never shown
      ASSERT_NE(object, nullptr) << control.name;
      const auto* widget = qobject_cast<QWidget*>(object);
      const bool is_field = control.kind != ControlKind::kLabel && control.kind != ControlKind::kMenu;
      EXPECT_TRUE(!is_field || !widget->accessibleName().isEmpty()) << control.name;
      ++looked_at;
    }
    ExpectReadingOrder(window);
  }
  EXPECT_GT(looked_at, 30);
}

TEST_F(ScreensTest, EveryCommandStandsInOneMenu) {
  QList<QMenu*> menus = Window(kMain).findChildren<QMenu*>();
  for (const MainCommand& command : MainCommands()) {
    const QString name = QString::fromUtf8(command.control.data(), std::ssize(command.control));
    ASSERT_EQ(Window(kMain).findChildren<QAction*>(name).size(), 1) << command.control;
    const auto holds = [&](const QMenu* menu) {
      return menu->actions().contains(Get<QAction>(kMain, name.toUtf8().constData()));
    };
    EXPECT_EQ(std::count_if(menus.begin(), menus.end(), holds), 1) << command.control;
    EXPECT_TRUE(Get<QAction>(kMain, name.toUtf8().constData())->isVisible()) << command.control;
  }
}

// The screen of the test has 800 by 800 pixels.
TEST_F(ScreensTest, NoWindowOpensLargerThanItsScreen) {
  const WindowRoom window_room(*qApp);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  QDialog fresh;
  fresh.resize(screen.size() + QSize(400, 20));
  QDialog remembered;
  remembered.setGeometry(screen.left() + 300, screen.top() + 200, screen.width() - 100, 2000);
  QDialog small;
  small.setGeometry(screen.left() + 50, screen.top() + 60, 200, 100);
  for (QDialog* window : {&fresh, &remembered, &small}) {
    window->show();
    EXPECT_TRUE(screen.contains(window->frameGeometry())) << window->width() << "x" << window->height();
  }
  EXPECT_GT(fresh.width(), screen.width() - 50) << "as large as there is room";
  EXPECT_EQ(small.geometry(), QRect(screen.left() + 50, screen.top() + 60, 200, 100));
}

TEST_F(ScreensTest, TheBarsOfTheMainWindowStayAsTheyWereLeft) {
  Get<QAction>(kMain, "mnuViewToolBar")->trigger();
  EXPECT_TRUE(Get<QToolBar>(kMain, "tbToolBar")->isHidden());
  EXPECT_FALSE(Get<QStatusBar>(kMain, "sbStatusBar")->isHidden());
  desktop_->Find(kMain)->Close();
  desktop_->OpenScreen(kMain, {});
  EXPECT_TRUE(Get<QToolBar>(kMain, "tbToolBar")->isHidden());
  EXPECT_FALSE(Get<QAction>(kMain, "mnuViewToolBar")->isChecked());
  Get<QAction>(kMain, "mnuViewToolBar")->trigger();
  EXPECT_FALSE(Get<QToolBar>(kMain, "tbToolBar")->isHidden());
  desktop_->Find(kMain)->Close();
}

TEST_F(ScreensTest, RightsAreCheckedAtTheKeyboard) {
  Get<QAction>(kMain, "mnuToolsUsers")->trigger();
  ASSERT_NE(desktop_->Find("frmEditUsers"), nullptr);
  Window("frmEditUsers").activateWindow();
  auto* rights = Get<QTreeWidget>("frmEditUsers", "lstRights");
  ASSERT_EQ(rights->topLevelItemCount(), 9);
  rights->setFocus(Qt::TabFocusReason);
  rights->setCurrentItem(rights->topLevelItem(1));
  QTest::keyClick(rights, Qt::Key_Space);
  // The form took the heading's command with it, and the tree shows so.
  Form& form = desktop_->Find("frmEditUsers")->TheForm();
  EXPECT_EQ(rights->topLevelItem(1)->checkState(0), Qt::Unchecked);
  EXPECT_EQ(rights->topLevelItem(1)->child(0)->checkState(0), Qt::Unchecked);
  EXPECT_EQ(std::count(form.Find("lstRights")->marks.begin(), form.Find("lstRights")->marks.end(), false), 2);
}

TEST_F(ScreensTest, TheAuditViewerFindsWhatWasPosted) {
  OpenBank();
  SystemFileSystem().CreateFolder(office_.folder.Held("Logs\\FNB\\"));
  office_.WriteFile(
      "Logs\\FNB\\Audit_Trail.log",
      "[DATE: Mar 04, 2024 @ 02:07:31 PM][TX: Post Check][REFERENCE: 1001][LOGIN: a][COMPUTER: b]\r\n"
      "[ADD] 1001\r\n");
  Get<QAction>(kMain, "mnuHelpAuditTrailViewer")->trigger();
  ASSERT_NE(desktop_->Find("frmViewLog"), nullptr);
  Window("frmViewLog").activateWindow();
  auto* entries = Get<RegisterView>("frmViewLog", "grdEntries");
  EXPECT_EQ(entries->Model().rowCount(), 1);
  auto* from = Get<QLineEdit>("frmViewLog", "txtFrom");
  from->setFocus(Qt::TabFocusReason);
  QTest::keyClicks(from, "3/5/24");
  QTest::keyClick(from, Qt::Key_Return);
  EXPECT_EQ(from->text(), "03/05/2024");
  EXPECT_EQ(entries->Model().rowCount(), 0);
  EXPECT_TRUE(Get<QWidget>("frmViewLog", "fraGrids")->isHidden());
}

TEST_F(ScreensTest, TheCriteriaOfGridsFitBesideTheEntries) {
  OpenBank();
  SystemFileSystem().CreateFolder(office_.folder.Held("Logs\\FNB\\"));
  office_.WriteFile("Logs\\FNB\\Audit_Trail.log",
                    "[DATE: Mar 04, 2024 @ 02:07:31 PM][TX: Office][REFERENCE: 1][LOGIN: a][COMPUTER: b]\r\n"
                    "[GRID] grdItems was:\r\n[H]File[C]Amount\r\n24-0117[C]100.00\r\n");
  Get<QAction>(kMain, "mnuHelpAuditTrailViewer")->trigger();
  EXPECT_FALSE(Get<QWidget>("frmViewLog", "fraGrids")->isHidden());
  QApplication::processEvents();
  const auto* criteria = Window("frmViewLog").findChild<QScrollArea*>();
  EXPECT_LE(criteria->widget()->width(), criteria->viewport()->width());
}

}  // namespace
}  // namespace tallwick
