// The reconciliations that were made of a bank account, kept beside its tables: what each was made of, and
// what the bank record held before and after it, so that the last one can be taken back.
//
// One file per bank in the data path, "Reconciliations_<bank>.dat", text in Windows-1252 with CR LF line
// ends, the oldest first. A reconciliation begins with its statement date in brackets; "name=value" lines
// follow. Dates are keys (20240315), money plain decimals. One that was taken back has a line "TakenBack" and
// stays for the record.
//
// Invariants: the last reconciliation that has left what the bank record holds now stands, and no other, be
// it marked as taken back or not. The file is written before the bank record is, and what a crash in between
// has left does not agree with the bank record, does not count, and goes with the next write. So no crash can
// part the two. What cannot be understood stays in the file as it is, and a file that cannot be read is not
// written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_system.h"
#include "recon/reconciliation.h"
#include "tables/bank_table.h"

namespace tallwick {

// What a reconciliation changes in the bank record.
struct BankState {
  Period reconciled;
  Period work_in_progress;
  Currency beginning_balance;
  Currency ending_balance;

  static BankState Of(const BankRecord& bank);
  void PutInto(BankRecord* bank) const;
  friend bool operator==(const BankState&, const BankState&) = default;
};

struct PastReconciliation {
  ReconEntries entries;
  BankState before;
  BankState after;
  std::string made;        // "2024-03-31 09:30:00 jdoe FRONTDESK2"
  std::string taken_back;  // the same with the reason behind it; "" while it was not, or was to be
  friend bool operator==(const PastReconciliation&, const PastReconciliation&) = default;
};

// What the file says.
struct ReconReading {
  std::vector<PastReconciliation> all;  // the oldest first; pieces that cannot be understood are left out
  std::string problem;                  // why nothing is known, in words for a person; "" otherwise
};

class ReconHistory {
 public:
  ReconHistory(FileSystem& files, std::string_view data_path, std::string_view bank_code);

  ReconReading Read() const;
  // Each of these gives "" when it is done, else why the file is as it was, in words for a person.
  // Adds a reconciliation that is about to be made.
  std::string Add(const BankRecord& bank, const PastReconciliation& made);
  // Takes it out again where it could not be made.
  std::string Drop(const PastReconciliation& not_made);
  // Marks one that is about to be taken back.
  std::string MarkTakenBack(const PastReconciliation& taken, std::string_view note);
  // Takes the mark off again where it could not be.
  std::string DropMark(const PastReconciliation& not_taken);

 private:
  FileSystem& files_;
  const std::string path_;
};

// The last reconciliation, when the bank record is as it left it; nullopt when it was made elsewhere, or
// changed since.
std::optional<PastReconciliation> LastStanding(const ReconReading& reading, const BankRecord& bank);

}  // namespace tallwick
