#include "tables/table_lack.h"

namespace tallwick {

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
    if (data.FindField(table, field.name) == 0)
      return {engine::kErrorFieldName, "It lacks the field " + std::string(field.name)};
  }
  return FindMissingTag(data, table, layout.tags);
}

}  // namespace tallwick
