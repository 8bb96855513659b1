#include "tables/deposit_xref_table.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kFileWidth = 14;

constexpr std::array kColumns = {
    Text<&DepositXrefRecord::file_number>("DXRFFILENO", kFileWidth),
    Text<&DepositXrefRecord::dated>("DXRFDATED", 8),
    Digits<&DepositXrefRecord::sequence>("DXRFSEQNC", 2),
    Digits<&DepositXrefRecord::item>("DXRFITEMNO", 2),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"DXRFFILENO", "UPPER (dxrfFileNo + dxrfDated + dxrfseqnc + dxrfItemNo)", kLiveRecords, true},
};

}  // namespace

constexpr TableLayout kDepositXrefLayout{"ESCROW_DEPOXRFS_", true, kFields, kTags,
                                         TextsFor("Open Database DepoXRFS")};

DepositXrefTable::DepositXrefTable(const TableHome& home) : TypedTable(home, kDepositXrefLayout, kColumns) {}

bool DepositXrefTable::FirstOfFile(std::string_view file_number) {
  return Seek("DXRFFILENO", KeyPart(file_number, kFileWidth));
}

bool DepositXrefTable::NextOfFile(std::string_view file_number) {
  return SeekNext(KeyPart(file_number, kFileWidth));
}

bool DepositXrefTable::SeekItem(const DepositXrefRecord& record) {
  return Seek("DXRFFILENO", KeyPart(record.file_number, kFileWidth) + KeyPart(record.dated, 8) +
                                PadLeft(Trim(record.sequence), 2) + PadLeft(Trim(record.item), 2));
}

}  // namespace tallwick
