// The port for the time of day and for waiting, so that tests can hold both still.
#pragma once

#include "core/date.h"

namespace tallwick {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual DateTime Now() = 0;
  // Waits; a test's clock only counts.
  virtual void Sleep(int milliseconds) = 0;
};

}  // namespace tallwick
