// A register on a screen: the rows of a RowSource, read in slices between which the window answers; what to
// do when there are none; a line below that says how many are shown and what they add up to; and a search
// through all of them that keeps the window alive. Column widths and order are remembered per user under the
// view's object name.
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTimer>
#include <QWidget>
#include <optional>

#include "core/currency.h"
#include "ui/register_model.h"

namespace tallwick {

class RegisterView : public QWidget {
  Q_OBJECT
  // What an empty register says, and the commands that its headings stand for (control names; "" for none).
  Q_PROPERTY(QString emptyText READ EmptyText WRITE SetEmptyText)
  Q_PROPERTY(QStringList headingCommands MEMBER heading_commands_)
  // The column that takes what the others leave of the width.
  Q_PROPERTY(int wideColumn MEMBER wide_column_)
  // False leaves out the line below.
  Q_PROPERTY(bool totalsLine READ HasTotalsLine WRITE SetTotalsLine)

 public:
  explicit RegisterView(QWidget* parent = nullptr);

  // Shows the control's rows and selection; a scroll position survives where the rows do.
  void Show(const Control& control);
  // What an empty register says unless its source says something else.
  QString EmptyText() const { return empty_text_; }
  void SetEmptyText(const QString& text) { empty_text_ = text; }
  // What it says now; "" while there are rows.
  QString ShownEmptyText() const { return empty_->isHidden() ? QString() : empty_->text(); }
  bool HasTotalsLine() const { return !totals_->isHidden(); }
  void SetTotalsLine(bool shown) { totals_->setVisible(shown); }
  // Marks the heading whose command is the one in force.
  void MarkHeading(const QString& command);
  const QStringList& HeadingCommands() const { return heading_commands_; }

  // Typing in the box searches downwards from the row that was marked when the text was begun, and marks what
  // it finds, or nothing; Enter goes on to the next, Down chooses the row, Esc ends the search.
  void SearchFrom(QLineEdit* box);

  QTableView& Table() { return *table_; }
  RegisterModel& Model() { return *model_; }

 signals:
  void RowChosen(int row);  // from 0, by the user
  void HeadingClicked(const QString& command);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void StartSearch(bool next);
  std::optional<int> IndexedRow();
  bool Holds(const std::vector<std::string>& cells) const;
  void SearchSlice();
  // At the row that holds what was wanted; nullopt where none does.
  void EndSearch(std::optional<int> found);
  QByteArray ColumnsKey() const;
  void PlaceColumns();
  void FitWideColumn();
  void RememberColumns();
  void MarkRow(int row);
  void ShowCount();
  void ReadSlice();

  QTableView* table_;
  RegisterModel* model_;
  QLabel* totals_;
  QLabel* empty_;
  QString empty_text_;
  QLineEdit* box_ = nullptr;
  QTimer read_timer_;
  QElapsedTimer reading_since_;
  QTimer search_timer_;
  struct {
    QString text;
    std::optional<Currency> amount;  // that the text may mean
  } wanted_;
  // The row marked before this text was begun; behind the last match since Enter.
  std::optional<int> search_origin_;
  int search_from_ = 0;  // the row with which the search began
  int searched_ = 0;     // rows looked at since
  QStringList heading_commands_;
  int wide_column_ = -1;
  bool columns_placed_ = false;
  bool placing_ = false;  // widths are being set by the program, not by the user
};

}  // namespace tallwick
