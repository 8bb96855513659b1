// The ports of a run from the command line: a clock that can be held still, a workstation that can be
// renamed, and a suite that is made of the global options.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/options.h"
#include "core/clock.h"
#include "core/file_system.h"
#include "core/workstation.h"
#include "shell/suite.h"

namespace tallwick::cli {

class CommandLineClock : public Clock {
 public:
  explicit CommandLineClock(Clock& system) : system_(system) {}
  DateTime Now() override { return fixed_ ? *fixed_ : system_.Now(); }
  // Waits in earnest even while the time is held: what is waited for is another process.
  void Sleep(int milliseconds) override { system_.Sleep(milliseconds); }

  // A day without a time of day stands at noon; a time of day without a day is today's.
  void Hold(const std::optional<Date>& day, const std::optional<DateTime>& time);

 private:
  Clock& system_;
  std::optional<DateTime> fixed_;
};

class CommandLineWorkstation : public Workstation {
 public:
  CommandLineWorkstation(Workstation& system, std::string name) : system_(system), name_(std::move(name)) {}
  std::string ComputerName() override { return name_.empty() ? system_.ComputerName() : name_; }
  int ProcessId() override { return system_.ProcessId(); }
  std::string BootId() override { return system_.BootId(); }

 private:
  Workstation& system_;
  std::string name_;
};

// The suite as the options describe it. The options are read at each call, so a script may change them.
class CommandLineSuite : public Suite {
 public:
  CommandLineSuite(const GlobalOptions& options, const FileSystem& files)
      : options_(options), files_(files) {}

  std::string CompanyName() const override { return options_.company; }
  std::string CompanyNumber() const override { return options_.company_number; }
  std::string DataPath() const override { return Held(options_.data); }
  std::string ApplicationPath() const override { return {}; }
  std::string SettingsPath() const override;
  std::string UpdatePath() const override { return {}; }
  std::string BranchName() const override { return options_.branch; }
  bool SecurityOn() const override { return options_.security; }
  std::string Login() const override { return options_.user; }
  bool RegisterProgram(std::string_view, int) override { return true; }

 private:
  std::string Held(const std::string& platform_path) const;

  const GlobalOptions& options_;
  const FileSystem& files_;
};

// "YYYY-MM-DD"; nullopt for anything that is no existing day.
std::optional<Date> ParseIsoDate(std::string_view text);
// "HH:MM:SS" or "HH:MM"; only the time of day of the result counts.
std::optional<DateTime> ParseTimeOfDay(std::string_view text);

}  // namespace tallwick::cli
