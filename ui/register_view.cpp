#include "ui/register_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/bound_widget.h"
#include "ui/style.h"
#include "ui/window_memory.h"

namespace tallwick {
namespace {

constexpr int kSliceMs = 8;      // the window answers between slices
constexpr int kLongMs = 500;     // from then on a reading says how far it is
constexpr int kSampleRows = 60;  // rows looked at for the first column widths
constexpr int kOrderMark = 16;   // beside the heading of the order in force
constexpr int kCellPadding = 24;
constexpr int kLeastLetters = 16;  // of the column that takes what the others leave

}  // namespace

RegisterView::RegisterView(QWidget* parent)
    : QWidget(parent),
      table_(new QTableView(this)),
      model_(new RegisterModel(this)),
      totals_(new QLabel(this)),
      empty_(new QLabel(table_)) {
  table_->setModel(model_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setAlternatingRowColors(true);
  table_->setShowGrid(false);
  table_->setWordWrap(false);
  table_->setTabKeyNavigation(false);
  table_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  table_->horizontalHeader()->setSectionsMovable(true);
  table_->horizontalHeader()->setHighlightSections(false);
  table_->horizontalHeader()->setMinimumSectionSize(48);
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setWordWrap(true);
  empty_->setForegroundRole(kMutedRole);
  empty_->setAttribute(Qt::WA_TransparentForMouseEvents);
  totals_->setForegroundRole(kMutedRole);
  totals_->setContentsMargins(8, 0, 8, 0);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  column->addWidget(table_);
  column->addWidget(totals_);
  setFocusProxy(table_);
  table_->installEventFilter(this);

  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) {
            if (placing_ || !current.isValid()) return;
            if (!table_->selectionModel()->isSelected(current)) MarkRow(current.row());  // reached by Tab
            emit RowChosen(current.row());
          });
  connect(table_->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int section) {
    const QString command = heading_commands_.value(section);
    if (!command.isEmpty()) emit HeadingClicked(command);
  });
  connect(table_->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int section) {
    if (section != wide_column_) RememberColumns();  // the wide one follows the window
  });
  connect(table_->horizontalHeader(), &QHeaderView::sectionMoved, this, &RegisterView::RememberColumns);
  read_timer_.setInterval(0);
  connect(&read_timer_, &QTimer::timeout, this, &RegisterView::ReadSlice);
  search_timer_.setInterval(0);
  connect(&search_timer_, &QTimer::timeout, this, &RegisterView::SearchSlice);
}

void RegisterView::Show(const Control& control) {
  const QScopedValueRollback guard(placing_, true);
  if (model_->Source() != control.source.get()) {
    columns_placed_ = false;  // other rows, other widths
    if (control.source) control.source->ReadOn(std::chrono::milliseconds(kSliceMs));
    model_->SetSource(control.source);
  } else {
    model_->Refresh();
  }
  if (!columns_placed_ && model_->columnCount() > 0) PlaceColumns();
  table_->horizontalHeader()->setSectionsClickable(!heading_commands_.isEmpty());
  if (control.selected > 0 && control.selected <= model_->rowCount()) {
    if (table_->currentIndex().row() != control.selected - 1) MarkRow(control.selected - 1);
  } else if (control.selected == 0) {
    table_->selectionModel()->clear();
  }
  reading_since_.start();
  ReadSlice();
}

// The last slice brings rows up to date that were known under another count.
void RegisterView::ReadSlice() {
  const QScopedValueRollback guard(placing_, true);
  RowSource* source = model_->Source();
  const bool more = source != nullptr && source->ReadOn(std::chrono::milliseconds(kSliceMs));
  const bool shrunk = source != nullptr && static_cast<int>(source->RowsKnown()) < model_->rowCount();
  shrunk ? model_->Refresh() : model_->Grow();
  if (!columns_placed_ && model_->columnCount() > 0) PlaceColumns();
  more ? read_timer_.start() : read_timer_.stop();
  const std::string of_source = source != nullptr ? source->EmptyText() : std::string();
  empty_->setText(of_source.empty() ? empty_text_ : QString::fromStdString(of_source));
  empty_->setVisible(model_->rowCount() == 0 && !more);
  ShowCount();
}

void RegisterView::ShowCount() {
  const int rows = model_->rowCount();
  QString text = QLocale().toString(rows) + (rows == 1 ? tr(" row") : tr(" rows"));
  RowSource* source = model_->Source();
  const QString total = source != nullptr ? QString::fromStdString(source->Total()) : QString();
  if (!total.isEmpty()) text += tr("     Total %1").arg(total);
  if (source != nullptr && read_timer_.isActive() && reading_since_.elapsed() > kLongMs)
    text += tr("     reading, %1 %").arg(source->PercentRead());
  totals_->setText(text);
}

void RegisterView::MarkRow(int row) {
  const QScopedValueRollback guard(placing_, true);
  table_->selectRow(row);
}

void RegisterView::MarkHeading(const QString& command) {
  model_->MarkHeading(static_cast<int>(heading_commands_.indexOf(command)));
}

void RegisterView::SearchFrom(QLineEdit* box) {
  box_ = box;
  box_->installEventFilter(this);
  connect(box_, &QLineEdit::textEdited, this, [this] { StartSearch(false); });
}

void RegisterView::StartSearch(bool next) {
  search_timer_.stop();
  SetStyleProperty(*box_, "refused", false);
  ShowCount();
  const QString text = box_->text().trimmed();
  const bool goes_on = text.startsWith(wanted_.text) || wanted_.text.startsWith(text);
  if (text.isEmpty() || !goes_on) search_origin_.reset();
  if (text.isEmpty() || model_->rowCount() == 0) return;
  wanted_ = {text, Currency::ParseTyped(text.toStdString())};
  const int marked = table_->currentIndex().row();  // -1 where none is
  if (next) {
    search_origin_ = marked + 1;
  } else {
    if (!search_origin_) search_origin_ = std::max(marked, 0);
    if (const std::optional<int> row = IndexedRow()) return EndSearch(row);
  }
  search_from_ = *search_origin_;
  searched_ = 0;
  search_timer_.start();
}

// The row that an index leads to, where what was typed is its number, or is not shown in the rows, such as a
// file of a deposit. Else the first match downwards is wanted, which need not be the first one of the index.
std::optional<int> RegisterView::IndexedRow() {
  const auto found = model_->Source()->FindRow(wanted_.text.toStdString());
  if (!found) return std::nullopt;
  const std::vector<std::string> cells = model_->Source()->Row(*found);
  const bool is_number = !cells.empty() && wanted_.text == QString::fromStdString(cells.front());
  if (!is_number && Holds(cells)) return std::nullopt;
  model_->Grow();
  return static_cast<int>(*found);
}

// Texts hold what was typed; amounts are it, whatever way it was typed.
bool RegisterView::Holds(const std::vector<std::string>& cells) const {
  return std::any_of(cells.begin(), cells.end(), [this](const std::string& cell) {
    const bool is_amount = wanted_.amount && cell.size() > 3 && cell[cell.size() - 3] == '.';
    return QString::fromStdString(cell).contains(wanted_.text, Qt::CaseInsensitive) ||
           (is_amount && Currency::ParseTyped(cell) == wanted_.amount);
  });
}

void RegisterView::SearchSlice() {
  QElapsedTimer elapsed;
  elapsed.start();
  while (elapsed.elapsed() < kSliceMs) {
    const int rows = model_->rowCount();
    // From the last row the search goes on with the first one, but not past rows that are still to be read.
    if (search_from_ + searched_ >= rows && read_timer_.isActive()) return;
    if (searched_ >= rows) return EndSearch({});
    const int row = (search_from_ + searched_++) % rows;
    if (Holds(model_->Source()->Row(static_cast<std::size_t>(row)))) return EndSearch(row);
  }
}

void RegisterView::EndSearch(std::optional<int> found) {
  search_timer_.stop();
  if (found) {
    MarkRow(*found);
    table_->scrollTo(model_->index(*found, 0), QAbstractItemView::PositionAtCenter);
    return;
  }
  table_->selectionModel()->clear();
  SetStyleProperty(*box_, "refused", true);
  totals_->setText(tr("No row holds \"%1\".").arg(box_->text().trimmed()));
}

bool RegisterView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == box_ && event->type() == QEvent::FocusIn) search_origin_.reset();
  // The window's own Esc waits until the search is ended.
  if (watched == box_ && event->type() == QEvent::ShortcutOverride && !box_->text().isEmpty() &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    event->accept();
    return true;
  }
  if (watched == box_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
      StartSearch(true);
      return true;
    }
    if (key->key() == Qt::Key_Down) {
      table_->setFocus(Qt::TabFocusReason);
      if (table_->currentIndex().isValid()) emit RowChosen(table_->currentIndex().row());
      return true;
    }
    if (key->key() == Qt::Key_Escape && !box_->text().isEmpty()) {
      box_->clear();
      StartSearch(false);
      return true;
    }
    if (TypesWithAlt(*key)) return true;
  }
  return QWidget::eventFilter(watched, event);
}

void RegisterView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layout()->activate();
  const int top = table_->horizontalHeader()->sizeHint().height();
  FitWideColumn();
  empty_->setGeometry(24, top, std::max(table_->width() - 48, 0), std::max(table_->height() - top, 0));
}

// A register that lists other rows at times has other columns then, and remembers each.
QByteArray RegisterView::ColumnsKey() const {
  return "columns" + QByteArray::number(model_->columnCount());
}

void RegisterView::PlaceColumns() {
  columns_placed_ = model_->rowCount() > 0;  // an empty register does not know its widths yet
  QHeaderView* header = table_->horizontalHeader();
  const QByteArray kept = RememberedState(*this, ColumnsKey().constData());
  if (!kept.isEmpty() && header->restoreState(kept)) return FitWideColumn();
  const QFontMetrics metrics(table_->font());
  const int rows = std::min(model_->rowCount(), kSampleRows);
  for (int column = 0; column < model_->columnCount(); ++column) {
    int width =
        metrics.horizontalAdvance(model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    if (!heading_commands_.value(column).isEmpty()) width += kOrderMark;
    const std::string widest = model_->Source()->WidestText(static_cast<std::size_t>(column));
    width = std::max(width, metrics.horizontalAdvance(QString::fromStdString(widest)));
    for (int row = 0; row < rows; ++row) {
      width = std::max(width, metrics.horizontalAdvance(model_->index(row, column).data().toString()));
    }
    table_->setColumnWidth(column, width + kCellPadding);
  }
  FitWideColumn();
}

// Where the others leave too little, the last ones go out of sight.
void RegisterView::FitWideColumn() {
  if (wide_column_ < 0 || wide_column_ >= model_->columnCount()) return;
  QHeaderView* header = table_->horizontalHeader();
  const int least =
      QFontMetrics(table_->font()).horizontalAdvance(QString(kLeastLetters, 'n')) + kCellPadding;
  const int left = table_->viewport()->width() - header->length() + header->sectionSize(wide_column_);
  header->setSectionResizeMode(wide_column_, left < least ? QHeaderView::Interactive : QHeaderView::Stretch);
  if (left < least) header->resizeSection(wide_column_, least);
}

void RegisterView::RememberColumns() {
  if (placing_ || !columns_placed_ || !isVisible()) return;
  RememberState(*this, ColumnsKey().constData(), table_->horizontalHeader()->saveState());
}

}  // namespace tallwick
