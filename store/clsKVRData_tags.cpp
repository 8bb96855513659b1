// Tags, seeks and positioning.

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "store/clsKVRData.h"

namespace tallwick {

namespace {

// The field that a key expression begins with: "UPPER (BankName + BankCode)" gives "BankName".
std::string_view FirstFieldOf(std::string_view expression) {
  if (std::size_t open = expression.find('('); open != std::string_view::npos) {
    expression = expression.substr(open + 1);
    expression = expression.substr(0, expression.find(')'));
  }
  return Trim(expression.substr(0, expression.find_first_of("+,")));
}

// Key text in the tables' code page; a text that cannot stand in a table has no key.
std::optional<std::string> KeyBytes(std::string_view key) {
  return ToWindows1252(key);
}

}  // namespace

// --- Tags ---

TagHandle clsKVRData::GetTagPointer(DataHandle data, std::string_view tag) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), 0;
  const engine::Tag4* found = engine::d4tag(*table->data, tag);
  Finish(found ? engine::kSuccess : engine::kErrorTagName);
  return HandleOf(data, found);
}

bool clsKVRData::TagExist(DataHandle data, std::string_view tag) {
  return GetTagPointer(data, tag) != 0;
}

bool clsKVRData::SelectTag(DataHandle data, std::string_view tag) {
  if (tag.empty()) return SelectTagByPointer(data, 0);
  return SelectTagPointer(data, tag) != 0;
}

TagHandle clsKVRData::SelectTagPointer(DataHandle data, std::string_view tag) {
  TagHandle found = GetTagPointer(data, tag);
  if (found != 0) {
    SelectTagByPointer(data, found);
  } else if (Find(data)) {
    ports_.boxes.Critical("Select Tag",
                          std::string(tag) + " is not a valid tag name for " + DatabaseName(data));
    Finish(engine::kErrorTagName);
  }
  return found;
}

bool clsKVRData::SelectTagByPointer(DataHandle data, TagHandle tag) {
  OpenTable* table = Find(data);
  engine::Tag4* chosen = FindTag4(data, tag);
  if (!table || (tag != 0 && !chosen)) return NotOpen(), false;
  engine::d4tagSelect(*table->data, chosen);
  Finish(engine::kSuccess);
  return true;
}

TagHandle clsKVRData::GetCurrentTagPointer(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table ? HandleOf(data, engine::d4tagSelected(*table->data)) : 0;
}

int clsKVRData::SetTagUniqueContinue(DataHandle data, std::string_view tag, bool on) {
  engine::Tag4* found = FindTag4(data, GetTagPointer(data, tag));
  if (!found) return Find(data) ? engine::kErrorTagName : NotOpen();
  int previous = engine::t4uniqueSetVB(*found, on ? engine::kUniqueContinue : engine::kUnique);
  return Finish(std::min<int>(previous, engine::kSuccess));
}

std::vector<std::string> clsKVRData::TagNames(DataHandle data) const {
  std::vector<std::string> names;
  if (const OpenTable* table = Find(data)) {
    for (const engine::Tag4* tag : table->tags) names.push_back(engine::t4alias(*tag));
  }
  return names;
}

std::optional<TagProperties> clsKVRData::GetTagProperties(DataHandle data, std::string_view tag) {
  const engine::Tag4* found = FindTag4(data, GetTagPointer(data, tag));
  if (!found) return std::nullopt;
  return TagProperties{engine::t4alias(*found),  engine::t4exprCB(*found),     engine::t4filterCB(*found),
                       engine::t4unique(*found), engine::t4descending(*found), engine::t4keyLength(*found)};
}

// --- Seeks ---

int clsKVRData::Moved(const OpenTable& table, int result) {
  recordNumber = static_cast<std::int32_t>(engine::d4recNoLow(*table.data));
  return Finish(result);
}

int clsKVRData::SeekDatabase(DataHandle data, std::string_view key) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  std::optional<std::string> bytes = KeyBytes(key);
  return bytes ? Moved(*table, engine::d4seek(*table->data, *bytes)) : Finish(engine::kEof);
}

int clsKVRData::SeekDatabaseByPointer(DataHandle data, TagHandle tag, std::string_view key) {
  return SelectTagByPointer(data, tag) ? SeekDatabase(data, key) : engine::kErrorParameter;
}

int clsKVRData::SeekDatabaseNext(DataHandle data, std::string_view key) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  std::optional<std::string> bytes = KeyBytes(key);
  return bytes ? Moved(*table, engine::d4seekNext(*table->data, *bytes)) : Finish(engine::kEof);
}

int clsKVRData::SeekDatabaseNextByPointer(DataHandle data, TagHandle tag, std::string_view key) {
  return SelectTagByPointer(data, tag) ? SeekDatabaseNext(data, key) : engine::kErrorParameter;
}

int clsKVRData::SeekDatabaseNumber(DataHandle data, double key) {
  OpenTable* table = Find(data);
  return table ? Moved(*table, engine::d4seekDouble(*table->data, key)) : NotOpen();
}

int clsKVRData::SeekDatabaseNumberNext(DataHandle data, double key) {
  OpenTable* table = Find(data);
  return table ? Moved(*table, engine::d4seekNextDouble(*table->data, key)) : NotOpen();
}

int clsKVRData::FindDatabaseNext(DataHandle data, std::string_view key) {
  return SeekDatabaseNext(data, key);
}

int clsKVRData::FindDatabaseNextN(DataHandle data, std::string_view key, std::size_t length) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  std::optional<std::string> bytes = KeyBytes(key);
  if (!bytes) return Finish(engine::kEof);
  return Moved(*table, engine::d4seekNextN(*table->data, *bytes, std::min(length, bytes->size())));
}

int clsKVRData::FindDatabaseDateNext(DataHandle data, const Date& date) {
  return SeekDatabaseNext(data, StoredDate(date));
}

int clsKVRData::PadSearch(DataHandle data, std::string_view key) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  std::optional<std::string> bytes = KeyBytes(key);
  const engine::Tag4* tag = engine::d4tagSelected(*table->data);
  if (!bytes || !tag) return Finish(engine::kEof);
  bytes->resize(std::max(bytes->size(), static_cast<std::size_t>(engine::t4keyLength(*tag))), ' ');
  return Moved(*table, engine::d4seek(*table->data, *bytes));
}

int clsKVRData::PadSearchByPointer(DataHandle data, TagHandle tag, std::string_view key) {
  return SelectTagByPointer(data, tag) ? PadSearch(data, key) : engine::kErrorParameter;
}

// --- Positioning ---

int clsKVRData::TopDatabase(DataHandle data) {
  OpenTable* table = Find(data);
  return table ? Moved(*table, engine::d4top(*table->data)) : NotOpen();
}

int clsKVRData::BottomDatabase(DataHandle data) {
  OpenTable* table = Find(data);
  return table ? Moved(*table, engine::d4bottom(*table->data)) : NotOpen();
}

int clsKVRData::SkipDatabase(DataHandle data, std::int64_t count) {
  OpenTable* table = Find(data);
  return table ? Moved(*table, engine::d4skip(*table->data, count)) : NotOpen();
}

int clsKVRData::GoToRecordNo(DataHandle data, std::int32_t record) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen();
  if (record < 1) return Finish(engine::kNoRecord);
  return Moved(*table, engine::d4goLow(*table->data, static_cast<std::uint32_t>(record)));
}

std::int32_t clsKVRData::RecordCount(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), 0;
  std::uint32_t count = engine::d4recCountDo(*table->data);
  Finish(engine::kSuccess);
  return static_cast<std::int32_t>(count);
}

std::int32_t clsKVRData::CurrentRecord(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table ? static_cast<std::int32_t>(engine::d4recNoLow(*table->data)) : 0;
}

bool clsKVRData::IsRecordDeleted(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table && engine::d4deleted(*table->data);
}

int clsKVRData::NumberFields(DataHandle data) const {
  const OpenTable* table = Find(data);
  return table ? engine::d4numFields(*table->data) : 0;
}

void clsKVRData::SetReadAhead(DataHandle data, bool on) {
  if (OpenTable* table = Find(data)) engine::d4readAhead(*table->data, on);
}

std::string clsKVRData::GetFirstTagValue(DataHandle data, std::string_view tag) {
  return TagEndValue(data, tag, false);
}

std::string clsKVRData::GetLastTagValue(DataHandle data, std::string_view tag) {
  return TagEndValue(data, tag, true);
}

std::string clsKVRData::TagEndValue(DataHandle data, std::string_view tag, bool last) {
  TagHandle selected = GetCurrentTagPointer(data);
  if (!SelectTag(data, tag)) return {};
  std::string value;
  int code = last ? BottomDatabase(data) : TopDatabase(data);
  if (code == engine::kSuccess) {
    const engine::Tag4* chosen = FindTag4(data, GetCurrentTagPointer(data));
    if (chosen) value = GetStringFieldValue(data, FirstFieldOf(engine::t4exprCB(*chosen)));
  }
  SelectTagByPointer(data, selected);
  return value;
}

}  // namespace tallwick
