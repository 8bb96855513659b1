// Prints checks of one bank on its stock: asks for the right to post checks, reads the layout and the MICR
// settings, refuses what cannot be printed, asks before a check goes to paper again and for the password to
// sign where there is one, and notes what was printed.
// Invariant: what went to paper, or may have before the printer failed, is noted as printed, and nothing goes
// to paper when one check of the batch is refused, or the log of prints cannot be written.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "checks/check_layout.h"
#include "checks/check_sheet.h"
#include "checks/printed_checks.h"
#include "posting/check_ports.h"
#include "shell/session.h"

namespace tallwick {

struct CheckPrintOptions {
  bool preview = false;
  std::optional<CheckStock> stock;  // none: what the bank has
};

class StockCheckPrinter : public CheckPrinter {
 public:
  // The session must have a sheet printer.
  StockCheckPrinter(Session& session, std::string_view bank_code);

  std::string WhyNot() override;
  bool Print(const CheckOnPaper& check, const BankRecord& bank, bool preview) override;
  // True when all of them went to paper. What failed has been shown.
  bool PrintAll(std::span<const CheckOnPaper> checks, const BankRecord& bank,
                const CheckPrintOptions& options);
  const PrintedChecks& Printed() const { return printed_; }

 private:
  // Both say why nothing can be printed: "" when something can.
  std::string ReadMicrSettings(MicrSettings& settings) const;
  std::string ReadStationery(const BankRecord& bank, CheckStationery& stationery) const;
  std::optional<LastPrints> KnownPrints() const;  // nullopt after a message
  bool MayPrintAgain(std::span<const CheckOnPaper> checks, const LastPrints& known) const;
  bool MaySign(const CheckLayout& layout) const;
  // Notes the checks and lets `print` put them on paper; what came to nothing is struck out.
  bool Send(std::span<const CheckOnPaper> checks, const LastPrints& known,
            const std::function<SheetEnd()>& print);

  Session& session_;
  const std::string bank_code_;
  PrintedChecks printed_;
};

}  // namespace tallwick
