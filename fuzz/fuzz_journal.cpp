// Any bytes as the journal beside the sample table. Opening the table recovers or refuses with a code, and a
// journal without one whole entry changes nothing. Each input is tried as it is, and once more with its
// entries made whole, so that what lies behind the checksum is reached as well.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/sample_table.h"
#include "store/engine/byte_order.h"
#include "store/engine/journal.h"
#include "store/engine/verify.h"

namespace {

using namespace tallwick::engine;
using namespace tallwick::fuzz;

constexpr std::size_t kHeader = 96;
constexpr std::size_t kEntryHead = 28;
constexpr std::string_view kEntryMagic = "TWKE";

std::uint8_t* At(std::string& bytes, std::size_t place) {
  return reinterpret_cast<std::uint8_t*>(bytes.data()) + place;
}

// The checksum of an entry, written down a second time.
std::uint64_t Checksum(std::uint64_t number, const std::uint8_t* bytes, std::size_t size) {
  std::uint64_t sum = 0xCBF29CE484222325U ^ number;
  std::size_t i = 0;
  for (; i + 8 <= size; i += 8) sum = (sum ^ Load64(bytes + i)) * 0x100000001B3U;
  for (; i < size; ++i) sum = (sum ^ bytes[i]) * 0x100000001B3U;
  return sum ^ (sum >> 29);
}

// The length of the payload of the entry that seems to begin here; npos for none.
std::size_t PayloadAt(std::string& bytes, std::size_t place) {
  if (bytes.size() < place + kEntryHead || bytes.compare(place, 4, kEntryMagic) != 0)
    return std::string::npos;
  const std::uint64_t length = Load64(At(bytes, place + 4));
  return length <= bytes.size() - place - kEntryHead ? static_cast<std::size_t>(length) : std::string::npos;
}

bool HoldsWholeEntry(std::string bytes) {
  for (std::size_t place = bytes.find(kEntryMagic); place != std::string::npos;
       place = bytes.find(kEntryMagic, place + 1)) {
    const std::size_t length = PayloadAt(bytes, place);
    if (length == std::string::npos) continue;
    const std::uint8_t* entry = At(bytes, place);
    if (Checksum(Load64(entry + 12), entry + kEntryHead, length) == Load64(entry + 20)) return true;
  }
  return false;
}

// Numbers the entries one by one and gives each its checksum.
std::string Sealed(std::string bytes) {
  if (bytes.size() < kHeader) return bytes;
  bytes.replace(0, 8, "TWKJRNL1");
  std::uint64_t number = Load64(At(bytes, 24));
  std::size_t place = kHeader;
  for (std::size_t length; (length = PayloadAt(bytes, place)) != std::string::npos;
       place += kEntryHead + length) {
    std::uint8_t* entry = At(bytes, place);
    Store64(entry + 12, number);
    Store64(entry + 20, Checksum(number, entry + kEntryHead, length));
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
