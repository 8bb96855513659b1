// init: the company-wide tables, made where they are missing.
#include "cli/commands/command.h"

namespace tallwick::cli {

namespace {

int Init(Office& office) {
  if (!office.MakeDataFolder()) return office.Status();
  if (office.Open() == nullptr) return office.Status();
  Json created = Json::array();
  for (const std::string& table : office.MadeTables()) created.push_back(table);
  office.Out().Set("created", created);
  for (const std::string& table : office.MadeTables()) office.Out().Line("created " + table);
  if (created.empty()) office.Out().Line("nothing was missing");
  return kDone;
}

}  // namespace

void AddInitCommand(CLI::App& app, Action& chosen) {
  Choose(app.add_subcommand("init", "Makes the company-wide tables where they are missing"), chosen, Init);
}

}  // namespace tallwick::cli
