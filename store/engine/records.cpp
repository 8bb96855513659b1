// Records of a handle: append, change, delete, lock, and their keys in the tags.
#include <algorithm>
#include <array>
#include <cstring>

#include "store/engine/instance.h"
#include "store/engine/memo_reference.h"

namespace tallwick::engine {
namespace {

constexpr std::uint8_t kLiveMark = ' ';
constexpr std::uint8_t kDeletedMark = '*';
constexpr std::size_t kAheadBytes = std::size_t{256} << 10;
constexpr std::size_t kAheadBlocks = 24;
constexpr std::uint32_t kNoBlock = 0xFFFFFFFFU;

bool SameKey(const TagChange& change) {
  const auto length = static_cast<std::size_t>(change.tag->tag->shape.length);
  return std::memcmp(change.old_key.data(), change.new_key.data(), length) == 0;
}

// Fills the handle's plan with what a change of a record (from nothing: null) does to its tags. False when it
// does nothing to any.
bool PlanChanges(Data4& data, const std::uint8_t* old_record, std::uint32_t number) {
  data.plan.resize(data.tags.size());
  RecordFilter old_filter(old_record, number);
  RecordFilter filter(data.buffer.data(), number);
  bool any = false;
  for (std::size_t i = 0; i < data.tags.size(); ++i) {
    TagChange& change = data.plan[i];
    const IndexTag& tag = *data.tags[i]->tag;
    change.tag = data.tags[i].get();
    change.had = old_record != nullptr && old_filter.Includes(tag);
    change.has = filter.Includes(tag);
    if (change.had) tag.key->EvaluateKey(old_record, number, change.old_key.data());
    if (change.has) tag.key->EvaluateKey(data.buffer.data(), number, change.new_key.data());
    if (change.has && tag.queue) tag.queue->Prefetch(change.new_key.data());
    if (change.had && change.has && SameKey(change)) change.had = change.has = false;
    any |= change.had || change.has;
  }
  return any;
}

// Whether another record holds the key already. Decides by the tag's mode: kSuccess to go on (the key may
// have been dropped from the plan), kUnique or the mode's error to refuse.
int CheckUnique(Data4& data, TagChange* change, std::uint32_t number) {
  if (!change->has || change->tag->unique_mode == 0) return kSuccess;
  IndexTag& tag = *change->tag->tag;
  if (tag.queue && tag.queue->Contains(change->new_key.data())) {
    if (change->tag->unique_mode != kUniqueContinue) return change->tag->unique_mode;
    change->has = false;
    return kSuccess;
  }
  IndexTree tree(*data.table.Index(), tag);
  IndexPlace place;
  int rc = tree.LowerBound(change->new_key.data(), tag.shape.length, 0, &place);
  const auto length = static_cast<std::size_t>(tag.shape.length);
  while (rc == kSuccess && !place.AtEnd() && std::memcmp(place.Key(), change->new_key.data(), length) == 0) {
    if (place.Record() != number) {
      if (change->tag->unique_mode == kUniqueContinue) {
        change->has = false;
        return kSuccess;
      }
      return change->tag->unique_mode;
    }
    rc = tree.Next(&place);
  }
  return rc;
}

void QueueKeys(Data4& data, std::uint32_t number) {
  for (const TagChange& change : data.plan) {
    if (change.has) data.table.Index()->Queue(*change.tag->tag, change.new_key.data(), number);
  }
}

bool HeldByAnother(IndexTree& tree, const TagChange& change) {
  if (!change.tag->tag->unique) return false;
  const int length = change.tag->tag->shape.length;
  IndexPlace place;
  return tree.LowerBound(change.old_key.data(), length, 0, &place) == kSuccess && !place.AtEnd() &&
         std::memcmp(place.Key(), change.old_key.data(), static_cast<std::size_t>(length)) == 0;
}

int ApplyPlan(Data4& data, std::uint32_t number) {
  for (const TagChange& change : data.plan) {
    IndexTree tree(*data.table.Index(), *change.tag->tag);
    if (change.had) {
      int rc = tree.Remove(change.old_key.data(), number);
      // A record that a unique tag once left out, since another held its key, has nothing to remove. Nor has
      // one that another program appended without keys: it can still be deleted.
      const bool deleted = data.buffer.front() == kDeletedMark;
      if (rc == kNoRecord) rc = deleted || HeldByAnother(tree, change) ? kSuccess : kErrorIndex;
      if (rc != kSuccess) return rc;
    }
    if (change.has) {
      const int rc = tree.Insert(change.new_key.data(), number);
      if (rc != kSuccess) return rc == kUnique ? static_cast<int>(kErrorIndex) : rc;
    }
  }
  return kSuccess;
}

int WriteMemos(Data4& data) {
  for (auto& [number, memo] : data.memos) {
    const FieldInfo& info = data.fields[static_cast<std::size_t>(number) - 1].info;
    if (data.table.Memo() == nullptr) return kErrorMemo;
    std::uint8_t* place = data.Own() + info.offset;
    std::uint32_t block = MemoBlockAt(info, place);
    const int rc = data.table.Memo()->Write(&block, memo.second, memo.first, data.table.SizeLimit());
    if (rc != kSuccess) return rc;
    PutMemoBlock(info, place, block);
  }
  return kSuccess;
}

void Written(Data4& data, std::uint32_t number) {
  for (const auto& handle : data.code.handles) {
    if (&handle->table == &data.table) handle->ForgetAhead();
  }
  data.record = number;
  data.changed = false;
  data.appending = false;
  data.eof = data.bof = false;
  data.wrote_in_unit = true;
  data.memos.clear();
  data.ForgetPlace();
}

int AppendNow(Data4& data, bool* begun) {
  Code4& code = data.code;
  TableFile& table = data.table;
  int rc = code.Join(table);
  if (rc == kSuccess) rc = table.LockAppend(code.lock_attempts);
  if (rc != kSuccess) return rc;
  const std::int64_t count = table.RecordCount();
  if (count < 0) return kErrorRead;
  const auto number = static_cast<std::uint32_t>(count + 1);
  const bool has_keys = PlanChanges(data, nullptr, number);
  if (table.Index() != nullptr && rc == kSuccess) rc = table.Index()->LockForChange();
  for (TagChange& change : data.plan) {
    if (rc == kSuccess) rc = CheckUnique(data, &change, number);
  }
  if (rc != kSuccess) return rc;

  *begun = true;
  std::uint32_t written = 0;
  rc = WriteMemos(data);
  if (rc == kSuccess) rc = table.StageAppend(data.buffer, code.setup.clock.Now().date, &written);
  if (rc == kSuccess && has_keys) QueueKeys(data, number);
  return rc == kSuccess ? code.WriteAhead(table) : rc;
}

int ChangeNow(Data4& data, bool* begun) {
  Code4& code = data.code;
  TableFile& table = data.table;
  int rc = code.Join(table);
  if (rc != kSuccess) return rc;
  std::vector<std::uint8_t> old(data.buffer.size());
  if (table.ReadRecords(data.record, 1, old.data()) != 1) return kErrorRead;
  // A memo's place is known only when it is written, and no key depends on it.
  const bool changes_keys = PlanChanges(data, old.data(), data.record);
  if (!data.memos.empty()) rc = table.LockAppend(code.lock_attempts);
  if (changes_keys && rc == kSuccess) rc = table.Index()->LockForChange();
  if (changes_keys && rc == kSuccess) rc = table.Index()->SettleQueues();
  for (TagChange& change : data.plan) {
    if (rc == kSuccess) rc = CheckUnique(data, &change, data.record);
  }
  if (rc != kSuccess) return rc;

  *begun = true;
  rc = WriteMemos(data);
  if (rc != kSuccess) return rc;
  table.StageRecord(data.record, data.buffer);
  return ApplyPlan(data, data.record);
}

}  // namespace

// --- Blocks of records ---

// A walk that goes on from block to block keeps to the memory of the one before, which is in the processor's
// cache; else the block that was not used for the longest time goes.
ReadAhead::Block* ReadAhead::Reusable(std::uint32_t number) {
  for (Block& held : blocks_) {
    if (held.used == clock_ && held.number + 1 == number) return &held;
  }
  if (blocks_.size() < kAheadBlocks) return &blocks_.emplace_back();
  return &*std::min_element(blocks_.begin(), blocks_.end(), [](const Block& a, const Block& b) {
    return (a.count == 0 ? 0 : a.used) < (b.count == 0 ? 0 : b.used);
  });
}

ReadAhead::Block* ReadAhead::Fill(TableFile& table, std::uint32_t number, int* rc) {
  Block* block = Reusable(number);
  const auto length = static_cast<std::size_t>(table.Header().record_length);
  const auto per_block = static_cast<std::uint32_t>(std::max<std::size_t>(1, kAheadBytes / length));
  count_ = 0;  // the block that is reused may be the one last used
  block->bytes.resize(per_block * length);
  // A large unit writes its records behind the last one before it stands; nobody may see them yet.
  const std::uint32_t first = number * per_block + 1;
  const std::uint32_t last = first + per_block - 1;
  const std::int64_t count = table.Holds(last, rc) ? last : table.RecordCount();
  const auto wanted = static_cast<std::uint32_t>(
      std::clamp<std::int64_t>(count - static_cast<std::int64_t>(first) + 1, 0, per_block));
  std::int64_t got = std::min<std::int64_t>(count, 0);
  if (wanted > 0) got = table.ReadRecords(first, wanted, block->bytes.data());
  block->number = got > 0 ? number : kNoBlock;
  block->count = got > 0 ? static_cast<std::uint32_t>(got) : 0;
  *rc = got < 0 ? static_cast<int>(got) : static_cast<int>(kSuccess);
  return got > 0 ? block : nullptr;
}

const std::uint8_t* ReadAhead::Find(TableFile& table, std::uint32_t record, int* rc) {
  length_ = static_cast<std::size_t>(table.Header().record_length);
  const auto per_block = static_cast<std::uint32_t>(std::max<std::size_t>(1, kAheadBytes / length_));
  const std::uint32_t number = (record - 1) / per_block;
  const std::uint32_t place = (record - 1) % per_block;
  Block* block = nullptr;
  for (Block& held : blocks_) {
    if (held.number == number && held.count > place) block = &held;
  }
  if (block == nullptr) block = Fill(table, number, rc);
  if (block == nullptr || place >= block->count) {
    if (*rc == kSuccess) *rc = kNoRecord;
    return nullptr;
  }
  block->used = ++clock_;
  first_ = number * per_block + 1;
  count_ = block->count;
  bytes_ = block->bytes.data();
  *rc = kSuccess;
  return bytes_ + place * length_;
}

// --- Handles ---

Data4::Data4(Code4& owner, TableFile& file) : code(owner), table(file) {
  int number = 0;
  for (const FieldInfo& info : file.Header().fields) fields.push_back(Field4{this, ++number, info});
  if (file.Index() != nullptr) {
    for (const auto& tag : file.Index()->Tags()) {
      auto own = std::make_unique<Tag4>();
      own->data = this;
      own->tag = tag.get();
      own->unique_mode = tag->unique ? owner.default_unique : 0;
      tags.push_back(std::move(own));
    }
  }
  buffer.assign(static_cast<std::size_t>(file.Header().record_length), ' ');
  SetView();
}

std::uint8_t* Data4::Own() {
  if (view != buffer.data()) {
    std::memcpy(buffer.data(), view, buffer.size());
    SetView();
  }
  return buffer.data();
}

bool RecordFilter::Includes(const IndexTag& tag) {
  if (!tag.filter) return true;
  if (asked_ == nullptr || asked_->filter_text != tag.filter_text) {
    included_ = tag.filter->EvaluateLogical(record_, number_);
    asked_ = &tag;
  }
  return included_;
}

bool KeyOf(const IndexTag& tag, const std::uint8_t* record, std::uint32_t number, std::uint8_t* key) {
  if (tag.filter && !tag.filter->EvaluateLogical(record, number)) return false;
  tag.key->EvaluateKey(record, number, key);
  return true;
}

int LoadRecord(Data4& data, std::uint32_t record) {
  if (data.read_ahead && record != 0) {
    int rc = kSuccess;
    const std::uint8_t* bytes = data.ahead.Get(data.table, record, &rc);
    if (bytes == nullptr) {
      // What could not be read may have been on its way into the block in view.
      if (rc != kNoRecord) {
        data.record = 0;
        data.SetView();
      }
      return rc;
    }
    data.view = bytes;
  } else {
    int rc = kSuccess;
    if (record == 0 || !data.table.Holds(record, &rc)) return rc == kSuccess ? int{kNoRecord} : rc;
    // One that cannot be read leaves the handle as it is.
    data.incoming.resize(data.buffer.size());
    const std::int64_t got = data.table.ReadRecords(record, 1, data.incoming.data());
    if (got != 1) return got < 0 ? static_cast<int>(got) : static_cast<int>(kErrorRead);
    data.buffer.swap(data.incoming);
    data.SetView();
  }
  data.record = record;
  data.changed = false;
  data.appending = false;
  data.eof = data.bof = false;
  if (!data.memos.empty()) data.memos.clear();
  return kSuccess;
}

void ShowEnd(Data4& data) {
  data.Own();
  d4blank(data);
  data.memos.clear();
  data.record = d4recCountDo(data) + 1;
  data.changed = data.appending = false;
  data.eof = true;
  data.bof = false;
  data.ForgetPlace();
}

int WriteChanges(Data4& data) {
  if (!data.changed) return kSuccess;
  if (data.appending) return d4append(data);
  Code4& code = data.code;
  // At the end there is no record to write, though another workstation may have appended one there since.
  if (data.eof || data.record == 0) return code.Fail(kNoRecord);
  const bool held = data.table.Owns(&data, data.record);
  if (!held) {
    const int rc = data.table.LockRecord(&data, data.record, code.lock_attempts);
    if (rc != kSuccess) return code.FailLocked(rc, data.table, data.record);
  }
  data.Own();
  // A change tried within a caller's unit is undone with it, also when it was refused and stands in the
  // buffer only.
  data.wrote_in_unit |= code.unit_depth > 0;
  UnitScope unit(code);
  bool begun = false;
  int rc = ChangeNow(data, &begun);
  const std::uint32_t number = data.record;
  data.wrote_in_unit |= begun;
  if (rc == kSuccess) Written(data, number);
  rc = unit.End(rc, begun);
  if (!held) {
    if (code.unit_depth > 0) {
      data.unlock_records.push_back(number);
    } else {
      data.table.UnlockRecord(&data, number);
    }
  }
  return rc;
}

int d4appendStart(Data4& data) {
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  data.Own();
  d4blank(data);
  data.memos.clear();
  data.record = 0;
  data.appending = true;
  data.changed = true;
  data.eof = data.bof = false;
  data.ForgetPlace();
  return kSuccess;
}

void d4blank(Data4& data) {
  std::uint8_t* record = data.Own();
  std::memset(record, ' ', data.buffer.size());
  record[0] = kLiveMark;
  for (const Field4& field : data.fields) {
    const bool binary =
        std::strchr("BIYT", field.info.type) != nullptr || (field.info.type == 'M' && field.info.width == 4);
    if (binary) std::memset(record + field.info.offset, 0, static_cast<std::size_t>(field.info.width));
  }
  if (!data.appending) data.changed = true;
}

int d4append(Data4& data) {
  if (!data.appending) return data.code.Fail(kErrorParameter);
  UnitScope unit(data.code);
  bool begun = false;
  data.Own();
  data.before = data.buffer;
  const auto memos = data.memos;
  int rc = AppendNow(data, &begun);
  std::uint32_t number = 0;
  if (rc == kSuccess) {
    number = d4recCountDo(data);
    Written(data, number);
  }
  rc = unit.End(rc, begun);
  if (rc != kSuccess) {
    // The new record stays in the buffer, to be appended again or given up.
    data.buffer = data.before;
    data.SetView();
    data.memos = memos;
    data.record = 0;
    data.appending = data.changed = true;
    data.eof = false;
  }
  return rc;
}

int d4changed(Data4& data, int flag) {
  const int previous = data.changed ? 1 : 0;
  if (flag == 0 || flag == 1) data.changed = flag == 1;
  if (flag == 0) {
    data.appending = false;
    data.memos.clear();
  }
  return previous;
}

void d4delete(Data4& data) {
  data.Own()[0] = kDeletedMark;
  data.changed = true;
}

void d4recall(Data4& data) {
  data.Own()[0] = kLiveMark;
  data.changed = true;
}

bool d4deleted(const Data4& data) {
  return data.view[0] == kDeletedMark;
}

int d4flush(Data4& data) {
  return WriteChanges(data);
}

int d4lockVB(Data4& data, std::uint32_t record) {
  if (record == 0) return kSuccess;
  const int rc = data.table.LockRecord(&data, record, data.code.lock_attempts);
  if (rc == kSuccess) data.table.NoteLock(record);
  return data.code.FailLocked(rc, data.table, record);
}

int d4lockFile(Data4& data) {
  const int rc = data.table.LockWhole(&data, data.code.lock_attempts);
  if (rc == kSuccess) data.table.NoteLock(0);
  return data.code.FailLocked(rc, data.table, 0);
}

int d4unlock(Data4& data) {
  const int rc = data.appending ? static_cast<int>(kSuccess) : WriteChanges(data);
  if (rc != kSuccess) return rc;
  if (data.code.unit_depth > 0) {
    data.unlock_at_end = true;
  } else {
    data.table.UnlockAll(&data);
  }
  return kSuccess;
}

int d4refreshRecord(Data4& data) {
  data.ForgetAhead();
  if (data.record == 0 || data.eof) return kNoRecord;
  data.Own();
  const std::uint32_t record = data.record;
  return data.code.Fail(LoadRecord(data, record));
}

std::uint32_t d4recNoLow(const Data4& data) {
  return data.record;
}

std::span<const std::uint8_t> d4record(const Data4& data) {
  return {data.view, data.buffer.size()};
}

std::span<const std::uint8_t> d4recordRun(const Data4& data) {
  const bool is_ahead = data.read_ahead && data.view != data.buffer.data();
  return {data.view, data.buffer.size() * (is_ahead ? data.ahead.RunFrom(data.record) : 1)};
}

bool d4eof(const Data4& data) {
  return data.eof;
}
bool d4bof(const Data4& data) {
  return data.bof;
}

std::uint32_t d4recCountDo(Data4& data) {
  const std::int64_t count = data.table.RecordCount();
  if (count < 0) data.code.Fail(kErrorRead);
  return count < 0 ? 0 : static_cast<std::uint32_t>(count);
}

}  // namespace tallwick::engine
