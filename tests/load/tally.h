// What all processes of a run have done, in memory that they share: counts, and for every number how often it
// was posted more than removed.
#pragma once

#include <sys/mman.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <new>
#include <string_view>

namespace tallwick::load {

inline constexpr std::int64_t kMostNumbers = 1'000'000;

struct Tally {
  std::atomic<std::int64_t> posts, edits, voids, deletes;
  std::atomic<std::int64_t> number_taken;       // another was quicker; tried again with the next
  std::atomic<std::int64_t> locked;             // refused, nothing written
  std::atomic<std::int64_t> changed_elsewhere;  // refused, the record was not as it was read
  std::atomic<std::int64_t> walks, walked_records, ledgers;
  std::atomic<std::int64_t> slowest_us;  // operation of a clerk
  std::atomic<std::int64_t> total_us;    // of all of them
  std::atomic<std::int64_t> over_a_second;
  // 1 for a number in its table, 0 for one that is not.
  std::atomic<std::int8_t> checks[kMostNumbers], vouchers[kMostNumbers], deposits[kMostNumbers];

  // The first failure of any process; later ones are only counted.
  std::atomic<int> failures;
  char first_failure[400];

  void Fail(std::string_view what) {
    if (failures.fetch_add(1) != 0) return;
    std::memcpy(first_failure, what.data(), std::min(what.size(), sizeof first_failure - 1));
  }
  void Took(std::chrono::steady_clock::duration time) {
    const std::int64_t us = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
    total_us += us;
    if (us > 1'000'000) ++over_a_second;
    std::int64_t slowest = slowest_us.load();
    while (us > slowest && !slowest_us.compare_exchange_weak(slowest, us)) {
    }
  }
};

// All zeros, shared with the processes that are forked later; null when there is no memory.
inline Tally* SharedTally() {
  void* memory = mmap(nullptr, sizeof(Tally), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  return memory == MAP_FAILED ? nullptr : static_cast<Tally*>(memory);
}

}  // namespace tallwick::load
