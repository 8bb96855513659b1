#include "store/engine/table_header.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"
#include "store/engine/byte_order.h"

namespace tallwick::engine {
namespace {

constexpr int kDescriptorBytes = 32;
constexpr int kLaterVariantExtra = 263;
constexpr int kMaxRecordLength = 65500;
constexpr std::uint8_t kCodePage1252 = 0x03;
constexpr std::uint8_t kDescriptorsEnd = 0x0D;
constexpr std::size_t kNameBytes = 11;

bool IsTableVersion(std::uint8_t version) {
  return version == 0x03 || version == 0xF5 || version == 0x30;
}

bool IsFieldName(const std::string& name) {
  if (name.empty()) return false;
  return std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           (static_cast<unsigned char>(c) >= 0x80);
  });
}

bool IsKnownType(char type) {
  return std::strchr("CNFDLMBIYTGPQVW0", type) != nullptr && type != '\0';
}

// The list of fields ends the head; some writers put a zero behind its end mark, and the later variant has
// room for more there. Anything else would shift every record.
bool IsFittingLength(std::span<const std::uint8_t> bytes, int length, std::size_t fields) {
  const int list_end = kTableHeadBytes + kDescriptorBytes * static_cast<int>(fields) + 1;
  return length == list_end || length == list_end + kLaterVariantExtra ||
         (length == list_end + 1 && bytes[static_cast<std::size_t>(list_end)] == 0);
}

// Types whose values have a width of their own; others are read wherever they end.
bool IsFittingWidth(const FieldInfo& field) {
  switch (field.type) {
    case 'B':
    case 'Y':
    case 'T':
    case 'D':
      return field.width == 8;
    case 'I':
      return field.width == 4;
    case 'L':
      return field.width == 1;
    case 'M':
    case 'G':
    case 'P':
      return field.width == 4 || field.width == 10;
    default:
      return field.width > 0;
  }
}

bool ParseDescriptor(const std::uint8_t* bytes, int offset, FieldInfo* field) {
  const auto* name = reinterpret_cast<const char*>(bytes);
  field->name = ToUpper(Trim(std::string_view(name, strnlen(name, kNameBytes))));
  field->type = static_cast<char>(bytes[11]);
  field->width = bytes[16];
  field->decimals = bytes[17];
  if (field->type == 'C') {
    field->width += field->decimals << 8;
    field->decimals = 0;
  }
  field->offset = offset;
  return IsFieldName(field->name) && IsKnownType(field->type) && IsFittingWidth(*field);
}

bool IsValidLayout(const FieldLayout& field) {
  if (field.name.empty() || field.name.size() >= kNameBytes || !IsFieldName(ToUpper(field.name)))
    return false;
  switch (field.type) {
    case 'C':
      return field.width >= 1 && field.width <= 65000 && field.decimals == 0;
    case 'N':
    case 'F':
      return field.width >= 1 && field.width <= 20 &&
             (field.decimals == 0 || field.decimals <= field.width - 2);
    case 'D':
      return field.width == 8;
    case 'L':
      return field.width == 1;
    case 'M':
      return field.width == 10;
    case 'B':
      return field.width == 8;
    default:
      return false;
  }
}

}  // namespace

int ReadHeaderLength(std::span<const std::uint8_t> head) {
  if (head.size() < kTableHeadBytes || !IsTableVersion(head[0])) return 0;
  return Load16(&head[8]);
}

int ParseTableHeader(std::span<const std::uint8_t> bytes, TableHeader* header) {
  const int length = ReadHeaderLength(bytes);
  if (length < kTableHeadBytes + kDescriptorBytes + 1 || bytes.size() < static_cast<std::size_t>(length)) {
    return kErrorDataStructure;
  }
  header->version = bytes[0];
  header->record_count = Load32(&bytes[4]);
  header->header_length = length;
  header->record_length = Load16(&bytes[10]);
  header->has_index = (bytes[28] & 0x01) != 0;
  header->fields.clear();

  int offset = 1;
  bool memo_field = false;
  for (int at = kTableHeadBytes;; at += kDescriptorBytes) {
    if (at >= length) return kErrorDataStructure;
    if (bytes[static_cast<std::size_t>(at)] == kDescriptorsEnd) break;
    FieldInfo field;
    if (at + kDescriptorBytes > length ||
        !ParseDescriptor(&bytes[static_cast<std::size_t>(at)], offset, &field)) {
      return kErrorDataStructure;
    }
    offset += field.width;
    memo_field |= field.type == 'M';
    header->fields.push_back(std::move(field));
  }
  header->has_memo = memo_field;
  // A version that knows no memo file would hide every text.
  const bool fits = offset == header->record_length && !header->fields.empty() &&
                    header->fields.size() <= kMaxFields && !(memo_field && header->version == 0x03) &&
                    IsFittingLength(bytes, length, header->fields.size());
  return fits ? kSuccess : kErrorDataStructure;
}

int LayOutTable(std::span<const FieldLayout> fields, bool with_index, TableHeader* header) {
  if (fields.empty() || fields.size() > kMaxFields) return kErrorParameter;
  *header = TableHeader();
  int offset = 1;
  for (const FieldLayout& layout : fields) {
    if (!IsValidLayout(layout)) return kErrorParameter;
    FieldInfo field{ToUpper(layout.name), layout.type, layout.width, layout.decimals, offset};
    for (const FieldInfo& other : header->fields) {
      if (other.name == field.name) return kErrorParameter;
    }
    offset += field.width;
    header->has_memo |= field.type == 'M';
    header->fields.push_back(std::move(field));
  }
  if (offset > kMaxRecordLength) return kErrorParameter;
  const bool later =
      std::any_of(fields.begin(), fields.end(), [](const FieldLayout& f) { return f.type == 'B'; });
  header->version = later ? 0x30 : header->has_memo ? 0xF5 : 0x03;
  header->has_index = with_index;
  header->record_length = offset;
  header->header_length = kTableHeadBytes + kDescriptorBytes * static_cast<int>(fields.size()) + 1 +
                          (later ? kLaterVariantExtra : 0);
  return header->header_length <= 0xFFFF ? kSuccess : kErrorParameter;
}

std::vector<std::uint8_t> BuildTableHeader(const TableHeader& header, const Date& today) {
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(header.header_length), 0);
  bytes[0] = header.version;
  bytes[1] = static_cast<std::uint8_t>(std::clamp(today.year - 1900, 0, 255));
  bytes[2] = static_cast<std::uint8_t>(today.month);
  bytes[3] = static_cast<std::uint8_t>(today.day);
  Store32(&bytes[4], header.record_count);
  Store16(&bytes[8], static_cast<std::uint32_t>(header.header_length));
  Store16(&bytes[10], static_cast<std::uint32_t>(header.record_length));
  bytes[28] = static_cast<std::uint8_t>((header.has_index ? 0x01 : 0) | (header.has_memo ? 0x02 : 0));
  bytes[29] = kCodePage1252;
  std::size_t at = kTableHeadBytes;
  for (const FieldInfo& field : header.fields) {
    std::memcpy(&bytes[at], field.name.data(), field.name.size());
    bytes[at + 11] = static_cast<std::uint8_t>(field.type);
    Store32(&bytes[at + 12], static_cast<std::uint32_t>(field.offset));
    bytes[at + 16] = static_cast<std::uint8_t>(field.width);
    bytes[at + 17] = static_cast<std::uint8_t>(field.type == 'C' ? field.width >> 8 : field.decimals);
    at += kDescriptorBytes;
  }
  bytes[at] = kDescriptorsEnd;
  return bytes;
}

}  // namespace tallwick::engine
