// Any bytes as the memo file of the sample table, whose other files are whole.
#include <cstddef>
#include <cstdint>

#include "fuzz/sample_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  tallwick::fuzz::SampleFiles files = tallwick::fuzz::BaseSample();
  files.memo.assign(reinterpret_cast<const char*>(bytes), size);
  tallwick::fuzz::Exercise(files, true);
  return 0;
}
