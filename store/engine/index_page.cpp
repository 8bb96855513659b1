#include "store/engine/index_page.h"

#include <algorithm>
#include <bit>

#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr int kAttributeRoot = 1;
constexpr int kAttributeLeaf = 2;
constexpr int kLeafHead = 24;
constexpr int kInteriorHead = 12;

int CountBits(int key_length) {
  return std::bit_width(static_cast<unsigned>(key_length));
}

// Both count eight bytes at a time: they run for every key that goes into a page.
int TrailingFill(const std::uint8_t* key, int length, std::uint8_t fill) {
  const std::uint64_t eight = fill * 0x0101010101010101U;
  int count = 0;
  for (; count + 8 <= length; count += 8) {
    const std::uint64_t difference = Load64(key + length - count - 8) ^ eight;
    if (difference != 0) return count + std::countl_zero(difference) / 8;
  }
  while (count < length && key[length - 1 - count] == fill) ++count;
  return count;
}

int SharedBytes(const std::uint8_t* before, const std::uint8_t* key, int limit) {
  int count = 0;
  for (; count + 8 <= limit; count += 8) {
    const std::uint64_t difference = Load64(before + count) ^ Load64(key + count);
    if (difference != 0) return count + std::countr_zero(difference) / 8;
  }
  while (count < limit && before[count] == key[count]) ++count;
  return count;
}

void PutHead(std::uint8_t* page, int attributes, int count, std::uint32_t left, std::uint32_t right) {
  Store16(page, static_cast<std::uint32_t>(attributes));
  Store16(page + 2, static_cast<std::uint32_t>(count));
  Store32(page + 4, left);
  Store32(page + 8, right);
}

std::uint64_t LoadEntry(const std::uint8_t* p, int bytes) {
  std::uint64_t value = 0;
  for (int i = bytes - 1; i >= 0; --i) value = value << 8 | p[i];
  return value;
}

bool DecodeLeaf(const std::uint8_t* page, int count, IndexNode* node) {
  const std::uint32_t record_mask = Load32(page + 14);
  const std::uint32_t duplicate_mask = page[18];
  const std::uint32_t trailing_mask = page[19];
  const int record_bits = page[20];
  const int duplicate_bits = page[21];
  const int trailing_bits = page[22];
  const int entry_bytes = page[23];
  if (count > 0 && (entry_bytes < 1 || entry_bytes > 8)) return false;
  if (record_bits > 40 || duplicate_bits > 16 || trailing_bits > 16) return false;
  if (record_bits + duplicate_bits + trailing_bits > 8 * 8) return false;
  const int entries_end = kLeafHead + count * entry_bytes;
  if (entries_end > kPageBytes) return false;

  const int length = node->key_length;
  node->keys.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(length));
  node->records.resize(static_cast<std::size_t>(count));
  int key_start = kPageBytes;
  std::uint8_t* key = node->keys.data();
  for (int i = 0; i < count; ++i, key += length) {
    const std::uint64_t entry =
        LoadEntry(page + kLeafHead + static_cast<std::ptrdiff_t>(i) * entry_bytes, entry_bytes);
    const auto record = static_cast<std::uint32_t>(entry & record_mask);
    const int duplicates = static_cast<int>(entry >> record_bits & duplicate_mask);
    const int trailing = static_cast<int>(entry >> (record_bits + duplicate_bits) & trailing_mask);
    const int stored = length - duplicates - trailing;
    if (stored < 0 || (i == 0 && duplicates > 0)) return false;
    key_start -= stored;
    if (key_start < entries_end) return false;
    if (duplicates > 0) std::memcpy(key, key - length, static_cast<std::size_t>(duplicates));
    std::memcpy(key + duplicates, page + key_start, static_cast<std::size_t>(stored));
    std::memset(key + duplicates + stored, node->fill, static_cast<std::size_t>(trailing));
    node->records[static_cast<std::size_t>(i)] = record;
    node->highest_record = std::max(node->highest_record, record);
  }
  // Packed again at the same entry size, keys take at most the room they take now. Of another program's way
  // of dividing an entry that is not known, so such a page must pass the test.
  node->packed_bytes = -1;
  const int count_bits = CountBits(length);
  const bool usual = duplicate_bits == count_bits && trailing_bits == count_bits &&
                     record_bits == std::min(8 * entry_bytes - 2 * count_bits, 32);
  node->entry_bytes = usual ? entry_bytes : 0;
  return usual || count == 0 || node->Fits();
}

bool DecodeInterior(const std::uint8_t* page, int count, IndexNode* node) {
  const int entry_bytes = node->key_length + 8;
  if (count < 1 || kInteriorHead + count * entry_bytes > kPageBytes) return false;
  const std::uint8_t* entry = page + kInteriorHead;
  for (int i = 0; i < count; ++i, entry += entry_bytes) {
    node->keys.insert(node->keys.end(), entry, entry + node->key_length);
    node->records.push_back(Load32Big(entry + node->key_length));
    node->children.push_back(Load32Big(entry + node->key_length + 4));
  }
  return true;
}

bool IsOrdered(const IndexNode& node) {
  for (int i = 1; i < node.Count(); ++i) {
    if (node.Compare(i, node.Key(i - 1), node.records[static_cast<std::size_t>(i) - 1]) <= 0) return false;
  }
  return true;
}

}  // namespace

int KeyBytesInUse(KeyShape shape, const std::uint8_t* key) {
  return shape.length - TrailingFill(key, shape.length, shape.fill);
}

int LeafEntryBytes(int key_length, std::uint32_t highest_record, int has) {
  const int count_bits = CountBits(key_length);
  int bytes = has > 0 ? has : count_bits <= 4 ? 3 : count_bits <= 6 ? 4 : 5;
  while (8 * bytes - 2 * count_bits < static_cast<int>(std::bit_width(highest_record))) ++bytes;
  return bytes;
}

int IndexNode::PackedKeyBytes(int i) const {
  const std::uint8_t* key = Key(i);
  const int cut = KeyBytesInUse({key_length, fill}, key);
  return i == 0 ? cut : cut - SharedBytes(Key(i - 1), key, cut);
}

void IndexNode::Repack() {
  packed_bytes = 0;
  highest_record = 0;
  for (int i = 0; i < Count(); ++i) packed_bytes += PackedKeyBytes(i);
  for (const std::uint32_t record : records) highest_record = std::max(highest_record, record);
}

void IndexNode::Insert(int i, const std::uint8_t* key, std::uint32_t record, std::uint32_t child) {
  if (leaf) {
    if (packed_bytes < 0) Repack();
    if (i < Count()) packed_bytes -= PackedKeyBytes(i);
  }
  keys.insert(keys.begin() + static_cast<std::ptrdiff_t>(i) * key_length, key, key + key_length);
  records.insert(records.begin() + i, record);
  if (leaf) {
    packed_bytes += PackedKeyBytes(i) + (i + 1 < Count() ? PackedKeyBytes(i + 1) : 0);
    highest_record = std::max(highest_record, record);
  } else {
    children.insert(children.begin() + i, child);
  }
}

void IndexNode::Erase(int i) {
  if (leaf) {
    if (packed_bytes < 0) Repack();
    packed_bytes -= PackedKeyBytes(i) + (i + 1 < Count() ? PackedKeyBytes(i + 1) : 0);
  }
  keys.erase(keys.begin() + static_cast<std::ptrdiff_t>(i) * key_length,
             keys.begin() + static_cast<std::ptrdiff_t>(i + 1) * key_length);
  records.erase(records.begin() + i);
  if (leaf) {
    if (i < Count()) packed_bytes += PackedKeyBytes(i);
  } else {
    children.erase(children.begin() + i);
  }
}

void IndexNode::Assign(int i, const std::uint8_t* key, std::uint32_t record) {
  std::memmove(keys.data() + static_cast<std::ptrdiff_t>(i) * key_length, key, KeyBytes());
  records[static_cast<std::size_t>(i)] = record;
}

void IndexNode::MoveTail(int i, IndexNode& to) {
  to.keys.insert(to.keys.end(), keys.begin() + static_cast<std::ptrdiff_t>(i) * key_length, keys.end());
  to.records.insert(to.records.end(), records.begin() + i, records.end());
  keys.resize(static_cast<std::size_t>(i) * KeyBytes());
  records.resize(static_cast<std::size_t>(i));
  if (leaf) {
    to.Repack();
    Repack();
  } else {
    to.children.insert(to.children.end(), children.begin() + i, children.end());
    children.resize(static_cast<std::size_t>(i));
  }
}

int IndexNode::UsedBytes() const {
  if (!leaf) return Count() * (key_length + 8);
  int bytes = packed_bytes;
  if (bytes < 0) {
    bytes = 0;
    for (int i = 0; i < Count(); ++i) bytes += PackedKeyBytes(i);
  }
  return Count() * LeafEntryBytes(key_length, highest_record, entry_bytes) + bytes;
}

bool IndexNode::Fits() const {
  return UsedBytes() <= (leaf ? kLeafRoom : kInteriorRoom);
}

// --- Packing ---

LeafPacker::LeafPacker(KeyShape shape, std::uint32_t highest_record, int entry_bytes)
    : shape_(shape),
      entry_bytes_(LeafEntryBytes(shape.length, highest_record, entry_bytes)),
      count_bits_(CountBits(shape.length)),
      record_bits_(std::min(8 * entry_bytes_ - 2 * count_bits_, 32)) {}

void LeafPacker::Begin(std::uint8_t* page) {
  page_ = page;
  previous_ = nullptr;
  count_ = 0;
  key_start_ = kPageBytes;
  std::memset(page, 0, kPageBytes);
}

bool LeafPacker::Add(const std::uint8_t* key, int used, std::uint32_t record) {
  const int trailing = shape_.length - used;
  const int duplicates = previous_ == nullptr ? 0 : SharedBytes(previous_, key, used);
  const int stored = used - duplicates;
  const int entries_end = kLeafHead + (count_ + 1) * entry_bytes_;
  if (key_start_ - stored < entries_end) return false;
  key_start_ -= stored;
  std::memcpy(page_ + key_start_, key + duplicates, static_cast<std::size_t>(stored));
  std::uint64_t entry = record;
  entry |= static_cast<std::uint64_t>(duplicates) << record_bits_;
  entry |= static_cast<std::uint64_t>(trailing) << (record_bits_ + count_bits_);
  std::uint8_t* out = page_ + entries_end - entry_bytes_;
  for (int b = 0; b < entry_bytes_; ++b) out[b] = static_cast<std::uint8_t>(entry >> (8 * b));
  previous_ = key;
  ++count_;
  return true;
}

void LeafPacker::Finish(bool is_root, std::uint32_t left, std::uint32_t right) {
  PutHead(page_, (is_root ? kAttributeRoot : 0) + kAttributeLeaf, count_, left, right);
  const auto count_mask = static_cast<std::uint8_t>((1U << count_bits_) - 1);
  Store16(page_ + 12, static_cast<std::uint32_t>(key_start_ - kLeafHead - count_ * entry_bytes_));
  Store32(page_ + 14, record_bits_ >= 32 ? 0xFFFFFFFFU : (1U << record_bits_) - 1);
  page_[18] = count_mask;
  page_[19] = count_mask;
  page_[20] = static_cast<std::uint8_t>(record_bits_);
  page_[21] = static_cast<std::uint8_t>(count_bits_);
  page_[22] = static_cast<std::uint8_t>(count_bits_);
  page_[23] = static_cast<std::uint8_t>(entry_bytes_);
}

void EncodeInterior(std::span<const InteriorEntry> entries, KeyShape shape, bool is_root, std::uint32_t left,
                    std::uint32_t right, std::uint8_t* page) {
  std::memset(page, 0, kPageBytes);
  PutHead(page, is_root ? kAttributeRoot : 0, static_cast<int>(entries.size()), left, right);
  std::uint8_t* out = page + kInteriorHead;
  for (const InteriorEntry& entry : entries) {
    std::memcpy(out, entry.key, static_cast<std::size_t>(shape.length));
    Store32Big(out + shape.length, entry.record);
    Store32Big(out + shape.length + 4, entry.child);
    out += shape.length + 8;
  }
}

bool EncodePage(const IndexNode& node, bool is_root, std::uint8_t* page) {
  if (!node.Fits()) return false;
  const KeyShape shape{node.key_length, node.fill};
  if (node.leaf) {
    LeafPacker packer(shape, node.highest_record, node.entry_bytes);
    packer.Begin(page);
    for (int i = 0; i < node.Count(); ++i) {
      if (!packer.Add(node.Key(i), node.records[static_cast<std::size_t>(i)])) return false;
    }
    packer.Finish(is_root, node.left, node.right);
    return true;
  }
  std::vector<InteriorEntry> entries;
  entries.reserve(node.records.size());
  for (int i = 0; i < node.Count(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    entries.push_back({node.Key(i), node.records[at], node.children[at]});
  }
  EncodeInterior(entries, shape, is_root, node.left, node.right, page);
  return true;
}

bool DecodePage(const std::uint8_t* page, IndexNode* node) {
  const int attributes = Load16(page);
  const int count = Load16(page + 2);
  if (attributes > (kAttributeRoot | kAttributeLeaf)) return false;
  node->leaf = (attributes & kAttributeLeaf) != 0;
  node->left = Load32(page + 4);
  node->right = Load32(page + 8);
  const bool read = node->leaf ? DecodeLeaf(page, count, node) : DecodeInterior(page, count, node);
  return read && IsOrdered(*node);
}

}  // namespace tallwick::engine
