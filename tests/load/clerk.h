// A clerk: posts checks, deposits, wires and vouchers, edits, voids and deletes what he finds, as fast as it
// goes.
//
// Three rules let others know what they must find: file "PILLAR" is never touched after the start, file
// "GROWING" only gets checks of 1.00, and a check whose number 3 divides is never deleted.
#pragma once

#include <functional>
#include <random>

#include "tests/load/tally.h"
#include "tests/load/workplace.h"

namespace tallwick::load {

inline constexpr const char* kPillarFile = "PILLAR";
inline constexpr const char* kGrowingFile = "GROWING";
inline constexpr int kDeletedNever = 3;

class Clerk {
 public:
  Clerk(Workplace& place, Tally& tally, unsigned seed) : place_(place), tally_(tally), random_(seed) {}

  // One operation, counted by what came of it.
  void Work();

 private:
  using Counter = std::atomic<std::int64_t>;

  std::int64_t Draw(std::int64_t below) {
    return static_cast<std::int64_t>(random_() % static_cast<unsigned>(below));
  }
  std::int64_t DrawCents() { return 1 + Draw(9'999'99); }
  std::string DrawFile() { return "24-" + std::to_string(1000 + Draw(40)); }
  // True when the operation was done; else it is counted as the refusal that it was.
  bool Done(int code, const char* what, Counter& counter);

  void PostACheck();
  void PostADeposit();
  void PostAVoucher();
  void PostAWire();
  std::string DrawVoucher();
  void ChangeACheck(bool make_void);
  void DeleteACheck();
  void ChangeADeposit(bool remove);
  void ChangeAVoucher();
  // A check or deposit that stands in its table; nullopt when the drawn one does not, or is not to be
  // touched.
  std::optional<CheckRecord> FindACheck();
  std::optional<DepositRecord> FindADeposit();

  Workplace& place_;
  Tally& tally_;
  std::mt19937 random_;
  int wires_ = 0;  // posted or refused
};

}  // namespace tallwick::load
