#include "shell/user_changes.h"

#include <algorithm>

#include "core/text.h"
#include "shell/company_tables.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

// A bank that is newly allowed and not there, as after a typing error, which would leave the user without the
// bank that was meant. One that is gone may stay with the user.
std::string UnknownBank(Session& session, const clsSecurity& before, const clsSecurity& user) {
  const std::vector<std::string>& had = before.sBankCodes;
  for (const std::string& code : user.sBankCodes) {
    if (std::find(had.begin(), had.end(), code) == had.end() && !session.Company().banks.Find(code))
      return code;
  }
  return {};
}

}  // namespace

std::string UserChangeProblem(Session& session) {
  return session.MayUse(kAdministrator) ? "" : "Only an administrator may change users.";
}

FieldProblem UserSaveProblem(Session& session, const clsSecurity& before, const clsSecurity& user) {
  if (const std::string problem = UserChangeProblem(session); !problem.empty()) return {{}, problem};
  if (!before.bLoggedIn) {
    const std::string problem = clsSecurity::NewLoginProblem(session.Home(), user.osLogin);
    if (!problem.empty()) return {"LOGIN", problem};
  }
  if (EqualsIgnoreCase(user.osLogin, session.Login())) {
    const std::string problem = user.OwnAccountProblem(before);
    if (!problem.empty()) return {user.iDisabled > before.iDisabled ? "DISABLED" : "GROUP", problem};
  }
  const std::string bank = UnknownBank(session, before, user);
  if (!bank.empty()) return {"BANKCODE", "There is no bank " + Quoted(bank) + ".  Name one that is there."};
  return {};
}

}  // namespace tallwick
