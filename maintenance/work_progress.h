// The port through which long work says how far it has come, and learns that it shall stop.
#pragma once

#include <cstdint>
#include <string_view>

namespace tallwick {

class WorkProgress {
 public:
  virtual ~WorkProgress() = default;
  // What is being done ("Processing ESCROW_BANKS"), and how much of the whole; a total of 0 is not known yet.
  virtual void Show(std::string_view what, std::int64_t done, std::int64_t total) = 0;
  // One piece of the work has its result: a table or a file, in a few words.
  virtual void Tell(std::string_view subject, std::string_view result) = 0;
  // True from the moment on when the person asked to stop. Asked only where stopping is safe.
  virtual bool StopWanted() = 0;
};

// For work that nobody watches.
class NoProgress : public WorkProgress {
 public:
  void Show(std::string_view, std::int64_t, std::int64_t) override {}
  void Tell(std::string_view, std::string_view) override {}
  bool StopWanted() override { return false; }
};

}  // namespace tallwick
