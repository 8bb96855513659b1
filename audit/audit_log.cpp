#include "audit/audit_log.h"

#include <algorithm>
#include <utility>

#include "core/text.h"
#include "core/text_format.h"

namespace tallwick {
namespace {

constexpr std::string_view kNewEntry = "[DATE:";
constexpr std::string_view kEdit = "[EDIT]";
constexpr std::string_view kGrid = "[GRID]";
constexpr std::string_view kGridHeading = "[H]";
constexpr std::string_view kCell = "[C]";

struct EventTag {
  std::string_view tag;
  AuditEventKind kind;
};

constexpr EventTag kEventTags[] = {
    {"[ADD]", AuditEventKind::kAdd},       {"[ADD VOID]", AuditEventKind::kAddVoid},
    {"[VOID]", AuditEventKind::kVoid},     {"[SET OUTSTANDING]", AuditEventKind::kSetOutstanding},
    {"[DELETE]", AuditEventKind::kDelete},
};

bool Holds(std::string_view line, std::string_view tag) {
  return line.find(tag) != std::string_view::npos;
}

// The tag of this program's own event with which the line begins; null for any other line.
const EventTag* EventTagOf(std::string_view line) {
  const auto* found = std::find_if(std::begin(kEventTags), std::end(kEventTags),
                                   [line](const EventTag& known) { return line.starts_with(known.tag); });
  return found == std::end(kEventTags) ? nullptr : found;
}

// What stands behind the header's tag that begins at `start`.
std::string_view Behind(std::string_view line, std::size_t start) {
  return start == std::string_view::npos ? std::string_view() : line.substr(line.find(':', start) + 1);
}

std::string_view UpToBracket(std::string_view text) {
  return Trim(text.substr(0, text.find(']')));
}

// A value that people have typed may hold brackets, even tags: it ends where the last tag of its follower
// begins.
std::string_view UpToLast(std::string_view text, std::string_view follower) {
  const std::size_t end = text.rfind(follower);
  return end == std::string_view::npos ? UpToBracket(text) : Trim(text.substr(0, end));
}

std::vector<std::string_view> Cells(std::string_view line) {
  std::vector<std::string_view> cells;
  while (true) {
    const std::size_t end = line.find(kCell);
    cells.push_back(Trim(line.substr(0, end)));
    if (end == std::string_view::npos) return cells;
    line.remove_prefix(end + kCell.size());
  }
}

// The number in a fixed place; -1 where there is none.
int NumberAt(std::string_view text, std::size_t place, std::size_t width) {
  const std::string_view digits = text.substr(place, width);
  if (!IsAllDigits(digits)) return -1;
  int number = 0;
  for (char c : digits) number = 10 * number + (c - '0');
  return number;
}

int MonthOf(std::string_view name) {
  for (int month = 1; month <= 12; ++month) {
    if (EqualsIgnoreCase(MonthName(month).substr(0, 3), name)) return month;
  }
  return 0;
}

}  // namespace

std::string_view AuditEventKindName(AuditEventKind kind) {
  switch (kind) {
    case AuditEventKind::kAdd:
      return "Add";
    case AuditEventKind::kAddVoid:
      return "Add Void";
    case AuditEventKind::kVoid:
      return "Void";
    case AuditEventKind::kSetOutstanding:
      return "Set Outstanding";
    case AuditEventKind::kDelete:
      return "Delete";
    case AuditEventKind::kEdit:
      return "Edit";
    case AuditEventKind::kGrid:
      return "Grid";
    case AuditEventKind::kOther:
      break;
  }
  return "";
}

bool BeginsAuditEntry(std::string_view line) {
  return Holds(line, kNewEntry) && !line.starts_with(kEdit) && EventTagOf(line) == nullptr;
}

std::string AuditMoment(const DateTime& when) {
  return FormatDate(when.date, "mmm dd, yyyy") + " @ " + FormatDateTime(when, "hh:mm:ss ampm");
}

bool ParseAuditMoment(std::string_view text, DateTime* when) {
  constexpr std::string_view kShape = "mmm dd, yyyy @ hh:mm:ss ";
  if (text.size() != kShape.size() + 2 || text[6] != ',' || text[13] != '@' || text[17] != ':' ||
      text[20] != ':')
    return false;
  const bool afternoon = EqualsIgnoreCase(text.substr(24), "PM");
  if (!afternoon && !EqualsIgnoreCase(text.substr(24), "AM")) return false;
  const Date date{NumberAt(text, 8, 4), MonthOf(text.substr(0, 3)), NumberAt(text, 4, 2)};
  const int hour = NumberAt(text, 15, 2);
  const int minute = NumberAt(text, 18, 2);
  const int second = NumberAt(text, 21, 2);
  if (!IsValidDate(date) || hour < 1 || hour > 12 || minute < 0 || minute > 59 || second < 0 || second > 59)
    return false;
  *when = {date, hour % 12 + (afternoon ? 12 : 0), minute, second};
  return true;
}

AuditLog::AuditLog(std::string bytes) : bytes_(std::move(bytes)) {
  std::string_view rest = bytes_;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    ReadLine(Trim(rest.substr(0, end)));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
}

void AuditLog::ReadLine(std::string_view line) {
  if (line.empty()) {
    in_grid_ = false;
    return;
  }
  if (BeginsAuditEntry(line)) return StartEntry(line);
  if (entries_.empty()) return;
  if (in_grid_ && ReadGridLine(line)) return;
  AddEvent(line);
}

void AuditLog::StartEntry(std::string_view line) {
  in_grid_ = false;
  AuditEntry entry;
  entry.header = line;
  entry.date_text = UpToBracket(Behind(line, line.find(kNewEntry)));
  entry.tx = UpToBracket(Behind(line, line.find("[TX:")));
  entry.reference = UpToLast(Behind(line, line.find("[REFERENCE:")), "][LOGIN:");
  entry.login = UpToLast(Behind(line, line.rfind("[LOGIN:")), "][COMPUTER:");
  entry.computer = UpToBracket(Behind(line, line.rfind("[COMPUTER:")));
  entry.dated = ParseAuditMoment(entry.date_text, &entry.when);
  if (!entry.dated && !entries_.empty()) entry.when = entries_.back().when;
  entry.first_event = static_cast<std::uint32_t>(events_.size());
  references_.Offer(entry.reference);
  logins_.Offer(entry.login);
  computers_.Offer(entry.computer);
  tx_names_.Offer(entry.tx);
  entries_.push_back(entry);
}

void AuditLog::AddEvent(std::string_view line) {
  in_grid_ = false;
  const EventTag* known = EventTagOf(line);
  if (known == nullptr && Holds(line, kGrid) && !line.starts_with(kEdit)) return StartGrid(line);
  AuditEvent event;
  event.line = line;
  event.value = line;
  if (known != nullptr) {
    event.kind = known->kind;
    event.value = Trim(line.substr(known->tag.size()));
  } else if (const std::size_t tag = line.find(kEdit); tag != std::string_view::npos) {
    event.kind = AuditEventKind::kEdit;
    const std::string_view rest = line.substr(tag + kEdit.size());
    const std::size_t change = rest.find("was:");
    event.name = Trim(rest.substr(0, change));
    event.value = change == std::string_view::npos ? std::string_view() : rest.substr(change);
    controls_.Offer(event.name);
  }
  events_.push_back(event);
  ++entries_.back().event_count;
}

void AuditLog::StartGrid(std::string_view line) {
  std::string_view name = Trim(line.substr(line.find(kGrid) + kGrid.size()));
  const bool says_old = name.ends_with("was:");
  const bool says_new = name.ends_with("now:");
  if (says_old || says_new) name = Trim(name.substr(0, name.size() - 4));
  in_grid_ = true;
  // The second block of a grid within an entry belongs to the first.
  const bool second = entries_.back().event_count > 0 && events_.back().kind == AuditEventKind::kGrid &&
                      events_.back().name == name && !says_old;
  new_rows_ = says_new || second;
  if (second) return;
  grid_names_.Offer(name);
  AuditEvent event;
  event.kind = AuditEventKind::kGrid;
  event.line = line;
  event.name = name;
  event.grid = static_cast<std::uint32_t>(grids_.size());
  AuditGrid grid;
  grid.name = name;
  grids_.push_back(std::move(grid));
  events_.push_back(event);
  ++entries_.back().event_count;
}

// False for a line that is no part of the grid.
bool AuditLog::ReadGridLine(std::string_view line) {
  if (line.starts_with(kGridHeading)) {
    grids_.back().columns = Cells(line.substr(kGridHeading.size()));
    return true;
  }
  if (line.starts_with('[')) return false;
  (new_rows_ ? grids_.back().new_rows : grids_.back().old_rows).push_back(Cells(line));
  return true;
}

}  // namespace tallwick
