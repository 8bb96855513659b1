// period parse: reads a period as the bank's screens would.
#include "core/period.h"
#include "cli/commands/command.h"
#include "cli/json_values.h"
#include "core/text.h"

namespace tallwick::cli {

namespace {

struct PeriodArguments {
  std::string text;
  std::string form;  // "month", "date" or "" for the selected bank's
};

int ParseCommand(Office& office, const PeriodArguments& arguments) {
  std::int32_t bank_day = arguments.form == "month" ? 0 : 1;
  if (arguments.form.empty() && !office.Options().bank.empty()) {
    const std::optional<std::int32_t> day = office.BankAccountingDay();
    if (!day) return office.Status();
    bank_day = *day;
  }
  RunState run;
  const Period period = ParsePeriod(arguments.text, bank_day, run);
  Output& out = office.Out();
  const Json keys = PeriodJson(period);
  for (const auto& [key, value] : keys.items()) out.Set(key, value);
  out.Set("valid", run.period_valid);
  out.Set("short", ShortForm(period));
  out.Set("long", LongForm(period));
  if (run.period_valid)
    out.Line(ShortForm(period) + "  " + LongForm(period) + "  " + std::to_string(MakeKey(period)));
  else
    out.Line(Quoted(arguments.text) + " is no valid period of this form");
  return kDone;
}

}  // namespace

void AddPeriodCommand(CLI::App& app, Action& chosen) {
  CLI::App* period = app.add_subcommand("period", "Accounting periods");
  period->require_subcommand(1);
  auto arguments = std::make_shared<PeriodArguments>();
  CLI::App* parse = period->add_subcommand("parse", "Reads a period: 3/15/2024, 3-2024, 3 15 24");
  parse->add_option("TEXT", arguments->text, "What a person would type")->required();
  parse
      ->add_option("--form", arguments->form,
                   "month or date; left out, the form of --bank, and date where no bank is named")
      ->check(CLI::IsMember({"month", "date"}));
  Choose(parse, chosen, arguments, ParseCommand);
}

}  // namespace tallwick::cli
