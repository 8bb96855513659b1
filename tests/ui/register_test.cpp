// Registers of a size that no window may read whole, and colours that everybody can read.
#include "ui/register_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>
#include <cmath>

#include "ui/style.h"

namespace tallwick {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Checks 1, 2, 3, … of which every tenth is voided; counts how often it is asked for a row.
class ManyRows : public RowSource {
 public:
  explicit ManyRows(std::size_t rows) : rows_(rows) {}
  std::vector<std::string> Headings() const override { return {"Number", "Payee", "Amount"}; }
  std::size_t RowCount() override { return rows_; }
  std::vector<std::string> Row(std::size_t row) override {
    ++reads;
    return {std::to_string(row + 1), "PAYEE " + std::to_string(row + 1), row % 2 == 0 ? "1.00" : "-1.00"};
  }
  std::string RowStyle(std::size_t row) override {
    return row % 10 == 9 ? "voided" : row % 10 == 8 ? "stopped" : "";
  }
  bool IsNumeric(std::size_t column) const override { return column != 1; }

  std::size_t rows_;
  std::size_t reads = 0;
};

class RegisterTest : public ::testing::Test {
 protected:
  void Show(std::size_t rows) {
    source_ = std::make_shared<ManyRows>(rows);
    control_.source = source_;
    view_.resize(640, 480);
    view_.Show(control_);
    view_.show();
    QTest::qWait(1);
  }
  QVariant Data(int row, int column, int role) { return view_.Model().index(row, column).data(role); }

  Control control_;
  std::shared_ptr<ManyRows> source_;
  RegisterView view_;
};

TEST_F(RegisterTest, AMillionRowsAreReadOnlyWhereTheyAreSeen) {
  QElapsedTimer timer;
  timer.start();
  Show(1'000'000);
  QScrollBar* bar = view_.Table().verticalScrollBar();
  for (int percent : {50, 100, 3, 97}) {
    bar->setValue(bar->maximum() / 100 * percent);
    QTest::qWait(1);
  }
  bar->setValue(bar->maximum());
  QTest::qWait(1);
  EXPECT_EQ(view_.Table().indexAt(QPoint(10, view_.Table().viewport()->height() - 10)).row(), 999'999);
  EXPECT_LT(source_->reads, 1000U);
  EXPECT_LT(timer.elapsed(), 2000) << "generous: a debug build on a busy machine";
}

TEST_F(RegisterTest, SaysStatusByLookAndAddsNothingToTheText) {
  Show(20);
  EXPECT_EQ(Data(0, 0, Qt::TextAlignmentRole).toInt() & Qt::AlignRight, Qt::AlignRight);
  EXPECT_EQ(Data(0, 1, Qt::TextAlignmentRole).toInt() & Qt::AlignRight, 0);
  const QColor alarm = QApplication::palette().color(kAlarmRole);
  EXPECT_EQ(Data(1, 2, Qt::ForegroundRole).value<QColor>(), alarm) << "negative";
  EXPECT_FALSE(Data(1, 1, Qt::ForegroundRole).isValid()) << "only the amount";
  EXPECT_EQ(Data(8, 1, Qt::ForegroundRole).value<QColor>(), alarm) << "stopped";
  EXPECT_TRUE(Data(9, 1, Qt::FontRole).value<QFont>().strikeOut()) << "voided";
}

TEST_F(RegisterTest, FollowsItsRowsAndSaysWhatToDoWithoutAny) {
  view_.SetEmptyText("Post the first check.");
  Show(0);
  auto* empty = view_.Table().findChild<QLabel*>();
  EXPECT_TRUE(empty->isVisible());
  EXPECT_EQ(empty->text(), "Post the first check.");
  source_->rows_ = 30;
  control_.selected = 3;
  view_.Show(control_);
  EXPECT_FALSE(empty->isVisible());
  EXPECT_EQ(view_.Model().rowCount(), 30);
  EXPECT_EQ(view_.Table().currentIndex().row(), 2);
  source_->rows_ = 2;
  control_.selected = 0;
  view_.Show(control_);
  EXPECT_EQ(view_.Model().rowCount(), 2);
  EXPECT_FALSE(view_.Table().selectionModel()->hasSelection());
}

// Knows of its first hundred rows only, until it may read on.
class SlowRows : public ManyRows {
 public:
  using ManyRows::ManyRows;
  std::size_t RowCount() override {
    was_read_whole = true;
    return rows_;
  }
  std::size_t RowsKnown() override { return may_read_on ? rows_ : 100; }
  bool ReadOn(std::chrono::milliseconds) override { return !may_read_on; }

  bool may_read_on = false;
  bool was_read_whole = false;
};

TEST_F(RegisterTest, FindLetsTheRegisterBeReadInSteps) {
  QLineEdit box;
  view_.SearchFrom(&box);
  const auto slow = std::make_shared<SlowRows>(1000);
  control_.source = slow;
  view_.Show(control_);
  const auto row = [this] { return view_.Table().currentIndex().row(); };
  view_.Table().selectRow(50);
  QTest::keyClicks(&box, "payee 7");
  EXPECT_TRUE(QTest::qWaitFor([&] { return row() == 69; }));
  QTest::keyClicks(&box, "77");
  QTest::qWait(20);
  EXPECT_LT(row(), 100);
  EXPECT_FALSE(slow->was_read_whole);
  EXPECT_FALSE(box.property("refused").toBool()) << "what is not read yet may hold it";
  slow->may_read_on = true;
  EXPECT_TRUE(QTest::qWaitFor([&] { return row() == 776; }));
  QTest::keyClicks(&box, "x");
  EXPECT_TRUE(QTest::qWaitFor([&] { return box.property("refused").toBool(); }));
}

TEST_F(RegisterTest, FindMarksWithoutChoosingUntilItIsTaken) {
  QLineEdit box;
  view_.SearchFrom(&box);
  Show(50'000);
  std::vector<int> chosen;
  QObject::connect(&view_, &RegisterView::RowChosen, [&](int row) { chosen.push_back(row); });
  const auto row = [this] { return view_.Table().currentIndex().row(); };
  QTest::keyClicks(&box, "payee 4999");
  EXPECT_TRUE(QTest::qWaitFor([&] { return row() == 4998; }));
  QTest::keyClick(&box, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return row() == 49'989; }));
  QTest::keyClicks(&box, "x");
  EXPECT_TRUE(QTest::qWaitFor([&] { return box.property("refused").toBool(); }));
  EXPECT_FALSE(view_.Table().selectionModel()->hasSelection()) << "it holds a part of the text only";
  EXPECT_EQ(row(), -1);
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_THAT(chosen, IsEmpty());
  QTest::keyClick(&box, Qt::Key_Backspace);
  EXPECT_TRUE(QTest::qWaitFor([&] { return row() == 49'989; }));
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_THAT(chosen, ElementsAre(49'989));
}

// Its index knows "50" and leads to the last one of the payees.
class IndexedRows : public ManyRows {
 public:
  IndexedRows() : ManyRows(50) {}
  std::vector<std::string> Row(std::size_t row) override {
    const std::string number = std::to_string(row + 1);
    return {number, "PAYEE " + number, row == 30 ? "4,197.60" : "1.00"};
  }
  std::optional<std::size_t> FindRow(std::string_view text) override {
    return text == "50" || text == "payee" ? std::optional<std::size_t>(49) : std::nullopt;
  }
};

TEST_F(RegisterTest, FindTakesTheFirstMatchDownwardsAndKnowsAmounts) {
  QLineEdit box;
  view_.SearchFrom(&box);
  control_.source = std::make_shared<IndexedRows>();
  view_.Show(control_);
  view_.Table().selectRow(10);
  const struct {
    const char* typed;
    int row;
  } cases[] = {{"payee", 10}, {"50", 49}, {"4197.60", 30}, {"4,197.6", 30}, {"payee 3", 30}};
  for (const auto& one : cases) {
    box.selectAll();
    QTest::keyClicks(&box, one.typed);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view_.Table().currentIndex().row() == one.row; })) << one.typed;
  }
}

TEST_F(RegisterTest, TheRowThatTabChoosesIsMarked) {
  Show(20);
  view_.activateWindow();
  QTest::qWait(1);
  view_.Table().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(view_.Table().currentIndex().row(), 0);
  EXPECT_TRUE(view_.Table().selectionModel()->isRowSelected(0));
}

TEST_F(RegisterTest, ThePayeeKeepsRoomInANarrowWindow) {
  view_.setProperty("wideColumn", 1);
  Show(20);
  for (const int width : {150, 640, 150}) {
    view_.resize(width, 480);
    QTest::qWait(1);
    EXPECT_GE(view_.Table().columnWidth(1), 12 * view_.fontMetrics().horizontalAdvance('n')) << width;
    EXPECT_EQ(view_.Table().horizontalScrollBar()->maximum() > 0, width == 150);
  }
}

TEST_F(RegisterTest, ColumnsKeepTheirWidthAndOrder) {
  QWidget first_window;
  first_window.setObjectName("frmFirst");
  const auto make = [&] {
    auto* view = new RegisterView(&first_window);
    view->setObjectName("lstChecks");
    Control control;
    control.source = std::make_shared<ManyRows>(5);
    view->Show(control);
    first_window.show();
    view->show();
    return view;
  };
  RegisterView* view = make();
  view->Table().setColumnWidth(1, 222);
  view->Table().horizontalHeader()->moveSection(0, 2);
  delete view;
  view = make();
  EXPECT_EQ(view->Table().columnWidth(1), 222);
  EXPECT_EQ(view->Table().horizontalHeader()->visualIndex(0), 2);
}

double Luminance(const QColor& color) {
  const auto part = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double Contrast(const QColor& one, const QColor& other) {
  const double a = Luminance(one);
  const double b = Luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(StyleTest, EveryTextStandsOutInBothSchemes) {
  for (const Scheme scheme : {Scheme::kDark, Scheme::kLight}) {
    ApplyStyle(*qApp, scheme);
    const QPalette palette = QApplication::palette();
    for (const auto text : {QPalette::WindowText, QPalette::Text, kMutedRole, kAlarmRole}) {
      for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
        EXPECT_GE(Contrast(palette.color(text), palette.color(ground)), 4.5) << text << " on " << ground;
      }
    }
    EXPECT_GE(Contrast(palette.color(QPalette::HighlightedText), palette.color(kAccentRole)), 4.5);
    EXPECT_FALSE(qApp->styleSheet().contains('@')) << "a mark without a colour";
    for (const char* icon :
         {"open", "save", "checks", "deposits", "wire_outs", "reports", "reconcile", "ledgers", "close"}) {
      const QImage drawn = DrawnIcon(icon).pixmap(40, 40).toImage();
      int inked = 0;
      for (int i = 0; i < 40 * 40; ++i) inked += drawn.pixelColor(i % 40, i / 40).alpha() > 128 ? 1 : 0;
      EXPECT_GT(inked, 80) << icon;
    }
  }
}

}  // namespace
}  // namespace tallwick
