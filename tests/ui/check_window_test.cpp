// The check window in its modes, and its payees, worked by keys alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCompleter>
#include <QPushButton>

#include "tests/support/desktop_test.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kChecks = "frmEditChecksPost";

class CheckWindowTest : public testing::DesktopTest {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(DesktopTest::SetUp());
    Open(kChecks);
    Enter("txtCheckPayee", "SMITH TITLE CO");
    Enter("txtCheckAddr1", "12 Main Street");
    Enter("txtCheckAmount", "1250");
    Enter("txtCheckFileNumber", "24-0117");
    Press(Qt::Key_Return);
    ASSERT_THAT(office_.TakeTexts(), IsEmpty());
  }
  template <class Object>
  Object* Get(const char* name) {
    return DesktopTest::Get<Object>(kChecks, name);
  }
  void Enter(const char* field, const char* text) {
    PutCursor(kChecks, field);
    Get<QLineEdit>(field)->selectAll();
    QTest::keyClicks(Get<QLineEdit>(field), text);
  }
  QString Text(const char* field) { return DesktopTest::Text(kChecks, field); }
};

TEST_F(CheckWindowTest, ACheckIsVoidedFromTheMainWindow) {
  EXPECT_FALSE(Get<QLineEdit>("txtCheckReason")->isVisible());
  QWidget* const window = &Window(kChecks);
  Command("frmMainEscrowAccounting", "mnuEditChecksVoid");
  Activate(kChecks);
  EXPECT_EQ(&Window(kChecks), window) << "one window, another mode";
  EXPECT_EQ(Window(kChecks).windowTitle(), "Void Checks - First National Trust");
  EXPECT_EQ(Focus(), "txtCheckNumber");
  Enter("txtCheckNumber", "1");
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtCheckStmtPeriod");
  EXPECT_EQ(Text("txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_FALSE(Get<QLineEdit>("txtCheckPayee")->isEnabled());
  Enter("txtCheckReason", "Lost");
  Press(Qt::Key_Return);
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->checks.SeekNumber("1"));
  EXPECT_EQ(tables_->checks.Read().status, "V");
  EXPECT_EQ(Text("txtCheckNumber"), "");
}

TEST_F(CheckWindowTest, PayeesAreOfferedWhileTypedAndListed) {
  Enter("txtCheckPayee", "smi");
  QAbstractItemView* offers = Get<QLineEdit>("txtCheckPayee")->completer()->popup();
  ASSERT_TRUE(offers->isVisible());
  QTest::keyClick(offers, Qt::Key_Return);  // none is marked: as if no offer were there
  EXPECT_EQ(Focus(), "txtCheckAddr1");
  EXPECT_EQ(Text("txtCheckPayee"), "smi");
  Enter("txtCheckPayee", "smit");
  ASSERT_TRUE(offers->isVisible());
  QTest::keyClick(offers, Qt::Key_Down);
  QTest::keyClick(offers, Qt::Key_Return);
  EXPECT_EQ(Text("txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_EQ(Text("txtCheckAddr1"), "12 Main Street");

  Enter("txtCheckPayee", "smit");
  ASSERT_TRUE(offers->isVisible());
  QTest::keyClick(offers, Qt::Key_F4);  // also while names are offered
  EXPECT_FALSE(offers->isVisible());
  EXPECT_EQ(Focus(), "txtFindPayee");
  EXPECT_TRUE(Get<RegisterView>("lstPayees")->isVisible());
  Press(Qt::Key_Escape);
  EXPECT_FALSE(Get<RegisterView>("lstPayees")->isVisible());
  Press(Qt::Key_F4);
  QTest::keyClicks(QApplication::focusWidget(), "main st");
  office_.boxes.answers = {BoxAnswer::kYes};
  Press(Qt::Key_Return);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Replace payee \"smit\" with \"SMITH TITLE CO\" ?"));
  EXPECT_EQ(Focus(), "txtCheckPayee");
}

// Pressed as the window system does it: the window's own keys come before those of the list. Here the window is
// not active any more when a list has closed.
TEST_F(CheckWindowTest, CommandsGoPastTheOffers) {
  const auto press = [this](Qt::Key key, Qt::KeyboardModifiers held = {}) {
    QTest::keyClick(Window(kChecks).windowHandle(), key, held);
  };
  QAbstractItemView* offers = Get<QLineEdit>("txtCheckPayee")->completer()->popup();
  Enter("txtCheckPayee", "smi");
  ASSERT_TRUE(offers->isVisible());
  press(Qt::Key_A, Qt::AltModifier);
  EXPECT_FALSE(offers->isVisible());
  EXPECT_EQ(Text("txtCheckPayee"), "smi");
  Activate(kChecks);
  press(Qt::Key_A, Qt::AltModifier);
  EXPECT_EQ(Focus(), "txtCheckAmount");

  // What is marked stands in the field already.
  Enter("txtCheckPayee", "smi");
  press(Qt::Key_Down);
  press(Qt::Key_A, Qt::AltModifier);
  Activate(kChecks);
  EXPECT_EQ(Text("txtCheckPayee"), "SMITH TITLE CO");
  EXPECT_EQ(Text("txtCheckAddr1"), "12 Main Street");

  Enter("txtCheckPayee", "smi");
  press(Qt::Key_Down);
  press(Qt::Key_Escape);
  EXPECT_FALSE(offers->isVisible());
  Activate(kChecks);
  EXPECT_EQ(Text("txtCheckPayee"), "smi");
  EXPECT_THAT(office_.TakeTexts(), IsEmpty()) << "one Esc, one step back";
  PutCursor(kChecks, "txtCheckAmount");
  press(Qt::Key_Escape);
  EXPECT_THAT(office_.TakeTexts(), ElementsAre("Save Changes?"));
}

TEST_F(CheckWindowTest, AltWithALetterThatNamesNothingTypesNothing) {
  Enter("txtCheckPayee", "JONES");
  PutCursor(kChecks, "txtCheckAmount");
  PutCursor(kChecks, "txtCheckPayee");
  for (const Qt::KeyboardModifiers held :
       std::initializer_list<Qt::KeyboardModifiers>{Qt::AltModifier, Qt::AltModifier | Qt::ShiftModifier}) {
    QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_J, 'j', held);
    EXPECT_EQ(Text("txtCheckPayee"), "JONES");
  }
  QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_Q, '@',
                      Qt::AltModifier | Qt::ControlModifier);
  EXPECT_EQ(Text("txtCheckPayee"), "@") << "AltGr types";
  PutCursor(kChecks, "boxFind");
  QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(), Qt::Key_J, 'j', Qt::AltModifier);
  EXPECT_EQ(Text("boxFind"), "");
}

}  // namespace
}  // namespace tallwick
