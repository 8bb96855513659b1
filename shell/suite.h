// The port to the suite's main program, beside which this program always runs. It names the company, its
// folders and the user, and keeps the list of running programs.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallwick {

class Suite {
 public:
  virtual ~Suite() = default;

  virtual std::string CompanyName() const = 0;
  virtual std::string CompanyNumber() const = 0;

  // Folders in the held form, with or without a "\" at their end; "" where the suite names none.
  virtual std::string DataPath() const = 0;         // every table of the company
  virtual std::string ApplicationPath() const = 0;  // programs and help books
  virtual std::string SettingsPath() const = 0;     // the user's settings files
  virtual std::string UpdatePath() const = 0;
  // Where "Inactive Banks.dat" lies: the data path unless the suite says otherwise.
  virtual std::string InactiveBanksPath() const { return DataPath(); }

  // The branch office in which the user works, a name in "Branches.xml"; "" where the suite names none.
  virtual std::string BranchName() const { return {}; }

  virtual bool SecurityOn() const = 0;
  virtual std::string Login() const = 0;

  // Tells the suite that a program runs. False when the suite does not answer.
  virtual bool RegisterProgram(std::string_view program, int process_id) = 0;

  // Whether the suite's file list holds this escrow file; nullopt where it offers no list.
  virtual std::optional<bool> KnowsFile(std::string_view file_no) const {
    (void)file_no;
    return std::nullopt;
  }
  // The escrow files of that list, in any order; nullopt where it offers none.
  virtual std::optional<std::vector<std::string>> Files() const { return std::nullopt; }
};

// Attaches to the running suite; null when none runs. It never starts one.
using SuiteFactory = std::function<std::unique_ptr<Suite>()>;

}  // namespace tallwick
