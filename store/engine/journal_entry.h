// The entries of the journal in bytes: how they are built and read. The layout stands in journal.h.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/engine/file.h"

namespace tallwick::engine {

// New bytes for a place in a file of the folder.
struct JournalExtent {
  std::int64_t offset = 0;
  std::span<const std::uint8_t> bytes;
};

struct JournalFileChange {
  std::string name;      // within the folder
  File* open = nullptr;  // where to apply it; null while recovering
  std::vector<JournalExtent> extents;
};

// A file as it was when a note was written: its length and first bytes.
struct JournalLength {
  std::string name;
  std::int64_t length = 0;
  std::array<std::uint8_t, 16> start{};
};

// How long a file of `length` bytes is after the change. -1 when records would be missing before it: the
// table is not the one that the unit was written for, but an older one that somebody has put in its place.
// Memo files and indexes of other programs may have holes.
std::int64_t LengthAfter(const JournalFileChange& change, std::int64_t length);

// What a file of an entry or note is, by its name.
bool IsIndexName(std::string_view name);
bool IsTableName(std::string_view name);

inline constexpr std::int64_t kEntryHead = 28;

// An entry's head as it stands in the file.
struct JournalHead {
  bool is_note = false;
  std::uint64_t payload_bytes = 0;
  std::uint64_t number = 0;
  std::uint64_t checksum = 0;
  // False when the bytes are no entry's.
  bool Parse(std::span<const std::uint8_t, kEntryHead> bytes);
};

// Where in the bytes a unit's entry may begin, its head whole, in ascending order.
std::vector<std::size_t> EntryHeadsIn(std::span<const std::uint8_t> bytes);

std::uint64_t EntryChecksum(std::uint64_t number, std::span<const std::uint8_t> bytes);

// Head and payload.
std::vector<std::uint8_t> BuildEntry(std::uint64_t number, const std::vector<JournalFileChange>& changes);
std::vector<std::uint8_t> BuildNote(std::uint64_t number, const std::vector<JournalLength>& files);

// False for a payload that is none, or that names a file outside the folder or twice. Extents point into the
// payload.
bool ParseEntry(std::span<const std::uint8_t> payload, std::vector<JournalFileChange>* changes);
bool ParseNote(std::span<const std::uint8_t> payload, std::vector<JournalLength>* files);

}  // namespace tallwick::engine
