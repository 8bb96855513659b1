// Which statement dates a bank account may be reconciled to.
#pragma once

#include <string>

#include "core/period.h"

namespace tallwick {

inline constexpr int kMostDaysAfterLast = 62;
inline constexpr int kMostMonthsAfterLast = 2;

// Why the date may not follow the last reconciliation; "" when it may. A date must lie behind the last one,
// by no more than 62 days, or by two months where one of both is a month and year. The first reconciliation
// (`last` is empty) has no limit.
std::string StatementDateProblem(const Period& statement, const Period& last);

}  // namespace tallwick
