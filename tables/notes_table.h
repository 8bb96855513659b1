// ESCROW_NOTES: free-text notes of escrow files, at most one of each kind per file.
#pragma once

#include "tables/typed_table.h"

namespace tallwick {

struct NoteRecord {
  std::string file_number;
  std::string kind;
  std::string text;
  friend bool operator==(const NoteRecord&, const NoteRecord&) = default;
};

extern const TableLayout kNotesLayout;

class NotesTable : public TypedTable<NoteRecord> {
 public:
  explicit NotesTable(const TableHome& home);
  bool SeekNote(std::string_view file_number, std::string_view kind);  // in the tag NOTETYPE
  std::vector<NoteRecord> NotesOf(std::string_view file_number);       // in the order of their kinds
  // Writes the note over the file's note of this kind, or adds it; an empty text deletes it. 0 or a code.
  int Save(const NoteRecord& note);
};

}  // namespace tallwick
