#include "audit/unrecorded_lines.h"

#include <algorithm>

#include "audit/audit_log.h"
#include "audit/audit_trail.h"
#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

bool IsOwnTransaction(std::string_view name) {
  for (int tx = kAuditAccountEdit; tx <= kAuditSetOutstanding; ++tx)
    if (name == AuditTxName(tx)) return true;
  return false;
}

std::string SampleOf(const AuditEntry& entry) {
  std::string text(entry.tx);
  for (const auto& [lead, value] : {std::pair(" ", entry.reference), std::pair(", ", entry.date_text),
                                    std::pair(", ", entry.login), std::pair(" on ", entry.computer)}) {
    if (!value.empty()) text += lead + std::string(value);
  }
  return FromWindows1252(text);
}

// What one entry, or lines in front of the first, says of its writer.
void Judge(std::string_view text, UnrecordedLines* lines) {
  const AuditLog log{std::string(text)};
  if (log.Entries().empty()) return;
  const AuditEntry& entry = log.Entries().front();
  const auto events = log.Events(entry);
  lines->entries = 1;
  lines->sample = SampleOf(entry);
  lines->other_program =
      !IsOwnTransaction(entry.tx) || std::any_of(events.begin(), events.end(), [](const AuditEvent& event) {
        return event.kind == AuditEventKind::kGrid;
      });
}

class Finder {
 public:
  explicit Finder(std::int64_t first_line) : line_(first_line) {}

  void Read(std::string_view bytes) {
    while (!bytes.empty()) {
      const std::size_t size = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
      const std::string_view line = Trim(bytes.substr(0, size));
      if (BeginsAuditEntry(line)) Take();
      text_ += bytes.substr(0, size);
      if (!line.empty()) {
        if (first_ == 0) first_ = line_;
        last_ = line_;
      }
      ++line_;
      bytes.remove_prefix(size);
    }
    Take();
  }

  std::vector<UnrecordedLines> TakeFound() { return std::move(found_); }

 private:
  // Ends the entry that is being gathered.
  void Take() {
    if (first_ != 0) {
      UnrecordedLines lines{first_, last_, 0, false, {}};
      Judge(text_, &lines);
      Join(std::move(lines));
    }
    text_.clear();
    first_ = 0;
  }

  void Join(UnrecordedLines lines) {
    const bool joins = !found_.empty() && found_.back().other_program == lines.other_program &&
                       (found_.back().entries == 0) == (lines.entries == 0);
    if (!joins) return found_.push_back(std::move(lines));
    found_.back().last = lines.last;
    found_.back().entries += lines.entries;
  }

  std::int64_t line_;
  std::int64_t first_ = 0;  // of the entry that is being gathered; 0 before its first line
  std::int64_t last_ = 0;
  std::string text_;
  std::vector<UnrecordedLines> found_;
};

}  // namespace

std::string UnrecordedLines::Place() const {
  if (first == last) return "Line " + std::to_string(first);
  return "Lines " + std::to_string(first) + " to " + std::to_string(last);
}

std::vector<UnrecordedLines> FindUnrecordedLines(std::string_view log, std::int64_t begin, std::int64_t end) {
  const auto size = static_cast<std::int64_t>(log.size());
  begin = std::clamp<std::int64_t>(begin, 0, size);
  end = std::clamp<std::int64_t>(end, begin, size);
  Finder finder(1 + std::count(log.begin(), log.begin() + begin, '\n'));
  finder.Read(log.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
  return finder.TakeFound();
}

}  // namespace tallwick
