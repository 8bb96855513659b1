// Making tables, packing them, and building their indexes.
#include <algorithm>
#include <array>
#include <cstring>

#include "store/engine/byte_order.h"
#include "store/engine/file_swap.h"
#include "store/engine/index_builder.h"
#include "store/engine/instance.h"

namespace tallwick::engine {

namespace {

constexpr std::uint32_t kBlockRecords = 512;
constexpr std::int64_t kEmptyMemoBytes = 512;
constexpr std::size_t kKeyMemory = std::size_t{96} << 20;
// What a key takes beside its bytes: its cell's head, and an entry of the sort.
constexpr std::size_t kBesideKey = 21;

using TagList = std::vector<std::unique_ptr<IndexTag>>;

int MakeTags(std::span<const TagLayout> layouts, std::span<const FieldInfo> fields, TagList* tags) {
  for (const TagLayout& layout : layouts) {
    auto tag = std::make_unique<IndexTag>();
    if (const int rc = MakeTag(layout, fields, tag.get()); rc != kSuccess) return rc;
    for (const auto& other : *tags) {
      if (other->name == tag->name) return kErrorParameter;
    }
    tags->push_back(std::move(tag));
  }
  return kSuccess;
}

TagList CopyTags(const TagList& from, std::span<const FieldInfo> fields, int* rc) {
  TagList tags;
  std::vector<TagLayout> layouts;
  for (const auto& tag : from) {
    layouts.push_back({tag->name, tag->key_text, tag->filter_text, tag->unique, tag->descending});
  }
  *rc = MakeTags(layouts, fields, &tags);
  return tags;
}

// Reads every record of a data file in blocks: visit(record number, bytes) goes on while it returns kSuccess.
template <class Visit>
int ScanRecords(TableFile& table, std::int64_t count, Visit visit) {
  const auto length = static_cast<std::size_t>(table.Header().record_length);
  std::vector<std::uint8_t> block(kBlockRecords * length);
  for (std::int64_t first = 1; first <= count; first += kBlockRecords) {
    const auto wanted = static_cast<std::uint32_t>(std::min<std::int64_t>(kBlockRecords, count - first + 1));
    if (table.ReadRecords(static_cast<std::uint32_t>(first), wanted, block.data()) != wanted)
      return kErrorRead;
    for (std::uint32_t i = 0; i < wanted; ++i) {
      const int rc = visit(static_cast<std::uint32_t>(first) + i, block.data() + i * length);
      if (rc != kSuccess) return rc;
    }
  }
  return kSuccess;
}

// Collects and writes the tags [from, to): as many at once as their keys fit in memory.
class TagRun {
 public:
  TagRun(TableFile& table, TagList& tags, IndexBuilder& builder, const Progress& progress)
      : table_(table), tags_(tags), builder_(builder), progress_(progress) {}

  int Build(int unique_default) {
    const std::int64_t count = table_.RecordCount();
    if (count < 0) return kErrorRead;
    total_ = static_cast<std::uint32_t>(count);
    for (std::size_t from = 0; from < tags_.size();) {
      std::size_t to = from;
      std::size_t memory = 0;
      while (to < tags_.size()) {
        memory += static_cast<std::size_t>(count) *
                  (static_cast<std::size_t>(tags_[to]->shape.length) + kBesideKey);
        if (to > from && memory > kKeyMemory) break;
        ++to;
      }
      if (const int rc = BuildRange(from, to, unique_default); rc != kSuccess) return rc;
      from = to;
    }
    return kSuccess;
  }

 private:
  int BuildRange(std::size_t from, std::size_t to, int unique_default) {
    std::vector<KeyList> lists;
    for (std::size_t i = from; i < to; ++i) {
      lists.emplace_back(tags_[i]->shape);
    }
    int rc = ScanRecords(table_, total_, [&](std::uint32_t number, const std::uint8_t* record) {
      RecordFilter filter(record, number);
      for (std::size_t i = from; i < to; ++i) {
        const IndexTag& tag = *tags_[i];
        if (!filter.Includes(tag)) continue;
        tag.key->EvaluateKey(record, number, lists[i - from].Add(number));
      }
      const bool stop = number % 4096 == 0 && progress_ && !progress_(number, total_);
      return stop ? kStopped : kSuccess;
    });
    for (std::size_t i = from; i < to && rc == kSuccess; ++i) {
      KeyList& list = lists[i - from];
      list.Sort();
      if (tags_[i]->unique && list.HasSameKeys()) {
        if (unique_default == kUniqueContinue) {
          list.KeepFirstOfSame();
        } else {
          return kErrorUniqueKey;
        }
      }
      rc = builder_.AddTag(*tags_[i], list);
      list.Clear();
    }
    return rc;
  }

  TableFile& table_;
  TagList& tags_;
  IndexBuilder& builder_;
  const Progress& progress_;
  std::uint32_t total_ = 0;
};

int BuildIndex(Code4& code, TableFile& table, TagList& tags, const std::string& path, std::uint32_t counter,
               const Progress& progress) {
  int rc = kSuccess;
  const auto file = code.setup.files.Open(path, OpenMode::kCreate, &rc);
  if (!file) return rc;
  IndexBuilder builder(*file, kSmallFileLimit);
  rc = builder.Begin(tags);
  if (rc == kSuccess) rc = TagRun(table, tags, builder, progress).Build(code.default_unique);
  if (rc == kSuccess) rc = builder.Finish(counter);
  return rc == kSuccess ? file->Flush() : rc;
}

// Opens a table's data file by itself, under exclusive access.
std::unique_ptr<TableFile> OpenAlone(Code4& code, const std::string& path, int* rc) {
  return TableFile::Open(code.setup, path, {true, code.large, true}, rc);
}

int EmptyIndex(Code4& code, TagList& tags, const std::string& path, OpenMode mode) {
  int rc = kSuccess;
  const auto file = code.setup.files.Open(path, mode, &rc);
  if (!file) return rc;
  IndexBuilder builder(*file, kSmallFileLimit);
  rc = builder.Begin(tags);
  for (const auto& tag : tags) {
    if (rc == kSuccess) rc = builder.AddTag(*tag, KeyList(tag->shape));
  }
  if (rc == kSuccess) rc = builder.Finish(1);
  return rc == kSuccess ? file->Flush() : rc;
}

// The texts of a table whose data file was lost are kept: as NAME.LOST.FPT, NAME.LOST2.FPT, ...
int KeepTexts(Code4& code, const std::string& path) {
  if (!code.setup.files.Exists(path)) return kSuccess;
  int rc = kSuccess;
  const auto file = code.setup.files.Open(path, OpenMode::kReadOnly, &rc);
  if (!file) return rc;
  const std::int64_t size = file->Size();
  if (size < 0) return static_cast<int>(size);
  if (size <= kEmptyMemoBytes) return kSuccess;
  constexpr int kMostKept = 1000;  // a share that does not answer has them all
  const std::string stem = path.substr(0, path.size() - std::string_view(".FPT").size()) + ".LOST";
  std::string kept = stem + ".FPT";
  for (int number = 2; number < kMostKept && code.setup.files.Exists(kept); ++number)
    kept = stem + std::to_string(number) + ".FPT";
  return code.setup.files.Rename(path, kept);
}

int RemoveStrays(Code4& code, const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    if (!code.setup.files.Exists(path)) continue;
    if (const int rc = code.setup.files.Remove(path); rc != kSuccess) return rc;
  }
  return kSuccess;
}

int EmptyMemo(Code4& code, const std::string& path, OpenMode mode) {
  int rc = kSuccess;
  const auto file = code.setup.files.Open(path, mode, &rc);
  if (!file) return rc;
  rc = MemoFile::Create(*file);
  return rc == kSuccess ? file->Flush() : rc;
}

// Under another name first: a data file without its head would be a table that nobody can open.
int EmptyData(Code4& code, const TableHeader& header, const std::string& path) {
  int rc = kSuccess;
  {
    const auto file = code.setup.files.Open(NewFileName(path), OpenMode::kCreate, &rc);
    if (!file) return rc;
    std::vector<std::uint8_t> bytes = BuildTableHeader(header, code.setup.clock.Now().date);
    bytes.push_back(kEndOfFileMark);
    rc = file->WriteAt(0, bytes.data(), bytes.size());
    if (rc == kSuccess) rc = file->Flush();
  }
  return rc == kSuccess ? code.setup.files.Rename(NewFileName(path), path) : rc;
}

}  // namespace

// --- A folder at rest ---

int QuietJournal::Begin(bool make_journal) {
  code_.JournalOf(folder_);
  journal_ = code_.journals[folder_];
  was_writing_ = journal_->IsWriting();
  int rc = make_journal ? journal_->BeginWriting() : static_cast<int>(kSuccess);
  if (rc == kSuccess) rc = journal_->Settle();
  return code_.WriterLockFailed(rc, folder_);
}

QuietJournal::~QuietJournal() {
  if (journal_ != nullptr && !was_writing_) journal_->EndWriting();
}

int FormatLocks::Take() {
  int rc = table_.LockWhole(owner_, code_.lock_attempts);
  if (rc == kSuccess) rc = table_.LockAppend(code_.lock_attempts);
  if (rc == kSuccess && table_.Data().Raw().IsOpenElsewhere()) rc = kLocked;
  return rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc;
}

FormatLocks::~FormatLocks() {
  if (!had_whole_) table_.UnlockAll(owner_);
  table_.UnlockAppend();
}

// --- Operations ---

Data4* d4create(Code4& code, std::string_view path, std::span<const FieldLayout> fields,
                std::span<const TagLayout> tag_layouts) {
  const std::string full = TablePath(code, path);
  TableHeader header;
  TagList tags;
  int rc = LayOutTable(fields, !tag_layouts.empty(), &header);
  if (rc == kSuccess) rc = MakeTags(tag_layouts, header.fields, &tags);
  const std::string index = TableFile::SiblingPath(code.setup.paths, full, "CDX");
  const std::string memo = TableFile::SiblingPath(code.setup.paths, full, "FPT");
  if (rc == kSuccess) rc = code.PassInto(TableFolder(full));
  // Two workstations may want the table at once: the second must see what the first has made, and posted to
  // since.
  QuietJournal quiet(code, TableFolder(full));
  if (rc == kSuccess) rc = quiet.BeginWithJournal();
  const bool exists = code.setup.files.Exists(full);
  if (rc == kSuccess && code.safety != 0 && exists) rc = kErrorExists;
  // The data file comes last: without it there is no table, and what stands beside it is left over from a
  // creation that was cut short.
  std::vector<std::string> made;
  if (rc == kSuccess && !exists) rc = KeepTexts(code, memo);
  if (rc == kSuccess && !exists) rc = RemoveStrays(code, {index, memo});
  if (rc == kSuccess && header.has_memo) {
    made.push_back(memo);
    rc = EmptyMemo(code, memo, OpenMode::kCreate);
  }
  if (rc == kSuccess && header.has_index) {
    made.push_back(index);
    rc = EmptyIndex(code, tags, index, OpenMode::kCreate);
  }
  if (rc == kSuccess) {
    made.push_back(NewFileName(full));
    const bool made_meanwhile = code.safety != 0 && code.setup.files.Exists(full);
    rc = made_meanwhile ? static_cast<int>(kErrorExists) : EmptyData(code, header, full);
    if (rc == kSuccess) made.back() = full;
  }
  if (rc == kSuccess) rc = code.setup.files.FlushFolder(TableFolder(full));
  if (rc != kSuccess) {
    // A refusal because another program has just made the file must leave its files alone.
    for (const std::string& file : made) {
      if (rc != kErrorExists) code.setup.files.Remove(file);
    }
    // A folder that somebody keeps is a failure here, not an outcome.
    code.Fail(rc == kLocked ? static_cast<int>(kErrorOpenRefused) : rc);
    return nullptr;
  }
  return d4open(code, full);
}

int d4rebuildIndex(Code4& code, std::string_view path, std::span<const TagLayout> tag_layouts,
                   const Progress& progress) {
  const std::string full = TablePath(code, path);
  const std::string index = TableFile::SiblingPath(code.setup.paths, full, "CDX");
  int rc = code.PassInto(TableFolder(full));
  QuietJournal quiet(code, TableFolder(full));
  if (rc == kSuccess) rc = quiet.Begin();
  if (rc == kSuccess) rc = FinishSwap(code.setup.files, full, FilesOf(code, full));
  std::unique_ptr<TableFile> table;
  if (rc == kSuccess) table = OpenAlone(code, full, &rc);
  if (!table) return code.Fail(rc);
  FormatLocks locks(code, *table, table.get());
  if (rc = locks.Take(); rc != kSuccess) return code.Fail(rc);
  TagList tags;
  rc = MakeTags(tag_layouts, table->Header().fields, &tags);
  if (rc == kSuccess) rc = BuildIndex(code, *table, tags, NewFileName(index), 1, progress);
  if (rc != kSuccess) {
    code.setup.files.Remove(NewFileName(index));
    return code.Fail(rc);
  }
  rc = SwapFiles(code.setup.files, full, {index});
  // A table that had no index learns of its new one.
  if (rc == kSuccess) {
    std::array<std::uint8_t, 1> flags{};
    File& raw = table->Data().Raw();
    if (raw.ReadAt(28, flags.data(), 1) != 1) {
      rc = kErrorRead;
    } else if ((flags[0] & 0x01) == 0) {
      flags[0] |= 0x01;
      rc = raw.WriteAt(28, flags.data(), 1);
      if (rc == kSuccess) rc = raw.Flush();
    }
  }
  return code.Fail(rc);
}

int BuildIndexLike(Code4& code, TableFile& table, const IndexFile& like, const std::string& path,
                   const Progress& progress) {
  int rc = kSuccess;
  TagList tags = CopyTags(like.Tags(), table.Header().fields, &rc);
  return rc == kSuccess ? BuildIndex(code, table, tags, path, like.Counter() + 1, progress) : rc;
}

int d4reindex(Data4& data, const Progress& progress) {
  Code4& code = data.code;
  TableFile& table = data.table;
  if (!table.Exclusive() || table.handles > 1 || code.unit_depth > 0) return code.Fail(kErrorOpenRefused);
  if (const int rc = WriteChanges(data); rc != kSuccess) return rc;
  if (table.Index() == nullptr) return kSuccess;
  QuietJournal quiet(code, table.Folder());
  int rc = quiet.Begin();
  FormatLocks locks(code, table, &data);
  if (rc == kSuccess) rc = locks.Take();
  const std::string fresh = NewFileName(table.IndexPath());
  if (rc == kSuccess) rc = BuildIndexLike(code, table, *table.Index(), fresh, progress);
  if (rc != kSuccess) {
    code.setup.files.Remove(fresh);
    return code.Fail(rc);
  }
  rc = SwapFiles(code.setup.files, table.Path(), {table.IndexPath()});
  if (rc == kSuccess) rc = table.ReopenIndex();
  if (rc == kSuccess) {
    RebindTags(data);
  } else {
    Lose(data);
  }
  return code.Fail(rc);
}

}  // namespace tallwick::engine
