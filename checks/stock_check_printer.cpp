#include "checks/stock_check_printer.h"

#include <algorithm>
#include <utility>

#include "checks/layout_file.h"
#include "checks/micr_file.h"
#include "checks/sign_password.h"
#include "core/text.h"
#include "shell/clsBranch.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr std::string_view kTitle = "Print Checks";
constexpr int kMostPrints = 9;  // of a check
constexpr std::string_view kNoFont = "MICR Fonts not installed - Printing Checks disabled...";

}  // namespace

StockCheckPrinter::StockCheckPrinter(Session& session, std::string_view bank_code)
    : session_(session),
      bank_code_(Trim(bank_code)),
      printed_(session.Files(), session.DataPath(), bank_code) {}

std::string StockCheckPrinter::WhyNot() {
  MicrSettings settings;
  return ReadMicrSettings(settings);
}

bool StockCheckPrinter::Print(const CheckOnPaper& check, const BankRecord& bank, bool preview) {
  return PrintAll({&check, 1}, bank, {preview, std::nullopt});
}

bool StockCheckPrinter::PrintAll(std::span<const CheckOnPaper> checks, const BankRecord& bank,
                                 const CheckPrintOptions& options) {
  if (!session_.MayUse(kRightPostChecks)) {
    session_.Boxes().Critical(kTitle,
                              "You do not have the right to print checks.  Ask the administrator for it.");
    return false;
  }
  CheckStationery stationery;
  if (const std::string why = ReadStationery(bank, stationery); !why.empty()) {
    session_.Boxes().Exclaim(kTitle, why);
    return false;
  }
  SheetPrinter& sheets = *session_.Sheets();
  const LayoutReading reading = ReadLayoutFile(session_.Files(), session_.DataPath(), bank, options.stock);
  const CheckLayout& layout = reading.layout;
  std::string problem = reading.problem;
  if (problem.empty()) problem = CheckProblem(checks, stationery, layout, sheets.Measure());
  if (!problem.empty()) session_.Boxes().Critical(kTitle, problem);
  if (!problem.empty() || checks.empty()) return false;
  const std::optional<LastPrints> known = KnownPrints();
  if (!known || !MayPrintAgain(checks, *known) || !MaySign(layout)) return false;
  if (const std::string note = CutNote(checks, stationery, layout, sheets.Measure()); !note.empty())
    session_.Boxes().Exclaim(kTitle, note);
  const SheetMaker make = [&](const SheetMeasure& measure, const SheetOrder& order) {
    const int prints = order.prints > 0 ? order.prints : layout.copies.value_or(bank.check_copies);
    return PlaceChecks(checks, stationery, layout, std::min(prints, kMostPrints),
                       layout.OffsetFor(order.printer), measure);
  };
  return Send(checks, *known, [&] { return options.preview ? sheets.Preview(make) : sheets.Print(make); });
}

std::string StockCheckPrinter::ReadMicrSettings(MicrSettings& settings) const {
  MicrReading reading = ReadMicrFile(session_.Files(), session_.DataPath(), bank_code_);
  settings = std::move(reading.settings);
  if (!reading.problem.empty()) return reading.problem;
  const bool drawn = settings.font.empty() || session_.Sheets()->HasFont(settings.font);
  return drawn ? "" : std::string(kNoFont);
}

std::string StockCheckPrinter::ReadStationery(const BankRecord& bank, CheckStationery& stationery) const {
  const Suite& suite = session_.TheSuite();
  const BranchAddress branch = ReadBranchAddress(session_.Files(), suite.SettingsPath(), suite.BranchName());
  stationery.branch = Trim(branch.Text("Branch Name"));
  if (stationery.branch.empty()) stationery.branch = suite.CompanyName();
  stationery.branch_address = FilledLines({branch.Text("Branch Street 1"), branch.Text("Branch Street 2"),
                                           branch.Text("Branch City, State  ZIP")});
  stationery.bank = FilledLines({bank.name, bank.address1, bank.city_state});
  stationery.routing = bank.routing_number;
  stationery.account = bank.account_number;
  const std::string problem = ReadMicrSettings(stationery.micr);
  return problem.empty() ? branch.problem : problem;
}

std::optional<LastPrints> StockCheckPrinter::KnownPrints() const {
  std::optional<LastPrints> known = printed_.Read();
  if (!known)
    session_.Boxes().Critical(kTitle, printed_.Problem() + "  It says which checks were printed before.");
  return known;
}

bool StockCheckPrinter::MayPrintAgain(std::span<const CheckOnPaper> checks, const LastPrints& known) const {
  std::string lines;
  int count = 0;
  constexpr int kMostNamed = 10;
  for (const CheckOnPaper& paper : checks) {
    const auto found = known.find(paper.check.number);
    if (found == known.end() || ++count > kMostNamed) continue;
    lines += "Check " + found->first + " was printed on " + found->second.when + ".\r\n";
  }
  if (count == 0) return true;
  if (count > kMostNamed) lines += "So were " + std::to_string(count - kMostNamed) + " more.\r\n";
  return session_.Boxes().Show({BoxIcon::kQuestion, std::string(kTitle), lines + "Print again?",
                                BoxButtons::kYesNo, BoxAnswer::kNo}) == BoxAnswer::kYes;
}

bool StockCheckPrinter::MaySign(const CheckLayout& layout) const {
  if (layout.sign_password.empty()) return true;
  const std::optional<std::string> typed = session_.Boxes().AskSecret(kTitle, "Password to Sign Check:");
  if (!typed) return false;
  if (EqualsIgnoreCase(SignPasswordDigest(bank_code_, *typed), layout.sign_password)) return true;
  session_.Boxes().Critical(
      kTitle, "This is not the password to sign checks of this bank account.  Nothing was printed.");
  return false;
}

bool StockCheckPrinter::Send(std::span<const CheckOnPaper> checks, const LastPrints& known,
                             const std::function<SheetEnd()>& print) {
  const PrintNote note{session_.TheClock().Now(), session_.Login(), session_.TheWorkstation().ComputerName()};
  const NotedPrint noted = printed_.Note(checks, note, known);
  if (!noted.problem.empty()) {
    session_.Boxes().Critical(kTitle, noted.problem + "  Nothing was printed.");
    return false;
  }
  const SheetEnd end = print();
  if (end == SheetEnd::kNothing && !printed_.StrikeOut(noted.print, note))
    session_.Boxes().Exclaim(kTitle,
                             "Nothing was printed, but the checks stay noted as printed: the folder Logs of "
                             "the company's data can no longer be written.");
  return end == SheetEnd::kPrinted;
}

}  // namespace tallwick
