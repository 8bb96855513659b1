// Moving a bank's accounting date on to today.
#pragma once

#include <string>

#include "core/date.h"
#include "shell/session.h"

namespace tallwick {

struct BankRecord;

// Today as a period of the bank's form: without a day where its periods are month and year.
Period TodayAsPeriod(const BankRecord& bank, const Date& today);

// "First National\rAdvance Accounting Date from March 2024 to April 2024 ?"; "" when the bank does not
// advance by itself or has reached today.
std::string AdvanceQuestion(const BankRecord& bank, const Date& today);

// Asks to advance the selected bank's accounting date where it lies before today, and writes it on Yes. A
// question that was the last one asked in this run is not asked again. A bank that is gone or locked by
// another workstation, and every bank while transactions are locked, stays as it is, silently. True when the
// date was advanced.
bool AdvanceAccountingDate(Session& session);

}  // namespace tallwick
