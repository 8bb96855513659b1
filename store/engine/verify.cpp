#include "store/engine/verify.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <set>

#include "store/engine/byte_order.h"
#include "store/engine/instance.h"
#include "store/engine/memo_reference.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kMaxProblems = 1000;
constexpr int kMaxDepth = 32;
constexpr std::uint32_t kBlockRecords = 512;

class Findings {
 public:
  explicit Findings(std::vector<TableProblem>* problems) : problems_(problems) {}
  void Add(std::uint32_t record, std::string text) {
    if (problems_->size() < kMaxProblems) problems_->push_back({record, std::move(text)});
  }

 private:
  std::vector<TableProblem>* problems_;
};

// Which pages of the index file are spoken for, and by what.
class PageMap {
 public:
  bool Claim(std::uint32_t offset) { return used_.insert(offset).second; }
  std::size_t Count() const { return used_.size(); }

 private:
  std::set<std::uint32_t> used_;
};

// One tag's tree read straight from the file, without the cache.
class TagWalk {
 public:
  TagWalk(IndexFile& index, const IndexTag& tag, PageMap& pages, Findings& findings)
      : index_(index), tag_(tag), pages_(pages), findings_(findings) {}

  struct Entry {
    std::vector<std::uint8_t> key;
    std::uint32_t record;
  };

  // The entries in order; false when the structure is too damaged to go on.
  bool Run(std::uint32_t root, std::vector<Entry>* entries) {
    root_ = root;
    entries_ = entries;
    if (!Visit(root, 0)) return false;
    for (std::size_t i = 0; i < leaves_.size(); ++i) {
      const std::uint32_t left = i == 0 ? kNoPage : leaves_[i - 1].offset;
      const std::uint32_t right = i + 1 == leaves_.size() ? kNoPage : leaves_[i + 1].offset;
      if (leaves_[i].left != left || leaves_[i].right != right) {
        Problem("a leaf page at " + std::to_string(leaves_[i].offset) + " names the wrong neighbours");
      }
    }
    return true;
  }

 private:
  struct Leaf {
    std::uint32_t offset, left, right;
  };

  void Problem(const std::string& text) { findings_.Add(0, "Tag " + tag_.name + ": " + text); }

  bool Visit(std::uint32_t offset, int depth) {
    std::array<std::uint8_t, kPageBytes> page{};
    if (depth > kMaxDepth || offset % kPageBytes != 0 ||
        index_.Raw().ReadAt(offset, page.data(), page.size()) != kPageBytes) {
      Problem("page " + std::to_string(offset) + " lies outside the file");
      return false;
    }
    if (!pages_.Claim(offset)) {
      Problem("page " + std::to_string(offset) + " is used twice");
      return false;
    }
    IndexNode node(offset, true, tag_.shape);
    if (!DecodePage(page.data(), &node)) {
      Problem("page " + std::to_string(offset) + " is damaged");
      return false;
    }
    if (((Load16(page.data()) & 1) != 0) != (offset == root_)) {
      Problem("page " + std::to_string(offset) + " carries the wrong root mark");
    }
    if (node.leaf) return VisitLeaf(node, depth);
    for (int i = 0; i < node.Count(); ++i) {
      if (!Visit(node.children[static_cast<std::size_t>(i)], depth + 1)) return false;
      const bool matches =
          !entries_->empty() &&
          std::memcmp(entries_->back().key.data(), node.Key(i), entries_->back().key.size()) == 0 &&
          entries_->back().record == node.records[static_cast<std::size_t>(i)];
      if (!matches) {
        Problem("an entry of page " + std::to_string(offset) + " does not hold the highest key of its child");
      }
    }
    return true;
  }

  bool VisitLeaf(const IndexNode& node, int depth) {
    if (leaf_depth_ < 0) leaf_depth_ = depth;
    if (depth != leaf_depth_)
      Problem("leaf page " + std::to_string(node.offset) + " stands at another depth");
    if (node.Count() == 0 && node.offset != root_)
      Problem("leaf page " + std::to_string(node.offset) + " is empty");
    leaves_.push_back({node.offset, node.left, node.right});
    for (int i = 0; i < node.Count(); ++i) {
      Entry entry{{node.Key(i), node.Key(i) + node.key_length}, node.records[static_cast<std::size_t>(i)]};
      if (!entries_->empty()) {
        const int order = std::memcmp(entries_->back().key.data(), entry.key.data(), entry.key.size());
        if (order > 0 || (order == 0 && entries_->back().record >= entry.record)) {
          findings_.Add(entry.record, "Tag " + tag_.name + ": the key stands out of order");
        }
        if (order == 0 && tag_.unique) {
          findings_.Add(entry.record,
                        "Tag " + tag_.name + ": another record has the same key, which must be unique");
        }
      }
      entries_->push_back(std::move(entry));
    }
    return true;
  }

  IndexFile& index_;
  const IndexTag& tag_;
  PageMap& pages_;
  Findings& findings_;
  std::uint32_t root_ = 0;
  int leaf_depth_ = -1;
  std::vector<Entry>* entries_ = nullptr;
  std::vector<Leaf> leaves_;
};

class Verifier {
 public:
  Verifier(Data4& data, std::vector<TableProblem>* problems, const Progress& progress)
      : data_(data), table_(data.table), findings_(problems), progress_(progress) {}

  int Run() {
    CheckHead();
    if (table_.Index() == nullptr) return CheckRecords();
    return table_.Index()->Read([this] { return CheckUnderLock(); });
  }

 private:
  int CheckUnderLock() {
    // The lock is wanted whatever the cache holds.
    int rc = kSuccess;
    if (!table_.Index()->IsLocked()) return IndexFile::kNeedsLock;
    for (std::size_t i = 0; i < data_.tags.size() && rc == kSuccess; ++i) rc = ReadTag(*data_.tags[i]->tag);
    if (rc == kSuccess) CheckFreeList();
    return rc == kSuccess ? CheckRecords() : rc;
  }

  void CheckHead() {
    count_ = table_.RecordCount();
    const std::int64_t size = table_.Data().Size();
    if (count_ < 0 || size < 0) {
      findings_.Add(0, "The table file cannot be read");
      count_ = 0;
      return;
    }
    const std::int64_t held =
        std::max<std::int64_t>(0, size - table_.Header().header_length) / table_.Header().record_length;
    if (held != count_) {
      findings_.Add(0, "The head counts " + std::to_string(count_) + " records, and the file holds " +
                           std::to_string(held));
    }
    count_ = std::min(count_, held);
  }

  int ReadTag(IndexTag& tag) {
    std::uint32_t root = 0;
    if (const int rc = table_.Index()->Root(tag, &root); rc != kSuccess) return rc;
    std::vector<TagWalk::Entry> entries;
    const bool whole = TagWalk(*table_.Index(), tag, pages_, findings_).Run(root, &entries);
    auto& by_record = keys_[&tag];
    whole_[&tag] = whole;
    for (auto& entry : entries) {
      if (entry.record == 0 || entry.record > count_) {
        findings_.Add(entry.record, "Tag " + tag.name + ": a key names a record that does not exist");
      } else if (!by_record.emplace(entry.record, std::move(entry.key)).second) {
        findings_.Add(entry.record, "Tag " + tag.name + ": the record has two keys");
      }
    }
    return kSuccess;
  }

  void CheckFreeList() {
    IndexFile& index = *table_.Index();
    std::uint32_t at = index.FirstFree();
    while (at != kNoPage && at != 0) {
      std::array<std::uint8_t, 4> next{};
      if (at % kPageBytes != 0 || at >= index.End() || index.Raw().ReadAt(at, next.data(), 4) != 4) {
        findings_.Add(0, "The index's list of free pages leads outside the file");
        return;
      }
      if (!pages_.Claim(at)) {
        findings_.Add(0, "The index's list of free pages holds a page that is in use");
        return;
      }
      at = Load32(next.data());
    }
  }

  int CheckRecords() {
    const auto length = static_cast<std::size_t>(table_.Header().record_length);
    std::vector<std::uint8_t> block(kBlockRecords * length);
    for (std::int64_t first = 1; first <= count_; first += kBlockRecords) {
      const auto wanted =
          static_cast<std::uint32_t>(std::min<std::int64_t>(kBlockRecords, count_ - first + 1));
      if (table_.ReadRecords(static_cast<std::uint32_t>(first), wanted, block.data()) != wanted)
        return kErrorRead;
      for (std::uint32_t i = 0; i < wanted; ++i)
        CheckRecord(static_cast<std::uint32_t>(first) + i, block.data() + i * length);
      if (progress_ &&
          !progress_(static_cast<std::uint32_t>(first) + wanted - 1, static_cast<std::uint32_t>(count_))) {
        return kStopped;
      }
    }
    CheckMemoOverlap();
    return kSuccess;
  }

  void CheckRecord(std::uint32_t number, const std::uint8_t* record) {
    if (record[0] != ' ' && record[0] != '*')
      findings_.Add(number, "The deletion mark is neither blank nor \"*\"");
    std::array<std::uint8_t, kMaxKeyLength> key{};
    for (const auto& tag : data_.tags) {
      const bool wanted = KeyOf(*tag->tag, record, number, key.data());
      const auto& keys = keys_[tag->tag];
      const auto found = keys.find(number);
      const std::string name = "Tag " + tag->tag->name + ": ";
      if (wanted && found == keys.end() && whole_[tag->tag])
        findings_.Add(number, name + "the record's key is missing");
      if (found == keys.end()) continue;
      if (!wanted) {
        findings_.Add(number, name + "the record has a key although the filter leaves it out");
      } else if (std::memcmp(found->second.data(), key.data(), found->second.size()) != 0) {
        findings_.Add(number, name + "the key is not the record's");
      }
    }
    if (record[0] == ' ') CheckMemos(number, record);
  }

  void CheckMemos(std::uint32_t number, const std::uint8_t* record) {
    if (table_.Memo() == nullptr) return;
    for (const FieldInfo& field : table_.Header().fields) {
      if (!IsMemoReference(field)) continue;
      const std::uint32_t block = MemoBlockAt(field, record + field.offset);
      MemoFile::Extent extent;
      if (block == 0) continue;
      if (table_.Memo()->Measure(block, &extent) != kSuccess) {
        findings_.Add(number, "Field " + field.name + ": the memo's block lies outside the memo file");
        continue;
      }
      if (extent.first_block + extent.blocks > table_.Memo()->NextFree()) {
        findings_.Add(number, "Field " + field.name + ": the memo lies in blocks that count as free");
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
        findings_.Add(memos_[i].second, "The memo shares blocks with the memo of record " +
                                            std::to_string(memos_[i - 1].second));
      }
    }
  }

  Data4& data_;
  TableFile& table_;
  Findings findings_;
  const Progress& progress_;
  std::int64_t count_ = 0;
  PageMap pages_;
  std::map<const IndexTag*, std::map<std::uint32_t, std::vector<std::uint8_t>>> keys_;
  std::map<const IndexTag*, bool> whole_;
  std::vector<std::pair<MemoFile::Extent, std::uint32_t>> memos_;
};

}  // namespace

int d4verify(Data4& data, std::vector<TableProblem>* problems, const Progress& progress) {
  if (data.code.unit_depth > 0) return data.code.Fail(kErrorParameter);
  return data.code.Fail(Verifier(data, problems, progress).Run());
}

}  // namespace tallwick::engine
