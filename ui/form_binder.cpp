#include "ui/form_binder.h"

#include <QAbstractButton>
#include <QAction>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRegularExpression>
#include <algorithm>

#include "ui/register_view.h"

namespace tallwick {
namespace {

QString ObjectNameOf(const Control& control) {
  const QString name = QString::fromStdString(control.name);
  return control.index == 0 ? name : name + "_" + QString::number(control.index);
}

constexpr std::chrono::milliseconds kWorkSlice{12};  // the window answers between slices

// A field that is left shows the beginning of a long text.
void ShowBeginning(QWidget& widget, const QFocusEvent& left) {
  auto* edit = qobject_cast<QLineEdit*>(&widget);
  const bool comes_back =
      left.reason() == Qt::PopupFocusReason || left.reason() == Qt::ActiveWindowFocusReason;
  if (edit != nullptr && !comes_back) edit->home(false);
}

// Entered by a key or by the form. The mouse puts the cursor where it is pressed, and a field to which the
// cursor comes back from a box or a menu is as it was left.
bool IsEntered(Qt::FocusReason reason) {
  return reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason &&
         reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason;
}

QString WithoutMnemonic(QString caption) {
  caption.replace(QRegularExpression("&(.)"), "\\1");
  return caption.remove(QRegularExpression(":\\s*$"));
}

}  // namespace

FormBinder::FormBinder(Form& form, QWidget& window) : form_(form), window_(window) {
  work_timer_.setSingleShot(true);
  connect(&work_timer_, &QTimer::timeout, this, &FormBinder::WorkSlice);
  Bind();
  HideUnknownCommands();
  form_.Attach(this);
  for (const Control& control : form_.Controls()) Show(control);
  NameForScreenReaders();
}

FormBinder::~FormBinder() {
  form_.Attach(nullptr);
}

void FormBinder::Bind() {
  for (QLabel* label : window_.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) labels_[label->buddy()] = label;
  }
  for (QWidget* widget : window_.findChildren<QWidget*>()) {
    for (const auto& [property, with_text] : {std::pair("showWith", true), std::pair("showWithout", false)}) {
      const QVariant control = widget->property(property);
      if (control.isValid()) dependants_.push_back({widget, control.toString(), with_text});
    }
  }
  std::unordered_map<std::string, std::vector<QObject*>> by_name;
  for (QObject* object : window_.findChildren<QObject*>()) {
    const QVariant stands_for = object->property("control");
    const QString name = stands_for.isValid() ? stands_for.toString() : object->objectName();
    if (!name.isEmpty()) by_name[name.toStdString()].push_back(object);
  }
  for (const Control& control : form_.Controls()) {
    for (QObject* object : by_name[ObjectNameOf(control).toStdString()]) BindOne(*object, control);
  }
}

void FormBinder::BindOne(QObject& object, const Control& control) {
  std::unique_ptr<BoundWidget> bound = BindWidget(object, control, *this);
  if (!bound) return;
  if (QWidget* widget = bound->Widget()) {
    widget->installEventFilter(this);
    if (widget->focusProxy() != nullptr) widget->focusProxy()->installEventFilter(this);
  }
  controls_[&object] = &control;
  bound_[&control].push_back(std::move(bound));
}

void FormBinder::HideUnknownCommands() {
  for (QAction* action : window_.findChildren<QAction*>(QRegularExpression("^mnu"))) {
    if (!controls_.contains(action)) action->setVisible(false);
  }
  for (QMenu* menu : window_.findChildren<QMenu*>()) {
    const auto actions = menu->actions();
    menu->menuAction()->setVisible(std::any_of(actions.begin(), actions.end(), [](const QAction* action) {
      return action->isVisible() && !action->isSeparator();
    }));
  }
}

void FormBinder::NameForScreenReaders() {
  for (const auto& [object, control] : controls_) {
    auto* widget = qobject_cast<QWidget*>(const_cast<QObject*>(object));
    if (widget == nullptr) continue;
    const auto label = labels_.find(widget);
    const QString name =
        label != labels_.end() ? label->second->text() : QString::fromStdString(control->caption);
    if (widget->accessibleName().isEmpty()) widget->setAccessibleName(WithoutMnemonic(name));
    if (widget->accessibleDescription().isEmpty()) widget->setAccessibleDescription(widget->whatsThis());
    if (widget->focusProxy() != nullptr) widget->focusProxy()->setAccessibleName(widget->accessibleName());
  }
}

void FormBinder::Open() {
  opened_ = true;
  emit CaptionSet(QString::fromStdString(form_.Caption()));
  {
    const Running running(*this);
    form_.Opened();
  }
  if (form_.Focus() == nullptr) WidgetEntered(window_.focusWidget());
}

bool FormBinder::StopAsked() {
  return stop_watch_.StopAsked();
}

bool FormBinder::TakesWork() {
  work_waits_ = true;
  if (running_ == 0) work_timer_.start();
  return true;
}

// Not within an event: the form's other work, or a dialog over it, goes first.
void FormBinder::WorkSlice() {
  if (running_ > 0) return;
  work_waits_ = form_.WorkOn(kWorkSlice);
  if (work_waits_) work_timer_.start();
}

bool FormBinder::Close() {
  if (!form_.IsOpen()) return true;
  const Running running(*this);
  return form_.Close();
}

bool FormBinder::UseMode(std::string_view mode) {
  const Running running(*this);
  return form_.UseMode(mode);
}

// --- The form speaks.

void FormBinder::ControlChanged(const Control& control) {
  Show(control);
}

void FormBinder::FocusMoved(const Control& control) {
  cursor_ = &control;
  if (running_ == 0) PlaceCursor();
}

void FormBinder::CaptionChanged() {
  emit CaptionSet(QString::fromStdString(form_.Caption()));
}

void FormBinder::Closed() {
  emit FormClosed();
}

void FormBinder::Show(const Control& control) {
  const auto found = bound_.find(&control);
  if (found != bound_.end()) {
    for (const auto& bound : found->second) bound->Show(control);
  }
  ShowCaption(control);
  ShowDependants(control);
  MarkHeadings(control);
}

void FormBinder::ShowCaption(const Control& control) {
  const QWidget* widget = WidgetOf(control);
  const auto label = labels_.find(widget);
  if (label == labels_.end()) return;
  if (!control.caption.empty()) label->second->setText(QString::fromStdString(control.caption));
  label->second->setVisible(control.visible);
  label->second->setEnabled(control.enabled);
}

void FormBinder::ShowDependants(const Control& control) {
  const QString name = ObjectNameOf(control);
  const bool has_text = !(control.text.empty() && control.caption.empty());
  for (const Dependant& dependant : dependants_) {
    if (dependant.control == name) dependant.widget->setVisible(has_text == dependant.with_text);
  }
}

void FormBinder::MarkHeadings(const Control& control) {
  if (control.kind != ControlKind::kMenu || control.value != 1) return;
  const QString name = QString::fromStdString(control.name);
  for (RegisterView* view : window_.findChildren<RegisterView*>()) {
    if (view->HeadingCommands().contains(name)) view->MarkHeading(name);
  }
}

void FormBinder::PlaceCursor() {
  if (!form_.IsOpen()) return;
  const Control* control = cursor_ != nullptr ? cursor_ : form_.Focus();
  const bool moved = cursor_ != nullptr;
  cursor_ = nullptr;
  if (control == nullptr) return;
  QWidget* widget = WidgetOf(*control);
  if (widget == nullptr || !widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus) return;
  if (!widget->hasFocus()) {
    ++running_;  // the form knows already
    widget->setFocus(Qt::OtherFocusReason);
    --running_;
  }
  // A window that is not active yet is not told that the field is entered.
  if (moved) bound_[control].front()->SelectForTyping();
  if (control->refused) bound_[control].front()->SelectText();
}

// --- The user acts.

void FormBinder::TextTyped(const Control& control, const QString& text) {
  {
    const Running running(*this);
    form_.Change(control.name, text.toStdString(), control.index);
  }
  Show(control);
}

void FormBinder::CheckSet(const Control& control, int value) {
  {
    const Running running(*this);
    form_.SetCheck(control.name, value, control.index);
  }
  Show(control);
}

void FormBinder::RowChosen(const Control& control, int row) {
  {
    const Running running(*this);
    form_.Choose(control.name, row, control.index);
  }
  Show(control);
}

void FormBinder::RowMarked(const Control& control, int row, bool checked) {
  {
    const Running running(*this);
    form_.Mark(control.name, row, checked);
  }
  Show(control);
}

void FormBinder::Clicked(const Control& control) {
  {
    const Running running(*this);
    form_.Click(control.name, control.index);
  }
  ShowCalendarOf(WidgetOf(control));
}

// A button or menu command with the property "calendarOf" opens the calendar of the field that it names.
void FormBinder::ShowCalendarOf(const QObject* command) {
  const QString field_name = command != nullptr ? command->property("calendarOf").toString() : QString();
  if (field_name.isEmpty()) return;
  auto* field = window_.findChild<QLineEdit*>(field_name);
  const Control* control = ControlOf(field);
  if (control != nullptr && field->isEnabled()) {
    ShowCalendar(*field, *control, command->property("calendarTitle").toString());
  }
}

void FormBinder::CommandGiven(const QString& control_name) {
  {
    const Running running(*this);
    form_.Menu(control_name.toStdString());
  }
  if (const Control* control = form_.Find(control_name.toStdString())) Show(*control);
  ShowCalendarOf(window_.findChild<QAction*>(control_name));
}

const Control* FormBinder::ControlOf(const QObject* widget) const {
  for (; widget != nullptr && widget != &window_; widget = widget->parent()) {
    const auto found = controls_.find(widget);
    if (found != controls_.end()) return found->second;
  }
  return nullptr;
}

QWidget* FormBinder::WidgetOf(const Control& control) const {
  const auto found = bound_.find(&control);
  return found == bound_.end() ? nullptr : found->second.front()->Widget();
}

void FormBinder::WidgetEntered(QWidget* widget) {
  const Control* control = ControlOf(widget);
  if (control == nullptr || running_ > 0 || !opened_ || !form_.IsOpen()) return;
  const Running running(*this);
  form_.Enter(control->name, control->index);
}

// The form may have moved the cursor on when it was told of the entry.
void FormBinder::SelectForTyping(QWidget& widget) {
  const Control* control = ControlOf(&widget);
  if (control != nullptr && widget.hasFocus()) bound_[control].front()->SelectForTyping();
}

bool FormBinder::eventFilter(QObject* watched, QEvent* event) {
  auto* widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr) return false;
  if (event->type() == QEvent::FocusIn) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason != Qt::MouseFocusReason) {
      WidgetEntered(widget);
      if (IsEntered(reason)) SelectForTyping(*widget);
    } else if (qobject_cast<QAbstractButton*>(widget) == nullptr) {
      // Wait until the press has been dealt with: a message box shown from within it would swallow the
      // release. A button's click enters the button by itself.
      const QPointer<QWidget> later(widget);
      QMetaObject::invokeMethod(
          this,
          [this, later] {
            if (later && later->hasFocus()) WidgetEntered(later);
          },
          Qt::QueuedConnection);
    }
  }
  if (event->type() == QEvent::FocusOut) ShowBeginning(*widget, *static_cast<QFocusEvent*>(event));
  if (event->type() == QEvent::KeyPress) return HandleKey(*widget, *static_cast<QKeyEvent*>(event));
  return false;
}

}  // namespace tallwick
