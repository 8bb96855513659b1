#include "tables/check_table.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kNumberWidth = 12;
constexpr int kFileWidth = 14;

constexpr std::array kColumns = {
    Digits<&CheckRecord::number>("CHXNUMBER", kNumberWidth),
    Day<&CheckRecord::dated>("CHXDATED"),
    Text<&CheckRecord::payee>("CHXPAYEE", 60),
    Text<&CheckRecord::address1>("CHXADDR1", 40),
    Text<&CheckRecord::address2>("CHXADDR2", 40),
    Text<&CheckRecord::city_state>("CHXCITYST", 40),
    Money<&CheckRecord::amount>("CHXAMOUNT", 12),
    Number<&CheckRecord::accounting, &Period::month>("CHXACCTMO", 2),
    Number<&CheckRecord::accounting, &Period::year>("CHXACCTYR", 4),
    Number<&CheckRecord::statement, &Period::month>("CHXSTMTMO", 2),
    Number<&CheckRecord::statement, &Period::year>("CHXSTMTYR", 4),
    Text<&CheckRecord::status>("CHXSTATUS", 2),
    Text<&CheckRecord::control>("CHXCONTROL", 10),
    Digits<&CheckRecord::voucher_number>("CHXVCHRNO", kNumberWidth),
    Text<&CheckRecord::file_number>("CHXFILENO", kFileWidth),
    Text<&CheckRecord::tin>("CHXTINNO", 16),
    Number<&CheckRecord::accounting, &Period::day>("CHXACCTDA", 2),
    Number<&CheckRecord::statement, &Period::day>("CHXSTMTDA", 2),
    Text<&CheckRecord::reason>("ChxsReason", 240),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"CHXFILENO", "UPPER (CHXFILENo + CHXNUMBER)", kLiveRecords, true},
    {"CHXNUMBER", "UPPER (CHXNUMBER)", kLiveRecords, true},
    {"CHXPAYEE", "UPPER (CHXPAYEE)", kLiveRecords},
    {"CHXDATED", "DTOS(CHXDATED) + UPPER(CHXNUMBER)", kLiveRecords},
    {"CHXACCT", "STR(CHXACCTYR,4,0) + STR(CHXACCTMO,2,0) + STR(CHXACCTDA,2,0)", kLiveRecords},
    {"CHXSTMT", "STR(CHXSTMTYR,4,0) + STR(CHXSTMTMO,2,0) + STR(CHXSTMTDA,2,0)", kLiveRecords},
};

constexpr std::string_view kMayBeEmpty[] = {"CHXADDR",   "CHXCITYST", "CHXCONTROL", "CHXTINNO",
                                            "CHXACCTDA", "CHXSTMTDA", "ChxsReason"};

}  // namespace

constexpr TableLayout kCheckLayout{"ESCROW_CHECKS_", true, kFields, kTags, TextsFor("Open Database Checks"),
                                   kMayBeEmpty};

CheckTable::CheckTable(const TableHome& home) : TypedTable(home, kCheckLayout, kColumns) {}

bool CheckTable::SeekNumber(std::string_view number) {
  return Seek("CHXNUMBER", KeyPart(StoredNumber(number), kNumberWidth)) ||
         (IsAllDigits(Trim(number)) && Seek("CHXNUMBER", KeyPart(Trim(number), kNumberWidth)));
}

bool CheckTable::FirstOfFile(std::string_view file_number) {
  return Seek("CHXFILENO", KeyPart(file_number, kFileWidth));
}

bool CheckTable::NextOfFile(std::string_view file_number) {
  return SeekNext(KeyPart(file_number, kFileWidth));
}

std::string CheckTable::LastNumber() {
  return Data().GetLastTagValue(Handle(), "CHXNUMBER");
}

}  // namespace tallwick
