#include "fuzz/sample_table.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace tallwick::fuzz {
namespace {

using namespace tallwick::engine;

constexpr std::array<FieldLayout, 6> kFields = {{{"NUMBER", 'C', 12},
                                                 {"DATED", 'D', 8},
                                                 {"PAYEE", 'C', 40},
                                                 {"AMOUNT", 'N', 12, 2},
                                                 {"PRINTED", 'L', 1},
                                                 {"NOTE", 'M', 10}}};

constexpr std::array<TagLayout, 7> kTags = {{
    {"NUMBER", "UPPER (NUMBER)", ".NOT. Deleted ()", true},
    {"PAYEE", "UPPER(PAYEE)", ".NOT. Deleted ()"},
    {"DATED", "DTOS(DATED) + UPPER(NUMBER)", ""},
    {"DAY", "DATED", ".NOT. Deleted ()"},
    {"AMOUNT", "AMOUNT", "AMOUNT > 100", false, true},
    {"LONGKEY", "PAYEE + PAYEE + PAYEE + PAYEE + PAYEE + PAYEE", ""},
    {"REUSE", "RECNO()", "DELETED()"},
}};

constexpr std::array<const char*, 7> kPayees = {"SMITH TITLE CO",       "Harbor County Recorder",
                                                "M\xfcller & S\xf6hne", "LAKESIDE SAVINGS",
                                                "Lakeside Realty",      "",
                                                "O'BRIEN, PATRICK"};

[[noreturn]] void Stop(int code, const char* what) {
  std::fprintf(stderr, "the sample table: %s failed with code %d\n", what, code);
  std::abort();
}

void Require(int code, const char* what) {
  if (code != kSuccess) Stop(code, what);
}

std::string Padded(std::uint32_t number) {
  char text[16];
  std::snprintf(text, sizeof text, "%12u", number);
  return text;
}

void AppendRecord(Data4& data, std::uint32_t number) {
  Require(d4appendStart(data), "a blank record");
  char day[9];
  std::snprintf(day, sizeof day, "2024%02u%02u", number % 12 + 1, number % 28 + 1);
  f4assignNVB(*d4field(data, "NUMBER"), Padded(number));
  f4assignNVB(*d4field(data, "DATED"), number % 7 == 0 ? "" : day);
  f4assignNVB(*d4field(data, "PAYEE"), kPayees[std::size_t{number} * 31 % kPayees.size()]);
  f4assignCurrency(*d4field(data, "AMOUNT"), Currency::FromCents(std::int64_t{number} * 7919 % 1000000));
  f4assignNVB(*d4field(data, "PRINTED"), number % 2 == 0 ? "T" : "F");
  if (number % 3 == 0)
    Require(f4memoAssign(*d4field(data, "NOTE"), std::string(number % 200, 'n')), "a memo");
  Require(d4append(data), "an append");
}

}  // namespace

SampleFiles MakeSample(std::uint32_t records) {
  testing::MemoryFiles files;
  testing::EnginePorts ports;
  const auto code = code4initVB(ports.Over(files));
  Data4* data = d4create(*code, kTablePath, kFields, kTags);
  if (data == nullptr) Stop(code4errorCode(*code, 0), "the create");
  Require(code4unitBegin(*code), "a unit of work");
  for (std::uint32_t number = 1; number <= records; ++number) AppendRecord(*data, number);
  Require(code4unitCommit(*code), "a commit");
  for (std::uint32_t record = 5; record <= records; record += 5) {
    Require(d4goLow(*data, record), "a move");
    d4delete(*data);
    Require(d4flush(*data), "a delete");
  }
  Require(d4close(data), "the close");
  code4initUndo(*code);
  return {files.Get(kTablePath), files.Get(kIndexPath), files.Get(kMemoPath)};
}

const SampleFiles& BaseSample() {
  static const SampleFiles sample = MakeSample(24);
  return sample;
}

}  // namespace tallwick::fuzz
