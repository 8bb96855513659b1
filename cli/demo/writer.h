// Writes a demo company into the tables of an open company, each transaction with its cross-references.
#pragma once

#include <string>
#include <vector>

#include "cli/demo/company.h"
#include "shell/session.h"

namespace tallwick::cli {

struct DemoCounts {
  int banks = 0;
  int users = 0;
  int checks = 0;
  int deposits = 0;
  int deposit_items = 0;
  int wires = 0;
  int vouchers = 0;
  int notes = 0;
};

// Units of work of a thousand transactions each. 0, or the code of what failed; the company is then
// unfinished.
int WriteDemoCompany(Session& session, const DemoCompany& company, DemoCounts* counts);

}  // namespace tallwick::cli
