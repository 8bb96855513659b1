// What an examination of the company's tables finds, and what the tables themselves say to mend it.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "tables/deposit_xref_table.h"
#include "tables/xref_table.h"

namespace tallwick {

// Remedies follow from other records alone. None of them touches an amount, a transaction or a memo.
struct CorrectCount {       // the head's record count, from the file's length
  std::string counts = {};  // ".  It counts 9 records and holds 8", where that is known
};
struct RebuildIndex {};    // every tag of the table, from its records
struct CorrectMemoEnd {};  // the memo file's next free block, from the file's length
struct AddXref {
  XrefRecord xref;
};
struct AddDepositXref {
  std::string bank_code;
  DepositXrefRecord xref;
};
struct RaiseVoucherCounter {
  std::string bank_code;
  std::int64_t number = 0;
};
// The journal, renamed so that it is kept and not used any more.
struct SetJournalAside {};
// The units that wait in the journal; any opening of a table does it.
struct FinishUnits {};
// A file of the company's folder that is of no use any more.
struct RemoveLeftover {
  std::string file;
};

using Remedy =
    std::variant<std::monostate, CorrectCount, RebuildIndex, CorrectMemoEnd, AddXref, AddDepositXref,
                 RaiseVoucherCounter, SetJournalAside, FinishUnits, RemoveLeftover>;

struct CompanyProblem {
  std::string table;
  std::int32_t record = 0;  // 0 where no single record is meant
  std::string text;         // in words a support person can act on
  Remedy remedy = {};       // std::monostate where a person must decide

  bool IsMendable() const { return remedy.index() != 0; }
};

// "adds the cross-reference C 1 of file "24-1" in bank FNT"; "" for none.
std::string DescribeRemedy(const Remedy& remedy);

}  // namespace tallwick
