// Examines an open table: head against file, every tag against the records, page structure, free list, memos.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/engine/codebase.h"

namespace tallwick::engine {

struct TableProblem {
  std::uint32_t record = 0;  // 0 = the table as a whole
  std::string problem;       // one sentence that says what is wrong
};

// Adds what it finds to `problems` (at most 1,000) and goes on. kSuccess when the examination could be made,
// whatever it found; kStopped when `progress` said so; else the error that prevented it.
int d4verify(Data4& data, std::vector<TableProblem>* problems, const Progress& progress = {});

}  // namespace tallwick::engine
