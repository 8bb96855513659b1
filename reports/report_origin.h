// The head and foot of a report made in a session: who prepares it, when, with which version, for which
// company.
#pragma once

#include "reports/report_document.h"
#include "shell/session.h"

namespace tallwick {

// The preparing user is named by the user record, whether or not security is on; else by the login, else by
// the workstation.
ReportOrigin OriginOf(const Session& session);

}  // namespace tallwick
