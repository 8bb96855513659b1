// check print: posted checks on their stock, into a PDF file. check layout: the bank's check layout, to begin
// an own one with. check sign-password: the password that is asked for before checks are printed.
#include "checks/check_batch.h"
#include "checks/layout_file.h"
#include "checks/sign_password.h"
#include "checks/stock_check_printer.h"
#include "cli/commands/posted.h"
#include "cli/report_files.h"
#include "shell/company_tables.h"

namespace tallwick::cli {

namespace {

struct PrintArguments {
  std::vector<std::string> numbers;
  std::string pdf;
  std::string layout;
  std::string advice;
};

int Print(Office& office, const PrintArguments& arguments) {
  if (!office.PrintInto(arguments.pdf)) return office.Status();
  Session* session = office.OpenBank();
  if (session == nullptr) return office.Status();
  BankTables tables(session->Home());
  if (!tables.Open(session->BankCode())) return kNoTables;
  const std::optional<BankRecord> bank = session->Company().banks.Find(session->BankCode());
  if (!bank) return office.Refuse("Bank ID Code no longer valid...");
  const CheckBatch batch = CollectChecks(tables, bank->code, arguments.numbers, arguments.advice);
  if (!batch.problem.empty()) return office.Refuse(batch.problem);
  StockCheckPrinter printer(*session, bank->code);
  if (!AgreesToPrint(batch, office.Boxes(), "Print Checks") ||
      !printer.PrintAll(batch.checks, *bank, {false, ParseStock(arguments.layout)})) {
    return office.Refuse("Nothing was printed");
  }
  Json numbers = Json::array();
  for (const CheckOnPaper& paper : batch.checks) numbers.push_back(paper.check.number);
  office.Out().Set("printed", numbers);
  if (!batch.left_out.empty()) office.Out().Set("leftOut", batch.left_out);
  office.Out().Set("pdf", arguments.pdf);
  office.Out().Line(std::to_string(batch.checks.size()) + " printed into " + arguments.pdf);
  return kDone;
}

int ShowLayout(Office& office, const PrintArguments& arguments) {
  Session* session = office.OpenBank();
  if (session == nullptr) return office.Status();
  const std::optional<BankRecord> bank = session->Company().banks.Find(session->BankCode());
  if (!bank) return office.Refuse("Bank ID Code no longer valid...");
  const LayoutReading reading =
      ReadLayoutFile(session->Files(), session->DataPath(), *bank, ParseStock(arguments.layout));
  if (!reading.problem.empty()) return office.Refuse(reading.problem);
  const std::string shown = LayoutText(reading.layout);
  office.Out().Set("layout", shown);
  office.Out().Line(shown);
  return kDone;
}

int ChangeSignPassword(Office& office, const PrintArguments&) {
  Session* session = office.OpenBank();
  if (session == nullptr) return office.Status();
  const auto typed = office.Boxes().AskSecret("Password to Sign Check", "New password (empty for none):");
  if (!typed) return office.Refuse("No password was typed");
  if (!SetSignPassword(*session, session->BankCode(), *typed)) return office.Refuse("Nothing was changed");
  office.Out().Set("asked", !typed->empty());
  office.Out().Line(typed->empty() ? "Checks are printed without a password"
                                   : "The password is asked for before checks are printed");
  return kDone;
}

void AddStock(CLI::App* command, PrintArguments& arguments) {
  command
      ->add_option("--layout", arguments.layout, "voucher or three (to a page) in place of the bank's stock")
      ->check(CLI::IsMember({"voucher", "three"}));
}

}  // namespace

void AddCheckPrintCommands(CLI::App& check, Action& chosen) {
  auto arguments = std::make_shared<PrintArguments>();
  CLI::App* print = check.add_subcommand("print", "Prints posted checks into a PDF file");
  print->add_option("NUMBER", arguments->numbers, "Check numbers, or ranges such as 10452-10460")->required();
  print->add_option("--pdf", arguments->pdf, "The file")->required()->check(AFileName());
  print->add_option("--remittance", arguments->advice,
                    "Remittance advice; the reason of a check's voucher where none is given");
  AddStock(print, *arguments);
  Choose(print, chosen, arguments, Print);
  auto shown = std::make_shared<PrintArguments>();
  CLI::App* layout = check.add_subcommand("layout", "The check layout of the bank, as a file to be edited");
  AddStock(layout, *shown);
  Choose(layout, chosen, shown, ShowLayout);
  CLI::App* password = check.add_subcommand(
      "sign-password", "Sets what is asked for before checks are printed, read from standard input");
  Choose(password, chosen, std::make_shared<PrintArguments>(), ChangeSignPassword);
}

}  // namespace tallwick::cli
