// The windows of deposits, wires and vouchers, worked by keys alone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "tests/support/office.h"
#include "ui/desktop.h"
#include "ui/register_view.h"

namespace tallwick {
namespace {

using testing::FakeSuite;
using ::testing::IsEmpty;
using testing::Office;

constexpr std::string_view kDeposits = "frmEditDepositsPost";
constexpr std::string_view kWires = "frmEditWiresPost";
constexpr std::string_view kVouchers = "frmEditVouchersPost";

class PostingWindowsTest : public ::testing::Test {
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
  }
  void Open(std::string_view screen) {
    desktop_->OpenScreen(screen, "Posting");
    ASSERT_NE(desktop_->Find(screen), nullptr);
    Window(screen).activateWindow();
    QTest::qWait(1);
  }
  QWidget& Window(std::string_view screen) { return desktop_->Find(screen)->Window(); }
  template <class Object>
  Object* Get(std::string_view screen, const char* name) {
    return Window(screen).findChild<Object*>(name);
  }
  static QString Focus() {
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "";
  }
  // Types the texts from the cursor on, each followed by Enter; "" is Enter alone.
  void Type(std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      QTest::keyClicks(QApplication::focusWidget(), text);
      Press(Qt::Key_Return);
    }
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  void PutCursor(std::string_view screen, const char* field) {
    Get<QLineEdit>(screen, field)->setFocus(Qt::TabFocusReason);
  }

  Office office_;
  std::unique_ptr<Desktop> desktop_;
  std::unique_ptr<BankTables> tables_;
};

TEST_F(PostingWindowsTest, ADepositIsTypedLikeASpreadsheet) {
  Open(kDeposits);
  EXPECT_EQ(Focus(), "txtFileNumbers_1");
  Type({"24-0117", "SMITH TITLE CO", "1250"});
  EXPECT_EQ(Focus(), "txtFileNumbers_2");
  Press(Qt::Key_I, Qt::ControlModifier);  // the file of the line above
  EXPECT_EQ(Get<QLineEdit>(kDeposits, "txtFileNumbers_2")->text(), "24-0117");
  Type({"", "LENDER ONE", "98000.5"});
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblDepositTotal")->text(), "99,250.50");
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtFileNumbers_2");
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Up);
  EXPECT_EQ(Focus(), "txtFileNumbers_3");
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblKeys")->text(),
            "Enter next field     Up Down other line     Ctrl+Enter post     F1 help     Esc back");
  Press(Qt::Key_Return);  // on an empty line: posts
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->deposits.SeekDeposit("20240315", "1"));
  EXPECT_EQ(tables_->deposits.Read().item_count, 2);
  EXPECT_EQ(Focus(), "txtFileNumbers_1");
  EXPECT_EQ(Get<QLineEdit>(kDeposits, "txtDateSequence")->text(), "2");
  auto* deposits = Get<RegisterView>(kDeposits, "lstDepositDates");
  EXPECT_EQ(deposits->Model().rowCount(), 1);

  // Found by a file number, and taken into the entry.
  QTest::keyClick(&Window(kDeposits), Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "24-01");
  EXPECT_EQ(deposits->Table().currentIndex().row(), 0);
  Press(Qt::Key_Down);
  EXPECT_EQ(Get<QLabel>(kDeposits, "lblItemStatus_2")->text(), "Outstanding");
  EXPECT_EQ(Get<QPushButton>(kDeposits, "cmdOk")->text(), "&Ok");
  QTest::mouseClick(Get<QPushButton>(kDeposits, "cmdCalendar"), Qt::LeftButton);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  EXPECT_EQ(QApplication::activePopupWidget()->windowTitle(), "Deposit Accounting Period");
  QApplication::activePopupWidget()->close();
}

TEST_F(PostingWindowsTest, AWireAndAVoucherArePostedByKeysAlone) {
  Open(kWires);
  EXPECT_EQ(Focus(), "txtWireNumber");
  Type({"FED-0417", "", "SMITH TITLE CO", "1250", "24-0117", "", ""});
  EXPECT_EQ(Focus(), "txtWireStmtPeriod");
  Type({"3/2024"});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->wires.SeekNumber("FED-0417"));
  EXPECT_EQ(tables_->wires.Read().status, "C");
  EXPECT_EQ(Focus(), "txtWireNumber");

  Open(kVouchers);
  EXPECT_EQ(Focus(), "txtVCHRFileNumber");
  Type({"24-0117", "", "SMITH TITLE CO", "PAYOFF", "1250"});
  EXPECT_THAT(office_.TakeTexts(), IsEmpty());
  ASSERT_TRUE(tables_->vouchers.SeekNumber("1"));
  EXPECT_EQ(tables_->vouchers.Read().reason, "PAYOFF");
  EXPECT_EQ(Get<QLineEdit>(kVouchers, "txtVCHRNumber")->text(), "2");
}

TEST_F(PostingWindowsTest, EveryWindowShowsItsControlsAndFitsASmallLaptop) {
  for (std::string_view screen : {kDeposits, kWires, kVouchers}) {
    Open(screen);
    QWidget& window = Window(screen);
    for (const Control& control : desktop_->Find(screen)->TheForm().Controls()) {
      const QString index = control.index == 0 ? "" : "_" + QString::number(control.index);
      auto* object = window.findChild<QObject*>(QString::fromStdString(control.name) + index);
      ASSERT_NE(object, nullptr) << control.name << control.index;
      const auto* widget = qobject_cast<QWidget*>(object);
      const bool is_field = control.kind != ControlKind::kLabel && control.kind != ControlKind::kMenu;
      EXPECT_TRUE(!is_field || !widget->accessibleName().isEmpty()) << control.name;
    }
    EXPECT_LE(window.minimumSizeHint().height(), 700) << screen;
    EXPECT_LE(window.minimumSizeHint().width(), 1366) << screen;
  }
}

}  // namespace
}  // namespace tallwick
