#include "tables/voucher_table.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kNumberWidth = 12;
constexpr int kFileWidth = 14;

constexpr std::array kColumns = {
    Digits<&VoucherRecord::number>("VCHRNUMBER", kNumberWidth),
    Text<&VoucherRecord::file_number>("VCHRFILENO", kFileWidth),
    Day<&VoucherRecord::dated>("VCHRDATED"),
    Text<&VoucherRecord::payee>("VCHRPAYEE", 60),
    Text<&VoucherRecord::reason>("VCHRREASON", 60),
    Money<&VoucherRecord::amount>("VCHRAMOUNT", 12),
    Number<&VoucherRecord::accounting, &Period::month>("VCHRACCTMO", 2),
    Number<&VoucherRecord::accounting, &Period::year>("VCHRACCTYR", 4),
    Text<&VoucherRecord::status>("VCHRSTATUS", 2),
    Digits<&VoucherRecord::check_number>("VCHRCHKNUM", kNumberWidth),
    Number<&VoucherRecord::accounting, &Period::day>("VCHRACCTDA", 2),
    Text<&VoucherRecord::spare>("VCHRSPARE", 20),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"VCHRFILENO", "UPPER (VCHRFILENO + VCHRNUMBER)", kLiveRecords, true},
    {"VCHRNUMBER", "UPPER (VCHRNUMBER)", kLiveRecords, true},
    {"VCHRPAYEE", "UPPER (VCHRPAYEE)", kLiveRecords},
};

constexpr std::string_view kMayBeEmpty[] = {"VCHRREASON", "VCHRACCTDA", "VCHRSPARE"};

}  // namespace

constexpr TableLayout kVoucherLayout{
    "ESCROW_VOUCHERS_", true, kFields, kTags, TextsFor("Open Database Vouchers"), kMayBeEmpty};

VoucherTable::VoucherTable(const TableHome& home) : TypedTable(home, kVoucherLayout, kColumns) {}

bool VoucherTable::SeekNumber(std::string_view number) {
  return Seek("VCHRNUMBER", KeyPart(StoredNumber(number), kNumberWidth)) ||
         (IsAllDigits(Trim(number)) && Seek("VCHRNUMBER", KeyPart(Trim(number), kNumberWidth)));
}

bool VoucherTable::FirstOfFile(std::string_view file_number) {
  return Seek("VCHRFILENO", KeyPart(file_number, kFileWidth));
}

bool VoucherTable::NextOfFile(std::string_view file_number) {
  return SeekNext(KeyPart(file_number, kFileWidth));
}

bool VoucherTable::OfferAfterDamagedHeader() {
  BoxAnswer answer =
      Home().boxes.Show({BoxIcon::kQuestion, "Corrupt File Header", "Create new (and empty) " + Name() + " ?",
                         BoxButtons::kYesNo, BoxAnswer::kNo});
  if (answer != BoxAnswer::kYes) return false;
  FileSystem& files = Home().files;
  std::string kept = PathWith(".BAD");
  for (int number = 2; files.FileExists(kept); ++number) kept = PathWith(".BAD" + std::to_string(number));
  if (const int code = Home().data.SetTableAside(Path(), kept); code != engine::kSuccess) {
    Home().boxes.Critical("Corrupt File Header",
                          Name() + " stays as it is: " + std::string(engine::error4text(code)) +
                              ".  Have everybody leave the program, and try again.");
    return false;
  }
  if (CreateNamed() == engine::kSuccess) return true;
  if (!files.FileExists(Path())) files.Rename(kept, Path());
  return false;
}

}  // namespace tallwick
