#include "audit/audit_proof.h"

#include <algorithm>
#include <optional>

#include "audit/audit_chain.h"
#include "audit/audit_log.h"
#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::size_t kMostSentences = 20;  // of one kind

std::string Count(std::int64_t number) {
  return FormatNumber(static_cast<long long>(number), "##,###,###,###");
}

std::string Bytes(std::int64_t number) {
  return Count(number) + (number == 1 ? " byte" : " bytes");
}

// "2024-03-04 14:07:31" as the log writes it.
std::string MomentText(const std::string& moment) {
  if (moment.size() != 19) return moment;
  const auto digits = [&](std::size_t place, std::size_t count) { return moment.substr(place, count); };
  const std::optional<Date> date = ParseStoredDate(digits(0, 4) + digits(5, 2) + digits(8, 2));
  if (!date || !IsAllDigits(digits(11, 2) + digits(14, 2) + digits(17, 2))) return moment;
  return AuditMoment({*date, std::stoi(digits(11, 2)), std::stoi(digits(14, 2)), std::stoi(digits(17, 2))});
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
    LookForSeal(seal);
    FindLosses();
    FindShift();
    for (std::size_t i = 0; i < records_.size(); ++i) Check(i);
    CheckTail();
    proof_.records = static_cast<std::int64_t>(records_.size());
    LookForAdditions();
    if (!records_.empty()) {
      proof_.since = records_.front().record.moment;
      proof_.seal = records_.back().record.digest;
    }
    TellLeftOut(problems_left_out_, &proof_.problems);
    TellLeftOut(notes_left_out_, &proof_.notes);
    proof_.proven = proof_.problems.empty();
    return std::move(proof_);
  }

 private:
  struct Read {
    ChainRecord record;
    bool anew = false;  // stands behind a line that cannot be read
    bool lost = false;  // a later record says that the log was cut within or before this one
  };

  static void Add(std::string text, std::vector<std::string>* sentences, std::int64_t* left_out) {
    if (sentences->size() < kMostSentences)
      sentences->push_back(std::move(text));
    else
      ++*left_out;
  }
  void Problem(std::string text) { Add(std::move(text), &proof_.problems, &problems_left_out_); }
  void Note(std::string text) { Add(std::move(text), &proof_.notes, &notes_left_out_); }

  static void TellLeftOut(std::int64_t count, std::vector<std::string>* sentences) {
    if (count > 0) sentences->push_back("And " + Count(count) + " more of this kind.");
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
      if (record.kind == 'G') JudgeTakenUp(place);
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
      ++sealed_;
      if (one.record.digest != wanted) continue;
      return Note("The seal is that of the entry recorded " + WrittenBy(one.record) + ".");
    }
    sealed_ = 0;
    Problem("The seal is not among the records: the log or its companion file was replaced by another one.");
  }

  // --- What nobody recorded when it was written ---

  // A log that is older than its companion is taken up whole by the first record.
  void JudgeTakenUp(std::size_t place) {
    const ChainRecord& record = records_[place].record;
    if (records_[place].anew) return;
    if (place == 0) {
      proof_.recorded_from = LineAt(record.end);
      return Note("The lines before line " + std::to_string(proof_.recorded_from) +
                  " are older than the companion file, which began " + WrittenBy(record) +
                  ": nothing shows how they were written, only that they have not changed since then.");
    }
    const std::string noticed = "  Noticed " + WrittenBy(record) + ", and unchanged since then.";
    for (UnrecordedLines& lines : FindUnrecordedLines(log_, record.begin + shift_, record.end + shift_))
      JudgeUnrecorded(std::move(lines), noticed, place < sealed_);
  }

  void CheckTail() {
    if (records_.empty() || shift_ != 0 || end_shift_ <= 0) return;
    const auto size = static_cast<std::int64_t>(log_.size());
    for (UnrecordedLines& lines : FindUnrecordedLines(log_, size - end_shift_, size))
      JudgeUnrecorded(std::move(lines), {}, false);
  }

  // Whoever noted a seal has had before him what was found up to then.
  void JudgeUnrecorded(UnrecordedLines lines, const std::string& noticed, bool sealed) {
    const std::string text = TextOf(lines) + noticed;
    if (lines.other_program || sealed) {
      Note(text);
      proof_.unrecorded.push_back(std::move(lines));
    } else {
      Problem(text);
    }
  }

  static std::string TextOf(const UnrecordedLines& lines) {
    const std::string place = lines.Place() + (lines.first == lines.last ? " was" : " were");
    if (lines.entries == 0)
      return place + " not recorded by this program, and belongs to no entry: somebody else put it in.";
    const std::string what = lines.entries == 1
                                 ? "an entry (" + lines.sample + ")"
                                 : Count(lines.entries) + " entries (the first: " + lines.sample + ")";
    if (lines.other_program) {
      return place + " not recorded by this program: " + what +
             " of a kind that other programs of the suite write.  Nothing proves who wrote it.";
    }
    return place + " not recorded by this program, though it writes such entries: " + what +
           ".  Somebody else put that in, or a workstation stopped before it could record it.";
  }

  void LookForAdditions() {
    constexpr std::string_view kAddition = "[ADD";
    for (std::size_t at = log_.find(kAddition); at != std::string_view::npos;
         at = log_.find(kAddition, at + 1))
      if (at == 0 || log_[at - 1] == '\n') ++proof_.additions;
    proof_.tells_switching_on =
        log_.find("[EDIT] chkGenAuditTrail was: Unchecked now: Checked") != std::string_view::npos;
  }

  std::string_view log_;
  std::vector<Read> records_;
  AuditProof proof_;
  std::int64_t shift_ = 0;      // how far the bytes of the records have moved, as known so far
  std::int64_t end_shift_ = 0;  // how far those of the last record have
  std::size_t sealed_ = 0;      // so many records stand at or before the one that the seal names
  std::int64_t problems_left_out_ = 0;
  std::int64_t notes_left_out_ = 0;
  bool failed_before_ = false;
};

}  // namespace

AuditProof ProveAuditLog(const AuditPlace& place, std::string_view seal) {
  std::optional<std::string> companion;
  std::optional<std::string> log;
  {
    const ChainHold hold(place.files, place.disk, place.clock, place.log_path);
    companion = place.files.Read(ChainPathOf(place.log_path));
    log = place.files.Read(place.log_path);
  }
  AuditProof proof;
  for (const auto& [path, text] :
       {std::pair(ChainPathOf(place.log_path), &companion), std::pair(place.log_path, &log)}) {
    if (*text || place.files.IsMissing(path)) continue;
    proof.problems.push_back(CannotBeReadText(path));
    return proof;
  }
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
    proof.problems.emplace_back("The log is missing, though its companion file shows that there was one.");
    return proof;
  }
  return Prover(*log, *companion).Prove(seal);
}

std::string ProofSummary(const AuditProof& proof) {
  if (!proof.proven) return "NOT proven: " + proof.problems.front();
  if (proof.records == 0) return proof.notes.empty() ? "Nothing is recorded yet." : proof.notes.front();
  std::int64_t unrecorded = 0;
  for (const UnrecordedLines& lines : proof.unrecorded) unrecorded += lines.last - lines.first + 1;
  std::string text = "Proven";
  if (proof.recorded_from > 1) text += " from line " + std::to_string(proof.recorded_from) + " on";
  if (unrecorded > 0)
    text += ", but for " + Count(unrecorded) + (unrecorded == 1 ? " line" : " lines") +
            " that this program did not record";
  return text + ": no " + (unrecorded > 0 ? "other line" : "line") + " was changed or removed since " +
         MomentText(proof.since) + ".";
}

}  // namespace tallwick
