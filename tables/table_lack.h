// What a table lacks of what the program needs of it. A walk along a tag that is not there would end at once,
// as in an empty table, and a field that is not there would read as 0 or blank.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/file_system.h"
#include "store/clsKVRData.h"
#include "tables/layout.h"

namespace tallwick {

struct TableLack {
  // engine::kErrorFieldName, engine::kErrorTagName, engine::kErrorIndexMissing for a table without any index,
  // or 0 for nothing.
  int code = 0;
  std::string text;         // "It lacks the field WIREAMOUNT"; "" for nothing
  std::string advice = {};  // what to do about a field, in sentences
  bool addable = false;     // a field that Update Database Versions adds

  explicit operator bool() const { return code != 0; }
};

// True when Update Database Versions may add the field, empty, to a table that holds records. What balances,
// keys and periods come from it never makes up.
bool MayBeMadeUp(const TableLayout& layout, const FieldLayout& field);

// True when the tag's key is made from the field.
bool Needs(const TagLayout& tag, const FieldLayout& field);

// True for the engine's codes of an index that is damaged, missing or not as it must be.
bool IsIndexDamage(int code);

// What an administrator does about the index of the suite's table, in a sentence without its end.
std::string SuiteIndexAdvice(std::string_view table);

// The first of the tags that the table lacks. An index file beside a table that does not say it has one
// counts for nothing: it may be of another time.
TableLack FindMissingTag(clsKVRData& data, DataHandle table, std::span<const TagLayout> tags);

// The first field of the layout that the open table lacks, or else the first tag.
TableLack FindLack(clsKVRData& data, DataHandle table, const TableLayout& layout);

// The fields of the layout that a table's file lacks, read past the store: a tag that needs one keeps the
// table from opening. None for a file that cannot be read or is no table.
std::vector<FieldLayout> MissingFields(const FileSystem& files, const std::string& path,
                                       const TableLayout& layout);
// The first of them.
TableLack FindMissingField(const FileSystem& files, const std::string& path, const TableLayout& layout);

// The tags with which an open table's index is to be made anew: those that it has, and behind them those that
// it lacks. Other programs may have tags of their own in it.
class TagsToBuild {
 public:
  TagsToBuild(clsKVRData& data, DataHandle table, std::span<const TagLayout> needed);
  TagsToBuild(const TagsToBuild&) = delete;
  TagsToBuild& operator=(const TagsToBuild&) = delete;

  std::span<const TagLayout> All() const { return tags_; }

 private:
  std::vector<TagProperties> found_;  // holds the texts of the tags found
  std::vector<TagLayout> tags_;
};

}  // namespace tallwick
