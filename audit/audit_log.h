// An audit log, read. A line that holds "[DATE:" begins an entry; the lines behind it are its events, up to
// the next. Lines are trimmed, empty ones skipped, lines before the first entry left out. A line that begins
// with the tag of an event of this program is never taken for a new entry, whatever stands behind the tag.
//
// Grid changes, which other programs of the suite write, are read too:
//   [GRID] grdItems was:        the grid's name; "was:" or "now:" says which rows follow. Without the word
//                               the first block of a grid in an entry is the old one, the second the new one.
//   [H] File[C]Source[C]Amount  the headings of its columns
//   24-0117[C]BUYER[C]100.00    cells of a row
//
// Texts are the log's own bytes (Windows-1252) and live as long as the log.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "audit/search_controls.h"
#include "core/date.h"

namespace tallwick {

enum class AuditEventKind : std::uint8_t {
  kAdd,
  kAddVoid,
  kVoid,
  kSetOutstanding,
  kDelete,
  kEdit,
  kGrid,
  kOther  // a line of no known kind
};

inline constexpr AuditEventKind kAuditEventKinds[] = {
    AuditEventKind::kAdd,    AuditEventKind::kAddVoid, AuditEventKind::kVoid, AuditEventKind::kSetOutstanding,
    AuditEventKind::kDelete, AuditEventKind::kEdit,    AuditEventKind::kGrid};

// "Add", "Add Void", "Void", "Set Outstanding", "Delete", "Edit", "Grid"; "" of kOther.
std::string_view AuditEventKindName(AuditEventKind kind);

struct AuditGrid {
  std::string_view name;
  std::vector<std::string_view> columns;
  std::vector<std::vector<std::string_view>> old_rows;
  std::vector<std::vector<std::string_view>> new_rows;
};

struct AuditEvent {
  AuditEventKind kind = AuditEventKind::kOther;
  std::string_view line;   // the whole line, trimmed
  std::string_view name;   // the control with its index ("txtAmount (2)"), or the grid
  std::string_view value;  // "was: A now: B" of an edit; what stands behind the tag of the others
  std::uint32_t grid = 0;  // of a grid change: its place in AuditLog::Grids
};

struct AuditEntry {
  DateTime when;       // where the log's text is no date, that of the entry before
  bool dated = false;  // the log's text is a date and a time
  std::string_view date_text;
  std::string_view tx;
  std::string_view reference;
  std::string_view login;
  std::string_view computer;
  std::string_view header;  // the whole line, trimmed
  std::uint32_t first_event = 0;
  std::uint32_t event_count = 0;
};

class AuditLog {
 public:
  explicit AuditLog(std::string bytes);
  AuditLog(const AuditLog&) = delete;
  AuditLog& operator=(const AuditLog&) = delete;

  // In the order of the file.
  const std::vector<AuditEntry>& Entries() const { return entries_; }
  std::span<const AuditEvent> Events(const AuditEntry& entry) const {
    return std::span(events_).subspan(entry.first_event, entry.event_count);
  }
  const AuditGrid& Grid(const AuditEvent& event) const { return grids_[event.grid]; }
  const std::vector<AuditGrid>& Grids() const { return grids_; }

  const clsSearchControls& References() const { return references_; }
  const clsSearchControls& Logins() const { return logins_; }
  const clsSearchControls& Computers() const { return computers_; }
  const clsSearchControls& TxNames() const { return tx_names_; }
  const clsSearchControls& Controls() const { return controls_; }
  const clsSearchControls& GridNames() const { return grid_names_; }

 private:
  void ReadLine(std::string_view line);
  void StartEntry(std::string_view line);
  void AddEvent(std::string_view line);
  void StartGrid(std::string_view line);
  bool ReadGridLine(std::string_view line);

  std::string bytes_;
  std::vector<AuditEntry> entries_;
  std::vector<AuditEvent> events_;
  std::vector<AuditGrid> grids_;
  bool in_grid_ = false;   // rows may follow
  bool new_rows_ = false;  // and are the new ones
  clsSearchControls references_;
  clsSearchControls logins_;
  clsSearchControls computers_;
  clsSearchControls tx_names_;
  clsSearchControls controls_;
  clsSearchControls grid_names_;
};

// Whether a line of the log, trimmed, begins an entry.
bool BeginsAuditEntry(std::string_view line);

// "Mar 04, 2024 @ 02:07:31 PM": a moment as the log writes it.
std::string AuditMoment(const DateTime& when);
// Reads one. False for anything else.
bool ParseAuditMoment(std::string_view text, DateTime* when);

}  // namespace tallwick
