// ESCROW_XRFS: for every escrow file the items posted against it, in every bank.
#pragma once

#include "tables/typed_table.h"

namespace tallwick {

struct XrefRecord {
  std::string file_number;
  std::string bank_code;
  std::string kind;       // "C" check, "D" deposit item, "W" wire, "V" voucher
  std::string reference;  // the item's number as its table stores it, leading blanks included
  friend bool operator==(const XrefRecord&, const XrefRecord&) = default;
};

// Where an escrow file has transactions.
struct FileReferences {
  std::vector<std::string> banks;  // each once, in the order first met
  int checks = 0;
  int deposits = 0;  // deposit items
  int wires = 0;
  int vouchers = 0;
};

extern const TableLayout kXrefLayout;

class XrefTable : public TypedTable<XrefRecord> {
 public:
  explicit XrefTable(const TableHome& home);
  // Nothing for a blank file number.
  FileReferences LookUpFile(std::string_view file_number);
  // The file numbers that begin with the text, in any case, the last in the order of the tag first; at most
  // `most`.
  std::vector<std::string> LastFiles(std::string_view beginning, std::size_t most);
  // On the record, in the tag XRFSFILEBK. The reference may have other blanks around it than the stored one.
  bool SeekReference(const XrefRecord& record);
};

// The cross-reference of a check or voucher (number right-aligned when made of digits), and of a wire
// (left-aligned).
XrefRecord CheckXref(std::string_view file_number, std::string_view bank_code, std::string_view check_number);
XrefRecord VoucherXref(std::string_view file_number, std::string_view bank_code,
                       std::string_view voucher_number);
XrefRecord WireXref(std::string_view file_number, std::string_view bank_code, std::string_view wire_number);
XrefRecord DepositItemXref(std::string_view file_number, std::string_view bank_code, std::string_view dated,
                           std::string_view sequence, int item);

}  // namespace tallwick
