// Which statement dates a bank account may be reconciled to.
#pragma once

#include <string>

#include "core/date.h"
#include "core/period.h"

namespace tallwick {

inline constexpr int kMostDaysAfterLast = 62;
inline constexpr int kMostMonthsAfterLast = 2;

// Why the date may not follow the last reconciliation; "" when it may. A date must lie behind the last one,
// by no more than 62 days, or by two months where one of both is a month and year. The first reconciliation
// (`last` is empty) has no limit.
std::string StatementDateProblem(const Period& statement, const Period& last);

// What whoever reconciles to the date should know: that it lies after `today`. "" when it does not.
std::string StatementDateNote(const Period& statement, const Date& today);

}  // namespace tallwick
