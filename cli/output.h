// What a command prints: lines for a person, or one JSON object that is written member by member, so that a
// long list never stands in memory. Invariant: between construction and Finish the stream holds the beginning
// of one valid object (JSON) or whole lines (text); nothing else writes to standard output.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/boxes.h"

namespace tallwick::cli {

// Keeps its members in the order in which they were set.
using Json = nlohmann::ordered_json;

class Output {
 public:
  Output(bool json, std::ostream& stream) : json_(json), stream_(stream) {}

  bool IsJson() const { return json_; }
  // A line for a person; nothing with --json.
  void Line(std::string_view line);
  // A member of the object; nothing without --json.
  void Set(std::string_view key, const Json& value);
  // A list as a member, item by item. Text shows each item's line.
  void StartList(std::string_view key);
  void Item(const Json& value, std::string_view line);
  void EndList();
  // Says on standard error what went wrong; with --json the first such text becomes the member "error" at the
  // end.
  void Fail(std::string_view what);
  // Ends the object, with the boxes shown where there were any or something failed. False when the stream did
  // not take everything.
  bool Finish(const std::vector<ShownBox>& boxes);

 private:
  void Key(std::string_view key);

  bool json_;
  std::ostream& stream_;
  bool started_ = false;
  bool in_list_ = false;
  bool list_empty_ = true;
  std::string error_;
};

// Rows of texts under headings, columns as wide as needed. `alignment` holds "<" or ">" for each column.
std::string TextTable(const std::vector<std::string>& headings, std::string_view alignment,
                      const std::vector<std::vector<std::string>>& rows);

}  // namespace tallwick::cli
