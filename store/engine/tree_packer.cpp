#include "store/engine/tree_packer.h"

#include <algorithm>
#include <array>

#include "store/engine/codes.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kKeysAtOnce = 64;

}  // namespace

int TreePacker::Put(const std::uint8_t* page) {
  root_ = next_page_;
  next_page_ += kPageBytes;
  return sink_(page);
}

int TreePacker::WriteLeaves(const KeyList& keys, std::vector<InteriorEntry>* level) {
  std::array<std::uint8_t, kPageBytes> page{};
  LeafPacker leaf(shape_, keys.HighestRecord());
  leaf.Begin(page.data());
  const auto finish = [&](bool is_last) {
    const std::uint32_t left = level->size() <= 1 ? kNoPage : next_page_ - kPageBytes;
    leaf.Finish(is_last && level->size() <= 1, left, is_last ? kNoPage : next_page_ + kPageBytes);
    return Put(page.data());
  };
  for (std::size_t i = 0; i < keys.Count(); ++i) {
    if (i % kKeysAtOnce == 0) keys.BringNear(i, kKeysAtOnce);
    if (leaf.Count() == 0) level->push_back({nullptr, 0, next_page_});
    if (!leaf.Add(keys.Key(i), keys.Used(i), keys.Record(i))) {
      if (const int rc = finish(false); rc != kSuccess) return rc;
      leaf.Begin(page.data());
      leaf.Add(keys.Key(i), keys.Used(i), keys.Record(i));
      level->push_back({nullptr, 0, next_page_});
    }
    level->back().key = keys.Key(i);
    level->back().record = keys.Record(i);
  }
  return finish(true);
}

int TreePacker::WriteLevel(std::span<const InteriorEntry> below, std::vector<InteriorEntry>* level) {
  std::array<std::uint8_t, kPageBytes> page{};
  const auto fan_out = static_cast<std::size_t>(kInteriorRoom / (shape_.length + 8));
  for (std::size_t i = 0; i < below.size(); i += fan_out) {
    const auto part = below.subspan(i, std::min(fan_out, below.size() - i));
    const bool is_last = i + fan_out >= below.size();
    EncodeInterior(part, shape_, below.size() <= fan_out, i == 0 ? kNoPage : next_page_ - kPageBytes,
                   is_last ? kNoPage : next_page_ + kPageBytes, page.data());
    level->push_back({part.back().key, part.back().record, next_page_});
    if (const int rc = Put(page.data()); rc != kSuccess) return rc;
  }
  return kSuccess;
}

int TreePacker::Pack(const KeyList& keys) {
  std::vector<InteriorEntry> level;
  int rc = WriteLeaves(keys, &level);
  while (rc == kSuccess && level.size() > 1) {
    std::vector<InteriorEntry> above;
    rc = WriteLevel(level, &above);
    level = std::move(above);
  }
  return rc;
}

}  // namespace tallwick::engine
