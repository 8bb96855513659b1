#include "tables/wire_table.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kNumberWidth = 12;
constexpr int kFileWidth = 14;

constexpr std::array kColumns = {
    Text<&WireRecord::number>("WIRENUMBER", kNumberWidth),
    Text<&WireRecord::file_number>("WIREFILENO", kFileWidth),
    Day<&WireRecord::dated>("WIREDATED"),
    Text<&WireRecord::payee>("WIREPAYEE", 60),
    Money<&WireRecord::amount>("WIREAMOUNT", 12),
    Number<&WireRecord::accounting, &Period::month>("WIREACCTMO", 2),
    Number<&WireRecord::accounting, &Period::year>("WIREACCTYR", 4),
    Number<&WireRecord::statement, &Period::month>("WIRESTMTMO", 2),
    Number<&WireRecord::statement, &Period::year>("WIRESTMTYR", 4),
    Text<&WireRecord::status>("WIRESTATUS", 2),
    Text<&WireRecord::control>("WIRECNTLNO", 12),
    Number<&WireRecord::accounting, &Period::day>("WIREACCTDA", 2),
    Number<&WireRecord::statement, &Period::day>("WIRESTMTDA", 2),
    Text<&WireRecord::spare>("WIRESPARE", 20),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"WIREFILENO", "UPPER (WIREFILENO + WIRENUMBER)", kLiveRecords, true},
    {"WIRENUMBER", "UPPER (WIRENUMBER)", kLiveRecords, true},
    {"WIREACCT", "STR(WIREACCTYR,4,0) + STR(WIREACCTMO,2,0) + STR(WIREACCTDA,2,0)", kLiveRecords},
    {"WIRESTMT", "STR(WIRESTMTYR,4,0) + STR(WIRESTMTMO,2,0) + STR(WIRESTMTDA,2,0)", kLiveRecords},
};

constexpr std::string_view kMayBeEmpty[] = {"WIRECNTLNO", "WIREACCTDA", "WIRESTMTDA", "WIRESPARE"};

}  // namespace

constexpr TableLayout kWireLayout{"ESCROW_WIRES_", true, kFields, kTags, TextsFor("Open Database Wires"),
                                  kMayBeEmpty};

WireTable::WireTable(const TableHome& home) : TypedTable(home, kWireLayout, kColumns) {}

bool WireTable::SeekNumber(std::string_view number) {
  return Seek("WIRENUMBER", KeyPart(Trim(number), kNumberWidth));
}

bool WireTable::FirstOfFile(std::string_view file_number) {
  return Seek("WIREFILENO", KeyPart(file_number, kFileWidth));
}

bool WireTable::NextOfFile(std::string_view file_number) {
  return SeekNext(KeyPart(file_number, kFileWidth));
}

}  // namespace tallwick
