#include "checks/stock_check_printer.h"

#include <algorithm>

#include "checks/sign_password.h"
#include "core/text.h"
#include "posting/bank_settings.h"
#include "shell/clsBranch.h"
#include "shell/rights.h"

namespace tallwick {
namespace {

constexpr std::string_view kTitle = "Print Checks";
constexpr int kMostPrints = 9;  // of a check
constexpr std::string_view kNoFont = "MICR Fonts not installed - Printing Checks disabled...";

std::vector<std::string> Filled(std::initializer_list<std::string_view> texts) {
  std::vector<std::string> lines;
  for (const std::string_view text : texts) {
    if (!Trim(text).empty()) lines.emplace_back(Trim(text));
  }
  return lines;
}

}  // namespace

StockCheckPrinter::StockCheckPrinter(Session& session, std::string_view bank_code)
    : session_(session),
      bank_code_(Trim(bank_code)),
      printed_(session.Files(), session.DataPath(), bank_code) {}

std::string StockCheckPrinter::WhyNot() {
  const std::string font = ReadMicrSettings().font;
  return font.empty() || session_.Sheets()->HasFont(font) ? "" : std::string(kNoFont);
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
  if (const std::string why = WhyNot(); !why.empty()) {
    session_.Boxes().Exclaim(kTitle, why);
    return false;
  }
  const std::optional<CheckLayout> layout = ReadBankLayout(bank, options.stock);
  if (checks.empty() || !layout) return false;
  const CheckStationery stationery = StationeryOf(bank);
  if (const std::string problem = CheckProblem(checks, stationery, *layout); !problem.empty()) {
    session_.Boxes().Critical(kTitle, problem);
    return false;
  }
  if (!MayPrintAgain(checks) || !MaySign(*layout)) return false;
  const SheetMaker make = [&](const SheetMeasure& measure, const SheetOrder& order) {
    const int prints = order.prints > 0 ? order.prints : layout->copies.value_or(bank.check_copies);
    return PlaceChecks(checks, stationery, *layout, std::min(prints, kMostPrints),
                       layout->OffsetFor(order.printer), measure);
  };
  SheetPrinter& sheets = *session_.Sheets();
  if (!(options.preview ? sheets.Preview(make) : sheets.Print(make))) return false;
  Note(checks);
  return true;
}

MicrSettings StockCheckPrinter::ReadMicrSettings() const {
  const BankSettings file(session_.Files(), session_.DataPath(), kMicrSettings, bank_code_);
  MicrSettings settings;
  settings.font = file.Get("Font").value_or("");
  settings.on_us = file.Get("OnUs").value_or(settings.on_us);
  settings.auxiliary_on_us = file.Get("AuxiliaryOnUs").value_or(settings.auxiliary_on_us);
  const std::string digits = file.Get("NumberDigits").value_or("");
  if (IsAllDigits(digits) && digits.size() <= 2) settings.number_digits = std::stoi(digits);
  return settings;
}

CheckStationery StockCheckPrinter::StationeryOf(const BankRecord& bank) const {
  const Suite& suite = session_.TheSuite();
  const BranchAddress branch = ReadBranchAddress(session_.Files(), suite.SettingsPath(), suite.BranchName());
  CheckStationery stationery;
  stationery.branch = Trim(branch.Text("Branch Name"));
  if (stationery.branch.empty()) stationery.branch = suite.CompanyName();
  stationery.branch_address = Filled({branch.Text("Branch Street 1"), branch.Text("Branch Street 2"),
                                      branch.Text("Branch City, State  ZIP")});
  stationery.bank = Filled({bank.name, bank.address1, bank.city_state});
  stationery.routing = bank.routing_number;
  stationery.account = bank.account_number;
  stationery.micr = ReadMicrSettings();
  return stationery;
}

std::optional<CheckLayout> StockCheckPrinter::ReadBankLayout(const BankRecord& bank,
                                                             std::optional<CheckStock> stock) const {
  const std::string name = std::string(kCheckLayoutSettings) + bank_code_ + ".dat";
  const std::string text = session_.Files().Read(session_.DataPath() + name).value_or("");
  const LayoutReading reading = ReadLayout(text, bank, stock);
  if (reading.problem.empty()) return reading.layout;
  session_.Boxes().Critical(
      kTitle,
      "The check layout " + name + " in the company's data folder cannot be used.\r\n" + reading.problem);
  return std::nullopt;
}

bool StockCheckPrinter::MayPrintAgain(std::span<const CheckOnPaper> checks) const {
  const std::map<std::string, std::string> known = printed_.Read();
  std::string lines;
  int count = 0;
  constexpr int kMostNamed = 10;
  for (const CheckOnPaper& paper : checks) {
    const auto found = known.find(paper.check.number);
    if (found == known.end() || ++count > kMostNamed) continue;
    lines += "Check " + found->first + " was printed on " + found->second + ".\r\n";
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

void StockCheckPrinter::Note(std::span<const CheckOnPaper> checks) {
  const PrintNote note{session_.TheClock().Now(), session_.TheSuite().Login(),
                       session_.TheWorkstation().ComputerName()};
  for (const CheckOnPaper& paper : checks) {
    if (printed_.Add(paper.check, note)) continue;
    session_.Boxes().Exclaim(kTitle,
                             "The checks were printed, but that could not be noted in the folder Logs "
                             "of the company's data.  Make sure that you may write there.");
    return;
  }
}

}  // namespace tallwick
