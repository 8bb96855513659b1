// The escrow files for this workstation alone, and back to shared use.
#pragma once

#include "shell/session.h"

namespace tallwick {

// Reopens the company-wide tables shared, and settles the session with what they hold now: a selected bank
// that is gone is closed.
void ReopenCompany(Session& session);

class ExclusiveAccess {
 public:
  explicit ExclusiveAccess(Session& session) : session_(session) {}
  // Returns to shared use.
  ~ExclusiveAccess();
  ExclusiveAccess(const ExclusiveAccess&) = delete;
  ExclusiveAccess& operator=(const ExclusiveAccess&) = delete;

  // Closes the company-wide tables and locks everyone else out: other workstations that start are told so,
  // and none can open an escrow table. False after the critical message when anybody uses one; then Code() is
  // the engine's error code and everything is as it was. `title` is the message's.
  bool Take(std::string_view title);
  void Return();
  bool IsTaken() const { return taken_; }
  int Code() const { return code_; }

 private:
  Session& session_;
  bool taken_ = false;
  int code_ = 0;
};

}  // namespace tallwick
