// The maintenance windows while their work runs: they draw, Esc and the button stop it, and nothing else of
// what is typed gets through.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "tests/support/desktop_test.h"

namespace tallwick {
namespace {

class MaintenanceWindowTest : public testing::DesktopTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(office_.Open());
    for (int i = 0; i < 12; ++i) ASSERT_TRUE(office_.AddBank("B" + std::to_string(i), "Bank"));
    StartDesktop();
    office_.boxes.shown.clear();
    office_.boxes.answers = {BoxAnswer::kNo, BoxAnswer::kOk};
  }
  // Packs every table, and does `meanwhile` once the window shows work.
  void Pack(const std::function<void(QWidget&)>& meanwhile) {
    QTimer look;
    bool done = false;
    QObject::connect(&look, &QTimer::timeout, qApp, [&] {
      ScreenHost* host = desktop_->Find("frmMaintenance");
      if (done || host == nullptr || !host->Window().findChild<QProgressBar*>("prgProgress")->isVisible())
        return;
      done = true;
      meanwhile(host->Window());
    });
    look.start(1);
    Command("frmMainEscrowAccounting", "mnuFilePack");
    EXPECT_TRUE(done);
  }
};

TEST_F(MaintenanceWindowTest, EscStopsTheWork) {
  Pack([](QWidget& window) {
    QCoreApplication::postEvent(&window, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, {}));
  });
  EXPECT_THAT(office_.boxes.LastText(), ::testing::HasSubstr("was stopped"));
}

TEST_F(MaintenanceWindowTest, TheButtonStopsItAndOtherInputIsDropped) {
  Pack([](QWidget& window) {
    QCoreApplication::postEvent(&window, new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, {}));
    QCoreApplication::postEvent(&window, new QCloseEvent);
    auto* button = window.findChild<QPushButton*>("cmdCancel");
    EXPECT_EQ(button->text(), "Stop");
    const QPointF middle = button->rect().center();
    QCoreApplication::postEvent(
        button, new QMouseEvent(QEvent::MouseButtonPress, middle, button->mapToGlobal(middle), Qt::LeftButton,
                                Qt::LeftButton, {}));
  });
  EXPECT_THAT(office_.boxes.LastText(), ::testing::HasSubstr("was stopped"));
  EXPECT_EQ(desktop_->Find("frmMaintenance"), nullptr);
}

}  // namespace
}  // namespace tallwick
