// file: where an escrow file has transactions, from the cross-reference.
#include "cli/commands/command.h"
#include "shell/company_tables.h"

namespace tallwick::cli {

namespace {

struct FileArguments {
  std::string file_number;
};

int LookUp(Office& office, const FileArguments& arguments) {
  Session* session = office.Open();
  if (session == nullptr) return office.Status();
  const FileReferences found = session->Company().xrefs.LookUpFile(arguments.file_number);
  Output& out = office.Out();
  out.Set("banks", found.banks);
  out.Set("checks", found.checks);
  out.Set("deposits", found.deposits);
  out.Set("wires", found.wires);
  out.Set("vouchers", found.vouchers);
  std::string banks;
  for (const std::string& bank : found.banks) banks += (banks.empty() ? "" : ", ") + bank;
  out.Line("banks     " + (banks.empty() ? "none" : banks));
  out.Line("checks    " + std::to_string(found.checks));
  out.Line("deposits  " + std::to_string(found.deposits));
  out.Line("wires     " + std::to_string(found.wires));
  out.Line("vouchers  " + std::to_string(found.vouchers));
  return kDone;
}

}  // namespace

void AddFileCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<FileArguments>();
  CLI::App* file = app.add_subcommand("file", "Banks and counts of an escrow file");
  file->add_option("FILENO", arguments->file_number, "Escrow file number")->required();
  Choose(file, chosen, arguments, LookUp);
}

}  // namespace tallwick::cli
