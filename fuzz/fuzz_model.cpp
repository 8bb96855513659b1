// Any bytes as a sequence of operations on a table, beside a plain model of it.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/support/engine_model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  tallwick::testing::MemoryFiles disk(std::int64_t{16} << 20);
  tallwick::testing::EngineModel model(disk, "/data/MODEL.DBF", {});
  const std::string wrong = model.Run({bytes, size});
  if (!wrong.empty()) {
    std::fprintf(stderr, "%s\n", wrong.c_str());
    std::abort();
  }
  return 0;
}
