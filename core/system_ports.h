// The real clock, workstation and file system: what start-up hands down as the ports.
// The objects keep no state of their own and live as long as the program.
#pragma once

#include <ctime>

#include "core/clock.h"
#include "core/file_system.h"
#include "core/workstation.h"

namespace tallwick {

Clock& SystemClock();
Workstation& SystemWorkstation();
FileSystem& SystemFileSystem();

// A moment in the workstation's local time.
DateTime LocalTime(std::time_t seconds);

}  // namespace tallwick
