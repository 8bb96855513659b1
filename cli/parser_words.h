// The words of a command line, written so that the parser cannot misread them. Left to itself it takes the
// word behind "--option=" for the option's value, another option for a text, and a text in brackets for a
// list of texts.
#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace tallwick::cli {

struct ParserWords {
  std::vector<std::string> words;
  const CLI::App* command;  // the one that the words name, as far as they name one
  std::string wrong;        // why the words cannot be understood; "" where that is the parser's to say
};

ParserWords ReadyForParser(const CLI::App& app, const std::vector<std::string>& words);

// Has every option of the app and of its commands take texts in brackets back as they were given.
void TakeBracketsBack(CLI::App& app);

// What the parser says, without the signs that it was given for brackets.
std::string WithoutSigns(std::string text);

}  // namespace tallwick::cli
