// The progress of work over many files, counted in their bytes, and its stop in the middle of a file: a table
// may take minutes.
#pragma once

#include <string>

#include "core/file_system.h"
#include "maintenance/work_progress.h"

namespace tallwick {

class ByteProgress {
 public:
  explicit ByteProgress(WorkProgress& progress) : progress_(progress) {}

  // Another pass over so many bytes.
  void Begin(std::uint64_t total) {
    done_ = 0;
    total_ = total;
  }
  // Says which file it is about now. False when the work shall stop.
  bool Show(std::string what) {
    what_ = std::move(what);
    return Add(0);
  }
  // For the reads and copies of that file.
  GoesOn OfFile() {
    return [this](std::size_t bytes) { return Add(bytes); };
  }
  bool IsStopped() const { return stopped_; }

 private:
  bool Add(std::size_t bytes) {
    done_ += bytes;
    progress_.Show(what_, static_cast<std::int64_t>(done_), static_cast<std::int64_t>(total_));
    stopped_ = stopped_ || progress_.StopWanted();
    return !stopped_;
  }

  WorkProgress& progress_;
  std::string what_;
  std::uint64_t done_ = 0;
  std::uint64_t total_ = 0;
  bool stopped_ = false;
};

}  // namespace tallwick
