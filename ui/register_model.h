// A register's rows as Qt wants them: cells are read from the RowSource when they are drawn, and the last few
// hundred rows are kept, so that a million rows scroll as smoothly as ten.
#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <memory>

#include "core/form.h"

namespace tallwick {

class RegisterModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit RegisterModel(QObject* parent = nullptr) : QAbstractTableModel(parent), cache_(kKeptRows) {}

  void SetSource(std::shared_ptr<RowSource> source);
  // Reads the count again and forgets the rows kept. The source is the same, its contents may not be.
  void Refresh();
  // Takes up the rows that a source has come to know of at its end.
  void Grow();
  // Marks the heading by which the rows are ordered; -1 = none.
  void MarkHeading(int section);
  RowSource* Source() const { return source_.get(); }

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  static constexpr int kKeptRows = 512;

  struct KeptRow {
    std::vector<std::string> cells;
    std::string style;
  };
  const KeptRow& Keep(int row) const;
  int CountRows() const;

  std::shared_ptr<RowSource> source_;
  std::vector<std::string> headings_;
  int rows_ = 0;
  int marked_heading_ = -1;
  mutable QCache<int, KeptRow> cache_;
};

}  // namespace tallwick
