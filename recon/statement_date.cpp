#include "recon/statement_date.h"

namespace tallwick {
namespace {

bool IsTooFar(const Period& statement, const Period& last) {
  if (statement.day == 0 || last.day == 0) {
    return (statement.year - last.year) * 12 + statement.month - last.month > kMostMonthsAfterLast;
  }
  return JulianDay({statement.year, statement.month, statement.day}) -
             JulianDay({last.year, last.month, last.day}) >
         kMostDaysAfterLast;
}

}  // namespace

std::string StatementDateProblem(const Period& statement, const Period& last) {
  if (last.IsEmpty()) return {};
  const std::string date = ShortForm(statement);
  if (MakeKey(statement) <= MakeKey(last))
    return date + " is prior or the same as the last reconciliation " + ShortForm(last);
  if (IsTooFar(statement, last))
    return date + " is too far in the future from the last reconciliation done " + ShortForm(last);
  return {};
}

std::string StatementDateNote(const Period& statement, const Date& today) {
  if (MakeKey(statement) <= MakeKey(today.year, today.month, today.day)) return {};
  return ShortForm(statement) + " lies after today: an update closes it to posting.";
}

}  // namespace tallwick
