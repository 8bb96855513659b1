// Stand-ins for what a person's desktop has around it, for pictures, measurements and tests of the whole
// program: a suite that is no more than a data folder, and message boxes that are printed.
#pragma once

#include <QString>
#include <string>

#include "core/message_boxes.h"
#include "shell/suite.h"

namespace tallwick {

struct FolderCompany {
  QString data_path;
  QString name;
  QString number;
};

class FolderSuite : public Suite {
 public:
  // Folders are in the platform's form.
  FolderSuite(const FolderCompany& company, std::string login)
      : company_(company), login_(std::move(login)) {}
  std::string CompanyName() const override { return company_.name.toStdString(); }
  std::string CompanyNumber() const override { return company_.number.toStdString(); }
  std::string DataPath() const override;
  std::string ApplicationPath() const override { return {}; }
  std::string SettingsPath() const override { return DataPath(); }
  std::string UpdatePath() const override { return {}; }
  bool SecurityOn() const override { return false; }
  std::string Login() const override { return login_; }
  bool RegisterProgram(std::string_view, int) override { return true; }

 private:
  FolderCompany company_;
  std::string login_;
};

// Prints each box on standard error, "critical: TITLE: TEXT", and takes its safe answer.
class PrintedBoxes : public MessageBoxes {
 public:
  BoxAnswer Show(const Box& box) override;
};

}  // namespace tallwick
