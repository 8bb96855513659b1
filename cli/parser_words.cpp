#include "cli/parser_words.h"

#include <algorithm>

#include "core/text.h"

namespace tallwick::cli {

namespace {

// Stands behind a text that begins with a bracket: the parser takes apart only what ends with one too.
constexpr char kSign = '\x1f';

std::string Signed(std::string word) {
  if (word.starts_with('[')) word += kSign;
  return word;
}

std::string NameIn(const std::string& word) {
  return word.substr(0, word.find('='));
}

// The option that the word names where the command is read, which is one of the command or of those above
// it; null for any other word.
const CLI::Option* OptionNamed(const CLI::App* command, const std::string& word) {
  if (!word.starts_with('-')) return nullptr;
  const CLI::Option* option = nullptr;
  for (; command != nullptr && option == nullptr; command = command->get_parent())
    option = command->get_option_no_throw(NameIn(word));
  return option;
}

const CLI::App* CommandNamed(const CLI::App* above, const std::string& word) {
  const auto named =
      above->get_subcommands([&](const CLI::App* command) { return command->check_name(word); });
  return named.empty() ? nullptr : named.front();
}

bool TakesValue(const CLI::Option& option) {
  return option.get_items_expected_max() > 0;
}

}  // namespace

ParserWords ReadyForParser(const CLI::App& app, const std::vector<std::string>& words) {
  ParserWords ready{{}, &app, {}};
  const auto add = [&](const std::string& word) { ready.words.push_back(Signed(word)); };
  auto word = words.begin();
  for (; word != words.end() && *word != "--"; ++word) {
    const CLI::Option* option = OptionNamed(ready.command, *word);
    if (option == nullptr) {
      if (const CLI::App* command = CommandNamed(ready.command, *word)) ready.command = command;
      add(*word);
    } else if (!TakesValue(*option)) {
      add(*word);
    } else if (const std::string name = NameIn(*word); name != *word) {
      add(name);
      add(word->substr(name.size() + 1));
    } else {
      add(name);
      if (word + 1 == words.end()) continue;
      const std::string& value = *++word;
      if (value == "--" || OptionNamed(ready.command, value) != nullptr) {
        ready.wrong = name + " needs a value.  Write " + Quoted(std::string(name).append("=").append(value)) +
                      " where " + Quoted(value) + " is meant";
        return ready;
      }
      add(value);
    }
  }
  std::for_each(word, words.end(), add);
  return ready;
}

void TakeBracketsBack(CLI::App& app) {
  const auto take_back = [](std::string& text) {
    if (text.starts_with('[') && text.back() == kSign) text.pop_back();
    return std::string();
  };
  for (CLI::Option* option : app.get_options([](CLI::Option* one) { return TakesValue(*one); }))
    option->transform(CLI::Validator(take_back, ""));
  for (CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) TakeBracketsBack(*command);
}

std::string WithoutSigns(std::string text) {
  std::erase(text, kSign);
  return text;
}

}  // namespace tallwick::cli
