#include "checks/print_checks.h"

#include <algorithm>

#include "core/text.h"
#include "core/text_rows.h"
#include "posting/check_numbering.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::size_t kAmountColumn = 3;
constexpr long long kMostProposed = 1000;

std::vector<std::string> NumbersIn(std::string_view text) {
  std::string plain(text);
  std::replace_if(
      plain.begin(), plain.end(), [](char c) { return c == ' ' || c == '\t'; }, ',');
  std::vector<std::string> numbers;
  for (const std::string& piece : Split(plain, ',')) {
    if (!piece.empty()) numbers.push_back(piece);
  }
  return numbers;
}

std::string CountText(const CheckBatch& batch) {
  const std::size_t count = batch.checks.size();
  const std::string left_out = LeftOutText(batch);
  return std::to_string(count) + (count == 1 ? " check" : " checks") +
         (left_out.empty() ? "" : ".  " + left_out);
}

}  // namespace

FrmPrintChecks::FrmPrintChecks(Session& session, ScreenOpener* opener)
    : RoutedForm("frmPrintChecks", session, opener), bank_code_(session.BankCode()), tables_(session.Home()) {
  SetFormCaption("Print Checks - " + session.BankName());
  Add(ControlKind::kText, "txtNumbers", "C&hecks");
  Add(ControlKind::kButton, "cmdList", "&List");
  Add(ControlKind::kGrid, "grdChecks", "Checks");
  Add(ControlKind::kLabel, "lblCount");
  Add(ControlKind::kCheck, "chkPreview", "Use Print Pre&view");
  Add(ControlKind::kButton, "cmdPrint", "Prin&t");
  Add(ControlKind::kButton, "cmdDone", "Do&ne");
  AddRoutes({kLedgerCommand});
}

void FrmPrintChecks::OnOpen() {
  std::string why = "There is no printer here.  Print from the desktop.";
  if (session_.Sheets() != nullptr) why = StockCheckPrinter(session_, bank_code_).WhyNot();
  if (!why.empty()) Boxes().Exclaim(Caption(), why);
  SetEnabled("cmdPrint", why.empty());
  SetText("txtNumbers", Proposal());
  List();
  SetFocus("txtNumbers");
}

void FrmPrintChecks::OnLeave(Control& control) {
  if (control.name == "txtNumbers" && control.text != listed_) List();
}

void FrmPrintChecks::OnClick(Control& control) {
  if (control.name == "cmdList") List();
  if (control.name == "cmdPrint") Print();
  if (control.name == "cmdDone") Close();
}

bool FrmPrintChecks::OnKey(std::string_view key) {
  if (key == "Esc") {
    Close();
    return true;
  }
  if (key == "Enter" && Focus() != nullptr && Focus()->name == "txtNumbers") {
    List();
    return true;
  }
  if (key == "Ctrl+P" && At("cmdPrint").enabled) {
    Leave();
    Print();
    return true;
  }
  return false;
}

std::string FrmPrintChecks::Proposal() {
  const auto known = PrintedChecks(session_.Files(), session_.DataPath(), bank_code_).Read();
  if (!known) return {};
  long long printed = 0;
  for (const auto& [number, last] : *known) printed = std::max(printed, NumberValue(number).value_or(0));
  const long long last = NumberValue(tables_.checks.LastNumber()).value_or(0);
  if (printed == 0 || last <= printed || last - printed > kMostProposed) return {};
  return std::to_string(printed + 1) + (last == printed + 1 ? "" : "-" + std::to_string(last));
}

CheckBatch FrmPrintChecks::Collect() {
  return CollectChecks(tables_, NumbersIn(Text("txtNumbers")));
}

void FrmPrintChecks::List() {
  listed_ = Text("txtNumbers");
  const CheckBatch batch = Collect();
  const PrintedChecks log(session_.Files(), session_.DataPath(), bank_code_);
  const auto known = log.Read();
  const LastPrints printed = known.value_or(LastPrints());
  auto rows = std::make_shared<TextRows>(
      std::vector<std::string>{"Number", "Dated", "Payee", "Amount", "File", "Printed"},
      std::vector<std::size_t>{kAmountColumn});
  for (const CheckOnPaper& paper : batch.checks) {
    const auto before = printed.find(paper.check.number);
    rows->Add({paper.check.number, DisplayDate(paper.check.dated), paper.check.payee, paper.figures,
               paper.check.file_number, before == printed.end() ? "" : before->second.when});
  }
  const std::size_t count = rows->RowCount();
  SetCaption("lblCount", !batch.problem.empty() ? batch.problem
                         : !known               ? log.Problem()
                         : count == 0 ? "Type the numbers of posted checks, such as 10452-10460, 10470."
                                      : CountText(batch));
  SetSource("grdChecks", std::move(rows));
}

void FrmPrintChecks::Print() {
  const CheckBatch batch = Collect();
  if (!batch.problem.empty()) return Refuse(batch.problem, "txtNumbers");
  if (batch.checks.empty()) return Refuse("Type the numbers of the checks to be printed.", "txtNumbers");
  const std::optional<BankRecord> bank = session_.Company().banks.Find(bank_code_);
  if (!bank) return Boxes().Critical(Caption(), "Bank ID Code no longer valid...");
  const bool preview = At("chkPreview").value != 0;
  StockCheckPrinter printer(session_, bank_code_);
  if (AgreesToPrint(batch, Boxes(), Caption()) &&
      printer.PrintAll(batch.checks, *bank, {preview, std::nullopt})) {
    List();
  }
}

}  // namespace tallwick
