// The system's clock. Only the step to local time differs between platforms.
#include <chrono>
#include <thread>

#include "core/system_ports.h"

namespace tallwick {

namespace {

class RealClock : public Clock {
 public:
  DateTime Now() override {
    return LocalTime(std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()));
  }
  void Sleep(int milliseconds) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }
};

}  // namespace

Clock& SystemClock() {
  static RealClock clock;
  return clock;
}

}  // namespace tallwick
