#include "reports/report_origin.h"

#include "shell/about.h"
#include "shell/clsSecurity.h"

namespace tallwick {
namespace {

std::string PreparerOf(const Session& session) {
  const std::string login = session.Login();
  const std::optional<clsSecurity> known = clsSecurity::GetUserSecurity(session.Home(), login);
  if (known && !known->sUserName.empty()) return known->sUserName;
  return login.empty() ? session.TheWorkstation().ComputerName() : login;
}

}  // namespace

ReportOrigin OriginOf(const Session& session) {
  return {PreparerOf(session), session.TheClock().Now(), VersionTextOf(session.Version()),
          session.TheSuite().CompanyName()};
}

}  // namespace tallwick
