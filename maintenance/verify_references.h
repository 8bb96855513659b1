// Every transaction has its cross-references, every cross-reference its transaction, and no voucher a number
// above its bank's counter.
#pragma once

#include <vector>

#include "maintenance/verify_company.h"

namespace tallwick {

// What rests on a table that is not open, or whose index is damaged, is not judged.
void VerifyReferences(ExaminedCompany& company, std::vector<CompanyProblem>* problems);

}  // namespace tallwick
