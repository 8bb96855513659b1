// A fault of every kind at every change of a piece of work on a disk in memory.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/memory_files.h"

namespace tallwick::testing {

struct FaultKind {
  const char* name;
  Fault fault;
  bool power_cut;
};

inline constexpr FaultKind kFaultKinds[] = {
    {"fail", Fault::kFail, false},          {"short write", Fault::kShort, false},
    {"disk full", Fault::kFull, false},     {"process death", Fault::kDie, false},
    {"power cut", Fault::kDie, true},       {"torn write", Fault::kTear, false},
    {"torn power cut", Fault::kTear, true},
};

// Does a piece of work on a disk. It calls `arm` once it is ready: from there on changes count. The result is
// an engine code.
using SweptWork = std::function<int(MemoryFiles& disk, const std::function<void()>& arm)>;
// Looks at the disk afterwards, as the next process to start would; `code` is what the work gave.
using SweptLook = std::function<void(MemoryFiles& disk, int code, const std::string& where)>;

// Each time on a fresh copy of `base`, until the work gets by without meeting the fault. Stops at the first
// that a test's fatal failure has met.
inline void SweepFaults(const MemoryFiles& base, const std::string& name, const SweptWork& work,
                        const SweptLook& look) {
  for (const FaultKind& kind : kFaultKinds) {
    bool met = true;
    for (int n = 1; met && !::testing::Test::HasFatalFailure(); ++n) {
      auto disk = base.Clone();
      const int code = work(*disk, [&] { disk->Plan(kind.fault, n); });
      met = disk->Changes() >= n;
      disk->Restart(kind.power_cut && disk->IsDead());
      look(*disk, code, name + ", " + kind.name + " at " + std::to_string(n));
    }
  }
}

}  // namespace tallwick::testing
