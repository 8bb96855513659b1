#include "ui/register_model.h"

#include <QFont>
#include <QGuiApplication>

#include "core/text.h"
#include "ui/style.h"

namespace tallwick {
namespace {

constexpr QStringView kOrderMark = u" \u25BE";  // a triangle behind the word

// Colour beside the status word; an invalid colour leaves the row plain.
QVariant RowColor(const std::string& style, bool negative) {
  const QPalette palette = QGuiApplication::palette();
  if (style == "stopped" || negative) return palette.color(kAlarmRole);
  if (style == "cleared" || style == "voided") return palette.color(kMutedRole);
  return {};
}

}  // namespace

void RegisterModel::SetSource(std::shared_ptr<RowSource> source) {
  beginResetModel();
  source_ = std::move(source);
  headings_ = source_ ? source_->Headings() : std::vector<std::string>();
  rows_ = CountRows();
  cache_.clear();
  endResetModel();
}

void RegisterModel::Refresh() {
  cache_.clear();
  Grow();
  if (const int rows = CountRows(); rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
  if (rows_ > 0) emit dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

void RegisterModel::Grow() {
  const int rows = CountRows();
  if (rows <= rows_) return;
  beginInsertRows({}, rows_, rows - 1);
  rows_ = rows;
  endInsertRows();
}

void RegisterModel::MarkHeading(int section) {
  marked_heading_ = section;
  if (columnCount() > 0) emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int RegisterModel::CountRows() const {
  constexpr std::size_t kMost = 100'000'000;  // beyond what a view's pixels can address
  return source_ ? static_cast<int>(std::min(source_->RowsKnown(), kMost)) : 0;
}

int RegisterModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(headings_.size());
}

const RegisterModel::KeptRow& RegisterModel::Keep(int row) const {
  if (KeptRow* kept = cache_.object(row)) return *kept;
  const auto number = static_cast<std::size_t>(row);
  auto* fresh = new KeptRow{source_->Row(number), source_->RowStyle(number)};
  cache_.insert(row, fresh);
  return *fresh;  // NOLINT(clang-analyzer-cplusplus.NewDelete): a row costs 1, and the cache holds many
}

QVariant RegisterModel::data(const QModelIndex& index, int role) const {
  if (!source_ || !index.isValid() || index.row() >= rows_) return {};
  const auto column = static_cast<std::size_t>(index.column());
  const bool numeric = source_->IsNumeric(column);
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>((numeric ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole && role != Qt::ForegroundRole && role != Qt::FontRole) return {};
  const KeptRow& kept = Keep(index.row());
  if (column >= kept.cells.size()) return {};
  const std::string& cell = kept.cells[column];
  // Some status texts end with a blank, which a line through a voided row would show.
  if (role == Qt::DisplayRole) return QString::fromStdString(std::string(TrimRight(cell)));
  if (role == Qt::ForegroundRole) return RowColor(kept.style, numeric && cell.starts_with('-'));
  if (kept.style != "voided") return {};
  QFont font = QGuiApplication::font();
  font.setStrikeOut(true);
  return font;
}

QVariant RegisterModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const auto column = static_cast<std::size_t>(section);
  if (role == Qt::DisplayRole) {
    QString heading = QString::fromStdString(headings_[column]);
    return section == marked_heading_ ? heading.append(kOrderMark) : heading;
  }
  if (role == Qt::TextAlignmentRole) {
    return static_cast<int>((source_->IsNumeric(column) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  }
  return {};
}

}  // namespace tallwick
