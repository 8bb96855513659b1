// Moving a handle: by record number, in a tag's order, and by seeking keys.
// A descending tag is stored ascending and walked backwards, so "forward" below means the direction the
// caller sees.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>

#include "core/date.h"
#include "core/text.h"
#include "store/engine/instance.h"

namespace tallwick::engine {
namespace {

IndexFile& IndexOf(Data4& data) {
  return *data.table.Index();
}
IndexTag& TagOf(Data4& data) {
  return *data.selected->tag;
}

void Remember(Data4& data, const IndexPlace& place) {
  data.place = place;
  data.place_version = IndexOf(data).Version();
  data.place_record = data.placed_record = place.Record();
  data.place_key.assign(place.Key(), place.Key() + TagOf(data).shape.length);
}

int Step(IndexTree& tree, bool up, IndexPlace* place) {
  return up ? tree.Next(place) : tree.Previous(place);
}

// A lock that is not to be had is an error to a reader: "locked" would pass for a place that was not found.
template <class Operation>
int ReadIndex(Data4& data, Operation operation) {
  const int rc = IndexOf(data).Read(operation);
  IndexOf(data).TrimCache();
  return rc == kLocked ? static_cast<int>(kErrorLock) : rc;
}

// The empty key begins every key.
bool StartsWith(const std::uint8_t* whole, const std::vector<std::uint8_t>& key) {
  return std::equal(key.begin(), key.end(), whole);
}

// Loads the record of a place and remembers where it stands.
int Arrive(Data4& data, const IndexPlace& place) {
  const std::uint32_t record = place.Record();
  Remember(data, place);
  const int rc = LoadRecord(data, record);
  // A key that points behind the last record belongs to no record.
  if (rc == kNoRecord) return kErrorIndex;
  // Without the lock a writer may be between the two: then record and entry differ, and under the lock they
  // will not (or the index is damaged, and the reader gets the record as it is).
  if (rc != kSuccess || data.read_ahead || IndexOf(data).IsLocked()) return rc;
  std::array<std::uint8_t, kMaxKeyLength> own;
  TagOf(data).key->EvaluateKey(data.view, data.record, own.data());
  return StartsWith(own.data(), data.place_key) ? rc : IndexFile::kNeedsLock;
}

int GoEdge(Data4& data, bool front) {
  const bool last = front == TagOf(data).descending;
  return ReadIndex(data, [&] {
    IndexTree tree(IndexOf(data), TagOf(data));
    IndexPlace place;
    const int found = last ? tree.Last(&place) : tree.First(&place);
    if (found != kSuccess) return found;
    if (place.AtEnd()) return static_cast<int>(kEof);
    return Arrive(data, place);
  });
}

// The entry on which a handle stands as a step begins. What is read without the lock may have to be read again
// under it, and by then the handle has moved.
struct Standing {
  std::uint32_t record = 0;
  std::array<std::uint8_t, kMaxKeyLength> key;
  std::optional<IndexPlace> place;  // good while the index is at `version`
  std::uint64_t version = 0;
};

Standing StandingOf(Data4& data) {
  Standing standing;
  standing.record = data.record;
  standing.version = IndexOf(data).Version();
  const auto length = static_cast<std::size_t>(TagOf(data).shape.length);
  if (data.placed_record == data.record && data.record != 0 && data.place_version == standing.version) {
    standing.place = data.place;
    std::copy_n(data.place.Key(), length, standing.key.begin());
  } else if (data.place_record == data.record && data.record != 0) {
    std::copy_n(data.place_key.begin(), length, standing.key.begin());
  } else {
    TagOf(data).key->EvaluateKey(data.view, data.record, standing.key.data());
  }
  return standing;
}

// Finds an entry again after the index changed, or after a move by record number. `*exact` is false when it is
// gone: then the place is the next entry in tree order (or the end).
int FindAgain(Data4& data, const Standing& standing, IndexTree& tree, IndexPlace* place, bool* exact) {
  if (standing.place && standing.version == IndexOf(data).Version()) {
    *place = *standing.place;
    *exact = true;
    return kSuccess;
  }
  const int rc = tree.LowerBound(standing.key.data(), TagOf(data).shape.length, standing.record, place);
  if (rc != kSuccess) return rc;
  *exact = !place->AtEnd() && place->node->Compare(place->at, standing.key.data(), standing.record) == 0;
  return kSuccess;
}

// Moves `count` entries in tree order. Where the end of the tree came first, *left is what could not be moved
// and the handle is on the last entry before it, if there is one.
int StepMany(Data4& data, const Standing& from, bool up, std::int64_t count, std::int64_t* left) {
  IndexTree tree(IndexOf(data), TagOf(data));
  IndexPlace place;
  bool exact = false;
  if (const int rc = FindAgain(data, from, tree, &place, &exact); rc != kSuccess) return rc;
  std::int64_t to_go = count;
  if (!exact) {
    // The next entry up is already one step away; downwards it takes a step back to reach the one before.
    if (up) {
      --to_go;
    } else if (place.AtEnd()) {
      if (const int rc = tree.Last(&place); rc != kSuccess) return rc;
      --to_go;
    }
  }
  IndexPlace last = place;
  while (to_go > 0 && !place.AtEnd()) {
    last = place;
    if (const int rc = Step(tree, up, &place); rc != kSuccess) return rc;
    --to_go;
  }
  *left = place.AtEnd() ? to_go + 1 : 0;
  if (!place.AtEnd()) return Arrive(data, place);
  if (!last.AtEnd()) return Arrive(data, last);
  ShowEnd(data);
  return kSuccess;
}

// A step within the page at hand, for walks that read ahead: the page is as of the moment the walk came to
// it.
bool StepWithinPage(Data4& data, bool up) {
  if (data.placed_record != data.record || data.eof || data.place_version != IndexOf(data).Version())
    return false;
  const int at = data.place.at + (up ? 1 : -1);
  if (at < 0 || at >= data.place.node->Count()) return false;
  const std::uint32_t record = data.place.node->records[static_cast<std::size_t>(at)];
  int rc = kSuccess;
  const std::uint8_t* bytes = data.ahead.Get(data.table, record, &rc);
  if (bytes == nullptr) return false;
  data.view = bytes;
  data.record = data.placed_record = record;
  data.place.at = at;
  data.bof = false;
  return true;
}

int SkipInTag(Data4& data, std::int64_t count) {
  const bool forward = count > 0;
  const bool up = forward != TagOf(data).descending;
  if (data.read_ahead && data.record != 0 && (count == 1 || count == -1) && StepWithinPage(data, up))
    return kSuccess;
  if (data.eof && forward) return kEof;
  if (data.eof) {
    // Back from the end: the last entry is the first step.
    const int rc = GoEdge(data, false);
    if (rc == kEof) {
      data.bof = true;
      return kBof;
    }
    if (rc != kSuccess || count == -1) return rc;
    ++count;
  }
  std::int64_t left = 0;
  const Standing from = StandingOf(data);
  const int rc = ReadIndex(data, [&] { return StepMany(data, from, up, forward ? count : -count, &left); });
  if (rc < 0 && data.record != from.record) {
    // The step may have been tried, and would be a second one when it is repeated.
    LoadRecord(data, from.record);
    data.ForgetPlace();
  }
  if (rc != kSuccess) return rc;
  if (left == 0) return kSuccess;
  if (forward) {
    ShowEnd(data);
    return kEof;
  }
  data.bof = true;
  return kBof;
}

int SkipInRecordOrder(Data4& data, std::int64_t count) {
  if (data.read_ahead && count > 0 && count <= kMaxRecords && data.record != 0 && !data.eof) {
    const int rc = LoadRecord(data, data.record + static_cast<std::uint32_t>(count));
    if (rc != kNoRecord) return rc;
  }
  const std::int64_t records = data.table.RecordCount();
  if (records < 0) return kErrorRead;
  const std::int64_t from = data.eof ? records + 1 : data.record;
  const std::int64_t target = from + count;
  if (target > records) {
    ShowEnd(data);
    return kEof;
  }
  if (target >= 1) return LoadRecord(data, static_cast<std::uint32_t>(target));
  if (records == 0) {
    ShowEnd(data);
    data.bof = true;
    return kBof;
  }
  const int rc = LoadRecord(data, 1);
  data.bof = true;
  return rc == kSuccess ? static_cast<int>(kBof) : rc;
}

// --- Seeking ---

// The key bytes that a caller's text stands for in the selected tag.
std::vector<std::uint8_t> KeyFromText(const IndexTag& tag, std::string_view text) {
  std::vector<std::uint8_t> key;
  if (tag.key_type == ValueType::kNumber || tag.key_type == ValueType::kDate) {
    double number = 0;
    const std::string_view trimmed = Trim(text);
    if (tag.key_type == ValueType::kDate) {
      number = JulianDay(ParseStoredDate(trimmed).value_or(Date()));
    } else {
      std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), number);
    }
    key.resize(8);
    NumberToKey(number, key.data());
    return key;
  }
  key.assign(text.begin(), text.end());
  return key;
}

// The first entry in walking order at or behind the key.
int FindInWalk(IndexTree& tree, const IndexTag& tag, const std::vector<std::uint8_t>& key,
               IndexPlace* place) {
  const int length = static_cast<int>(key.size());
  if (!tag.descending) return tree.LowerBound(key.data(), length, 0, place);
  // Walking down: the last entry that begins with the key or stands before it.
  std::vector<std::uint8_t> behind = key;
  while (!behind.empty() && behind.back() == 0xFF) behind.pop_back();
  if (behind.empty()) return tree.Last(place);
  ++behind.back();
  return tree.Before(behind.data(), static_cast<int>(behind.size()), 0, place);
}

int SeekKey(Data4& data, std::vector<std::uint8_t> key) {
  if (data.selected == nullptr) return data.code.Fail(kErrorTagName);
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  const auto length = static_cast<std::size_t>(TagOf(data).shape.length);
  const bool too_long = key.size() > length;
  if (too_long) key.resize(length);
  const int rc = ReadIndex(data, [&] {
    IndexTree tree(IndexOf(data), TagOf(data));
    IndexPlace place;
    const int found = FindInWalk(tree, TagOf(data), key, &place);
    if (found != kSuccess) return found;
    if (place.AtEnd()) return static_cast<int>(kEof);
    const bool match = StartsWith(place.Key(), key) && !too_long;
    const int arrived = Arrive(data, place);
    return arrived == kSuccess && !match ? static_cast<int>(kAfter) : arrived;
  });
  if (rc == kEof) ShowEnd(data);
  return data.code.Fail(rc);
}

// Whether the entry on which the handle stands begins with a key. The entry counts, not the record: where the
// two disagree the index is damaged, and a walk must come to that record so that its reader can tell.
bool PresentStartsWith(Data4& data, const std::vector<std::uint8_t>& key) {
  if (data.placed_record == data.record && data.place_version == IndexOf(data).Version()) {
    return StartsWith(data.place.Key(), key);
  }
  if (data.place_record == data.record) return StartsWith(data.place_key.data(), key);
  std::array<std::uint8_t, kMaxKeyLength> own;
  TagOf(data).key->EvaluateKey(data.view, data.record, own.data());
  return StartsWith(own.data(), key);
}

int SeekKeyNext(Data4& data, const std::vector<std::uint8_t>& key) {
  if (data.selected == nullptr) return data.code.Fail(kErrorTagName);
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  const bool placed = data.record != 0 && !data.eof;
  if (!placed || key.size() > static_cast<std::size_t>(TagOf(data).shape.length)) return SeekKey(data, key);
  if (!PresentStartsWith(data, key)) return SeekKey(data, key);
  const int rc = d4skip(data, 1);
  if (rc != kSuccess) return rc;
  return PresentStartsWith(data, key) ? kSuccess : kAfter;
}

std::vector<std::uint8_t> KeyFromNumber(double number) {
  std::vector<std::uint8_t> key(8);
  NumberToKey(number, key.data());
  return key;
}

bool TakesNumbers(const Data4& data) {
  return data.selected != nullptr && !data.table.lost &&
         (data.selected->tag->key_type == ValueType::kNumber ||
          data.selected->tag->key_type == ValueType::kDate);
}

}  // namespace

int d4goLow(Data4& data, std::uint32_t record) {
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  const int rc = LoadRecord(data, record);
  data.ForgetPlace();
  if (rc == kNoRecord) ShowEnd(data);
  return data.code.Fail(rc);
}

int d4top(Data4& data) {
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  data.ForgetAhead();
  int rc = kSuccess;
  if (data.selected != nullptr) {
    rc = GoEdge(data, true);
  } else {
    rc = LoadRecord(data, 1);
    if (rc == kNoRecord) rc = kEof;
  }
  if (rc == kEof) ShowEnd(data);
  return data.code.Fail(rc);
}

int d4bottom(Data4& data) {
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  data.ForgetAhead();
  int rc = kSuccess;
  if (data.selected != nullptr) {
    rc = GoEdge(data, false);
  } else {
    const std::uint32_t count = d4recCountDo(data);
    rc = count == 0 ? static_cast<int>(kEof) : LoadRecord(data, count);
  }
  if (rc == kEof) ShowEnd(data);
  return data.code.Fail(rc);
}

int d4skip(Data4& data, std::int64_t count) {
  // More steps than any table has records.
  count = std::clamp<std::int64_t>(count, -std::int64_t{kMaxRecords} - 1, std::int64_t{kMaxRecords} + 1);
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  if (count == 0) return kSuccess;
  if (data.record == 0 && !data.eof) return data.code.Fail(kNoRecord);
  return data.code.Fail(data.selected != nullptr ? SkipInTag(data, count) : SkipInRecordOrder(data, count));
}

int d4seek(Data4& data, std::string_view key) {
  if (data.table.lost) return data.code.Fail(kErrorClose);
  if (data.selected == nullptr) return data.code.Fail(kErrorTagName);
  return SeekKey(data, KeyFromText(TagOf(data), key));
}

int d4seekN(Data4& data, std::string_view key, std::size_t length) {
  return d4seek(data, key.substr(0, length));
}

int d4seekDouble(Data4& data, double key) {
  if (!TakesNumbers(data)) return data.code.Fail(kErrorParameter);
  return SeekKey(data, KeyFromNumber(key));
}

int d4seekNext(Data4& data, std::string_view key) {
  if (data.table.lost) return data.code.Fail(kErrorClose);
  if (data.selected == nullptr) return data.code.Fail(kErrorTagName);
  return SeekKeyNext(data, KeyFromText(TagOf(data), key));
}

int d4seekNextN(Data4& data, std::string_view key, std::size_t length) {
  return d4seekNext(data, key.substr(0, length));
}

int d4seekNextDouble(Data4& data, double key) {
  if (!TakesNumbers(data)) return data.code.Fail(kErrorParameter);
  return SeekKeyNext(data, KeyFromNumber(key));
}

// --- Tags ---

Tag4* d4tag(Data4& data, std::string_view name) {
  for (const auto& tag : data.tags) {
    if (EqualsIgnoreCase(tag->tag->name, Trim(name))) return tag.get();
  }
  data.code.Fail(kErrorTagName);
  return nullptr;
}

void d4tagSelect(Data4& data, Tag4* tag) {
  if (data.selected == tag) return;
  data.selected = tag;
  data.ForgetPlace();
}

Tag4* d4tagSelected(const Data4& data) {
  return data.selected;
}

Tag4* d4tagNext(Data4& data, Tag4* tag) {
  if (tag == nullptr) return data.tags.empty() ? nullptr : data.tags.front().get();
  for (std::size_t i = 0; i + 1 < data.tags.size(); ++i) {
    if (data.tags[i].get() == tag) return data.tags[i + 1].get();
  }
  return nullptr;
}

std::string t4alias(const Tag4& tag) {
  return tag.tag->name;
}
std::string t4exprCB(const Tag4& tag) {
  return tag.tag->key_text;
}
std::string t4filterCB(const Tag4& tag) {
  return tag.tag->filter_text;
}
int t4unique(const Tag4& tag) {
  return tag.unique_mode;
}

int t4uniqueSetVB(Tag4& tag, int mode) {
  // A tag that was made without uniqueness may hold the same key twice, so it cannot become unique.
  if (mode != 0 && mode != kUnique && mode != kUniqueContinue && mode > 0)
    return tag.data->code.Fail(kErrorParameter);
  if (!tag.tag->unique && mode != 0) return tag.data->code.Fail(kErrorParameter);
  const int previous = tag.unique_mode;
  tag.unique_mode = mode;
  return previous;
}

bool t4descending(const Tag4& tag) {
  return tag.tag->descending;
}
int t4keyLength(const Tag4& tag) {
  return tag.tag->shape.length;
}

void d4readAhead(Data4& data, bool on) {
  data.Own();
  data.read_ahead = on;
  data.ForgetAhead();
}

}  // namespace tallwick::engine
