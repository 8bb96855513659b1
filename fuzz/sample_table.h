// A small table with one field of every type and one tag of every kind, from which fuzzing starts.
#pragma once

#include <cstdint>
#include <string>

#include "store/engine/codebase.h"
#include "tests/support/engine_ports.h"
#include "tests/support/memory_files.h"

namespace tallwick::fuzz {

inline constexpr const char* kTablePath = "/data/SAMPLE.DBF";
inline constexpr const char* kIndexPath = "/data/SAMPLE.CDX";
inline constexpr const char* kMemoPath = "/data/SAMPLE.FPT";

// The bytes of the table's three files.
struct SampleFiles {
  std::string table;
  std::string index;
  std::string memo;
};

// Makes the table with so many records in memory; every fifth is deleted, every third has a memo. Ends the
// program when the engine cannot: nothing can be fuzzed then.
SampleFiles MakeSample(std::uint32_t records);

// The files of the one sample whose other two files stay whole while the third is fuzzed.
const SampleFiles& BaseSample();

// Opens the table of the sample and does with it what the product does, in a limited number of steps: reads
// every field and memo, walks and seeks in every tag, changes, appends and deletes a record, reindexes and
// packs. With `only_memos` no tags are visited: where they are whole, that would be most of the time.
void Exercise(const SampleFiles& sample, bool only_memos = false);

}  // namespace tallwick::fuzz
