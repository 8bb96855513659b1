#include "store/engine/journal_entry.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "core/text.h"
#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr std::string_view kEntryMagic = "TWKE";
constexpr std::string_view kNoteMagic = "TWKN";
constexpr std::uint64_t kGreatestOffset = std::uint64_t{1} << 40;

void Put(std::vector<std::uint8_t>* out, const void* bytes, std::size_t length) {
  const auto* from = static_cast<const std::uint8_t*>(bytes);
  out->insert(out->end(), from, from + length);
}

void Put16(std::vector<std::uint8_t>* out, std::uint32_t v) {
  std::uint8_t b[2];
  Store16(b, v);
  Put(out, b, sizeof b);
}
void Put32(std::vector<std::uint8_t>* out, std::uint32_t v) {
  std::uint8_t b[4];
  Store32(b, v);
  Put(out, b, sizeof b);
}
void Put64(std::vector<std::uint8_t>* out, std::uint64_t v) {
  std::uint8_t b[8];
  Store64(b, v);
  Put(out, b, sizeof b);
}

// Fills an entry's head.
void Seal(std::string_view magic, std::uint64_t number, std::vector<std::uint8_t>* entry) {
  const std::span<const std::uint8_t> payload(entry->data() + kEntryHead, entry->size() - kEntryHead);
  std::memcpy(entry->data(), magic.data(), magic.size());
  Store64(&(*entry)[4], payload.size());
  Store64(&(*entry)[12], number);
  Store64(&(*entry)[20], EntryChecksum(number, payload));
}

void PutName(std::vector<std::uint8_t>* out, const std::string& name) {
  Put16(out, static_cast<std::uint32_t>(name.size()));
  Put(out, name.data(), name.size());
}

// Reads a payload front to back; every read is checked against its end.
class PayloadReader {
 public:
  explicit PayloadReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  bool Take(std::size_t length, std::span<const std::uint8_t>* out) {
    if (bytes_.size() < length) return false;
    *out = bytes_.first(length);
    bytes_ = bytes_.subspan(length);
    return true;
  }
  bool Take16(std::uint32_t* v) {
    std::span<const std::uint8_t> b;
    if (!Take(2, &b)) return false;
    *v = Load16(b.data());
    return true;
  }
  bool Take32(std::uint32_t* v) {
    std::span<const std::uint8_t> b;
    if (!Take(4, &b)) return false;
    *v = Load32(b.data());
    return true;
  }
  bool Take64(std::uint64_t* v) {
    std::span<const std::uint8_t> b;
    if (!Take(8, &b)) return false;
    *v = Load64(b.data());
    return true;
  }

 private:
  std::span<const std::uint8_t> bytes_;
};

// A name that stays in the folder.
bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of("/\\:") == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

bool TakeName(PayloadReader& reader, std::string* name) {
  std::uint32_t length = 0;
  std::span<const std::uint8_t> bytes;
  if (!reader.Take16(&length) || !reader.Take(length, &bytes)) return false;
  name->assign(bytes.begin(), bytes.end());
  return IsPlainName(*name);
}

bool EndsIn(std::string_view name, std::string_view extension) {
  return name.size() > extension.size() &&
         EqualsIgnoreCase(name.substr(name.size() - extension.size()), extension);
}

}  // namespace

std::int64_t LengthAfter(const JournalFileChange& change, std::int64_t length) {
  std::vector<JournalExtent> extents = change.extents;  // in no order
  std::sort(extents.begin(), extents.end(),
            [](const JournalExtent& a, const JournalExtent& b) { return a.offset < b.offset; });
  for (const JournalExtent& extent : extents) {
    if (extent.offset > length && IsTableName(change.name)) return -1;
    length = std::max(length, extent.offset + std::ssize(extent.bytes));
  }
  return length;
}

bool IsIndexName(std::string_view name) {
  return EndsIn(name, ".cdx");
}
bool IsTableName(std::string_view name) {
  return EndsIn(name, ".dbf");
}

bool JournalHead::Parse(std::span<const std::uint8_t, kEntryHead> bytes) {
  const std::string_view magic(reinterpret_cast<const char*>(bytes.data()), kEntryMagic.size());
  is_note = magic == kNoteMagic;
  payload_bytes = Load64(&bytes[4]);
  number = Load64(&bytes[12]);
  checksum = Load64(&bytes[20]);
  return is_note || magic == kEntryMagic;
}

std::vector<std::size_t> EntryHeadsIn(std::span<const std::uint8_t> bytes) {
  std::vector<std::size_t> places;
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  for (std::size_t at = text.find(kEntryMagic);
       at != std::string_view::npos && text.size() - at >= kEntryHead; at = text.find(kEntryMagic, at + 1))
    places.push_back(at);
  return places;
}

std::uint64_t EntryChecksum(std::uint64_t number, std::span<const std::uint8_t> bytes) {
  std::uint64_t sum = 0xCBF29CE484222325U ^ number;
  std::size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) sum = (sum ^ Load64(&bytes[i])) * 0x100000001B3U;
  for (; i < bytes.size(); ++i) sum = (sum ^ bytes[i]) * 0x100000001B3U;
  return sum ^ (sum >> 29);
}

std::vector<std::uint8_t> BuildEntry(std::uint64_t number, const std::vector<JournalFileChange>& changes) {
  std::size_t total = static_cast<std::size_t>(kEntryHead) + 2;
  for (const auto& change : changes) {
    total += 6 + change.name.size();
    for (const auto& extent : change.extents) total += 12 + extent.bytes.size();
  }
  std::vector<std::uint8_t> entry;
  entry.reserve(total);
  entry.resize(kEntryHead);  // filled by Seal
  Put16(&entry, static_cast<std::uint32_t>(changes.size()));
  for (const auto& change : changes) {
    PutName(&entry, change.name);
    Put32(&entry, static_cast<std::uint32_t>(change.extents.size()));
    for (const auto& extent : change.extents) {
      Put64(&entry, static_cast<std::uint64_t>(extent.offset));
      Put32(&entry, static_cast<std::uint32_t>(extent.bytes.size()));
      Put(&entry, extent.bytes.data(), extent.bytes.size());
    }
  }
  Seal(kEntryMagic, number, &entry);
  return entry;
}

std::vector<std::uint8_t> BuildNote(std::uint64_t number, const std::vector<JournalLength>& files) {
  std::vector<std::uint8_t> note(kEntryHead);  // filled by Seal
  Put16(&note, static_cast<std::uint32_t>(files.size()));
  for (const JournalLength& file : files) {
    PutName(&note, file.name);
    Put64(&note, static_cast<std::uint64_t>(file.length));
    Put(&note, file.start.data(), file.start.size());
  }
  Seal(kNoteMagic, number, &note);
  return note;
}

bool ParseEntry(std::span<const std::uint8_t> payload, std::vector<JournalFileChange>* changes) {
  PayloadReader reader(payload);
  std::uint32_t files = 0;
  if (!reader.Take16(&files)) return false;
  for (std::uint32_t f = 0; f < files; ++f) {
    JournalFileChange change;
    std::uint32_t extents = 0;
    if (!TakeName(reader, &change.name) || !reader.Take32(&extents)) return false;
    // Each file once: whoever applies the entry takes one lock for each.
    const auto same = [&](const JournalFileChange& other) { return other.name == change.name; };
    if (std::any_of(changes->begin(), changes->end(), same)) return false;
    for (std::uint32_t e = 0; e < extents; ++e) {
      JournalExtent extent;
      std::uint64_t offset = 0;
      std::uint32_t size = 0;
      if (!reader.Take64(&offset) || !reader.Take32(&size) || !reader.Take(size, &extent.bytes)) return false;
      if (offset > kGreatestOffset) return false;
      extent.offset = static_cast<std::int64_t>(offset);
      change.extents.push_back(extent);
    }
    changes->push_back(std::move(change));
  }
  return true;
}

bool ParseNote(std::span<const std::uint8_t> payload, std::vector<JournalLength>* files) {
  PayloadReader reader(payload);
  std::uint32_t count = 0;
  if (!reader.Take16(&count)) return false;
  for (std::uint32_t f = 0; f < count; ++f) {
    JournalLength file;
    std::uint64_t length = 0;
    std::span<const std::uint8_t> start;
    if (!TakeName(reader, &file.name) || !reader.Take64(&length) || !reader.Take(file.start.size(), &start)) {
      return false;
    }
    if (length > kGreatestOffset) return false;
    file.length = static_cast<std::int64_t>(length);
    std::copy(start.begin(), start.end(), file.start.begin());
    files->push_back(std::move(file));
  }
  return true;
}

}  // namespace tallwick::engine
