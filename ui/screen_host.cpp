#include "ui/screen_host.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <algorithm>

#include "ui/register_view.h"
#include "ui/window_memory.h"

namespace tallwick {

ScreenHost::ScreenHost(std::unique_ptr<Form> form, std::unique_ptr<QWidget> window, std::string bank_code)
    : form_(std::move(form)),
      window_(std::move(window)),
      binder_(std::make_unique<FormBinder>(*form_, *window_)),
      bank_code_(std::move(bank_code)) {
  window_->installEventFilter(this);
  AddShortcuts();
  connect(binder_.get(), &FormBinder::CaptionSet, window_.get(), &QWidget::setWindowTitle);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) { ShowKeys(now); });
  connect(binder_.get(), &FormBinder::EventEnded, this, [this] { ShowKeys(window_->focusWidget()); });
  connect(binder_.get(), &FormBinder::FormClosed, this, [this] {
    RememberWindow(*window_);
    window_->hide();
    emit Closed();
  });
}

ScreenHost::~ScreenHost() {
  qApp->disconnect(this);
}  // the window's end moves the focus once more

void ScreenHost::Open() {
  RestoreWindow(*window_, window_->size());
  window_->show();
  binder_->Open();
  RestoreChoices(*window_);
}

void ScreenHost::OpenAndWait() {
  QEventLoop loop;
  connect(this, &ScreenHost::Closed, &loop, &QEventLoop::quit);
  Open();
  if (form_->IsOpen()) loop.exec(QEventLoop::DialogExec);
}

void ScreenHost::AddShortcuts() {
  const auto pass = [this](const char* key) {
    connect(new QShortcut(QKeySequence(key), window_.get()), &QShortcut::activated, this,
            [this, key] { binder_->PassKey(key); });
  };
  for (const char* key : {"F5", "Ctrl+P"}) pass(key);
  const QKeySequence book("Shift+F1");
  const QList<QAction*> commands = window_->findChildren<QAction*>();
  const bool has_command = std::any_of(commands.begin(), commands.end(),
                                       [&](const QAction* one) { return one->shortcut() == book; });
  if (!has_command) {
    connect(new QShortcut(book, window_.get()), &QShortcut::activated, this, &ScreenHost::HelpAsked);
  }
  connect(new QShortcut(QKeySequence("Esc"), window_.get()), &QShortcut::activated, this,
          &ScreenHost::Escape);
  connect(new QShortcut(QKeySequence("Ctrl+F"), window_.get()), &QShortcut::activated, this,
          &ScreenHost::Find);
}

// From the find box back to the entry.
void ScreenHost::Escape() {
  const QWidget* at = window_->focusWidget();
  if (at != nullptr && at->property("finds").isValid() && binder_->GoToFirstField()) return;
  if (!binder_->PassKey("Esc") && window_->property("escCloses").toBool()) binder_->Close();
}

void ScreenHost::Find() {
  if (binder_->PassKey("Ctrl+F")) return;
  for (QLineEdit* box : window_->findChildren<QLineEdit*>()) {
    if (!box->property("finds").isValid()) continue;
    box->setFocus(Qt::ShortcutFocusReason);
    box->selectAll();
    return;
  }
  for (QWidget* widget : window_->findChildren<QWidget*>()) {
    if (widget->property("focusBy").toString() == "Ctrl+F") widget->setFocus(Qt::ShortcutFocusReason);
  }
}

void ScreenHost::ShowKeys(const QWidget* focused) {
  auto* label = window_->findChild<QLabel*>("lblKeys");
  if (label != nullptr && focused != nullptr && window_->isAncestorOf(focused)) {
    label->setText(binder_->KeysOf(*focused));
  }
}

bool ScreenHost::eventFilter(QObject* watched, QEvent* event) {
  if (watched != window_.get()) return false;
  if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool help = key->key() == Qt::Key_F1 && key->modifiers() == Qt::NoModifier;
    if (help) emit HelpAsked();
    return help;
  }
  if (event->type() != QEvent::Close) return false;
  event->setAccepted(binder_->Close());
  return true;
}

}  // namespace tallwick
