#include "cli/output.h"

#include <algorithm>
#include <iostream>

namespace tallwick::cli {

namespace {

// Texts from damaged tables may hold anything: what is no UTF-8 is shown as U+FFFD.
std::string Dump(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json BoxJson(const ShownBox& shown) {
  return {{"icon", IconWord(shown.box.icon)},
          {"title", shown.box.title},
          {"text", shown.box.text},
          {"answer", AnswerWord(shown.answer)}};
}

// Characters of a UTF-8 text.
std::size_t Characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

void Output::Line(std::string_view line) {
  if (!json_) stream_ << line << '\n';
}

void Output::Key(std::string_view key) {
  stream_ << (started_ ? "," : "{") << Dump(Json(key)) << ':';
  started_ = true;
}

void Output::Set(std::string_view key, const Json& value) {
  if (!json_) return;
  Key(key);
  stream_ << Dump(value);
}

void Output::StartList(std::string_view key) {
  if (json_) {
    Key(key);
    stream_ << '[';
  }
  in_list_ = true;
  list_empty_ = true;
}

void Output::Item(const Json& value, std::string_view line) {
  if (json_)
    stream_ << (list_empty_ ? "" : ",\n") << Dump(value);
  else
    stream_ << line << '\n';
  list_empty_ = false;
}

void Output::EndList() {
  if (json_ && in_list_) stream_ << ']';
  in_list_ = false;
}

void Output::Fail(std::string_view what) {
  std::cerr << "escrowctl: " << what << std::endl;
  if (error_.empty()) error_ = what;
}

bool Output::Finish(const std::vector<ShownBox>& boxes) {
  EndList();
  if (json_) {
    if (!error_.empty()) Set("error", error_);
    if (!boxes.empty() || !error_.empty()) {
      Json messages = Json::array();
      for (const ShownBox& shown : boxes) messages.push_back(BoxJson(shown));
      Set("messages", messages);
    }
    stream_ << (started_ ? "}\n" : "{}\n");
  }
  stream_.flush();
  return !stream_.fail();
}

std::string TextTable(const std::vector<std::string>& headings, std::string_view alignment,
                      const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  widths.reserve(headings.size());
  for (const std::string& heading : headings) widths.push_back(Characters(heading));
  for (const auto& row : rows)
    for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i)
      widths[i] = std::max(widths[i], Characters(row[i]));
  std::string all;
  const auto add = [&](const std::vector<std::string>& row) {
    std::string line;
    for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i) {
      const std::string fill(widths[i] - Characters(row[i]), ' ');
      line += (i == 0 ? "" : "  ");
      line += alignment[i] == '>' ? fill + row[i] : row[i] + fill;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    all += line + '\n';
  };
  add(headings);
  for (const auto& row : rows) add(row);
  if (!all.empty()) all.pop_back();
  return all;
}

}  // namespace tallwick::cli
