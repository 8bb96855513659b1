// Holds a whole company together: every tag of every table against its records, every cross-reference against
// its transaction and back, and the voucher counters.
#pragma once

#include <vector>

#include "cli/verify/problem.h"
#include "shell/session.h"

namespace tallwick::cli {

// Changes nothing. A table that does not open is a problem like others.
std::vector<Problem> VerifyCompany(Session& session);

}  // namespace tallwick::cli
