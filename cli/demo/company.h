// The demo company as the records that its tables will hold.
//
// Invariants, so that everything later built on the tables finds a company that adds up:
//  - money of a bank: for the last reconciliation L, check book balance (everything posted up to L, voids and
//    stops up to L given back) = statement balance (everything cleared up to L) + outstanding deposits -
//    outstanding checks and wires;
//  - check and voucher numbers of a bank run without a gap, and the voucher counter is the last one issued;
//  - nothing bears a day after "today"; an item is cleared only in a statement up to L.
// The same seed, day and number of files give the same company.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/date.h"
#include "shell/clsSecurity.h"
#include "tables/agent_table.h"
#include "tables/bank_table.h"
#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/notes_table.h"
#include "tables/voucher_table.h"
#include "tables/wire_table.h"

namespace tallwick::cli {

struct DemoBank {
  BankRecord bank;
  std::vector<CheckRecord> checks;
  std::vector<DepositRecord> deposits;
  std::vector<WireRecord> wires;
  std::vector<VoucherRecord> vouchers;
};

struct DemoCompany {
  AgentRecord agent;
  std::vector<clsSecurity> users;
  std::vector<DemoBank> banks;
  std::vector<NoteRecord> notes;
};

// `files`: at least 1.
DemoCompany MakeDemoCompany(std::uint64_t seed, int files, const Date& today);

}  // namespace tallwick::cli
