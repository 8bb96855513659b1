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

bool Session::SecurityOn() {
  if (SecuredLogin() != loaded_for_) {
    LoadUser();
    if (!bank_code_.empty() && !MayUseBank(bank_code_)) SetBank({}, {});
    NotifyChanged(SessionChange::kUser);
  }
  return loaded_for_.has_value();
}

bool Session::MayUse(int right) {
  return MayUse(right, SecurityOn());
}

bool Session::MayUse(int right, bool security_on) const {
  return !security_on || user_->MayUse(right);
}

bool Session::MayUseBank(std::string_view bank_code) {
  return !SecurityOn() || user_->MayUseBank(bank_code);
}

bool Session::MayReadUser(std::string_view login) {
  if (MayUse(kAdministrator)) return true;
  return user_->bLoggedIn && EqualsIgnoreCase(user_->osLogin, Trim(login));
}

std::string Session::Login() const {
  return std::string(Trim(suite_->Login()));
}

std::optional<std::string> Session::SecuredLogin() const {
  return suite_->SecurityOn() ? std::optional(Login()) : std::nullopt;
}

void Session::LoadUser() {
  loaded_for_ = SecuredLogin();
  *user_ = clsSecurity();
  if (loaded_for_) user_->LoadUserSecurity(*home_, *loaded_for_);
}

void Session::ReloadUser() {
  LoadUser();
  NotifyChanged(SessionChange::kUser);
}

std::string Session::UserProblem() const {
  if (!loaded_for_) return {};
  const std::string problem = clsSecurity::UsersProblem(*home_);
  if (!problem.empty()) return problem + ".";
  if (user_->bLoggedIn) return {};
  if (loaded_for_->empty()) return "Nobody is logged in to the suite.";
  return Quoted(*loaded_for_) + " is not among the users.  Have an administrator add the login.";
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
