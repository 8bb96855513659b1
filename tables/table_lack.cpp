#include "tables/table_lack.h"

#include <algorithm>

#include "core/text.h"

namespace tallwick {

namespace {

std::string AdviceFor(const TableLayout& layout, bool addable) {
  if (layout.of_suite)
    return "The table is the suite's: have the suite bring it to its present layout, or restore the table "
           "from a copy.";
  if (!addable) return "What it held is never made up: restore the table from a copy.";
  return "Update Database Versions adds it, empty, where the table is of an older program.  Where it has "
         "been lost, restore the table from a copy.";
}

TableLack LackOf(const TableLayout& layout, const FieldLayout& field, bool has_records) {
  const bool addable = !layout.of_suite && (!has_records || MayBeMadeUp(layout, field));
  return {engine::kErrorFieldName, "It lacks the field " + std::string(field.name),
          AdviceFor(layout, addable), addable};
}

// A table's head is 32 bytes, in which bytes 4 to 7 count the records, and 32 for each field, which begin
// with its name; 0x0D follows the last one.
constexpr std::size_t kHeadPart = 32;
constexpr std::size_t kNameWidth = 11;
constexpr std::size_t kMostFields = 255;
constexpr char kHeadEnd = '\x0D';

// The head as far as the last field; "" for a file that is no table.
std::string ReadHead(const FileSystem& files, const std::string& path) {
  std::string head = files.ReadPart(path, 0, kHeadPart * (kMostFields + 1) + 1).value_or("");
  for (std::size_t at = kHeadPart; at < head.size(); at += kHeadPart)
    if (head[at] == kHeadEnd) return head.substr(0, at);
  return {};
}

bool HasField(std::string_view head, std::string_view name) {
  for (std::size_t at = kHeadPart; at < head.size(); at += kHeadPart) {
    const std::string_view place = head.substr(at, kNameWidth);
    if (EqualsIgnoreCase(place.substr(0, place.find('\0')), name)) return true;
  }
  return false;
}

std::vector<FieldLayout> MissingIn(std::string_view head, const TableLayout& layout) {
  std::vector<FieldLayout> missing;
  if (head.empty()) return missing;
  std::copy_if(layout.fields.begin(), layout.fields.end(), std::back_inserter(missing),
               [head](const FieldLayout& field) { return !HasField(head, field.name); });
  return missing;
}

}  // namespace

bool Needs(const TagLayout& tag, const FieldLayout& field) {
  return ToUpper(tag.expression).find(ToUpper(field.name)) != std::string::npos;
}

bool MayBeMadeUp(const TableLayout& layout, const FieldLayout& field) {
  return std::any_of(layout.may_be_empty.begin(), layout.may_be_empty.end(), [&](std::string_view beginning) {
    return ToUpper(field.name).starts_with(ToUpper(beginning));
  });
}

bool IsIndexDamage(int code) {
  return code <= engine::kErrorIndex && code > engine::kErrorExpression;
}

std::string SuiteIndexAdvice(std::string_view table) {
  return "\"escrowctl --answer Yes table reindex " + std::string(table) +
         "\" builds the tags that Escrow Accounting needs";
}

TableLack FindMissingTag(clsKVRData& data, DataHandle table, std::span<const TagLayout> tags) {
  if (!tags.empty() && !data.HasIndex(table))
    return {engine::kErrorIndexMissing, "It does not know of an index"};
  for (const TagLayout& tag : tags) {
    if (!data.TagExist(table, tag.name))
      return {engine::kErrorTagName, "Its index lacks the tag " + std::string(tag.name)};
  }
  return {};
}

TableLack FindLack(clsKVRData& data, DataHandle table, const TableLayout& layout) {
  for (const FieldLayout& field : layout.fields) {
    if (data.FindField(table, field.name) == 0) return LackOf(layout, field, data.RecordCount(table) > 0);
  }
  return FindMissingTag(data, table, layout.tags);
}

std::vector<FieldLayout> MissingFields(const FileSystem& files, const std::string& path,
                                       const TableLayout& layout) {
  return MissingIn(ReadHead(files, path), layout);
}

TableLack FindMissingField(const FileSystem& files, const std::string& path, const TableLayout& layout) {
  const std::string head = ReadHead(files, path);
  const std::vector<FieldLayout> missing = MissingIn(head, layout);
  if (missing.empty()) return {};
  const bool has_records = head.substr(4, 4) != std::string(4, '\0');
  return LackOf(layout, missing.front(), has_records);
}

TagsToBuild::TagsToBuild(clsKVRData& data, DataHandle table, std::span<const TagLayout> needed) {
  for (const std::string& name : data.TagNames(table)) {
    if (std::optional<TagProperties> tag = data.GetTagProperties(table, name))
      found_.push_back(*std::move(tag));
  }
  for (const TagProperties& tag : found_)
    tags_.push_back({tag.name, tag.expression, tag.filter, tag.unique != 0, tag.descending});
  for (const TagLayout& tag : needed) {
    const bool has = std::any_of(found_.begin(), found_.end(), [&](const TagProperties& one) {
      return EqualsIgnoreCase(one.name, tag.name);
    });
    if (!has) tags_.push_back(tag);
  }
}

}  // namespace tallwick
