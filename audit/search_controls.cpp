#include "audit/search_controls.h"

#include <algorithm>

#include "core/encoding.h"

namespace tallwick {
namespace {

bool Before(std::string_view left, std::string_view right) {
  const auto lower = [](char a, char b) {
    return UpperWindows1252(static_cast<unsigned char>(a)) < UpperWindows1252(static_cast<unsigned char>(b));
  };
  if (std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), lower)) return true;
  if (std::lexicographical_compare(right.begin(), right.end(), left.begin(), left.end(), lower)) return false;
  return left < right;
}

}  // namespace

std::vector<std::string> clsSearchControls::Values() const {
  std::vector<std::string_view> sorted(values_.begin(), values_.end());
  std::sort(sorted.begin(), sorted.end(), Before);
  std::vector<std::string> texts;
  texts.reserve(sorted.size());
  for (std::string_view value : sorted) texts.push_back(FromWindows1252(value));
  return texts;
}

}  // namespace tallwick
