// Any bytes as the journal beside the sample table. Opening the table recovers or refuses with a code, and a
// journal without one whole entry changes nothing. Each input is tried as it is, and once more with its
// entries made whole, so that what lies behind the checksum is reached as well.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>

#include "fuzz/sample_table.h"
#include "store/engine/byte_order.h"
#include "store/engine/journal.h"
#include "store/engine/verify.h"

namespace {

using namespace tallwick::engine;
using namespace tallwick::fuzz;

constexpr std::size_t kHeader = 96;
constexpr std::size_t kHead = static_cast<std::size_t>(kEntryHead);

std::uint8_t* At(std::string& bytes, std::size_t place) {
  return reinterpret_cast<std::uint8_t*>(bytes.data()) + place;
}

// The payload of the entry or note that seems to begin at a place; nullopt for none.
std::optional<std::span<std::uint8_t>> PayloadAt(std::string& bytes, std::size_t place) {
  JournalHead head;
  if (bytes.size() < place + kHead ||
      !head.Parse(std::span<const std::uint8_t, kHead>(At(bytes, place), kHead)))
    return std::nullopt;
  if (head.payload_bytes > bytes.size() - place - kHead) return std::nullopt;
  return std::span(At(bytes, place + kHead), static_cast<std::size_t>(head.payload_bytes));
}

bool HoldsWholeEntry(std::string bytes) {
  for (std::size_t place = bytes.find("TWK"); place != std::string::npos;
       place = bytes.find("TWK", place + 1)) {
    const auto payload = PayloadAt(bytes, place);
    const std::uint8_t* head = At(bytes, place);
    if (payload && EntryChecksum(Load64(head + 12), *payload) == Load64(head + 20)) return true;
  }
  return false;
}

// Numbers the entries one by one and gives each its checksum.
std::string Sealed(std::string bytes) {
  if (bytes.size() < kHeader) return bytes;
  bytes.replace(0, 8, "TWKJRNL1");
  std::uint64_t number = Load64(At(bytes, 24));
  std::size_t place = kHeader;
  for (auto payload = PayloadAt(bytes, place); payload; payload = PayloadAt(bytes, place)) {
    Store64(At(bytes, place + 12), number);
    Store64(At(bytes, place + 20), EntryChecksum(number, *payload));
    place += kHead + payload->size();
    ++number;
  }
  return bytes;
}

void Use(Data4& data) {
  std::vector<TableProblem> problems;
  d4verify(data, &problems);
  d4tagSelect(data, d4tag(data, "NUMBER"));
  int rc = d4top(data);
  for (int step = 0; step < 40 && rc == kSuccess; ++step) rc = d4skip(data, 1);
  if (Field4* number = d4field(data, "NUMBER"); number != nullptr && d4appendStart(data) == kSuccess) {
    f4assignNVB(*number, "         999");
    d4append(data);
  }
}

void Try(const std::string& journal) {
  const bool idle = !HoldsWholeEntry(journal);
  const SampleFiles& sample = BaseSample();
  tallwick::testing::MemoryFiles files(std::int64_t{1} << 20);
  tallwick::testing::EnginePorts ports;
  files.Put(kTablePath, sample.table);
  files.Put(kIndexPath, sample.index);
  files.Put(kMemoPath, sample.memo);
  files.Put("/data/" + std::string(Journal::kFileName), journal);
  const auto code = code4initVB(ports.Over(files));
  Data4* data = d4open(*code, kTablePath);
  if (data == nullptr && code4errorCode(*code, 0) >= 0) std::abort();
  const bool same = files.Get(kTablePath) == sample.table && files.Get(kIndexPath) == sample.index &&
                    files.Get(kMemoPath) == sample.memo;
  if (idle && !same) {
    std::fprintf(stderr, "a journal without a whole entry changed a table\n");
    std::abort();
  }
  if (data != nullptr) Use(*data);
  code4initUndo(*code);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string journal(reinterpret_cast<const char*>(bytes), size);
  Try(journal);
  Try(Sealed(journal));
  return 0;
}
