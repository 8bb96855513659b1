#include "tables/notes_table.h"

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

constexpr int kFileWidth = 14;
constexpr int kKindWidth = 4;

constexpr std::array kColumns = {
    Text<&NoteRecord::file_number>("FILENO", kFileWidth),
    Text<&NoteRecord::kind>("NOTETYPE", kKindWidth),
    Memo<&NoteRecord::text>("TEXT"),
};

constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"FILENO", "UPPER (FILENO)", kLiveRecords},
    {"NOTETYPE", "UPPER(FILENO + NOTETYPE)", kLiveRecords, true},
    kDeletedForReuse,
};

}  // namespace

constexpr TableLayout kNotesLayout{"ESCROW_NOTES",
                                   false,
                                   kFields,
                                   kTags,
                                   {"  was not created.", "\rError Code: ", "\rDBFCreate_Escrow_Notes",
                                    "Create New Database", "Open Database Notes"}};

NotesTable::NotesTable(const TableHome& home) : TypedTable(home, kNotesLayout, kColumns) {}

bool NotesTable::SeekNote(std::string_view file_number, std::string_view kind) {
  return Seek("NOTETYPE", KeyPart(file_number, kFileWidth) + KeyPart(kind, kKindWidth));
}

std::vector<NoteRecord> NotesTable::NotesOf(std::string_view file_number) {
  std::vector<NoteRecord> notes;
  std::string key = KeyPart(file_number, kFileWidth);
  for (bool found = Seek("NOTETYPE", key); found; found = SeekNext(key)) notes.push_back(Read());
  return notes;
}

int NotesTable::Save(const NoteRecord& note) {
  bool found = SeekNote(note.file_number, note.kind);
  if (note.text.empty()) return found ? Delete() : engine::kSuccess;
  return found ? Update(note) : Add(note);
}

}  // namespace tallwick
