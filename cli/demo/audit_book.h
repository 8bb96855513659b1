// The audit log of the demo company: what its clerks would have left behind, bank by bank, in the order of
// time. Invariants: every transaction of the tables has its entry, by a clerk who may work with the bank; the
// same company gives the same log.
#pragma once

#include "cli/demo/company.h"
#include "shell/session.h"

namespace tallwick::cli {

// The number of entries written.
int WriteDemoAudit(Session& session, const DemoCompany& company);

}  // namespace tallwick::cli
