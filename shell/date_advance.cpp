#include "shell/date_advance.h"

#include "shell/company_tables.h"
#include "shell/transactions_switch.h"
#include "store/clsKVRData.h"

namespace tallwick {

Period TodayAsPeriod(const BankRecord& bank, const Date& today) {
  return {today.month, bank.date_type == 0 ? 0 : today.day, today.year};
}

std::string AdvanceQuestion(const BankRecord& bank, const Date& today) {
  const Period advanced = TodayAsPeriod(bank, today);
  if (bank.auto_date != 1 || MakeKey(advanced) <= MakeKey(bank.accounting)) return {};
  return bank.name + "\rAdvance Accounting Date from " + LongForm(bank.accounting) + " to " +
         LongForm(advanced) + " ?";
}

bool AdvanceAccountingDate(Session& session) {
  if (session.BankCode().empty() || !TransactionsOpen(session)) return false;
  BankTable& banks = session.Company().banks;
  if (session.Data().IsReadOnly(banks.Handle())) return false;
  const std::optional<BankRecord> bank = banks.Find(session.BankCode());
  if (!bank) return false;
  const Date today = session.TheClock().Now().date;
  const std::string question = AdvanceQuestion(*bank, today);
  if (question.empty() || question == session.Run().last_advance_question) return false;
  session.Run().last_advance_question = question;
  const BoxAnswer answer = session.Boxes().Show(
      {BoxIcon::kQuestion, "Automatic Date Advance", question, BoxButtons::kYesNo, BoxAnswer::kYes});
  if (answer != BoxAnswer::kYes) return false;

  // The record may have changed, or gone, while the question stood.
  if (!banks.SeekCode(session.BankCode()) || banks.Lock(true) != engine::kSuccess) return false;
  BankRecord now = banks.Read();
  now.accounting = TodayAsPeriod(now, today);
  return banks.Update(now) == engine::kSuccess;
}

}  // namespace tallwick
