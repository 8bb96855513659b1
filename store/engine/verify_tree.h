// The index file's side of an examination: whose each page is, and one tree after the other read in order,
// straight from the file and without the cache. Invariant: a page has one owner; what claims it again is
// reported and not followed, so that no damage can lead round in a circle.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/engine/index_file.h"
#include "store/engine/verify.h"

namespace tallwick::engine {

// Collects problems, up to a number that a person can still read.
class Findings {
 public:
  explicit Findings(std::vector<TableProblem>* problems) : problems_(problems) {}
  void Add(std::uint32_t record, ProblemKind kind, std::string text);
  // Tells how many were left out.
  void Close();

 private:
  std::vector<TableProblem>* problems_;
  std::size_t added_ = 0;
};

class PageOwners {
 public:
  // `end` is the file's length in bytes, a multiple of the page length.
  explicit PageOwners(std::uint32_t end) : owners_(end / kPageBytes, 0) {}
  // A new owner with a name for problems: "tag CHXNUMBER".
  std::uint16_t Add(std::string name);
  // Claims whole pages from `offset` on. "" when they were free, else what is wrong: "lies outside the file",
  // "belongs to tag CHXPAYEE too".
  std::string Claim(std::uint32_t offset, std::uint16_t owner, std::uint32_t pages = 1);
  // How many pages nobody has claimed, and the first one's offset.
  std::uint32_t Unclaimed(std::uint32_t* first) const;

 private:
  std::vector<std::uint16_t> owners_;  // by page; 0 = nobody
  std::vector<std::string> names_;     // of owner - 1
};

// Reads one tree in order and reports what is wrong with its pages and their order.
class TreeWalk {
 public:
  using Entry = std::function<void(const std::uint8_t* key, std::uint32_t record)>;

  // `title` begins each problem: "Tag CHXNUMBER". With `unique`, neighbours with the same key are a problem.
  TreeWalk(File& file, PageOwners& pages, Findings& findings, std::string title, KeyShape shape, bool unique)
      : file_(file),
        pages_(pages),
        findings_(findings),
        title_(std::move(title)),
        shape_(shape),
        unique_(unique) {}

  // Calls `entry` for each key; false when the tree is too damaged to be read to its end.
  bool Run(std::uint32_t root, std::uint16_t owner, const Entry& entry);

 private:
  struct Level {  // the page last visited at a depth
    std::uint32_t offset = kNoPage;
    std::uint32_t right = kNoPage;
  };

  void Problem(const std::string& text) { findings_.Add(0, ProblemKind::kIndex, title_ + ": " + text); }
  bool Visit(std::uint32_t offset, int depth);
  void CheckSiblings(const IndexNode& node, int depth);
  void VisitLeaf(const IndexNode& node, int depth);
  void VisitEntry(const std::uint8_t* key, std::uint32_t record);

  File& file_;
  PageOwners& pages_;
  Findings& findings_;
  std::string title_;
  KeyShape shape_;
  bool unique_;
  std::uint32_t root_ = 0;
  std::uint16_t owner_ = 0;
  int leaf_depth_ = -1;
  std::vector<Level> levels_;
  bool has_last_ = false;
  std::vector<std::uint8_t> last_key_;
  std::uint32_t last_record_ = 0;
  const Entry* entry_ = nullptr;
};

}  // namespace tallwick::engine
