// What the main window says about the selected bank, kept current at the cost of what has changed.
//
// Invariant: for every record of the bank's tables that has been read, what it adds to the sums is kept, so a
// record that changes is taken out as it was and added as it is. The first reading passes over the tables
// whole; a later one reads the records that this workstation has written and those appended since by anyone.
// A change that another workstation made to an older record shows after Forget. A reading of many records may
// be done in slices: what is kept in between is of the records read until then.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/currency.h"
#include "shell/latest_postings.h"
#include "shell/session.h"
#include "store/clsKVRData.h"

namespace tallwick {

class TableBase;

// A sum and how many items it has.
struct CountedSum {
  Currency sum;
  int count = 0;
};

struct BankOverview {
  // While it is less than 100 the sums and counts are of a part of the records only.
  int percent_read = 100;
  // The balance of the last reconciliation, plus deposits and less checks and wires of later accounting
  // periods, plus checks voided or stopped since.
  Currency book_balance;
  CountedSum outstanding_checks;
  CountedSum outstanding_deposits;    // deposit items
  int files_overdrawn = 0;            // escrow files with a negative balance in this bank
  std::vector<LatestPosting> latest;  // newest date first
};

class BankFigures {
 public:
  explicit BankFigures(Session& session);
  ~BankFigures();
  BankFigures(const BankFigures&) = delete;
  BankFigures& operator=(const BankFigures&) = delete;

  // Of the selected bank, now; reads on for about this long. Empty when its tables cannot be opened, after
  // their message.
  BankOverview Read(std::chrono::milliseconds budget = std::chrono::hours(1));
  // The next Read passes over the tables whole.
  void Forget() { bank_code_.clear(); }

 private:
  // What a record adds to the balance of an escrow file.
  struct Share {
    std::uint32_t file = 0;
    Currency amount;
  };
  // What a record adds to the bank's figures.
  struct Item {
    Currency book_balance;
    CountedSum outstanding;
    std::vector<Share> shares;
  };
  enum Source { kChecks, kWires, kDeposits, kSources };
  struct Kept {
    std::vector<Item> items;  // by record number - 1, of the records read until now
    CountedSum outstanding;
    std::set<std::int32_t> written;  // records to read again
    std::string table;               // full path
  };

  class Reader;
  class CheckReader;
  class WireReader;
  class DepositReader;

  void StartOver(const std::string& bank_code, std::int32_t reconciled);
  using Deadline = std::chrono::steady_clock::time_point;
  // False when the time was up before the last record.
  bool Update(Source source, TableBase& table, Reader& reader, Deadline deadline);
  bool ReadNew(Kept& kept, TableBase& table, Reader& reader, Deadline deadline);
  void Replace(Kept& kept, std::int32_t record, Item item);
  void Count(Kept& kept, const Item& item, bool add);
  void NoteWritten(DataHandle data, std::int32_t record);
  std::uint32_t FileId(std::string_view file_number);

  Session& session_;
  int watch_;                    // of the store's writes
  std::string bank_code_;        // whose figures are kept; "" = none
  std::int32_t reconciled_ = 0;  // the key they were counted from
  std::array<Kept, kSources> kept_;
  Currency book_change_;  // since the reconciliation
  std::unordered_map<std::string, std::uint32_t> file_ids_;
  std::vector<Currency> file_balances_;  // by id
  int overdrawn_ = 0;
};

}  // namespace tallwick
