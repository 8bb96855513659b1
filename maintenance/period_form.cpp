#include "maintenance/period_form.h"

#include <optional>
#include <vector>

#include "tables/bank_code.h"
#include "tables/bank_tables.h"
#include "tables/record_pass.h"

namespace tallwick {
namespace {

bool HasDays(const BankRecord& bank) {
  return bank.accounting.day != 0;
}

std::vector<PackedPeriod> PeriodsOf(const BankTables& bank, const TableBase& table, PackedFields& fields) {
  if (&table == &bank.checks) return {fields.FindPeriod("CHXACCT"), fields.FindPeriod("CHXSTMT")};
  if (&table == &bank.wires) return {fields.FindPeriod("WIREACCT"), fields.FindPeriod("WIRESTMT")};
  std::vector<PackedPeriod> periods = {fields.FindPeriod("DEPOACCT")};
  for (int item = 1; item <= kDepositItems; ++item)
    periods.push_back(fields.FindPeriod("DEPOST", std::to_string(item)));
  return periods;
}

struct Standing {
  bool any = false;
  std::int32_t open = 0;  // a record that could be in no period any more; 0 = none
};

// A period behind the last reconciliation must have the form to come, with `days` or without. Nullopt after a
// message when the table cannot be read.
std::optional<Standing> StandingOf(const BankTables& bank, TableBase& table, const Period& reconciled,
                                   bool days) {
  PackedFields fields(table);
  const std::vector<PackedPeriod> periods = PeriodsOf(bank, table, fields);
  const auto closed_through = reconciled.IsEmpty() ? 0 : MakeKey(reconciled);
  Standing standing;
  const PassEnd end = PassOver(table, fields, table.Name(), {}, [&](RecordView record, std::int32_t number) {
    standing.any = true;
    for (const PackedPeriod& place : periods) {
      const Period period = PeriodIn(record, place);
      const bool fits = period.IsEmpty() || (period.day != 0) == days;
      if (!fits && MakeKey(period) > closed_through) standing.open = number;
    }
  });
  if (end != PassEnd::kDone) return std::nullopt;
  return standing;
}

}  // namespace

std::string PeriodFormRefusal(const TableHome& home, const BankRecord& before, const BankRecord& after) {
  if (HasDays(before) == HasDays(after)) return {};
  BankTables bank(home);
  bool any = false;
  for (TableBase* table : {static_cast<TableBase*>(&bank.checks), static_cast<TableBase*>(&bank.deposits),
                           static_cast<TableBase*>(&bank.wires)}) {
    const std::string code = TrimmedBankCode(before.code);
    if (!table->Exists(code)) continue;
    const std::optional<Standing> standing = table->OpenQuietly(code, false) > 0
                                                 ? StandingOf(bank, *table, before.reconciled, HasDays(after))
                                                 : std::nullopt;
    if (!standing) {
      return "BANKACCTDA stays as it is: whether " + table->Name() +
             " has open periods cannot be read.  Verify the company";
    }
    if (standing->open != 0) {
      return "BANKACCTDA stays as it is: periods would change between months and days, and "
             "record " +
             std::to_string(standing->open) + " of " + table->Name() +
             " is of a period that no reconciliation has closed.  Reconcile the account through its last "
             "period first";
    }
    any = any || standing->any;
  }
  if (!any || !HasDays(after) || after.reconciled.IsEmpty() || after.reconciled.day != 0) return {};
  return "BANKRECODA is 0, so the days of the reconciled month would be open again.  Set it to the last day "
         "of that month along with BANKACCTDA";
}

}  // namespace tallwick
