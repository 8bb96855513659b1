// What a fuzzed table goes through. Results do not matter, only that every step ends and stays within its
// memory; the sanitizers watch.
#include "fuzz/sample_table.h"

namespace tallwick::fuzz {
namespace {

using namespace tallwick::engine;

constexpr int kMostFields = 64;
constexpr int kMostTags = 16;
constexpr int kMostSteps = 80;
constexpr int kMostReads = 12;  // records of a walk whose fields and memos are read
// A few memos at the far end of a long file, read in every walk, would be all that an input does.
constexpr std::int64_t kDiskBytes = std::int64_t{1} << 20;

// A checksum that the optimizer cannot drop keeps the reads alive.
volatile std::size_t sink = 0;

void ReadFields(Data4& data) {
  for (int position = 1; position <= std::min(d4numFields(data), kMostFields); ++position) {
    Field4* field = d4fieldJ(data, position);
    if (field == nullptr) continue;
    const std::string_view bytes(f4ptr(*field), static_cast<std::size_t>(f4len(*field)));
    sink = sink + std::hash<std::string_view>()(bytes) + static_cast<std::size_t>(f4long(*field));
    sink =
        sink + static_cast<std::size_t>(f4currency(*field).TenThousandths()) + (f4double(*field) > 0 ? 1 : 0);
    if (f4type(*field) == 'M') sink = sink + f4memoPtr(*field).size() + f4memoLen(*field);
  }
}

// Forwards from the top and backwards from the bottom, in the selected order.
void Walk(Data4& data, int reads) {
  int result = d4top(data);
  for (int step = 0; step < kMostSteps && result == kSuccess; ++step) {
    if (step < reads) ReadFields(data);
    result = d4skip(data, 1);
  }
  result = d4bottom(data);
  for (int step = 0; step < kMostSteps && result == kSuccess; ++step) result = d4skip(data, -1);
  d4skip(data, 7);
}

void Seek(Data4& data) {
  for (const char* key : {"", " ", "           7", "SMITH", "zzz", "20240408", "250.00", "-1"}) {
    d4seek(data, key);
    d4seekNext(data, key);
  }
  d4seekDouble(data, 1234.5);
  d4seekNextDouble(data, 1234.5);
  d4seekN(data, std::string_view("\0\0\xff", 3), 3);
}

void VisitTags(Data4& data) {
  Tag4* tag = d4tagNext(data, nullptr);
  for (int count = 0; tag != nullptr && count < kMostTags; ++count) {
    sink = sink + t4alias(*tag).size() + t4exprCB(*tag).size() + t4filterCB(*tag).size();
    d4tagSelect(data, tag);
    Walk(data, 3);
    Seek(data);
    tag = d4tagNext(data, tag);
  }
  d4tagSelect(data, nullptr);
}

void AssignSomething(Data4& data) {
  for (int position = 1; position <= std::min(d4numFields(data), kMostFields); ++position) {
    Field4* field = d4fieldJ(data, position);
    if (field == nullptr) continue;
    switch (f4type(*field)) {
      case 'N':
        f4assignLong(*field, 7);
        break;
      case 'D':
        f4assignNVB(*field, "20240229");
        break;
      case 'M':
        f4memoAssign(*field, "changed");
        break;
      default:
        f4assignNVB(*field, "7");
    }
  }
}

void Change(Data4& data) {
  if (d4goLow(data, 1) == kSuccess) {
    AssignSomething(data);
    d4flush(data);
    d4changed(data, 0);
  }
  if (d4appendStart(data) == kSuccess) {
    AssignSomething(data);
    d4append(data);
    d4changed(data, 0);  // a refused record would be tried again at every move
  }
  if (d4goLow(data, 2) == kSuccess) {
    d4delete(data);
    d4flush(data);
  }
}

}  // namespace

void Exercise(const SampleFiles& sample, bool only_memos) {
  testing::MemoryFiles files(kDiskBytes);
  testing::EnginePorts ports;
  files.Put(kTablePath, sample.table);
  if (!sample.index.empty()) files.Put(kIndexPath, sample.index);
  if (!sample.memo.empty()) files.Put(kMemoPath, sample.memo);
  const auto code = code4initVB(ports.Over(files));
  code4accessMode(*code, 1);
  Data4* data = d4open(*code, kTablePath);
  if (data != nullptr) {
    d4headerCheck(*data);
    Walk(*data, kMostReads);
    if (!only_memos) VisitTags(*data);
    Change(*data);
    if (!only_memos) VisitTags(*data);
    if (!only_memos) d4reindex(*data);
    d4pack(*data);
    Walk(*data, kMostReads);
    d4close(data);
  }
  code4initUndo(*code);
}

}  // namespace tallwick::fuzz
