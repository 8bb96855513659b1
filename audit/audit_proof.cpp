#include "audit/audit_proof.h"

#include <algorithm>
#include <optional>

#include "audit/audit_chain.h"
#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::size_t kMostProblems = 20;

std::string Count(std::int64_t number) {
  return FormatNumber(static_cast<long long>(number), "##,###,###,###");
}

std::string Bytes(std::int64_t number) {
  return Count(number) + (number == 1 ? " byte" : " bytes");
}

// "2024-03-04 14:07:31" as a person reads it.
std::string MomentText(const std::string& moment) {
  if (moment.size() < 10) return moment;
  return moment.substr(5, 2) + "/" + moment.substr(8, 2) + "/" + moment.substr(0, 4) + moment.substr(10);
}

std::string WrittenBy(const ChainRecord& record) {
  return MomentText(record.moment) + " on " + FromWindows1252(record.computer);
}

// One pass over the records. Where the log has grown or shrunk in its middle, what stands behind the change
// is looked for at its moved place, so that one removed entry counts as one.
class Prover {
 public:
  Prover(std::string_view log, std::string_view companion) : log_(log) { ReadRecords(companion); }

  AuditProof Prove(std::string_view seal) {
    if (records_.empty() && !log_.empty()) Problem("The companion file holds no record of the log.");
    FindLosses();
    FindShift();
    for (std::size_t i = 0; i < records_.size(); ++i) Check(i);
    LookForSeal(seal);
    Note();
    proof_.records = static_cast<std::int64_t>(records_.size());
    if (!records_.empty()) {
      proof_.since = records_.front().record.moment;
      proof_.seal = records_.back().record.digest;
    }
    if (left_out_ > 0) proof_.problems.push_back("And " + Count(left_out_) + " more of this kind.");
    proof_.proven = proof_.problems.empty();
    return std::move(proof_);
  }

 private:
  struct Read {
    ChainRecord record;
    bool anew = false;  // stands behind a line that cannot be read
    bool lost = false;  // a later record says that the log was cut within or before this one
  };

  void Problem(std::string text) {
    if (proof_.problems.size() < kMostProblems)
      proof_.problems.push_back(std::move(text));
    else
      ++left_out_;
  }

  void ReadRecords(std::string_view companion) {
    bool anew = false;
    int number = 0;
    while (true) {
      const std::size_t end = companion.find('\n');
      if (end == std::string_view::npos)
        return;  // a rest without its line end is being written, or was cut off
      ++number;
      const std::string_view line = TrimRight(companion.substr(0, end));
      companion.remove_prefix(end + 1);
      std::optional<ChainRecord> record = ParseChainLine(line);
      if (record) {
        records_.push_back({std::move(*record), anew});
      } else if (!line.empty()) {
        Problem("Line " + std::to_string(number) +
                " of the companion file cannot be read: it was changed after it was written.");
      }
      anew = !record;
    }
  }

  // Records whose bytes were lost later cannot be looked at any more; the loss itself is one problem.
  void FindLosses() {
    std::int64_t lowest = -1;
    for (std::size_t i = records_.size(); i-- > 0;) {
      const ChainRecord& record = records_[i].record;
      if (record.kind == 'L') {
        lowest = lowest < 0 ? record.begin : std::min(lowest, record.begin);
        continue;
      }
      if (lowest >= 0 && record.end > lowest) records_[i].lost = true;
    }
    for (const Read& one : records_) {
      if (one.record.kind != 'L') continue;
      Problem("The last " + Bytes(one.record.end - one.record.begin) +
              " of the log were lost or removed; it was noticed " + WrittenBy(one.record) + ".");
    }
  }

  void FindShift() {
    if (records_.empty()) return;
    const ChainRecord& last = records_.back().record;
    end_shift_ = static_cast<std::int64_t>(log_.size()) - (last.kind == 'L' ? last.begin : last.end);
  }

  bool Matches(const Read& read, std::string_view digest_before, std::int64_t shift) const {
    const ChainRecord& record = read.record;
    if (record.kind == 'L') return ChainDigest(digest_before, record, {}) == record.digest;
    const std::int64_t begin = record.begin + shift;
    const std::int64_t end = record.end + shift;
    if (begin < 0 || end > static_cast<std::int64_t>(log_.size())) return false;
    const std::string_view bytes =
        log_.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
    return ChainDigest(digest_before, record, bytes) == record.digest;
  }

  void Check(std::size_t place) {
    const Read& read = records_[place];
    const ChainRecord& record = read.record;
    const bool starts = place == 0 || read.anew;
    const std::string_view before = starts ? kFirstDigest : records_[place - 1].record.digest;
    if (!starts || place == 0) CheckPlace(read, place == 0 ? nullptr : &records_[place - 1].record);
    if (read.lost) return;
    if (Matches(read, before, shift_)) {
      failed_before_ = false;
      return;
    }
    if (shift_ != end_shift_ && Matches(read, before, end_shift_)) {
      if (!failed_before_) ReportShift(record);
      shift_ = end_shift_;
      failed_before_ = false;
      return;
    }
    Problem("The entry recorded " + WrittenBy(record) + " (line " + std::to_string(LineAt(record.begin)) +
            " of the log, " + Bytes(record.end - record.begin) + ") was changed or removed.");
    failed_before_ = true;
  }

  // Every record begins where the one before ended.
  void CheckPlace(const Read& read, const ChainRecord* before) {
    const std::int64_t reached = before == nullptr ? 0 : before->kind == 'L' ? before->begin : before->end;
    const std::int64_t starts = read.record.kind == 'L' ? read.record.end : read.record.begin;
    if (starts == reached) return;
    Problem("Records are missing from the companion file before the one of " + WrittenBy(read.record) + ".");
  }

  void ReportShift(const ChainRecord& record) {
    const std::int64_t moved = end_shift_ - shift_;
    Problem(Bytes(moved < 0 ? -moved : moved) + (moved < 0 ? " were removed from" : " were put into") +
            " the log before line " + std::to_string(LineAt(record.begin + moved)) + ".");
  }

  // Lines are counted as an editor does, from 1. The empty line before an entry belongs to it.
  std::int64_t LineAt(std::int64_t begin) const {
    const std::int64_t at =
        std::clamp<std::int64_t>(begin + shift_, 0, static_cast<std::int64_t>(log_.size()));
    const std::string_view above = log_.substr(0, static_cast<std::size_t>(at));
    const bool empty_line = log_.substr(above.size()).starts_with("\r\n");
    return std::count(above.begin(), above.end(), '\n') + (empty_line ? 2 : 1);
  }

  void LookForSeal(std::string_view seal) {
    if (Trim(seal).empty()) return;
    const std::string wanted = ToUpper(Trim(seal));
    for (const Read& one : records_) {
      if (one.record.digest != wanted) continue;
      proof_.notes.push_back("The seal is that of the entry recorded " + WrittenBy(one.record) + ".");
      return;
    }
    Problem("The seal is not among the records: the log or its companion file was replaced by another one.");
  }

  void Note() {
    std::int64_t taken_up = 0;
    const ChainRecord* first = nullptr;
    for (const Read& one : records_) {
      if (one.record.kind != 'G') continue;
      taken_up += one.record.end - one.record.begin;
      if (first == nullptr) first = &one.record;
    }
    if (first != nullptr)
      proof_.notes.push_back(
          Bytes(taken_up) + " had not been recorded when they were written, and were taken up later, first " +
          WrittenBy(*first) + ": they stand unchanged since then.");
    if (!records_.empty() && proof_.problems.empty() && end_shift_ > 0)
      proof_.notes.push_back("The last " + Bytes(end_shift_) +
                             " are not recorded yet; the next entry takes them up.");
  }

  std::string_view log_;
  std::vector<Read> records_;
  AuditProof proof_;
  std::int64_t shift_ = 0;      // how far the bytes of the records have moved, as known so far
  std::int64_t end_shift_ = 0;  // how far those of the last record have
  std::int64_t left_out_ = 0;
  bool failed_before_ = false;
};

}  // namespace

AuditProof ProveAuditLog(const FileSystem& files, std::string_view log_path, std::string_view seal) {
  const std::optional<std::string> companion = files.Read(ChainPathOf(log_path));
  const std::optional<std::string> log = files.Read(log_path);
  AuditProof proof;
  if (!log && !companion && seal.empty()) {
    proof.proven = true;
    proof.notes.emplace_back("There is no audit log yet.");
    return proof;
  }
  if (!companion) {
    proof.problems.emplace_back("The companion file is missing: nothing shows whether the log was changed.");
    return proof;
  }
  if (!log) {
    proof.problems.emplace_back("The log is missing or cannot be read.");
    return proof;
  }
  return Prover(*log, *companion).Prove(seal);
}

std::string ProofSummary(const AuditProof& proof) {
  if (!proof.proven) return "NOT proven: " + proof.problems.front();
  if (proof.records == 0) return proof.notes.empty() ? "Nothing is recorded yet." : proof.notes.front();
  return "Proven: no line was changed or removed since " + MomentText(proof.since) + ".";
}

}  // namespace tallwick
