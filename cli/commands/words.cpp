// words: the words line of a check.
#include "cli/commands/command.h"
#include "core/amount_in_words.h"
#include "core/text.h"

namespace tallwick::cli {

namespace {

struct WordsArguments {
  std::string amount;
};

int Words(Office& office, const WordsArguments& arguments) {
  std::optional<Currency> amount = Currency::Parse(Trim(arguments.amount));
  if (!amount) amount = Currency::ParseTyped(arguments.amount);
  if (!amount) return office.Refuse(Quoted(arguments.amount) + " is no amount of dollars and cents");
  const std::string words = AmountInWords(*amount);
  office.Out().Line(words);
  office.Out().Set("words", words);
  return kDone;
}

}  // namespace

void AddWordsCommand(CLI::App& app, Action& chosen) {
  auto arguments = std::make_shared<WordsArguments>();
  CLI::App* words = app.add_subcommand("words", "A check's amount in words");
  words->add_option("AMOUNT", arguments->amount, "Dollars and cents, like 1234.56")->required();
  Choose(words, chosen, arguments, Words);
}

}  // namespace tallwick::cli
