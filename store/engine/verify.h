// Examines an open table: head against file, every tag against the records, page structure, free list, memos.
// Memory is bounded: eight bytes for each record and tag, and not more than 96 MiB of them at a time while
// that holds a tag, beside a bit of bookkeeping for each page and memo.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/engine/codebase.h"

namespace tallwick::engine {

// What a problem calls for.
enum class ProblemKind {
  kIndex,   // the index alone is at fault: building it anew from the records mends it
  kHead,    // the head's record count
  kRecord,  // records contradict each other; a person must say which one holds
  kMemo,    // memo texts may be lost or mixed
  kMemoEnd  // the memo file's number of the next free block, which follows from the file's length
};

struct TableProblem {
  std::uint32_t record = 0;  // 0 = the table as a whole
  std::string problem;       // one sentence that says what is wrong
  ProblemKind kind = ProblemKind::kIndex;
};

// Adds what it finds to `problems` and goes on; behind 1,000 of them only their number is told. kSuccess when
// the examination could be made, whatever it found; kStopped when `progress` said so; else the error that
// prevented it. Writers to the table's index wait meanwhile.
int d4verify(Data4& data, std::vector<TableProblem>* problems, const Progress& progress = {});

// Sets the memo file's next free block to the end of the file. Needs exclusive access.
int d4correctMemoEnd(Data4& data);

}  // namespace tallwick::engine
