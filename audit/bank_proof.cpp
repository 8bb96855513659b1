#include "audit/bank_proof.h"

#include <set>

#include "audit/audit_trail.h"
#include "core/text.h"
#include "core/text_format.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"
#include "tables/record_pass.h"

namespace tallwick {
namespace {

// Vouchers leave no entries.
class Postings {
 public:
  Postings(Session& session, std::string_view bank_code) : tables_(session.Home()) {
    for (TableBase* table : Audited()) {
      if (table->Exists(bank_code) && table->OpenQuietly(bank_code, false) <= 0)
        unreadable_.insert(table->Name());
    }
  }

  // Deleted records among them.
  std::int64_t Records() {
    std::int64_t count = 0;
    for (TableBase* table : Audited()) {
      if (table->IsOpen()) count += table->Data().RecordCount(table->Handle());
    }
    return count;
  }

  std::int64_t Live() {
    std::int64_t count = 0;
    for (TableBase* table : Audited()) {
      if (!table->IsOpen()) continue;
      const PassEnd end = PassOver(*table, PackedFields(*table), table->Name(), {},
                                   [&count](RecordView, std::int32_t) { ++count; });
      if (end != PassEnd::kDone) unreadable_.insert(table->Name());
    }
    return count;
  }

  // Names of tables whose records cannot be counted.
  const std::set<std::string>& Unreadable() const { return unreadable_; }

 private:
  std::array<TableBase*, 3> Audited() { return {&tables_.checks, &tables_.deposits, &tables_.wires}; }

  BankTables tables_;
  std::set<std::string> unreadable_;
};

std::string Number(std::int64_t count) {
  return FormatNumber(static_cast<long long>(count), "##,###,##0");
}

std::string PostingsText(std::int64_t count) {
  return Number(count) + (count == 1 ? " check, deposit or wire" : " checks, deposits and wires");
}

// Whoever noted a seal has known then that the log does not tell of every posting.
void CompareAdditions(std::int64_t live, bool sealed, AuditProof* proof) {
  if (proof->additions >= live) return;
  const std::string text = "The bank holds " + PostingsText(live) + ", and the log tells of only " +
                           Number(proof->additions) + " of them.  ";
  if (sealed || proof->tells_switching_on) {
    proof->notes.push_back(
        text + "The others were posted while no audit trail was kept, or their entries are gone.");
  } else {
    proof->problems.push_back(
        text +
        "The entries of the others are gone, or they were posted while no audit trail was "
        "kept: no entry tells when it was switched on.");
  }
}

}  // namespace

AuditProof ProveBankLog(Session& session, std::string_view bank_code, std::string_view seal) {
  AuditProof proof = ProveAuditLog({session.Files(), engine::SystemFiles(), session.TheClock(),
                                    AuditLogPath(session.DataPath(), bank_code)},
                                   seal);
  const std::optional<BankRecord> bank = session.Company().banks.Find(bank_code);
  if (!proof.proven || !bank || !bank->audit_trail) return proof;
  Postings postings(session, bank_code);
  const std::int64_t records = postings.Records();
  if (proof.records == 0 && records > 0) {
    proof.notes.clear();
    proof.problems.push_back("This bank keeps an audit trail and holds " + PostingsText(records) +
                             ", but its audit log and the companion file are missing or empty.  They were "
                             "removed, or nothing was written since the trail was switched on or the data "
                             "were restored here: a restore brings no logs.");
  } else if (proof.additions < records) {
    CompareAdditions(postings.Live(), !Trim(seal).empty(), &proof);
  }
  for (const std::string& table : postings.Unreadable())
    proof.problems.push_back(
        table +
        " cannot be read, so nobody can tell whether entries of its records are missing.  Prove the log "
        "again when no workstation has the files for itself, or have the table rebuilt.");
  proof.proven = proof.problems.empty();
  return proof;
}

}  // namespace tallwick
