// The running desktop over an office with the bank FNB selected, worked by keys: what tests of whole windows
// stand on.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <functional>

#include "tests/support/office.h"
#include "ui/desktop.h"

namespace tallwick::testing {

// Waits for a dialog of this kind, and has `work` done on it unless `watch` is gone before.
template <class Dialog>
void OnDialog(QObject& watch, const std::function<void(Dialog&)>& work, int looks = 0) {
  QTimer::singleShot(1, &watch, [&watch, work, looks] {
    if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget()))
      work(*dialog);
    else if (looks < 10'000)
      OnDialog<Dialog>(watch, work, looks + 1);
  });
}

class DesktopTest : public ::testing::Test {
 protected:
  void SetUp() override {
    office_.suite.files = {"24-0117"};
    ASSERT_TRUE(office_.Open([this](BankRecord& bank) { ChangeBank(bank); }));
    StartDesktop();
    ASSERT_TRUE(SelectBank(desktop_->TheSession(), "FNB"));
    tables_ = std::make_unique<BankTables>(desktop_->TheSession().Home());
    ASSERT_TRUE(tables_->Open("FNB"));
  }
  // What the bank has otherwise than other tests' banks.
  virtual void ChangeBank(BankRecord&) {}
  // Over the office as it is, without a bank.
  void StartDesktop() {
    office_.session.reset();
    desktop_ =
        std::make_unique<Desktop>(Ports{office_.boxes, SystemFileSystem(), office_.clock, office_.workstation,
                                        nullptr, nullptr, nullptr, office_.printer, office_.sheets});
    ASSERT_TRUE(desktop_->Start([this] { return std::make_unique<FakeSuite>(office_.suite); }));
  }
  void Open(std::string_view screen, std::string_view mode = "Posting") {
    desktop_->OpenScreen(screen, mode);
    ASSERT_NE(desktop_->Find(screen), nullptr);
    Activate(screen);
  }
  void Activate(std::string_view screen) {
    Window(screen).activateWindow();
    QTest::qWait(1);
  }
  QWidget& Window(std::string_view screen) { return desktop_->Find(screen)->Window(); }
  template <class Object>
  Object* Get(std::string_view screen, const char* name) {
    return Window(screen).findChild<Object*>(name);
  }
  QString Text(std::string_view screen, const char* field) { return Get<QLineEdit>(screen, field)->text(); }
  // The command of a menu or tool bar.
  void Command(std::string_view screen, const char* command) {
    Get<QAction>(screen, command)->trigger();
    QTest::qWait(1);
  }
  static QString Focus() {
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "";
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  // Types the texts from the cursor on, each followed by Enter; "" is Enter alone.
  static void Type(std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      QTest::keyClicks(QApplication::focusWidget(), text);
      Press(Qt::Key_Return);
    }
  }
  void PutCursor(std::string_view screen, const char* field) {
    Get<QLineEdit>(screen, field)->setFocus(Qt::TabFocusReason);
  }

  Office office_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<BankTables> tables_;
};

}  // namespace tallwick::testing
