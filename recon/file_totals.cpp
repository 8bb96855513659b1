#include "recon/file_totals.h"

namespace tallwick {

std::vector<FileBalance> FileTotals::Open() const {
  std::vector<FileBalance> open;
  for (const auto& [number, sum] : sums_.ByFile()) {
    if (!sum.IsZero()) open.push_back({FromWindows1252(number), sum});
  }
  return open;
}

}  // namespace tallwick
