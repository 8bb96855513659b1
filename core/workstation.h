// The port that says on which machine and in which process the program runs.
#pragma once

#include <string>

namespace tallwick {

class Workstation {
 public:
  virtual ~Workstation() = default;
  virtual std::string ComputerName() = 0;
  virtual int ProcessId() = 0;
  // Names the present run of the machine since its power came on; "" where that is not known.
  virtual std::string BootId() { return {}; }
};

}  // namespace tallwick
