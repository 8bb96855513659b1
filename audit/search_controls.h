// The values that a log holds, for the lists a person searches by: each once, in the order of the letters.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tallwick {

class clsSearchControls {
 public:
  // A value in the log's bytes, which must live as long as this object; empty ones are not kept.
  void Offer(std::string_view value) {
    if (!value.empty()) values_.insert(value);
  }
  // UTF-8, sorted without regard to case.
  std::vector<std::string> Values() const;

 private:
  std::unordered_set<std::string_view> values_;
};

}  // namespace tallwick
