// What a rebuild that was cut short has left beside its table: the copy of the old table (".SAV", its memos
// ".SAV.FPT"), whole or half written ("~" behind the name). It is in nobody's way, and may go once the table
// itself is whole and holds as much. And what a program that died has left beside a settings file that it
// replaced ("Reconciliations_FNB.dat.4711-0.tmp"): the file itself is whole.
#pragma once

#include <vector>

#include "maintenance/verify_company.h"

namespace tallwick {

// Of an examined company. Mendable where the file is not needed any more.
void VerifyLeftovers(ExaminedCompany& company, const TableHome& home, std::vector<CompanyProblem>* problems);

}  // namespace tallwick
