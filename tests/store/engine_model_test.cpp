// Random operations on a table, compared with a plain model in memory, with deaths and power cuts between
// them; and the same on real files.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/engine_model.h"
#include "tests/support/temp_folder.h"

namespace tallwick::testing {
namespace {

std::vector<std::uint8_t> RandomBytes(unsigned seed, std::size_t count) {
  std::mt19937 random(seed);
  std::vector<std::uint8_t> bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

constexpr EngineModel::Limits kLimits{300, 1000, 100};

TEST(EngineModel, AgreesThroughDeathsAndPowerCuts) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    MemoryFiles disk;
    EXPECT_EQ(EngineModel(disk, "/data/MODEL.DBF", kLimits).Run(RandomBytes(seed, 20000)), "")
        << "seed " << seed;
  }
}

TEST(EngineModel, AgreesOnRealFiles) {
  for (unsigned seed = 1; seed <= 2; ++seed) {
    TempFolder folder;
    EngineModel model(engine::SystemFiles(), folder.Platform("MODEL.DBF"), kLimits);
    EXPECT_EQ(model.Run(RandomBytes(seed, 20000)), "") << "seed " << seed;
  }
}

}  // namespace
}  // namespace tallwick::testing
