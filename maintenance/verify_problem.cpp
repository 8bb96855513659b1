#include "maintenance/verify_problem.h"

#include "core/text.h"
#include "maintenance/verify_journal.h"

namespace tallwick {

namespace {

struct Describe {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(const CorrectCount& correct) const {
    return "sets the record count to what the file holds, without records of zero bytes at its end; look its "
           "last records over" +
           correct.counts;
  }
  std::string operator()(const RebuildIndex&) const { return "builds the index anew from the records"; }
  std::string operator()(const CorrectMemoEnd&) const {
    return "sets the next free block of the memo file to the file's end";
  }
  std::string operator()(const AddXref& add) const {
    return "adds the cross-reference " + Quoted(add.xref.kind + " " + std::string(Trim(add.xref.reference))) +
           " of file " + Quoted(add.xref.file_number) + " in bank " + add.xref.bank_code;
  }
  std::string operator()(const AddDepositXref& add) const {
    return "adds the reference to item " + add.xref.item + " of deposit " + add.xref.dated + " " +
           add.xref.sequence + " of file " + Quoted(add.xref.file_number);
  }
  std::string operator()(const RaiseVoucherCounter& raise) const {
    return "raises the voucher counter of bank " + raise.bank_code + " to " + std::to_string(raise.number);
  }
  std::string operator()(const SetJournalAside&) const {
    return "keeps the journal as " + std::string(kSetAsideJournal) + " and begins a new one";
  }
  std::string operator()(const FinishUnits&) const { return "brings the waiting units to the tables"; }
  std::string operator()(const RemoveLeftover&) const { return "removes the file"; }
};

}  // namespace

std::string DescribeRemedy(const Remedy& remedy) {
  return std::visit(Describe(), remedy);
}

}  // namespace tallwick
