// The pages of a compound index (CDX), 512 bytes each, and their form in memory.
//
//   both      0-1 attributes (1 root, 2 leaf, summed), 2-3 number of keys, 4-7 left sibling, 8-11 right
//             sibling (0xFFFFFFFF none)
//   interior  from 12 the entries: key at full length, record number (4, big-endian), child page (4,
//             big-endian); an entry's key and record number are the highest of its child
//   leaf      12-13 free bytes, 14-17 record number mask, 18 duplicate mask, 19 trailing mask, 20 record
//             number bits, 21 duplicate bits, 22 trailing bits, 23 bytes of one entry; from 24 the packed
//             entries, low bits first: record number, duplicate count (bytes shared with the key before),
//             trailing count (fill bytes cut off); the remaining key bytes stand at the page's end, first
//             key last
//
// Order everywhere: by key bytes, then by record number. Fill bytes are blanks for text keys, zeros for
// numbers.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace tallwick::engine {

inline constexpr int kPageBytes = 512;
inline constexpr std::uint32_t kNoPage = 0xFFFFFFFFU;
inline constexpr int kMaxKeyLength = 240;

// How the keys of a tag are packed.
struct KeyShape {
  int length = 0;
  std::uint8_t fill = ' ';
};

// Bytes of a key before the fill bytes that end it.
int KeyBytesInUse(KeyShape shape, const std::uint8_t* key);

// A page in memory: keys unpacked, so that it is searched and changed without decoding.
struct IndexNode {
  std::uint32_t offset = 0;
  std::uint32_t left = kNoPage;
  std::uint32_t right = kNoPage;
  bool leaf = true;
  bool dirty = false;
  int key_length = 0;
  std::uint8_t fill = ' ';
  // Leaf: bytes that the keys take after packing, kept in step by Insert and Erase.
  int packed_bytes = 0;
  // Leaf: the entry size at which the page was read, kept so that a page that was full still fits; 0 = a new
  // page.
  int entry_bytes = 0;
  std::uint32_t highest_record = 0;  // at least the highest record number in `records`
  std::vector<std::uint32_t> records;
  std::vector<std::uint32_t> children;  // interior: one per key
  std::vector<std::uint8_t> keys;       // key_length bytes per key

  IndexNode(std::uint32_t at, bool is_leaf, KeyShape shape)
      : offset(at), leaf(is_leaf), key_length(shape.length), fill(shape.fill) {}

  int Count() const { return static_cast<int>(records.size()); }
  const std::uint8_t* Key(int i) const { return keys.data() + static_cast<std::size_t>(i) * KeyBytes(); }
  // Negative, zero or positive as entry i stands before, at or behind (key, record).
  int Compare(int i, const std::uint8_t* key, std::uint32_t record) const {
    const int order = std::memcmp(Key(i), key, KeyBytes());
    if (order != 0) return order;
    const std::uint32_t own = records[static_cast<std::size_t>(i)];
    return own < record ? -1 : own > record ? 1 : 0;
  }

  void Insert(int i, const std::uint8_t* key, std::uint32_t record, std::uint32_t child = 0);
  void Erase(int i);
  void Assign(int i, const std::uint8_t* key, std::uint32_t record);  // interior: a child's new highest entry
  // Moves the entries from i on to the end of another node of the same kind.
  void MoveTail(int i, IndexNode& to);

  // True when the page holds all entries.
  bool Fits() const;
  // Bytes of the page in use, headers left out.
  int UsedBytes() const;

 private:
  std::size_t KeyBytes() const { return static_cast<std::size_t>(key_length); }
  int PackedKeyBytes(int i) const;
  void Repack();
};

// Bytes of one leaf entry: those it has (0 = the usual count for the key length), or more where the highest
// record number needs them.
int LeafEntryBytes(int key_length, std::uint32_t highest_record, int has = 0);
// Room for entries and keys in a leaf, and for entries in an interior page.
inline constexpr int kLeafRoom = kPageBytes - 24;
inline constexpr int kInteriorRoom = kPageBytes - 12;

// Packs entries in ascending order into the bytes of one leaf after the other.
class LeafPacker {
 public:
  // `highest_record` of all entries to come decides how wide an entry is; `entry_bytes` as in IndexNode.
  LeafPacker(KeyShape shape, std::uint32_t highest_record, int entry_bytes = 0);
  // Starts a leaf in these kPageBytes.
  void Begin(std::uint8_t* page);
  // False when the leaf has no room for the entry. The key must stay where it is until the next one is added.
  bool Add(const std::uint8_t* key, std::uint32_t record) {
    return Add(key, KeyBytesInUse(shape_, key), record);
  }
  // `used` are the key's bytes in use, where the caller knows them.
  bool Add(const std::uint8_t* key, int used, std::uint32_t record);
  void Finish(bool is_root, std::uint32_t left, std::uint32_t right);
  int Count() const { return count_; }

 private:
  KeyShape shape_;
  int entry_bytes_ = 0;
  int count_bits_ = 0;
  int record_bits_ = 0;
  std::uint8_t* page_ = nullptr;
  const std::uint8_t* previous_ = nullptr;
  int count_ = 0;
  int key_start_ = kPageBytes;
};

// An interior page's entry: the highest entry of a child.
struct InteriorEntry {
  const std::uint8_t* key;
  std::uint32_t record;
  std::uint32_t child;
};
// Writes kPageBytes; the entries must fit, which are kInteriorRoom / (key length + 8).
void EncodeInterior(std::span<const InteriorEntry> entries, KeyShape shape, bool is_root, std::uint32_t left,
                    std::uint32_t right, std::uint8_t* page);

// False when the entries do not fit the page; nothing useful is in it then.
bool EncodePage(const IndexNode& node, bool is_root, std::uint8_t* page);
// False for a damaged page: counts or packed fields out of bounds, or keys out of order.
bool DecodePage(const std::uint8_t* page, IndexNode* node);

}  // namespace tallwick::engine
