// A store of checks that does the measured works. Both stores hold the same checks under the same six orders
// and give the same results, which the program compares.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/checks.h"

namespace tallwick::bench {

enum class Work {
  kAppend,   // all checks into an empty store, one unit of work
  kFind,     // each of the numbers looked up by itself: amount and status
  kWalk,     // all checks in number order: number, amount, status
  kSum,      // amounts of the outstanding checks posted up to a period, past every check
  kReindex,  // all six orders built anew
  kPost,     // a check and its cross-reference, durable one by one
};

struct Workload {
  std::vector<Check> checks;
  std::vector<std::string> numbers;  // to find
  int last_period = 0;               // to sum, a period key
  std::uint32_t posts = 0;           // how many checks one run of kPost posts
};

// Numbers of posted checks begin here, above those of the workload.
inline constexpr std::uint32_t kFirstPosted = 10000000;

class CheckStore {
 public:
  virtual ~CheckStore() = default;
  // With what it is set to, for the line above the table.
  virtual std::string Name() const = 0;
  // Gets ready for a work; not measured. kAppend gets an empty store, every other one the store as it was
  // left.
  virtual void Prepare(Work work) = 0;
  // Does the work. The result is the same for every store: a sum or checksum in the order of the work, or a
  // count.
  virtual std::int64_t Run(Work work) = 0;
};

// Stores in `folder`, which exists. A failure ends the program with a message.
std::unique_ptr<CheckStore> MakeEngineStore(const std::string& folder, const Workload& workload);
std::unique_ptr<CheckStore> MakeSqliteStore(const std::string& folder, const Workload& workload);

// The path of the engine store's table.
std::string EngineTablePath(const std::string& folder);

// Takes a check into a checksum that depends on the order.
inline std::int64_t Mix(std::int64_t sum, std::string_view number, std::int64_t cents,
                        std::string_view status) {
  const auto digit = static_cast<std::uint64_t>(number.empty() ? 0 : number.back());
  const auto letter = static_cast<std::uint64_t>(status.empty() ? 0 : status.front());
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(sum) * 31U + static_cast<std::uint64_t>(cents) +
                                   digit + letter);
}

[[noreturn]] void Fail(std::string_view what);

}  // namespace tallwick::bench
