#include "tables/xref_table.h"

#include <algorithm>

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kFileWidth = 14;
constexpr int kBankWidth = 8;
constexpr int kKindWidth = 2;
constexpr int kReferenceWidth = 12;

constexpr std::array kColumns = {
    Text<&XrefRecord::file_number>("XRFSFILENO", kFileWidth),
    Text<&XrefRecord::bank_code>("XRFSBANKID", kBankWidth),
    Text<&XrefRecord::kind>("XRFSTXTYPE", kKindWidth),
    AsStored<&XrefRecord::reference>("XRFSTXREFN", kReferenceWidth),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"XRFSFILEBK", "UPPER (XRFSFILENO + XRFSBANKID + XRFSTXTYPE + XRFSTXREFN)", kLiveRecords, true},
    {"XRFSBANKFI", "UPPER (XRFSBANKID + XRFSFILENO + XRFSTXTYPE + XRFSTXREFN)", kLiveRecords, true},
};

void Count(std::string_view kind, FileReferences& found) {
  if (kind == "C") ++found.checks;
  if (kind == "D") ++found.deposits;
  if (kind == "W") ++found.wires;
  if (kind == "V") ++found.vouchers;
}

XrefRecord Make(std::string_view file_number, std::string_view bank_code, std::string_view kind,
                std::string reference) {
  return {std::string(Trim(file_number)), std::string(Trim(bank_code)), std::string(kind),
          std::move(reference)};
}

}  // namespace

constexpr TableLayout kXrefLayout{"ESCROW_XRFS", false, kFields, kTags, TextsFor("Open Database XRFS")};

XrefTable::XrefTable(const TableHome& home) : TypedTable(home, kXrefLayout, kColumns) {}

FileReferences XrefTable::LookUpFile(std::string_view file_number) {
  FileReferences found;
  file_number = Trim(file_number);
  if (file_number.empty() || !Seek("XRFSFILEBK", KeyPart(file_number, kFileWidth))) return found;
  XrefRecord row;
  for (bool on_record = true; on_record; on_record = Skip()) {
    Read(row);
    if (!SameKey(row.file_number, file_number)) break;
    if (std::find(found.banks.begin(), found.banks.end(), row.bank_code) == found.banks.end()) {
      found.banks.push_back(row.bank_code);
    }
    Count(row.kind, found);
  }
  return found;
}

// From behind the last key with the beginning back, from file to file.
std::vector<std::string> XrefTable::LastFiles(std::string_view beginning, std::size_t most) {
  constexpr std::string_view kLastCharacter = "\u00F7";  // no key has a greater byte
  const std::string key = UpperKey(Trim(beginning));
  std::string behind = key;
  for (auto place = key.size(); place < kFileWidth; ++place) behind += kLastCharacter;
  std::vector<std::string> files;
  Seek("XRFSFILEBK", behind);
  for (bool on_record = Skip(-1); on_record && files.size() < most;) {
    std::string file = Read().file_number;
    if (file.empty() || !UpperKey(file).starts_with(key)) break;
    on_record = Seek("XRFSFILEBK", KeyPart(file, kFileWidth)) && Skip(-1);
    files.push_back(std::move(file));
  }
  return files;
}

bool XrefTable::SeekReference(const XrefRecord& record) {
  std::string key = KeyPart(record.file_number, kFileWidth) + KeyPart(record.bank_code, kBankWidth) +
                    KeyPart(record.kind, kKindWidth);
  return Seek("XRFSFILEBK", key + KeyPart(record.reference, kReferenceWidth)) ||
         Seek("XRFSFILEBK", key + KeyPart(StoredNumber(record.reference), kReferenceWidth)) ||
         Seek("XRFSFILEBK", key + KeyPart(Trim(record.reference), kReferenceWidth));
}

XrefRecord CheckXref(std::string_view file_number, std::string_view bank_code,
                     std::string_view check_number) {
  return Make(file_number, bank_code, "C", StoredNumber(check_number));
}

XrefRecord VoucherXref(std::string_view file_number, std::string_view bank_code,
                       std::string_view voucher_number) {
  return Make(file_number, bank_code, "V", StoredNumber(voucher_number));
}

XrefRecord WireXref(std::string_view file_number, std::string_view bank_code, std::string_view wire_number) {
  return Make(file_number, bank_code, "W", std::string(Trim(wire_number)));
}

XrefRecord DepositItemXref(std::string_view file_number, std::string_view bank_code, std::string_view dated,
                           std::string_view sequence, int item) {
  return Make(file_number, bank_code, "D", DepositReference(dated, sequence, item));
}

}  // namespace tallwick
