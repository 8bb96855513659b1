// The reconciliations that were made of a bank account, kept beside its tables: what each was made of, and
// what the bank record held before and after it, so that the last one can be taken back.
//
// One file per bank in the data path, "Reconciliations_<bank>.dat", text in Windows-1252 with CR LF line
// ends, the oldest first. A reconciliation begins with its statement date in brackets; "name=value" lines
// follow. Dates are keys (20240315), money plain decimals. One that was taken back has a line "TakenBack" and
// stays for the record.
//
// Invariant: a reconciliation stands only while the bank record holds what it left there. The file is written
// before the bank record is, and what a crash in between has left does not agree with the bank record, does
// not count, and goes with the next write. So no crash can part the two.
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
  std::string taken_back;  // the same with the reason behind it; "" while it was not
  friend bool operator==(const PastReconciliation&, const PastReconciliation&) = default;
};

class ReconHistory {
 public:
  ReconHistory(FileSystem& files, std::string_view data_path, std::string_view bank_code);

  // Every one in the file, the oldest first; what cannot be read is left out.
  std::vector<PastReconciliation> All() const;
  // The last one, when the bank record is as it left it; nullopt when it was made elsewhere, or changed
  // since.
  std::optional<PastReconciliation> Last(const BankRecord& bank) const;
  // Adds one that is about to be made. False when the file could not be written; it is then as it was.
  bool Add(const BankRecord& bank, const PastReconciliation& made);
  // Marks the one that has been taken back.
  bool MarkTakenBack(const PastReconciliation& taken, std::string_view note);

 private:
  bool Write(const std::vector<PastReconciliation>& all);

  FileSystem& files_;
  const std::string path_;
};

}  // namespace tallwick
