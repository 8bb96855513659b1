// A store on a disk in memory, with what tables need around it.
#pragma once

#include <vector>

#include "store/clsKVRData.h"
#include "tables/table_base.h"
#include "tests/support/memory_file_system.h"

namespace tallwick::testing {

struct MemoryCompany {
  explicit MemoryCompany(MemoryFiles& memory)
      : files(memory),
        data({clock, workstation, files, boxes, memory}),
        home{data, files, boxes, "\\data\\"} {
    data.InitializeCodebase();
  }

  // What is wrong with an open table, one problem a line.
  std::string Problems(const TableBase& table) {
    std::vector<engine::TableProblem> problems;
    std::string text;
    if (const int code = data.VerifyDatabase(table.Handle(), &problems); code != engine::kSuccess)
      text = table.Name() + " could not be examined: " + std::to_string(code) + "\n";
    for (const auto& problem : problems)
      text += table.Name() + " " + std::to_string(problem.record) + ": " + problem.problem + "\n";
    return text;
  }

  FakeClock clock;
  FakeWorkstation workstation;
  ScriptedBoxes boxes;
  MemoryFileSystem files;
  clsKVRData data;
  TableHome home;
};

}  // namespace tallwick::testing
