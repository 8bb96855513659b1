// Esc while a screen computes: it stops the work and nothing else, and the window says that it did.
#include <gmock/gmock.h>

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "tests/support/desktop_test.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using ::testing::Each;
using ::testing::HasSubstr;

constexpr int kChecks = 20'000;
constexpr const char* kStopped = "Calculations incomplete - stopped by user...";

struct Screen {
  const char *name, *status, *sum, *done, *print;
};
const Screen kScreens[] = {
    {"frmViewTrialBalance", "lblCount", "lblDisbursements", "100 files", "mnuFilePrint"},
    {"frmReconcileAccount", "lblStatus", "txtLessOutstandingChecks", "Account Not Balanced...",
     "mnuFilePrint"},
};

class StopTest : public testing::DesktopTest, public ::testing::WithParamInterface<Screen> {
 protected:
  void SetUp() override {
    DesktopTest::SetUp();
    clsKVRData& data = desktop_->TheSession().Data();
    ASSERT_EQ(data.BeginUnit(), 0);
    for (int number = 1; number <= kChecks; ++number) {
      CheckRecord check;
      check.number = std::to_string(number);
      check.amount = Currency::FromCents(1'00);
      check.accounting = {3, 0, 2024};
      check.status = "O";
      check.file_number = "24-" + std::to_string(number % 100);
      ASSERT_EQ(tables_->checks.Add(check, true), 0);
    }
    ASSERT_EQ(data.CommitUnit(), 0);
    Open(GetParam().name, "");
    if (auto* balance = Get<QLineEdit>(GetParam().name, "txtBankStatementBalance")) {
      balance->setFocus(Qt::TabFocusReason);
      QTest::keyClicks(balance, "1");
    }
  }
  // The text of a label or a field.
  QString Shown(const char* name) {
    const std::string_view screen = GetParam().name;
    if (auto* label = Get<QLabel>(screen, name)) return label->text();
    return Text(screen, name);
  }
  void Compute() {
    Get<QPushButton>(GetParam().name, "cmdCompute")->setFocus(Qt::TabFocusReason);
    QTest::mouseClick(Get<QPushButton>(GetParam().name, "cmdCompute"), Qt::LeftButton);
  }
};

TEST_P(StopTest, EscStopsTheWorkAndLeavesTheWindowOpen) {
  const Screen& screen = GetParam();
  bool was_seen = false;
  QString told;
  QTimer::singleShot(0, &Window(screen.name), [&] {
    was_seen = Get<QProgressBar>(screen.name, "prgProgress")->isVisible();
    told = Get<QLabel>(screen.name, "lblProgress")->text();
    // A second computation must not begin within the first.
    QTest::mouseClick(Get<QPushButton>(screen.name, "cmdCompute"), Qt::LeftButton);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  });
  Compute();
  EXPECT_TRUE(was_seen);
  EXPECT_TRUE(told.contains("Press 'Esc' to cancel...")) << told.toStdString();
  ASSERT_NE(desktop_->Find(screen.name), nullptr) << "Esc has closed the window";
  EXPECT_EQ(Shown(screen.status), kStopped);
  EXPECT_EQ(Shown(screen.sum), "") << "a part is no sum";
  EXPECT_FALSE(Get<QAction>(screen.name, screen.print)->isEnabled());
  EXPECT_FALSE(Get<QProgressBar>(screen.name, "prgProgress")->isVisible());
  EXPECT_EQ(Focus(), "cmdCompute");
  const auto* files = Get<RegisterView>(screen.name, "grdFiles");
  EXPECT_TRUE(files == nullptr || files->ShownEmptyText() == kStopped);

  Compute();
  EXPECT_EQ(Shown(screen.status), screen.done);
  EXPECT_EQ(Shown(screen.sum), "20,000.00");
  EXPECT_TRUE(Get<QAction>(screen.name, screen.print)->isEnabled());
  office_.boxes.answers = {BoxAnswer::kYes};
  Press(Qt::Key_Escape);
  EXPECT_EQ(desktop_->Find(screen.name), nullptr) << "at rest Esc closes";
  EXPECT_THAT(office_.TakeTexts(), Each(HasSubstr("Close without them ?"))) << "where figures were typed";
}

INSTANTIATE_TEST_SUITE_P(Screens, StopTest, ::testing::ValuesIn(kScreens),
                         [](const auto& screen) { return std::string(screen.param.name); });

}  // namespace
}  // namespace tallwick
