// The audit log of the demo company: what its clerks would have left behind, bank by bank, in the order of
// time. Invariants: every transaction of the tables has its entry, by a clerk who may work with the bank; the
// same company gives the same log.
#pragma once

#include "cli/demo/company.h"
#include "shell/session.h"

namespace tallwick::cli {

// False where a log did not take its entries. `entries` are those written.
bool WriteDemoAudit(Session& session, const DemoCompany& company, int* entries);

}  // namespace tallwick::cli
