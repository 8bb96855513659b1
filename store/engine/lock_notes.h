// Who holds which lock, as far as the holders say. The locks themselves tell only that they are held.
//
// File ESCROW_LOCKS.WHO beside the tables: slots of 128 bytes, each the text "table \n record (0 = the whole
// table) \n computer \n process id \n", NUL padded. Whoever locks a record until further notice takes a free
// slot, writes its note there, and keeps the slot's byte 0x40000000 + number locked as long as the note is
// true. A slot that is not locked is old and means nothing; so a dead workstation's notes die with it, and
// nothing is ever cleaned up or flushed. Notes are advice: one that cannot be written is left out, and who
// locks without one is not known.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "store/engine/codebase.h"
#include "store/engine/file.h"

namespace tallwick::engine {

// The notes on one table, of one engine instance.
class LockNotes {
 public:
  static constexpr std::string_view kFileName = "ESCROW_LOCKS.WHO";

  // `table` is the data file's path in the platform's form.
  LockNotes(const EngineSetup& setup, const std::string& table);
  LockNotes(const LockNotes&) = delete;
  LockNotes& operator=(const LockNotes&) = delete;

  void Note(std::uint32_t record);  // 0 = the whole table
  void Drop(std::uint32_t record);
  void DropAll();
  // "FRONTDESK (process 4711)" of whoever noted a lock on the record or the whole table; for record 0 a lock
  // on any record. "" where that is not known.
  std::string Holder(std::uint32_t record);

 private:
  bool Open(OpenMode mode);
  std::string Text(std::uint32_t record) const;

  EngineSetup setup_;
  std::string path_;
  std::string table_;  // its file's name, upper case
  std::unique_ptr<File> file_;
  std::map<std::uint32_t, int> slots_;  // by record
};

}  // namespace tallwick::engine
