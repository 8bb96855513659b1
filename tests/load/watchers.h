// Those who only read while the clerks work: two walk a register, one computes file ledgers.
#pragma once

#include <vector>

#include "tests/load/clerk.h"

namespace tallwick::load {

// Walks the checks in number order; each walk must see every number once, whole, and every check that the
// walk before saw and nobody may delete.
class RegisterWalker {
 public:
  RegisterWalker(Workplace& place, Tally& tally) : place_(place), tally_(tally) {}
  void Work();

 private:
  Workplace& place_;
  Tally& tally_;
  std::vector<bool> must_see_ = std::vector<bool>(static_cast<std::size_t>(kMostNumbers));
  bool read_ahead_ = false;  // every other walk
};

// What the file PILLAR adds up to; made before the clerks begin.
inline constexpr int kPillarItems = 100;
inline constexpr std::int64_t kPillarCheckCents = 1234;
inline constexpr std::int64_t kPillarDepositCents = 5000;
// False when the store refuses.
bool MakePillars(Workplace& place, Tally& tally);

class LedgerReader {
 public:
  LedgerReader(Workplace& place, Tally& tally) : place_(place), tally_(tally) {}
  void Work();

 private:
  Workplace& place_;
  Tally& tally_;
  int growing_checks_ = 0;
  int turn_ = 0;
};

}  // namespace tallwick::load
