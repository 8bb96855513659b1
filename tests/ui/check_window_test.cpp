// The check window in its modes, and its payees, worked by keys alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "tests/support/office.h"
#include "ui/desktop.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using testing::FakeSuite;
using ::testing::IsEmpty;
using testing::Office;

constexpr std::string_view kChecks = "frmEditChecksPost";

class CheckWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office_.suite.files = {"24-0117"};
    ASSERT_TRUE(office_.Open());
    office_.session.reset();
    desktop_ = std::make_unique<Desktop>(
        Ports{office_.boxes, SystemFileSystem(), office_.clock, office_.workstation});
    ASSERT_TRUE(desktop_->Start([this] { return std::make_unique<FakeSuite>(office_.suite); }));
    ASSERT_TRUE(SelectBank(desktop_->TheSession(), "FNB"));
    tables_ = std::make_unique<BankTables>(desktop_->TheSession().Home());
    ASSERT_TRUE(tables_->Open("FNB"));
    Command("frmMainEscrowAccounting", "mnuEditChecksPost");
    Type("txtCheckPayee", "SMITH TITLE CO");
    Type("txtCheckAddr1", "12 Main Street");
    Type("txtCheckAmount", "1250");
    Type("txtCheckFileNumber", "24-0117");
    Press(Qt::Key_Return);
    ASSERT_THAT(office_.TakeTexts(), IsEmpty());
  }
  QWidget& Window(std::string_view screen = kChecks) { return desktop_->Find(screen)->Window(); }
  template <class Object>
  Object* Get(const char* name) {
    return Window().findChild<Object*>(name);
  }
  void Command(std::string_view screen, const char* command) {
    Window(screen).findChild<QAction*>(command)->trigger();
    Window().activateWindow();
    QTest::qWait(1);
  }
  void Type(const char* field, const char* text) {
    auto* edit = Get<QLineEdit>(field);
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    QTest::keyClicks(edit, text);
  }
  void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  QString Text(const char* field) { return Get<QLineEdit>(field)->text(); }
  static QString Focus() {
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "";
  }

  Office office_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<BankTables> tables_;
};

TEST_F(CheckWindowTest, ACheckIsVoidedFromTheMainWindow) {
  EXPECT_FALSE(Get<QLineEdit>("txtCheckReason")->isVisible());
  QWidget* const window = &Window();
  Command("frmMainEscrowAccounting", "mnuEditChecksVoid");
  EXPECT_EQ(&Window(), window) << "one window, another mode";
  EXPECT_EQ(Window().windowTitle(), "Void Checks - First National Trust");
  EXPECT_EQ(Focus(), "txtCheckNumber");
  Type("txtCheckNumber", "1");
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtCheckStmtPeriod");
  EXPECT_EQ(Text("txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_FALSE(Get<QLineEdit>("txtCheckPayee")->isEnabled());
  Type("txtCheckReason", "Lost");
  Press(Qt::Key_Return);
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->checks.SeekNumber("1"));
  EXPECT_EQ(tables_->checks.Read().status, "V");
  EXPECT_EQ(Text("txtCheckNumber"), "");
}

TEST_F(CheckWindowTest, PayeesAreOfferedWhileTypedAndListed) {
  Type("txtCheckPayee", "smi");
  QAbstractItemView* offers = Get<QLineEdit>("txtCheckPayee")->completer()->popup();
  ASSERT_TRUE(offers->isVisible());
  QTest::keyClick(offers, Qt::Key_Return);  // none is marked: as if no offer were there
  EXPECT_EQ(Focus(), "txtCheckAddr1");
  EXPECT_EQ(Text("txtCheckPayee"), "smi");
  Type("txtCheckPayee", "smit");
  ASSERT_TRUE(offers->isVisible());
  QTest::keyClick(offers, Qt::Key_Down);
  QTest::keyClick(offers, Qt::Key_Return);
  EXPECT_EQ(Text("txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_EQ(Text("txtCheckAddr1"), "12 Main Street");

  Get<QLineEdit>("txtCheckPayee")->setFocus(Qt::TabFocusReason);
  Press(Qt::Key_F4);
  EXPECT_EQ(Focus(), "txtFindPayee");
  EXPECT_TRUE(Get<RegisterView>("lstPayees")->isVisible());
  Press(Qt::Key_Escape);
  EXPECT_FALSE(Get<RegisterView>("lstPayees")->isVisible());
  Press(Qt::Key_F4);
  QTest::keyClicks(QApplication::focusWidget(), "main st");
  office_.boxes.answers = {BoxAnswer::kYes};
  Press(Qt::Key_Return);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Replace payee \"SMITH TITLE CO\" with \"SMITH TITLE CO\" ?"));
  EXPECT_EQ(Focus(), "txtCheckPayee");
}

}  // namespace
}  // namespace tallwick
