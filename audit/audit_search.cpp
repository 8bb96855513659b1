#include "audit/audit_search.h"

#include <algorithm>
#include <functional>

#include "audit/audit_trail.h"
#include "core/encoding.h"
#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

char Upper(char byte) {
  return static_cast<char>(UpperWindows1252(static_cast<unsigned char>(byte)));
}

// A text to look for in the log's bytes, in capitals. A text that the log's code page lacks is nowhere.
class Wanted {
 public:
  explicit Wanted(std::string_view text) {
    const std::optional<std::string> bytes = ToWindows1252(Trim(text));
    possible_ = bytes.has_value();
    if (bytes) upper_ = *bytes;
    std::transform(upper_.begin(), upper_.end(), upper_.begin(), Upper);
  }
  bool IsIn(std::string_view value) const {
    if (!possible_) return false;
    const auto equal = [](char in_value, char wanted) { return Upper(in_value) == wanted; };
    return std::search(value.begin(), value.end(), upper_.begin(), upper_.end(), equal) != value.end() ||
           upper_.empty();
  }
  bool Is(std::string_view value) const { return possible_ && value.size() == upper_.size() && IsIn(value); }

 private:
  bool possible_ = false;
  std::string upper_;
};

std::vector<Wanted> AllWanted(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

bool IsAny(const std::vector<Wanted>& wanted, std::string_view value) {
  return std::any_of(wanted.begin(), wanted.end(), [&](const Wanted& one) { return one.Is(value); });
}

// The name of an array without its member: "txtAmount" of "txtAmount (2)".
std::string_view WithoutIndex(std::string_view control) {
  return Trim(control.substr(0, control.find('(')));
}

using Test = std::function<bool(const AuditEntry&)>;

Test AnyEvent(const AuditLog& log, std::function<bool(const AuditEvent&)> meets) {
  return [&log, meets = std::move(meets)](const AuditEntry& entry) {
    const auto events = log.Events(entry);
    return std::any_of(events.begin(), events.end(), meets);
  };
}

void AddEventTests(const AuditLog& log, const AuditCriteria& criteria, std::vector<Test>& tests) {
  if (!criteria.kinds.empty())
    tests.push_back(AnyEvent(log, [kinds = criteria.kinds](const AuditEvent& event) {
      return std::find(kinds.begin(), kinds.end(), event.kind) != kinds.end();
    }));
  if (!criteria.controls.empty())
    tests.push_back(AnyEvent(log, [controls = AllWanted(criteria.controls)](const AuditEvent& event) {
      if (event.kind != AuditEventKind::kEdit) return false;
      return IsAny(controls, event.name) || IsAny(controls, WithoutIndex(event.name));
    }));
  if (!criteria.grids.empty())
    tests.push_back(AnyEvent(log, [grids = AllWanted(criteria.grids)](const AuditEvent& event) {
      return event.kind == AuditEventKind::kGrid && IsAny(grids, event.name);
    }));
}

// One test for each criterion in force.
std::vector<Test> TestsOf(const AuditLog& log, const AuditCriteria& criteria) {
  std::vector<Test> tests;
  const auto text = [&tests](const std::string& wanted, std::string_view AuditEntry::*member) {
    if (Trim(wanted).empty()) return;
    tests.emplace_back(
        [wanted = Wanted(wanted), member](const AuditEntry& entry) { return wanted.IsIn(entry.*member); });
  };
  text(criteria.reference, &AuditEntry::reference);
  text(criteria.login, &AuditEntry::login);
  text(criteria.computer, &AuditEntry::computer);
  if (!criteria.tx_names.empty())
    tests.emplace_back(
        [names = AllWanted(criteria.tx_names)](const AuditEntry& entry) { return IsAny(names, entry.tx); });
  if (!criteria.from.IsEmpty() || !criteria.to.IsEmpty())
    tests.emplace_back([from = criteria.from, to = criteria.to](const AuditEntry& entry) {
      const Date& date = entry.when.date;
      return entry.dated && (from.IsEmpty() || date >= from) && (to.IsEmpty() || date <= to);
    });
  AddEventTests(log, criteria, tests);
  return tests;
}

}  // namespace

std::vector<std::string> SearchedTxNames(const AuditLog& log) {
  std::vector<std::string> names;
  for (int tx = kAuditAccountEdit; tx <= kAuditSetOutstanding + 1; ++tx) names.emplace_back(AuditTxName(tx));
  for (std::string& name : log.TxNames().Values()) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
  }
  return names;
}

std::string CriteriaProblem(const AuditLog& log, const AuditCriteria& criteria) {
  if (!criteria.from.IsEmpty() && !criteria.to.IsEmpty() && criteria.to < criteria.from)
    return "The last date is before the first.  Change one of them.";
  const std::vector<std::string> known = SearchedTxNames(log);
  for (const std::string& wanted : criteria.tx_names) {
    const bool is_known = std::any_of(known.begin(), known.end(), [&](const std::string& name) {
      return UpperKey(name) == UpperKey(Trim(wanted));
    });
    if (is_known) continue;
    std::string text = "There is no transaction " + Quoted(wanted) + ".  There are ";
    for (const std::string& name : known) text += (name == known.front() ? "" : ", ") + name;
    return text + ".";
  }
  return {};
}

std::vector<std::uint32_t> SearchAuditLog(const AuditLog& log, const AuditCriteria& criteria) {
  const std::vector<Test> tests = TestsOf(log, criteria);
  const std::vector<AuditEntry>& entries = log.Entries();
  std::vector<std::uint32_t> found;
  for (std::uint32_t place = 0; place < entries.size(); ++place) {
    const auto meets = [&](const Test& test) { return test(entries[place]); };
    const bool all = criteria.meet_all || tests.empty();
    if (all ? std::all_of(tests.begin(), tests.end(), meets) : std::any_of(tests.begin(), tests.end(), meets))
      found.push_back(place);
  }
  const auto earlier = [&entries](std::uint32_t left, std::uint32_t right) {
    return entries[left].when < entries[right].when;
  };
  if (!std::is_sorted(found.begin(), found.end(), earlier))
    std::stable_sort(found.begin(), found.end(), earlier);
  if (criteria.newest_first) std::reverse(found.begin(), found.end());
  return found;
}

}  // namespace tallwick
