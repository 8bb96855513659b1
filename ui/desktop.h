// The running desktop: the application's screens in windows. Screens open each other through it.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <vector>

#include "app/application.h"
#include "ui/screen_host.h"

namespace tallwick {

inline constexpr std::string_view kMainScreen = "frmMainEscrowAccounting";

class Desktop : public QObject, public ScreenOpener {
  Q_OBJECT

 public:
  // The ports must outlive the desktop.
  explicit Desktop(const Ports& ports) : ports_(ports) {}
  ~Desktop() override;

  // Starts the application and opens the main window; false after a message.
  bool Start(const SuiteFactory& attach);
  // Opens the screen in a window of its own; one that stands open for the selected bank already comes to the
  // front. A dialog has closed when this returns.
  void OpenScreen(std::string_view screen, std::string_view mode) override;
  void OpenItem(std::string_view screen, std::string_view mode, const std::vector<KeyText>& key) override;
  // A screen in the catalogue that has a window.
  bool Offers(std::string_view screen, std::string_view mode) const override;

  Session& TheSession() { return application_->TheSession(); }
  // The one opened last; null where the screen is not open.
  ScreenHost* Find(std::string_view screen) const;

 signals:
  // The main window has closed, and every other with it.
  void Ended();

 private:
  // The open screen of a bank that shows the mode, or has changed to it.
  ScreenHost* FindForBank(std::string_view screen, std::string_view mode, std::string_view bank_code) const;
  void ScreenClosed(ScreenHost& host);
  // False when the user kept one open.
  bool CloseOthers();

  Ports ports_;
  std::unique_ptr<Application> application_;
  std::vector<std::unique_ptr<ScreenHost>> hosts_;  // the main window's first
  // Closed from within their own event: they go when it has ended, and at the latest before the session.
  std::vector<QPointer<ScreenHost>> closed_;
  QTimer look_around_;
};

}  // namespace tallwick
