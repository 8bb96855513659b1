#include "ui/bound_widget.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QCompleter>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <array>

#include "ui/register_view.h"
#include "ui/rtf_text.h"
#include "ui/style.h"

namespace tallwick {
namespace {

bool IsCheckValue(const Control& control) {
  return control.kind == ControlKind::kCheck || control.kind == ControlKind::kOption;
}

// What every widget shows of its control.
void ShowState(QWidget& widget, const Control& control) {
  widget.setEnabled(control.enabled);
  widget.setVisible(control.visible);
  SetStyleProperty(widget, "refused", control.refused);
}

void ShowNegative(QWidget& widget, const QString& text) {
  const bool negative =
      text.size() > 1 && text[0] == '-' && (text[1].isDigit() || text[1] == '$' || text[1] == '.');
  SetStyleProperty(widget, "negative", negative);
}

// Line breaks and tabs that come with a paste stand in a field of one line as signs: a form that refuses them
// is understood only where they are seen.
constexpr QChar kBreakSign(0x21B5);
constexpr QChar kTabSign(0x21E5);

QString WithSigns(QString text) {
  text.replace("\r\n", kBreakSign);
  for (const QChar line_break : {QChar('\n'), QChar('\r'), QChar(QChar::LineSeparator)}) {
    text.replace(line_break, kBreakSign);
  }
  return text.replace('\t', kTabSign);
}

QString WithoutSigns(QString text) {
  return text.replace(kBreakSign, '\n').replace(kTabSign, '\t');
}

// Keys that are no business of the offers go on to the field, with whatever listens there, as if none were
// shown: Enter while no offer is marked, the function keys, and what is pressed with Alt, Ctrl or Meta. An
// offer that is marked stands in the field and is taken with them. Esc leaves what was typed.
class KeysPastOffers : public QObject {
 public:
  KeysPastOffers(QCompleter& completer, QLineEdit& edit, const Control& control)
      : QObject(&completer),
        completer_(completer),
        popup_(*completer.popup()),
        edit_(edit),
        control_(control) {
    popup_.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    // The window hears of its own keys before the offers do.
    if (event->type() == QEvent::ShortcutOverride) {
      const auto& key = *static_cast<QKeyEvent*>(event);
      if (IsEsc(key)) {
        event->accept();
        return true;
      }
      if (IsCommand(key)) Leave();
    }
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (IsEsc(key)) {
      popup_.hide();
      edit_.setText(WithSigns(QString::fromStdString(control_.text)));
      return true;
    }
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    const bool function = key.key() >= Qt::Key_F1 && key.key() <= Qt::Key_F12;
    if (!function && !IsCommand(key) && (!enter || popup_.currentIndex().isValid())) return false;
    Leave();
    QCoreApplication::sendEvent(&edit_, event);
    return true;
  }

 private:
  static bool IsEsc(const QKeyEvent& key) { return key.matches(QKeySequence::Cancel); }
  // Not the modifiers by themselves, which switch keyboards, nor signs that AltGr types.
  static bool IsCommand(const QKeyEvent& key) {
    constexpr std::array kModifierKeys = {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr,
                                          Qt::Key_Meta};
    if (std::find(kModifierKeys.begin(), kModifierKeys.end(), key.key()) != kModifierKeys.end()) return false;
    const bool alt = key.modifiers().testFlag(Qt::AltModifier);
    const bool ctrl = key.modifiers().testFlag(Qt::ControlModifier);
    const bool types = alt && ctrl && !key.text().isEmpty() && key.text().front().isPrint();
    return !types && (alt || ctrl || key.modifiers().testFlag(Qt::MetaModifier));
  }
  void Leave() {
    const QModelIndex marked = popup_.currentIndex();
    popup_.hide();
    if (marked.isValid()) emit completer_.activated(marked.data().toString());
  }

  QCompleter& completer_;
  QAbstractItemView& popup_;
  QLineEdit& edit_;
  const Control& control_;
};

class BoundLineEdit : public BoundWidget {
 public:
  BoundLineEdit(QLineEdit& edit, const Control& control, WidgetEvents& events) : edit_(edit) {
    const bool number = control.kind == ControlKind::kAmount || control.kind == ControlKind::kNumber;
    if (number) edit.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QObject::connect(&edit, &QLineEdit::textEdited, &edit, [this, &control, &events](const QString& text) {
      ShowBreaks(text);
      events.TextTyped(control, WithoutSigns(edit_.text()));
    });
    if (control.kind == ControlKind::kCombo) OfferRows(control, events);
  }
  void Show(const Control& control) override {
    const QString text = WithSigns(QString::fromStdString(control.text));
    if (edit_.text() != text) {
      edit_.setText(text);
      // Put there while the cursor stands in it, it is replaced by typing; else a long text is seen from its
      // beginning.
      edit_.hasFocus() ? edit_.selectAll() : edit_.home(false);
    }
    if (offers_ != nullptr) {
      QStringList rows;
      for (const std::string& row : control.rows) rows << QString::fromStdString(row);
      if (offers_->stringList() != rows) offers_->setStringList(rows);
    }
    ShowNegative(edit_, text);
    ShowState(edit_, control);
  }
  QWidget* Widget() const override { return &edit_; }
  void SelectText() override { edit_.selectAll(); }
  void SelectForTyping() override { edit_.selectAll(); }

 private:
  void ShowBreaks(const QString& typed) {
    const QString shown = WithSigns(typed);
    if (shown == typed) return;
    const auto behind = typed.size() - edit_.cursorPosition();
    edit_.setText(shown);
    edit_.setCursorPosition(static_cast<int>(shown.size() - behind));
  }

  // The rows of a combo drop down under the text while it is typed; the form has chosen them already.
  void OfferRows(const Control& control, WidgetEvents& events) {
    auto* completer = new QCompleter(&edit_);
    offers_ = new QStringListModel(completer);
    completer->setModel(offers_);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    edit_.setCompleter(completer);
    new KeysPastOffers(*completer, edit_, control);  // the completer's child
    const auto choose = [this, &control, &events](const QString& text) {
      const auto row = offers_->stringList().indexOf(text);
      if (row >= 0) events.RowChosen(control, static_cast<int>(row) + 1);
    };
    // Not with the field as receiver: a field that loses the focus drops what its completer tells it.
    QObject::connect(completer, qOverload<const QString&>(&QCompleter::activated), completer, choose);
  }

  QLineEdit& edit_;
  QStringListModel* offers_ = nullptr;
};

// A text of several lines, in which Enter makes a new one: it is not selected when it is entered, or Enter
// would wipe it out.
class BoundTextEdit : public BoundWidget {
 public:
  BoundTextEdit(QPlainTextEdit& edit, const Control& control, WidgetEvents& events) : edit_(edit) {
    edit.setTabChangesFocus(true);
    QObject::connect(&edit, &QPlainTextEdit::textChanged, &edit,
                     [&] { events.TextTyped(control, edit_.toPlainText()); });
  }
  void Show(const Control& control) override {
    const QSignalBlocker quiet(edit_);
    const QString text = ShownText(control.text);
    if (edit_.toPlainText() != text) edit_.setPlainText(text);
    ShowState(edit_, control);
  }
  QWidget* Widget() const override { return &edit_; }
  void SelectText() override { edit_.selectAll(); }

 private:
  QPlainTextEdit& edit_;
};

// A text to read: HTML, or RTF of the program's own. A link is told as the text that it names.
class BoundBrowser : public BoundWidget {
 public:
  BoundBrowser(QTextBrowser& browser, const Control& control, WidgetEvents& events) : browser_(browser) {
    QObject::connect(&browser, &QTextBrowser::anchorClicked, &browser,
                     [&control, &events](const QUrl& link) { events.TextTyped(control, link.toString()); });
  }
  void Show(const Control& control) override {
    if (shown_ != control.text) {
      shown_ = control.text;
      browser_.setHtml(IsRtf(shown_) ? HtmlOfRtf(shown_) : QString::fromStdString(shown_));
    }
    ShowState(browser_, control);
  }
  QWidget* Widget() const override { return &browser_; }

 private:
  QTextBrowser& browser_;
  std::string shown_;
};

class BoundCombo : public BoundWidget {
 public:
  BoundCombo(QComboBox& combo, const Control& control, WidgetEvents& events) : combo_(combo) {
    combo.setInsertPolicy(QComboBox::NoInsert);
    QObject::connect(&combo, &QComboBox::editTextChanged, &combo,
                     [&](const QString& text) { events.TextTyped(control, text); });
    QObject::connect(&combo, &QComboBox::activated, &combo,
                     [&](int row) { events.RowChosen(control, row + 1); });
  }
  void Show(const Control& control) override {
    const QSignalBlocker quiet(combo_);
    if (rows_ != control.rows) {
      rows_ = control.rows;
      combo_.clear();
      QStringList items;
      for (const std::string& row : rows_) items << QString::fromStdString(row);
      combo_.addItems(items);
    }
    combo_.setCurrentIndex(control.selected - 1);
    const QString text = QString::fromStdString(control.text);
    if (combo_.isEditable() && combo_.currentText() != text) combo_.setEditText(text);
    ShowState(combo_, control);
  }
  QWidget* Widget() const override { return &combo_; }
  void SelectText() override {
    if (combo_.isEditable()) combo_.lineEdit()->selectAll();
  }
  void SelectForTyping() override { SelectText(); }

 private:
  QComboBox& combo_;
  std::vector<std::string> rows_;
};

class BoundList : public BoundWidget {
 public:
  BoundList(QListWidget& list, const Control& control, WidgetEvents& events) : list_(list) {
    QObject::connect(&list, &QListWidget::currentRowChanged, &list, [&](int row) {
      if (row < 0) return;
      events.RowChosen(control, row + 1);
      // A form may keep the row it was at; the list would still go on to the new one when this returns.
      if (control.selected == row + 1) return;
      QTimer::singleShot(0, &list, [&] { Mark(control); });
    });
    QObject::connect(&list, &QListWidget::itemDoubleClicked, &list, [&] { events.RowTaken(control); });
  }
  void Show(const Control& control) override {
    const QSignalBlocker quiet(list_);
    if (rows_ != control.rows) {
      rows_ = control.rows;
      list_.clear();
      for (const std::string& row : rows_) list_.addItem(QString::fromStdString(row));
    }
    Mark(control);
    ShowState(list_, control);
  }
  QWidget* Widget() const override { return &list_; }

 private:
  // The current row may be back already while the one that was left is still selected: both are set together.
  void Mark(const Control& control) {
    const QSignalBlocker quiet(list_);
    list_.setCurrentRow(control.selected - 1);
  }

  QListWidget& list_;
  std::vector<std::string> rows_;
};

// Rows with a check mark each; rows of a level stand below the last one of the level above.
class BoundCheckList : public BoundWidget {
 public:
  BoundCheckList(QTreeWidget& tree, const Control& control, WidgetEvents& events) : tree_(tree) {
    tree.setHeaderHidden(true);
    tree.setColumnCount(1);
    tree.setExpandsOnDoubleClick(false);
    QObject::connect(&tree, &QTreeWidget::itemChanged, &tree, [&](const QTreeWidgetItem* item) {
      const int row = item->data(0, Qt::UserRole).toInt();
      events.RowMarked(control, row, item->checkState(0) == Qt::Checked);
    });
  }
  void Show(const Control& control) override {
    const QSignalBlocker quiet(tree_);
    if (rows_ != control.rows || levels_ != control.levels) Build(control);
    for (std::size_t row = 0; row < items_.size(); ++row) {
      const Qt::CheckState state = control.marks[row] ? Qt::Checked : Qt::Unchecked;
      if (items_[row]->checkState(0) != state) items_[row]->setCheckState(0, state);
    }
    tree_.viewport()->update();  // with its signals blocked the tree does not know
    ShowState(tree_, control);
  }
  QWidget* Widget() const override { return &tree_; }

 private:
  void Build(const Control& control) {
    rows_ = control.rows;
    levels_ = control.levels;
    tree_.clear();
    items_.clear();
    QTreeWidgetItem* parent = nullptr;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      const bool below = levels_[row] > 0 && parent != nullptr;
      auto* item = below ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(&tree_);
      item->setText(0, QString::fromStdString(rows_[row]));
      item->setData(0, Qt::UserRole, static_cast<int>(row) + 1);
      item->setCheckState(0, Qt::Unchecked);
      if (!below) parent = item;
      items_.push_back(item);
    }
    const bool is_tree = std::any_of(levels_.begin(), levels_.end(), [](int level) { return level > 0; });
    tree_.setRootIsDecorated(is_tree);
    if (is_tree) tree_.expandAll();
    if (tree_.topLevelItemCount() > 0) tree_.setCurrentItem(tree_.topLevelItem(0));
  }

  QTreeWidget& tree_;
  std::vector<std::string> rows_;
  std::vector<int> levels_;
  std::vector<QTreeWidgetItem*> items_;  // by row; the tree owns them
};

// Push buttons, tool buttons, check boxes and options. A push button may stand for a menu command too.
class BoundButton : public BoundWidget {
 public:
  BoundButton(QAbstractButton& button, const Control& control, WidgetEvents& events) : button_(button) {
    QObject::connect(&button, &QAbstractButton::clicked, &button, [&](bool checked) {
      if (IsCheckValue(control)) return events.CheckSet(control, checked ? 1 : 0);
      if (control.kind == ControlKind::kMenu)
        return events.CommandGiven(QString::fromStdString(control.name));
      events.Clicked(control);
    });
  }
  void Show(const Control& control) override {
    const QSignalBlocker quiet(button_);
    const QString caption = QString::fromStdString(control.caption);
    if (!caption.isEmpty() && !button_.property("ownText").toBool()) button_.setText(caption);
    if (button_.isCheckable()) button_.setChecked(control.value == 1);
    ShowState(button_, control);
  }
  QWidget* Widget() const override { return &button_; }

 private:
  QAbstractButton& button_;
};

class BoundLabel : public BoundWidget {
 public:
  explicit BoundLabel(QLabel& label) : label_(label) { label.setTextFormat(Qt::PlainText); }
  void Show(const Control& control) override {
    const QString text = ShownText(control.text.empty() ? control.caption : control.text);
    if (label_.text() != text) label_.setText(text);
    ShowNegative(label_, text);
    ShowState(label_, control);
  }
  QWidget* Widget() const override { return &label_; }

 private:
  QLabel& label_;
};

// Shows a control's value as a percentage.
class BoundProgress : public BoundWidget {
 public:
  explicit BoundProgress(QProgressBar& bar) : bar_(bar) { bar.setRange(0, 100); }
  void Show(const Control& control) override {
    bar_.setValue(control.value);
    ShowState(bar_, control);
  }
  QWidget* Widget() const override { return &bar_; }

 private:
  QProgressBar& bar_;
};

class BoundRegister : public BoundWidget {
 public:
  BoundRegister(RegisterView& view, const Control& control, WidgetEvents& events) : view_(view) {
    QObject::connect(&view, &RegisterView::RowChosen, &view,
                     [&](int row) { events.RowChosen(control, row + 1); });
    QObject::connect(&view, &RegisterView::HeadingClicked, &view,
                     [&events](const QString& command) { events.CommandGiven(command); });
    QObject::connect(&view.Table(), &QTableView::doubleClicked, &view, [&] { events.RowTaken(control); });
  }
  void Show(const Control& control) override {
    view_.Show(control);
    ShowState(view_, control);
  }
  QWidget* Widget() const override { return &view_; }

 private:
  RegisterView& view_;
};

class BoundCommand : public BoundWidget {
 public:
  BoundCommand(QAction& action, const Control& control, WidgetEvents& events) : action_(action) {
    QObject::connect(&action, &QAction::triggered, &action,
                     [&] { events.CommandGiven(QString::fromStdString(control.name)); });
  }
  void Show(const Control& control) override {
    // Its signals stay on: tool bars and menus follow them, and none of them is "triggered".
    if (!control.caption.empty()) action_.setText(QString::fromStdString(control.caption));
    if (control.value == 1) action_.setCheckable(true);
    if (action_.isCheckable()) action_.setChecked(control.value == 1);
    action_.setEnabled(control.enabled);
    action_.setVisible(control.visible);
  }
  QWidget* Widget() const override { return nullptr; }

 private:
  QAction& action_;
};

class BoundPlain : public BoundWidget {
 public:
  explicit BoundPlain(QWidget& widget) : widget_(widget) {}
  void Show(const Control& control) override { ShowState(widget_, control); }
  QWidget* Widget() const override { return &widget_; }

 private:
  QWidget& widget_;
};

}  // namespace

std::unique_ptr<BoundWidget> BindWidget(QObject& object, const Control& control, WidgetEvents& events) {
  if (auto* edit = qobject_cast<QLineEdit*>(&object))
    return std::make_unique<BoundLineEdit>(*edit, control, events);
  if (auto* text = qobject_cast<QPlainTextEdit*>(&object)) {
    return std::make_unique<BoundTextEdit>(*text, control, events);
  }
  if (auto* browser = qobject_cast<QTextBrowser*>(&object)) {
    return std::make_unique<BoundBrowser>(*browser, control, events);
  }
  if (auto* combo = qobject_cast<QComboBox*>(&object))
    return std::make_unique<BoundCombo>(*combo, control, events);
  if (auto* list = qobject_cast<QListWidget*>(&object))
    return std::make_unique<BoundList>(*list, control, events);
  if (auto* tree = qobject_cast<QTreeWidget*>(&object))
    return std::make_unique<BoundCheckList>(*tree, control, events);
  if (auto* button = qobject_cast<QAbstractButton*>(&object)) {
    return std::make_unique<BoundButton>(*button, control, events);
  }
  if (auto* label = qobject_cast<QLabel*>(&object)) return std::make_unique<BoundLabel>(*label);
  if (auto* bar = qobject_cast<QProgressBar*>(&object)) return std::make_unique<BoundProgress>(*bar);
  if (auto* view = qobject_cast<RegisterView*>(&object))
    return std::make_unique<BoundRegister>(*view, control, events);
  if (auto* action = qobject_cast<QAction*>(&object))
    return std::make_unique<BoundCommand>(*action, control, events);
  if (auto* widget = qobject_cast<QWidget*>(&object)) return std::make_unique<BoundPlain>(*widget);
  return nullptr;
}

bool TypesWithAlt(const QKeyEvent& key) {
  constexpr Qt::KeyboardModifiers kOthers =
      Qt::ControlModifier | Qt::MetaModifier | Qt::GroupSwitchModifier;  // AltGr comes as one of these
  const bool alt_alone = key.modifiers().testFlag(Qt::AltModifier) && (key.modifiers() & kOthers) == 0;
  return alt_alone && !key.text().isEmpty() && key.text().front().isPrint();
}

QString ShownText(std::string_view text) {
  QString shown = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  return shown;
}

}  // namespace tallwick
