#include "audit/search_controls.h"

#include <algorithm>
#include <utility>

#include "core/encoding.h"

namespace tallwick {

std::vector<std::string> clsSearchControls::Values() const {
  std::vector<std::pair<std::string, std::string_view>> sorted;  // in capitals, and as it is
  sorted.reserve(values_.size());
  for (std::string_view value : values_) {
    std::string key(value);
    for (char& c : key) c = static_cast<char>(UpperWindows1252(static_cast<unsigned char>(c)));
    sorted.emplace_back(std::move(key), value);
  }
  std::sort(sorted.begin(), sorted.end());
  std::vector<std::string> texts;
  texts.reserve(sorted.size());
  for (const auto& [key, value] : sorted) texts.push_back(FromWindows1252(value));
  return texts;
}

}  // namespace tallwick
