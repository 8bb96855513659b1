// Small pieces that windows built in code are made of, on the grid of 8 pixels.
#pragma once

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tallwick {

template <class Widget>
Widget* Named(Widget* widget, const char* name) {
  widget->setObjectName(name);
  return widget;
}

template <class Layout>
Layout* Spaced(Layout* layout, int margin, int spacing) {
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(spacing);
  return layout;
}

inline QLabel* RoleLabel(const QString& text, const char* role) {
  auto* label = new QLabel(text);
  label->setProperty("role", role);
  return label;
}

// Labels stand left of their fields, right-aligned; their text comes from the control.
inline QFormLayout* FieldRows() {
  auto* rows = Spaced(new QFormLayout, 0, 8);
  rows->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
  rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  return rows;
}

inline void AddField(QFormLayout& rows, const QString& caption, QWidget* field) {
  auto* label = new QLabel(caption);
  label->setBuddy(field);
  rows.addRow(label, field);
}

// A list under its caption.
inline QVBoxLayout* CaptionAbove(const QString& caption, QWidget* list) {
  auto* column = Spaced(new QVBoxLayout, 0, 4);
  auto* label = new QLabel(caption);
  label->setBuddy(list);
  column->addWidget(label);
  column->addWidget(list, 1);
  return column;
}

inline QTreeWidget* CheckList(const char* name, int rows_seen) {
  auto* tree = Named(new QTreeWidget, name);
  tree->setUniformRowHeights(true);
  tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  tree->setMinimumHeight(rows_seen * (tree->fontMetrics().height() + 6) + 4);
  return tree;
}

// A button that Enter does not press from another control.
inline QPushButton* PlainButton(const char* name) {
  auto* button = Named(new QPushButton, name);
  button->setAutoDefault(false);
  return button;
}

inline QPushButton* MainButton(const char* name) {
  auto* button = Named(new QPushButton, name);
  button->setProperty("main", true);
  button->setDefault(true);
  return button;
}

}  // namespace tallwick
