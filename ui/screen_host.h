// One open screen: its form, its window and the binder between them. The window closes only when the form
// agrees, and remembers its place; both end together.
#pragma once

#include <QObject>
#include <QWidget>
#include <memory>

#include "core/form.h"
#include "ui/form_binder.h"

namespace tallwick {

class ScreenHost : public QObject {
  Q_OBJECT

 public:
  // Takes both. `window` has no parent that deletes it. `bank_code` is the bank selected when it is opened.
  ScreenHost(std::unique_ptr<Form> form, std::unique_ptr<QWidget> window, std::string bank_code);
  ~ScreenHost() override;

  // Shows the window and tells the form.
  void Open();
  // As Open, and returns when the screen has closed.
  void OpenAndWait();
  // Asks the form to close; false when the user kept it open.
  bool Close() { return binder_->Close(); }
  bool UseMode(std::string_view mode) { return binder_->UseMode(mode); }
  Form& TheForm() { return *form_; }
  QWidget& Window() { return *window_; }
  const std::string& BankCode() const { return bank_code_; }

 signals:
  // The form has closed; the host may be deleted later.
  void Closed();
  // F1 where no field has a help of its own.
  void HelpAsked();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddShortcuts();
  void ShowKeys(const QWidget* focused);
  void Escape();
  void Find();

  std::unique_ptr<Form> form_;
  std::unique_ptr<QWidget> window_;
  std::unique_ptr<FormBinder> binder_;
  std::string bank_code_;
};

}  // namespace tallwick
