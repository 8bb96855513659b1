// The binder between a small form and real widgets, both ways, under the keys of a clerk.
#include "ui/form_binder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include "tests/support/fakes.h"
#include "ui/qt_message_boxes.h"

namespace tallwick {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// An entry of every kind of control. Leaving the amount "bad" is refused.
class EntryForm : public Form {
 public:
  explicit EntryForm(MessageBoxes& boxes) : Form("frmEntry", boxes) {
    SetFormCaption("Entry");
    Add(ControlKind::kText, "txtName", "&Name");
    Add(ControlKind::kAmount, "txtAmount").text = "-5.00";
    Add(ControlKind::kDate, "txtDated").text = "03/15/2024";
    Add(ControlKind::kPeriod, "txtPeriod").text = "3-2024";
    Add(ControlKind::kText, "txtRow", {}, 1);
    Add(ControlKind::kText, "txtRow", {}, 2);
    Add(ControlKind::kText, "txtNote").text = "one\rtwo";
    Add(ControlKind::kCheck, "chkHand", "&Hand").value = 1;
    Add(ControlKind::kList, "lstBanks").rows = {"First", "Second"};
    Add(ControlKind::kLabel, "lblSay");
    Add(ControlKind::kButton, "cmdOk", "P&ost");
    Add(ControlKind::kMenu, "mnuWarn", "&Warn");
  }
  std::vector<std::string> Taken() { return std::exchange(events, {}); }

  // Work of so many slices.
  void LetWorkFor(int slices) {
    slices_ = slices;
    LetWork();
  }
  int SlicesLeft() const { return slices_; }
  std::function<void()> at_click = [] {};
  std::function<void()> at_choose = [] {};

  using Form::SetCaption;
  using Form::SetEnabled;
  using Form::SetFocus;
  using Form::SetRows;
  using Form::SetSelected;
  using Form::SetText;
  using Form::SetValue;
  using Form::SetVisible;

  std::vector<std::string> events;

 protected:
  void OnEnter(Control& control) override { Note("enter", control); }
  void OnLeave(Control& control) override {
    Note("leave", control);
    if (control.text == "bad") Refuse("The amount is bad.", control.name);
  }
  void OnChange(Control& control) override { Note("change", control); }
  void OnChoose(Control& control) override {
    Note("choose", control);
    at_choose();
  }
  void OnClick(Control& control) override {
    Note("click", control);
    at_click();
  }
  bool OnWork(std::chrono::milliseconds) override { return --slices_ > 0; }
  void OnMenu(Control& control) override {
    SetValue("mnuWarn", 1 - control.value);
    Note("menu", control);
  }
  bool OnKey(std::string_view key) override {
    if (key.ends_with("Enter")) return false;
    events.push_back("key " + std::string(key));
    return true;
  }

 private:
  void Note(const char* what, const Control& control) {
    const std::string index = control.index == 0 ? "" : std::to_string(control.index);
    events.push_back(std::string(what) + " " + control.name + index);
  }

  int slices_ = 0;
};

class BinderTest : public ::testing::Test {
 protected:
  BinderTest() : form_(boxes_) {
    column_ = new QVBoxLayout(&window_);
    auto* label = new QLabel("?", &window_);
    label->setBuddy(Add<QLineEdit>("txtName"));
    label->setObjectName("capName");
    for (const char* name : {"txtAmount", "txtDated", "txtPeriod", "txtRow_1", "txtRow_2"})
      Add<QLineEdit>(name);
    Add<QPlainTextEdit>("txtNote");
    Add<QCheckBox>("chkHand");
    Add<QListWidget>("lstBanks");
    Add<QLabel>("lblSay");
    Add<QLabel>("capHint")->setProperty("showWithout", "lblSay");
    Add<QPushButton>("cmdOk")->setProperty("main", true);
    for (const char* name : {"txtName", "txtAmount"}) Get<QLineEdit>(name)->setProperty("required", true);
    for (const char* name : {"mnuWarn", "mnuUnknown"}) {
      auto* action = new QAction(name, &window_);
      action->setObjectName(name);
    }
  }
  void Open() {
    binder_ = std::make_unique<FormBinder>(form_, window_);
    window_.show();
    window_.activateWindow();
    QTest::qWait(1);
    binder_->Open();
    Get<QLineEdit>("txtName")->setFocus(Qt::TabFocusReason);
    form_.Taken();
  }
  template <class Widget>
  Widget* Add(const char* name) {
    auto* widget = new Widget(&window_);
    widget->setObjectName(name);
    column_->addWidget(widget);
    return widget;
  }
  template <class Object>
  Object* Get(const char* name) {
    return window_.findChild<Object*>(name);
  }
  static QString Focus() {
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "";
  }
  static void Type(const char* keys) { QTest::keyClicks(QApplication::focusWidget(), keys); }
  static void Press(Qt::Key key, Qt::KeyboardModifiers held = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, held);
  }

  testing::ScriptedBoxes boxes_;
  EntryForm form_;
  QWidget window_;
  QVBoxLayout* column_;
  std::unique_ptr<FormBinder> binder_;
};

TEST_F(BinderTest, ShowsWhatTheFormHolds) {
  Open();
  EXPECT_EQ(Get<QLabel>("capName")->text(), "&Name");
  EXPECT_EQ(Get<QLineEdit>("txtName")->accessibleName(), "Name");
  EXPECT_EQ(Get<QLineEdit>("txtAmount")->text(), "-5.00");
  EXPECT_TRUE(Get<QLineEdit>("txtAmount")->property("negative").toBool());
  EXPECT_TRUE(Get<QLineEdit>("txtAmount")->alignment().testFlag(Qt::AlignRight));
  EXPECT_EQ(Get<QPlainTextEdit>("txtNote")->toPlainText(), "one\ntwo");
  EXPECT_TRUE(Get<QCheckBox>("chkHand")->isChecked());
  EXPECT_EQ(Get<QListWidget>("lstBanks")->count(), 2);
  EXPECT_EQ(Get<QPushButton>("cmdOk")->text(), "P&ost");
  EXPECT_EQ(Get<QAction>("mnuWarn")->text(), "&Warn");
  EXPECT_FALSE(Get<QAction>("mnuUnknown")->isVisible());
  EXPECT_TRUE(Get<QLabel>("capHint")->isVisible());

  Get<QLineEdit>("txtRow_1")->setFocus();
  form_.Taken();
  form_.SetText("txtRow", "second", 2);
  form_.SetCaption("lblSay", "A line\rand another");
  form_.SetRows("lstBanks", {"Third"}, 1);
  form_.SetValue("chkHand", 0);
  form_.SetValue("mnuWarn", 1);
  form_.SetEnabled("txtDated", false);
  form_.SetVisible("txtName", false);
  EXPECT_EQ(Get<QLineEdit>("txtRow_2")->text(), "second");
  EXPECT_EQ(Get<QLineEdit>("txtRow_1")->text(), "");
  EXPECT_EQ(Get<QLabel>("lblSay")->text(), "A line\nand another");
  EXPECT_FALSE(Get<QLabel>("capHint")->isVisible());
  EXPECT_EQ(Get<QListWidget>("lstBanks")->currentRow(), 0);
  EXPECT_FALSE(Get<QCheckBox>("chkHand")->isChecked());
  EXPECT_TRUE(Get<QAction>("mnuWarn")->isChecked());
  EXPECT_FALSE(Get<QLineEdit>("txtDated")->isEnabled());
  EXPECT_FALSE(Get<QLabel>("capName")->isVisible());
  EXPECT_THAT(form_.Taken(), IsEmpty()) << "what the form says must not come back as the user's";
}

TEST_F(BinderTest, TellsWhatTheUserDoes) {
  Open();
  Type("Jo");
  EXPECT_THAT(form_.Taken(), ElementsAre("change txtName", "change txtName"));
  EXPECT_EQ(form_.Find("txtName")->text, "Jo");
  Press(Qt::Key_Tab);
  Get<QLineEdit>("txtRow_2")->setFocus();
  Type("x");
  EXPECT_THAT(form_.Taken(), ElementsAre("leave txtName", "enter txtAmount", "leave txtAmount",
                                         "enter txtRow2", "change txtRow2"));
  QTest::mouseClick(Get<QCheckBox>("chkHand"), Qt::LeftButton, {},
                    QPoint(8, Get<QCheckBox>("chkHand")->height() / 2));
  EXPECT_EQ(form_.Find("chkHand")->value, 0);
  Get<QListWidget>("lstBanks")->setCurrentRow(1);
  EXPECT_EQ(form_.Find("lstBanks")->text, "Second");
  QTest::mouseClick(Get<QPushButton>("cmdOk"), Qt::LeftButton);
  Get<QAction>("mnuWarn")->trigger();
  EXPECT_THAT(form_.Taken(), ElementsAre("leave txtRow2", "enter chkHand", "change chkHand", "leave chkHand",
                                         "enter lstBanks", "choose lstBanks", "leave lstBanks", "enter cmdOk",
                                         "click cmdOk", "leave cmdOk", "menu mnuWarn"));
  EXPECT_TRUE(Get<QAction>("mnuWarn")->isChecked());
}

TEST_F(BinderTest, ARefusedFieldKeepsTheCursorAndIsMarkedUntilItChanges) {
  Open();
  auto* amount = Get<QLineEdit>("txtAmount");
  amount->setFocus(Qt::TabFocusReason);
  Type("bad");
  for (const bool by_mouse : {false, true}) {
    if (by_mouse) {
      QTest::mouseClick(Get<QLineEdit>("txtDated"), Qt::LeftButton);
      QTest::qWait(1);
    } else {
      Press(Qt::Key_Tab);
    }
    EXPECT_EQ(boxes_.LastText(), "The amount is bad.");
    EXPECT_EQ(Focus(), "txtAmount");
    EXPECT_TRUE(amount->property("refused").toBool());
    EXPECT_EQ(amount->selectedText(), "bad");
  }
  EXPECT_EQ(boxes_.shown.size(), 2U) << "one leave, one box";
  Type("7");
  EXPECT_EQ(form_.Find("txtAmount")->text, "7");
  EXPECT_FALSE(amount->property("refused").toBool());
  Press(Qt::Key_Tab);
  EXPECT_EQ(Focus(), "txtDated");
}

TEST_F(BinderTest, AFieldIsSelectedWhenItIsEnteredButNotByTheMouse) {
  Open();
  auto* amount = Get<QLineEdit>("txtAmount");
  const auto leave_and = [&](const std::function<void()>& enter) {
    Get<QLineEdit>("txtRow_1")->setFocus();
    amount->deselect();
    enter();
    EXPECT_EQ(Focus(), "txtAmount");
    return amount->selectedText();
  };
  EXPECT_EQ(leave_and([&] { amount->setFocus(Qt::TabFocusReason); }), "-5.00");
  EXPECT_EQ(leave_and([&] { form_.SetFocus("txtAmount"); }), "-5.00");
  EXPECT_EQ(leave_and([&] {
              Get<QLineEdit>("txtName")->setFocus();
              Press(Qt::Key_Return);
            }),
            "-5.00");
  EXPECT_EQ(leave_and([&] { QTest::mouseClick(amount, Qt::LeftButton); }), "");
  amount->setFocus(Qt::PopupFocusReason);
  EXPECT_EQ(amount->selectedText(), "");
  form_.SetText("txtAmount", "7.00");
  EXPECT_EQ(amount->selectedText(), "7.00") << "put there by the form while the cursor stands in it";
  Type("81");
  EXPECT_EQ(form_.Find("txtAmount")->text, "81");
  Get<QPlainTextEdit>("txtNote")->setFocus(Qt::TabFocusReason);
  EXPECT_FALSE(Get<QPlainTextEdit>("txtNote")->textCursor().hasSelection()) << "Enter would wipe it out";
}

TEST_F(BinderTest, WhatIsPastedStaysWholeAndItsLineBreaksAreSeen) {
  Open();
  auto* name = Get<QLineEdit>("txtName");
  const struct {
    QString pasted, shown;
    std::string held;
  } cases[] = {{QString(3000, 'x'), QString(3000, 'x'), std::string(3000, 'x')},
               {"24-0054\r\nSMITH\t5", QString::fromUtf8("24-0054↵SMITH⇥5"), "24-0054\nSMITH\t5"}};
  for (const auto& one : cases) {
    QApplication::clipboard()->setText(one.pasted);
    name->selectAll();
    name->paste();
    EXPECT_EQ(name->text(), one.shown);
    EXPECT_EQ(form_.Find("txtName")->text, one.held);
    Type("!");
    EXPECT_EQ(form_.Find("txtName")->text, one.held + "!") << "the cursor stands behind what was pasted";
  }
}

TEST_F(BinderTest, EnterGoesOnUntilAllIsFilledThenPosts) {
  form_.SetText("txtAmount", "");
  Open();
  QStringList stations;
  for (int i = 0; i < 6; ++i) {
    Press(Qt::Key_Return);
    stations << Focus();
  }
  EXPECT_EQ(stations.join(' '), "txtAmount txtDated txtPeriod txtRow_1 txtRow_2 txtNote");
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtNote") << "a line break in a text of several lines";
  Get<QListWidget>("lstBanks")->setFocus();
  Press(Qt::Key_Return);
  EXPECT_EQ(Focus(), "txtName") << "behind the last field, the first required one that is empty";
  Type("Jo");
  Press(Qt::Key_Enter);
  EXPECT_EQ(Focus(), "txtAmount");
  Type("5");
  form_.Taken();
  EXPECT_TRUE(binder_->KeysOf(*Get<QLineEdit>("txtAmount")).contains("Enter posts"));
  Press(Qt::Key_Enter);
  EXPECT_THAT(form_.Taken(),
              ElementsAre("leave txtAmount", "enter cmdOk", "click cmdOk", "leave cmdOk", "enter txtAmount"));
  EXPECT_EQ(Focus(), "txtAmount") << "a key leaves the cursor where it is";
  Get<QPlainTextEdit>("txtNote")->setFocus();
  form_.Taken();
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_THAT(form_.Taken(),
              ElementsAre("leave txtNote", "enter cmdOk", "click cmdOk", "leave cmdOk", "enter txtNote"));
}

// With a box between the key and the answer the list has gone on already.
TEST_F(BinderTest, AListThatIsKeptAtItsRowShowsThatRow) {
  Open();
  auto* list = Get<QListWidget>("lstBanks");
  form_.SetSelected("lstBanks", 1);
  list->setFocus(Qt::TabFocusReason);
  form_.at_choose = [this] {
    QTimer::singleShot(20, qApp, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    QtMessageBoxes().Show({BoxIcon::kQuestion, "T", "Drop the changes?", BoxButtons::kYesNo, BoxAnswer::kNo});
    form_.SetSelected("lstBanks", 1);
  };
  Press(Qt::Key_End);
  QTest::qWait(1);
  EXPECT_EQ(form_.Find("lstBanks")->selected, 1);
  EXPECT_EQ(list->currentRow(), 0);
  EXPECT_TRUE(list->item(0)->isSelected());
  EXPECT_FALSE(list->item(1)->isSelected());
}

TEST_F(BinderTest, EnterInAMarkPostsAndLeavesItAsItIs) {
  form_.SetText("txtName", "Jo");
  Open();
  auto* mark = Get<QCheckBox>("chkHand");
  mark->setFocus(Qt::TabFocusReason);
  form_.Taken();
  EXPECT_TRUE(binder_->KeysOf(*mark).startsWith("Enter posts"));
  Press(Qt::Key_Return);
  EXPECT_THAT(form_.Taken(), Contains("click cmdOk"));
  EXPECT_TRUE(mark->isChecked());
  Press(Qt::Key_Space);
  EXPECT_FALSE(mark->isChecked());
}

TEST_F(BinderTest, F2FillsDatesAndPeriodsInTheirForm) {
  Open();
  const struct {
    const char* field;
    const char* text;
    const char* shown_month;  // "month year" at which it opens
    const char* chosen;       // for day 20 of the month
  } cases[] = {{"txtDated", "3/15/2024", "3 2024", "03/20/2024"},
               {"txtDated", "031524", "3 2024", "03/20/2024"},
               {"txtPeriod", "3-15-2024", "3 2024", "3-20-2024"}};
  for (const auto& one : cases) {
    auto* edit = Get<QLineEdit>(one.field);
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    Type(one.text);
    Press(Qt::Key_F2);
    auto* calendar = edit->findChild<QCalendarWidget*>();
    ASSERT_NE(calendar, nullptr) << one.text;
    EXPECT_EQ(QString("%1 %2").arg(calendar->monthShown()).arg(calendar->yearShown()), one.shown_month);
    emit calendar->clicked(QDate(calendar->yearShown(), calendar->monthShown(), 20));
    EXPECT_EQ(form_.Find(one.field)->text, one.chosen);
    EXPECT_EQ(edit->text(), one.chosen);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  form_.Taken();
  Get<QLineEdit>("txtName")->setFocus();
  Press(Qt::Key_F2);
  Press(Qt::Key_F4);
  EXPECT_THAT(form_.Taken(), ElementsAre("leave txtPeriod", "enter txtName", "key F4"));
}

TEST_F(BinderTest, F2OffersMonthsWhereAPeriodHasNoDay) {
  form_.Find("txtPeriod")->month_only = true;
  Open();
  auto* edit = Get<QLineEdit>("txtPeriod");
  const struct {
    const char* text;
    std::vector<Qt::Key> keys;
    QString chosen;
  } cases[] = {{"11-2023", {Qt::Key_Right, Qt::Key_PageDown}, "12-2024"},
               {"1-2024", {Qt::Key_PageUp, Qt::Key_Down}, "4-2023"},
               {"12-2095", {Qt::Key_PageDown}, "12-2095"},
               {"", {}, QDate::currentDate().toString("M-yyyy")}};
  for (const auto& one : cases) {
    edit->setFocus(Qt::TabFocusReason);
    edit->selectAll();
    *one.text != 0 ? Type(one.text) : Press(Qt::Key_Delete);
    Press(Qt::Key_F2);
    auto* months = edit->findChild<QTableWidget*>();
    ASSERT_NE(months, nullptr) << one.text;
    for (const Qt::Key key : one.keys) QTest::keyClick(months, key);
    QTest::keyClick(months, Qt::Key_Return);
    EXPECT_EQ(edit->text(), one.chosen);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST_F(BinderTest, LongWorkIsDoneBetweenEvents) {
  form_.LetWorkFor(3);
  EXPECT_EQ(form_.SlicesLeft(), 0) << "at once where no face does it in slices";
  Open();
  form_.at_click = [this] {
    form_.LetWorkFor(50);
    QTest::qWait(5);  // as a dialog waits
    EXPECT_EQ(form_.SlicesLeft(), 50);
  };
  Get<QPushButton>("cmdOk")->click();
  EXPECT_EQ(form_.SlicesLeft(), 50);
  Get<QLineEdit>("txtName")->setFocus();
  Type("Jo");
  EXPECT_GT(form_.SlicesLeft(), 0) << "the typing did not wait for all of it";
  EXPECT_EQ(form_.Find("txtName")->text, "Jo");
  EXPECT_TRUE(QTest::qWaitFor([this] { return form_.SlicesLeft() == 0; }));
}

TEST(QtMessageBoxesTest, FitsTheScreenWhateverItQuotes) {
  QTimer::singleShot(20, qApp, [] {
    const QWidget* shown = QApplication::activeModalWidget();
    ASSERT_NE(shown, nullptr);
    EXPECT_LT(shown->height(), 500);
    EXPECT_LT(shown->width(), 1000);
    QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
  });
  std::string pasted;
  for (int i = 0; i < 5000; ++i) pasted += "pasted ";
  QtMessageBoxes boxes;
  boxes.Show(
      {BoxIcon::kCritical, "T", "Payee \"" + pasted + "\" is too long.", BoxButtons::kOk, BoxAnswer::kOk});
}

TEST(QtMessageBoxesTest, ShowsTextsExactlyAndAnswersSafely) {
  const struct {
    Box box;
    Qt::Key key;
    BoxAnswer answer;
  } cases[] = {
      {{BoxIcon::kCritical, "T", "Failed\rError code = 50", BoxButtons::kOk, BoxAnswer::kOk},
       Qt::Key_Escape,
       BoxAnswer::kOk},
      {{BoxIcon::kQuestion, "T", "<b>Two  blanks</b>\r\n\r\n& stay", BoxButtons::kYesNoCancel,
        BoxAnswer::kYes},
       Qt::Key_Escape,
       BoxAnswer::kCancel},
      {{BoxIcon::kQuestion, "T", "Pay?", BoxButtons::kYesNo, BoxAnswer::kYes},
       Qt::Key_Return,
       BoxAnswer::kYes},
      {{BoxIcon::kQuestion, "T", "Pay?", BoxButtons::kYesNo, BoxAnswer::kOk}, Qt::Key_Return, BoxAnswer::kNo},
      {{BoxIcon::kQuestion, "T", "Pay?", BoxButtons::kRetryCancel, BoxAnswer::kCancel},
       Qt::Key_Return,
       BoxAnswer::kCancel},
  };
  QtMessageBoxes boxes;
  for (const auto& one : cases) {
    QString seen;
    QTimer::singleShot(20, qApp, [&] {
      auto* shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(shown, nullptr);
      const auto labels = shown->findChildren<QLabel*>("qt_msgbox_label");
      ASSERT_EQ(labels.size(), 1);
      EXPECT_EQ(labels.front()->textFormat(), Qt::PlainText);
      seen = labels.front()->text();
      QTest::keyClick(shown->defaultButton(), one.key);
    });
    EXPECT_EQ(boxes.Show(one.box), one.answer) << one.box.text;
    EXPECT_EQ(seen.count('\n'), std::count(one.box.text.begin(), one.box.text.end(), '\r'));
    EXPECT_EQ(seen.remove('\n').toStdString(), [&] {
      std::string text = one.box.text;
      std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
      return text;
    }());
  }
}

}  // namespace
}  // namespace tallwick
