#include "store/engine/verify.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "store/engine/byte_order.h"
#include "store/engine/instance.h"
#include "store/engine/memo_reference.h"
#include "store/engine/verify_tree.h"

namespace tallwick::engine {
namespace {

constexpr std::uint32_t kBlockRecords = 512;
constexpr std::size_t kDigestMemory = std::size_t{96} << 20;
// An append that holds the lock ends within milliseconds.
constexpr int kAppendTries = 1000;
constexpr int kAppendWaitMs = 5;

// Stands for a key; 0 is kept for "no key". Two different keys share one by an accident of 1 in 2^64.
std::uint64_t DigestOf(const std::uint8_t* key, std::size_t length) {
  std::uint64_t sum = 0x9E3779B97F4A7C15U ^ length;
  for (std::size_t at = 0; at < length; at += 8) {
    std::uint64_t part = 0;
    std::memcpy(&part, key + at, std::min<std::size_t>(8, length - at));
    sum = (sum ^ part) * 0xFF51AFD7ED558CCDU;
    sum ^= sum >> 32;
  }
  return sum == 0 ? 1 : sum;
}

// A tag under examination: what its tree says of each record.
struct TagState {
  IndexTag* tag = nullptr;
  std::string title;
  bool whole = false;                  // the tree could be read to its end
  std::vector<std::uint64_t> digests;  // of the key, by record number - 1
};

class Verifier {
 public:
  Verifier(Data4& data, std::vector<TableProblem>* problems, const Progress& progress)
      : data_(data), table_(data.table), findings_(problems), progress_(progress), pages_(0) {}

  int Run() {
    // Memos are rewritten under the append lock; their blocks must not move while they are compared.
    const bool has_memo = table_.Memo() != nullptr;
    // First what a dead writer left: finishing it takes the same lock.
    int rc = data_.code.JournalOf(table_.Folder()).Recover();
    if (rc == kSuccess && has_memo) rc = LockAppend();
    if (rc != kSuccess) return rc;
    if (table_.Index() == nullptr) CheckHead();
    rc = table_.Index() == nullptr ? CheckRecords({}, true)
                                   : table_.Index()->Read([this] { return CheckUnderLock(); });
    if (has_memo) table_.UnlockAppend();
    findings_.Close();
    return rc;
  }

 private:
  int LockAppend() {
    int rc = kLocked;
    for (int tries = 0; tries < kAppendTries; ++tries) {
      rc = table_.LockAppend(1);
      if (rc != kLocked) break;
      data_.code.setup.clock.Sleep(kAppendWaitMs);
    }
    return rc;
  }

  // The trees first and then the records, as many tags at once as their digests fit in memory.
  int CheckUnderLock() {
    // The lock is wanted whatever the cache holds.
    if (!table_.Index()->IsLocked()) return IndexFile::kNeedsLock;
    CheckHead();  // a unit that is being written would else count records whose keys are not there yet
    pages_ = PageOwners(table_.Index()->End());
    bool all_whole = CheckDirectory();
    const std::size_t each = 8 * static_cast<std::size_t>(std::max<std::int64_t>(1, count_));
    const std::size_t at_once = std::max<std::size_t>(1, kDigestMemory / each);
    for (std::size_t from = 0; from == 0 || from < data_.tags.size(); from += at_once) {
      std::vector<TagState> states;
      for (std::size_t i = from; i < std::min(data_.tags.size(), from + at_once); ++i) {
        states.emplace_back();
        if (const int rc = ReadTag(*data_.tags[i]->tag, &states.back()); rc != kSuccess) return rc;
        all_whole = all_whole && states.back().whole;
      }
      if (const int rc = CheckRecords(states, from == 0); rc != kSuccess) return rc;
    }
    // Pages below a damaged one are not reached either; that they look lost says nothing.
    if (CheckFreeList() && all_whole) CheckLostPages();
    return kSuccess;
  }

  void CheckHead() {
    count_ = table_.RecordCount();
    const std::int64_t size = table_.Data().Size();
    if (count_ < 0 || size < 0) {
      findings_.Add(0, ProblemKind::kHead, "The table file cannot be read");
      count_ = 0;
      return;
    }
    const std::int64_t held =
        std::max<std::int64_t>(0, size - table_.Header().header_length) / table_.Header().record_length;
    if (held != count_) {
      findings_.Add(0, ProblemKind::kHead,
                    "The head counts " + std::to_string(count_) + " records, and the file holds " +
                        std::to_string(held));
    }
    count_ = std::min(count_, held);
  }

  // --- The index file ---

  bool CheckDirectory() {
    IndexFile& index = *table_.Index();
    const std::uint16_t owner = pages_.Add("the list of tags");
    std::array<std::uint8_t, 4> root{};
    const std::string fault = pages_.Claim(0, owner, kTagHeaderBytes / kPageBytes);
    if (!fault.empty() || index.Raw().ReadAt(0, root.data(), root.size()) != 4) {
      findings_.Add(0, ProblemKind::kIndex, "The head of the index cannot be read");
      return false;
    }
    return TreeWalk(index.Raw(), pages_, findings_, "The list of tags", {kTagNameLength, ' '}, true)
        .Run(Load32(root.data()), owner, [](const std::uint8_t*, std::uint32_t) {});
  }

  int ReadTag(IndexTag& tag, TagState* state) {
    state->tag = &tag;
    state->title = "Tag " + tag.name;
    state->digests.assign(static_cast<std::size_t>(count_), 0);
    const std::uint16_t owner = pages_.Add("tag " + tag.name);
    const std::string fault = pages_.Claim(tag.header_offset, owner, kTagHeaderBytes / kPageBytes);
    if (!fault.empty()) findings_.Add(0, ProblemKind::kIndex, state->title + ": its head " + fault);
    std::uint32_t root = 0;
    if (const int rc = table_.Index()->Root(tag, &root); rc != kSuccess) return rc;
    const auto length = static_cast<std::size_t>(tag.shape.length);
    TreeWalk walk(table_.Index()->Raw(), pages_, findings_, state->title, tag.shape, tag.unique);
    state->whole = walk.Run(root, owner, [&](const std::uint8_t* key, std::uint32_t record) {
      if (record == 0 || record > count_) {
        findings_.Add(record, ProblemKind::kIndex,
                      state->title + ": a key names a record that does not exist");
        return;
      }
      std::uint64_t& digest = state->digests[record - 1];
      if (digest != 0) findings_.Add(record, ProblemKind::kIndex, state->title + ": the record has two keys");
      digest = DigestOf(key, length);
    });
    return kSuccess;
  }

  bool CheckFreeList() {
    IndexFile& index = *table_.Index();
    const std::uint16_t owner = pages_.Add("the list of free pages");
    for (std::uint32_t at = index.FirstFree(); at != kNoPage && at != 0;) {
      const std::string fault = pages_.Claim(at, owner);
      std::array<std::uint8_t, 4> next{};
      if (!fault.empty() || index.Raw().ReadAt(at, next.data(), 4) != 4) {
        findings_.Add(0, ProblemKind::kIndex,
                      "The index's list of free pages: the page at " + std::to_string(at) + " " + fault);
        return false;
      }
      at = Load32(next.data());
    }
    return true;
  }

  void CheckLostPages() {
    std::uint32_t first = 0;
    const std::uint32_t lost = pages_.Unclaimed(&first);
    if (lost == 0) return;
    findings_.Add(0, ProblemKind::kIndex,
                  "Nothing leads to " + std::to_string(lost) + (lost == 1 ? " page" : " pages") +
                      " of the index, the first at " + std::to_string(first) +
                      ": room is lost until the index is built anew");
  }

  // --- The records ---

  int CheckRecords(const std::vector<TagState>& states, bool first_pass) {
    const auto length = static_cast<std::size_t>(table_.Header().record_length);
    std::vector<std::uint8_t> block(kBlockRecords * length);
    for (std::int64_t first = 1; first <= count_; first += kBlockRecords) {
      const auto wanted =
          static_cast<std::uint32_t>(std::min<std::int64_t>(kBlockRecords, count_ - first + 1));
      if (table_.ReadRecords(static_cast<std::uint32_t>(first), wanted, block.data()) != wanted)
        return kErrorRead;
      for (std::uint32_t i = 0; i < wanted; ++i) {
        const std::uint8_t* record = block.data() + i * length;
        for (const TagState& state : states) CheckKey(state, static_cast<std::uint32_t>(first) + i, record);
        if (first_pass) CheckOwnBytes(static_cast<std::uint32_t>(first) + i, record);
      }
      const auto done = static_cast<std::uint32_t>(first) + wanted - 1;
      if (progress_ && !progress_(done, static_cast<std::uint32_t>(count_))) return kStopped;
    }
    if (first_pass) CheckMemoOverlap();
    if (first_pass) CheckMemoEnd();
    return kSuccess;
  }

  void CheckKey(const TagState& state, std::uint32_t number, const std::uint8_t* record) {
    std::array<std::uint8_t, kMaxKeyLength> key;
    const bool wanted = KeyOf(*state.tag, record, number, key.data());
    const std::uint64_t digest = state.digests[number - 1];
    const char* fault = nullptr;
    if (wanted && digest == 0) {
      // Behind a damaged page every key is missing; the page is the problem.
      if (state.whole && state.tag->unique && TellHolder(state, number, key.data())) return;
      if (state.whole) fault = ": the record's key is missing";
    } else if (digest != 0 && !wanted) {
      fault = ": the record has a key although the filter leaves it out";
    } else if (wanted && digest != DigestOf(key.data(), static_cast<std::size_t>(state.tag->shape.length))) {
      fault = ": the key is not the record's";
    }
    if (fault != nullptr) findings_.Add(number, ProblemKind::kIndex, state.title + fault);
  }

  // True when another record holds the key of a unique tag: no index can have both.
  bool TellHolder(const TagState& state, std::uint32_t number, const std::uint8_t* key) {
    const int length = state.tag->shape.length;
    IndexTree tree(*table_.Index(), *state.tag);
    IndexPlace place;
    if (tree.LowerBound(key, length, 0, &place) != kSuccess || place.AtEnd() || place.Record() == number ||
        std::memcmp(place.Key(), key, static_cast<std::size_t>(length)) != 0)
      return false;
    findings_.Add(number, ProblemKind::kRecord,
                  state.title + ": the record has the same key as record " + std::to_string(place.Record()) +
                      ", and only one can be found by it");
    return true;
  }

  void CheckOwnBytes(std::uint32_t number, const std::uint8_t* record) {
    if (record[0] != ' ' && record[0] != '*')
      findings_.Add(number, ProblemKind::kRecord, "The deletion mark is neither blank nor \"*\"");
    if (record[0] != '*') CheckZeroBytes(number, record);
    if (record[0] == ' ') CheckMemos(number, record);
  }

  // What a crash or a bad disk leaves in a page of records. One field is named for all of its record.
  void CheckZeroBytes(std::uint32_t number, const std::uint8_t* record) {
    for (const FieldInfo& field : table_.Header().fields) {
      if (std::strchr("NFDL", field.type) == nullptr) continue;
      if (std::memchr(record + field.offset, 0, static_cast<std::size_t>(field.width)) == nullptr) continue;
      findings_.Add(number, ProblemKind::kRecord, "Field " + field.name + " holds zero bytes");
      return;
    }
  }

  void CheckMemos(std::uint32_t number, const std::uint8_t* record) {
    if (table_.Memo() == nullptr) return;
    for (const FieldInfo& field : table_.Header().fields) {
      if (!IsMemoReference(field)) continue;
      const std::uint32_t block = MemoBlockAt(field, record + field.offset);
      MemoFile::Extent extent;
      if (block == 0) continue;
      if (table_.Memo()->Measure(block, &extent) != kSuccess) {
        findings_.Add(number, ProblemKind::kMemo,
                      "Field " + field.name + ": the memo's block lies outside the memo file");
        continue;
      }
      if (extent.first_block + extent.blocks > table_.Memo()->NextFree()) {
        findings_.Add(number, ProblemKind::kMemoEnd,
                      "Field " + field.name + ": the memo lies in blocks that count as free");
      }
      memos_.emplace_back(extent, number);
    }
  }

  void CheckMemoOverlap() {
    std::sort(memos_.begin(), memos_.end(),
              [](const auto& a, const auto& b) { return a.first.first_block < b.first.first_block; });
    for (std::size_t i = 1; i < memos_.size(); ++i) {
      const auto& before = memos_[i - 1].first;
      if (before.first_block + before.blocks > memos_[i].first.first_block) {
        findings_.Add(
            memos_[i].second, ProblemKind::kMemo,
            "The memo shares blocks with the memo of record " + std::to_string(memos_[i - 1].second));
      }
    }
  }

  // New memos go behind this number, so one that is far too high leaves no room for any.
  void CheckMemoEnd() {
    if (table_.Memo() == nullptr) return;
    const std::uint32_t next = table_.Memo()->NextFree();
    const std::int64_t held = table_.Memo()->BlocksHeld();
    if (held < 0 || next <= held) return;
    findings_.Add(0, ProblemKind::kMemoEnd,
                  "The memo file holds " + std::to_string(held) + " blocks and names block " +
                      std::to_string(next) + " as the next free one: new memos may not find room");
  }

  Data4& data_;
  TableFile& table_;
  Findings findings_;
  const Progress& progress_;
  std::int64_t count_ = 0;
  PageOwners pages_;
  std::vector<std::pair<MemoFile::Extent, std::uint32_t>> memos_;
};

}  // namespace

int d4correctMemoEnd(Data4& data) {
  if (!data.table.Exclusive() || data.table.Memo() == nullptr) return data.code.Fail(kErrorParameter);
  UnitScope scope(data.code);
  int rc = data.code.Join(data.table);
  if (rc == kSuccess) rc = data.table.Memo()->CorrectNextFree();
  return scope.End(rc, rc == kSuccess);
}

int d4verify(Data4& data, std::vector<TableProblem>* problems, const Progress& progress) {
  if (data.code.unit_depth > 0) return data.code.Fail(kErrorParameter);
  if (data.table.lost) return data.code.Fail(kErrorClose);
  return data.code.Fail(Verifier(data, problems, progress).Run());
}

}  // namespace tallwick::engine
