#include "shell/session.h"

#include <algorithm>

#include "core/text.h"
#include "shell/clsLauncher.h"
#include "shell/clsSecurity.h"
#include "shell/company_tables.h"
#include "shell/rights.h"
#include "store/clsKVRData.h"

namespace tallwick {

Session::Session(const Ports& ports, std::unique_ptr<Suite> suite)
    : ports_(ports), suite_(std::move(suite)), user_(std::make_unique<clsSecurity>()) {}

Session::~Session() = default;

void Session::SetBank(std::string_view code, std::string_view name) {
  bank_code_ = Trim(code);
  bank_name_ = Trim(name);
  NotifyChanged(SessionChange::kBank);
}

bool Session::MayUse(int right) const {
  return MayUse(right, suite_->SecurityOn());
}

bool Session::MayUse(int right, bool security_on) const {
  return !security_on || user_->MayUse(right);
}

bool Session::MayUseBank(std::string_view bank_code) const {
  return !suite_->SecurityOn() || user_->MayUseBank(bank_code);
}

bool Session::MayReadUser(std::string_view login) const {
  const bool own = user_->bLoggedIn && EqualsIgnoreCase(user_->osLogin, Trim(login));
  return own || MayUse(kAdministrator);
}

std::string Session::Login() const {
  return std::string(Trim(suite_->Login()));
}

void Session::ReloadUser() {
  *user_ = clsSecurity();
  if (suite_->SecurityOn()) user_->LoadUserSecurity(*home_, Login());
  NotifyChanged(SessionChange::kUser);
}

void Session::SetPrinter(std::string_view printer) {
  printer_ = printer;
  NotifyChanged(SessionChange::kPrinter);
}

void Session::NotifyChanged(SessionChange change) {
  // A watcher may go, or come, while it is told.
  const std::vector<SessionWatcher*> watchers = watchers_;
  for (SessionWatcher* watcher : watchers) {
    if (std::find(watchers_.begin(), watchers_.end(), watcher) != watchers_.end())
      watcher->SessionChanged(change);
  }
}

void Session::Watch(SessionWatcher* watcher) {
  watchers_.push_back(watcher);
}

void Session::Unwatch(SessionWatcher* watcher) {
  std::erase(watchers_, watcher);
}

}  // namespace tallwick
