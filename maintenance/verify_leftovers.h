// What work that was cut short has left in the folder:
//   - beside a table that was rebuilt, the copy of the old one (".SAV", its memos ".SAV.FPT"; ".SAV2" for a
//     fuller one), whole or half written ("~" behind the name): in nobody's way, and not needed once the
//     table itself is whole and holds as much;
//   - beside a file that was replaced, the half-written new one ("Reconciliations_FNB.dat.4711-0.tmp"): the
//     file itself is whole;
//   - a journal that could not be used ("ESCROW_UNITS.BAD"): it stays until somebody has compared it with
//     paper.
#pragma once

#include <vector>

#include "maintenance/verify_company.h"

namespace tallwick {

// Of an examined company. Mendable where the file is not needed any more.
void VerifyLeftovers(ExaminedCompany& company, const TableHome& home, std::vector<CompanyProblem>* problems);

}  // namespace tallwick
