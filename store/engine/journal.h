// The redo journal of one company folder: what makes a unit of work whole.
//
// File ESCROW_UNITS.JNL beside the tables:
//   header   96 bytes: 0 "TWKJRNL1", 8 (8 bytes) where the entries end that were applied to the tables,
//            16 (8) the number that an entry there would have, 24 (8) the number of the first entry, behind
//            the header, 32 (56) the boot id of the machine that wrote all entries, NUL padded ("-": several
//            did; "!": a table could not be flushed), 88 (8) the number with which the unit begins whose
//            bytes were last begun to be brought to the tables: while it is that of 16, the tables are
//            between two states
//   entry    0 "TWKE", 4 (8) payload length, 12 (8) number of the entry, 20 (8) FNV-1a checksum of number and
//            payload, 28 the payload: 2 count of files, and for each: 2 length of the name, the name (within
//            the folder), 4 count of extents, and for each: 8 offset in the file, 4 length, the bytes
//   note     as an entry, but with 0 "TWKN" and the payload 2 count of files, and for each: 2 length of the
//            name, the name, 8 length of the file, 16 its first bytes
// Entries are numbered one by one for the life of the file, and stand one behind the other; the first place
// without the next number (or with a wrong checksum) is the end. So the file keeps its length when it is
// emptied, and a flush need not make a new length durable as well.
//
// States of an entry: written (not yet flushed: the unit never happened), flushed (the unit happened,
// whatever comes), applied (its bytes are in the tables, perhaps not flushed), dropped (the tables are
// flushed, the journal emptied). Entries are new bytes for places in files, so applying one again, in order
// from the oldest, does no harm, unless another program has changed the tables since: applied entries are
// applied again only when the power may have gone, or when a table could not be flushed: a system may take
// bytes whose flush has failed for flushed the next time, so only writing them again makes the next flush
// mean anything.
//
// A large unit writes what lies behind the ends of its files to the files themselves, while it still runs, so
// that megabytes need not be written twice nor kept in memory: first a note of the lengths is flushed, then
// the files are written and flushed, then comes the entry with all the rest. When the unit meets more files
// it writes another note, which holds the lengths of all. A note that no entry follows is of a unit that
// never happened: the files are cut back to the lengths of the last note, unless their first bytes (record
// count, change counter) show that another program has gone on.
//
// Locks in the journal file: byte 0x7FFFFFF0 is the writer's (exclusive from the first change of a unit to
// its end: one writer at a time in a folder); byte 0x7FFFFFF1 is held shared by everyone who has the journal
// open, so that whoever gets it exclusively knows to be alone; byte 0x7FFFFFF2 is held by the one who is next
// to write; byte 0x7FFFFFF3 is the door: held exclusively by whoever comes in or leaves.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "core/clock.h"
#include "store/engine/codebase.h"
#include "store/engine/file.h"
#include "store/engine/journal_entry.h"
#include "store/engine/journal_state.h"

namespace tallwick::engine {

class Journal {
 public:
  static constexpr std::string_view kFileName = kJournalFileName;

  Journal(const EngineSetup& setup, std::string folder) : setup_(setup), folder_(std::move(folder)) {}
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // Before the folder's tables are read: attaches to a journal that exists and finishes what it holds. A
  // folder without one stays without. kSuccess or an error code.
  int Attach();
  // Finishes what a dead writer left behind; nothing while a live writer is at work. Cheap when there is
  // nothing.
  int Recover();
  // True when flushed entries wait that no live writer will apply, or one is just being applied: then a
  // reader must not keep an index lock, for whoever applies may want it.
  bool HasOrphans();
  // For readers without a lock: true when no other workstation has brought a unit to the tables, nor begun
  // to, since the last call that gave true; so what was read in between is of one moment. Waits until a unit
  // that has begun is done. *rc is kSuccess, or why the reader cannot go on.
  bool WasQuiet(int* rc);

  // Takes the writer's lock (making the journal where it is missing), after recovering. kLocked when another
  // writer keeps it too long.
  int BeginWriting();
  void EndWriting();
  // During a unit: writes what the changes put behind the ends of their files to the files, where that is
  // worth it. AheadOf then tells from where on a file has its part of the changes. After a failure the unit
  // can only be ended.
  int WriteAhead(const std::vector<JournalFileChange>& changes);
  // From where on the unit's bytes stand in a file of this name already; nullopt for nowhere.
  std::optional<std::int64_t> AheadOf(std::string_view name) const;
  // Undoes what was written ahead in a unit that will not be committed. To be called under its locks.
  void Abandon();
  // As BeginWriting, and with every entry applied, the tables flushed, and the journal empty for good. A
  // folder without a journal stays without: then nobody is kept from writing.
  int Settle();
  bool IsWriting() const { return writing_; }
  // One flush: afterwards the changes are durable and the result is kSuccess, whatever happens then. Then
  // applies them. When it fails before that point the journal is as it was and nothing has changed.
  int Commit(const std::vector<JournalFileChange>& changes);

  // True when the last commit is durable and could not be brought to the tables: caches may not stand for
  // them.
  bool HasUnapplied() const { return unapplied_; }
  // Whether the unit at hand has bytes behind the ends of files already.
  bool HasWrittenAhead() const { return !notes_.empty(); }

  // Looks without changing anything. Only for one that has not been attached.
  JournalFindings Examine();
  // Takes a journal that cannot be used out of the way under another name in the folder, after bringing to
  // the tables what waits in it whole, but for files that are gone. `files` of the folder are flushed before,
  // since what applied entries name cannot be read any more. kErrorOpenRefused while another workstation has
  // it open.
  int SetAside(std::string_view name, const std::vector<std::string>& files);

  // True when the journal was found to be one that may only be read.
  bool IsReadOnly() const { return read_only_; }

  const std::string& Folder() const { return folder_; }

 private:
  // Where an entry stands, and its number.
  struct Mark {
    std::int64_t position = 0;
    std::uint64_t number = 0;
  };

  struct Entry {
    bool is_note = false;
    std::vector<std::uint8_t> payload;
  };

  static constexpr std::string_view kMagic = "TWKJRNL1";
  static constexpr std::string_view kSeveralMachines = "-";
  static constexpr std::string_view kFlushFailed = "!";
  static constexpr std::int64_t kHeaderBytes = 96;
  static constexpr std::int64_t kBootAt = 32;
  static constexpr std::int64_t kBegunAt = 88;
  static constexpr std::int64_t kMaxPayload = std::int64_t{1} << 32;
  static constexpr std::int64_t kCheckpointAt = std::int64_t{8} << 20;
  static constexpr std::int64_t kWriterAt = 0x7FFFFFF0;
  static constexpr std::int64_t kPresenceAt = 0x7FFFFFF1;
  static constexpr std::int64_t kNextWriterAt = 0x7FFFFFF2;
  static constexpr std::int64_t kDoorAt = 0x7FFFFFF3;
  // Posts last milliseconds; a writer or reader that waits longer than this gives up.
  static constexpr int kWriterTries = 2000;
  // Whoever comes in first after a power cut may have megabytes to write and flush.
  static constexpr int kDoorTries = 5000;
  static constexpr int kOpenTries = 10;
  static constexpr int kWriterWaitMs = 2;
  // Most units are brought to the tables within microseconds, so whoever waits for one looks this often
  // before it sleeps.
  static constexpr int kEagerTries = 50;

  int OpenFile();
  int OpenOnce();
  // A journal that may only be read: kErrorReadOnly while units wait in it that no live writer will apply.
  int RecoverReadOnly();
  int TakeWriterLock(bool wait);
  int WaitForLock(File& file, std::int64_t at, int wait_ms = kWriterWaitMs, int max_tries = kWriterTries);
  // Makes this workstation's presence known, after finishing what was left behind when nobody else is there.
  int ComeIn();
  std::string ReadBoot();
  // Whether a table's flush has failed since the journal was last emptied.
  bool FlushHasFailed() { return ReadBoot() == kFlushFailed; }
  int WriteBoot(std::string_view boot);
  // Finishes what stands in the journal and empties it, for someone who is alone. With `all` the applied
  // entries too.
  int FinishAsOnly(bool all);
  // False when the machine has run on since every entry was written, so that nothing applied can have been
  // lost. Of a file server nobody here knows whether it has.
  bool MayHaveLostPower();
  // Makes the names of files durable that this workstation has not committed to before: whoever made them
  // may have died, or failed, before he could.
  int FlushNames(const std::vector<JournalFileChange>& changes);
  // Says to readers that the unit which begins with this number goes to the tables now.
  int WriteBegun(std::uint64_t unit);
  // The number of the next entry to apply, 0 in an empty journal; *under_way says that it has begun.
  std::uint64_t ReadProgress(bool* under_way);
  int AwaitUnit();
  // Applies what stands from a mark on, and cuts back what no entry follows.
  int ApplyFrom(Mark mark);
  // As ApplyFrom, from the applied mark or with `all` from the first entry; but kErrorJournal when the unit
  // that was begun to be applied is not there any more: the tables are between two states then.
  int Finish(const Mark& first, Mark applied, bool all);
  // Gives a mark whose position was written when its number was not its number; false when it is no such
  // mark.
  bool CompleteMark(const Mark& first, Mark* applied);
  int ApplyEntry(std::span<const std::uint8_t> payload, std::uint64_t unit);
  // Writes all entries from a mark to the end to the tables once more; for readers they are one unit.
  int WriteAgain(Mark from);
  // An index or table with its lock. A missing index is null and kSuccess, since it can be built anew; a
  // missing table or memo file is kErrorJournal, since a unit that stands would be lost, but when SetAside
  // gives it up.
  int OpenToApply(const std::string& name, std::unique_ptr<File>* file);
  // Keeps programs that know nothing of the journal from appending to a table.
  int LockAppends(File& table);
  // The files that entries name, from a mark to the end or the first break.
  std::set<std::string> NamesFrom(Mark* mark);
  int FlushFiles(const std::set<std::string>& names);
  int Apply(const std::vector<JournalFileChange>& changes);
  // Makes it durable that the journal is empty, where this workstation has not done so.
  int FlushEmpty();
  // Writes and flushes an entry at the end; when that fails nobody finds it.
  int Append(const std::vector<std::uint8_t>& entry);
  // The parts of the changes behind what their files hold for good, and in *rest all the others.
  std::vector<JournalFileChange> SplitTails(const std::vector<JournalFileChange>& changes,
                                            std::vector<JournalFileChange>* rest) const;
  bool IsWorthAhead(const std::vector<JournalFileChange>& tails) const;
  // Brings tails to their files, under a note.
  int WriteTails(const std::vector<JournalFileChange>& tails);
  int NoteLengths(const std::vector<JournalFileChange>& tails);
  // Flushes what was written ahead to the files.
  int FlushTails();
  // Undoes what notes stand for, of which the last holds the lengths, and the notes. `locked` says that the
  // unit's own locks on the files are still held.
  int CutBack(const std::vector<Mark>& notes, const std::vector<JournalLength>& lengths, bool locked);
  void ForgetAhead();
  // The number of the unit's first note, or of its entry.
  std::uint64_t UnitNumber() const { return notes_.empty() ? end_.number : notes_.front().number; }
  // Both marks of the header; false when it is no journal's.
  bool ReadMarks(Mark* first, Mark* applied);
  int WriteMarks(const Mark* first, const Mark& applied);
  // Reads the entry at a mark and moves the mark behind it; false at the end or at a torn entry.
  bool ReadEntry(Mark* mark, Entry* entry);
  // True where nothing was ever written: whoever made the file died before its head was there.
  bool IsBlank();
  // True when a whole unit of a later number stands somewhere behind the end of the entries, or what is there
  // cannot be read.
  bool HasUnitBehind(const Mark& end);
  JournalFindings ExamineOpen();
  // Counts the units that stand whole behind the applied mark. Looks for the files of all that will be
  // brought to the tables, from `redone` on.
  JournalFindings LookAtWaiting(const Mark& redone, const Mark& applied);
  std::int64_t LengthOf(const std::string& name);  // of a file in the folder; -1 where there is none
  // Whether the applied entries will be applied again: a flush has failed, or the power may be gone and
  // nobody has come in since. Only for one who has not come in himself.
  bool WillRedo();
  // True when whole entries lead from one mark to the other.
  bool IsWhole(Mark from, const Mark& to);
  bool HasEntryAt(const Mark& mark);
  bool HasUnitAt(Mark mark);  // notes, if any, and a whole entry
  // False when no entry with the mark's number begins there.
  bool ReadHead(const Mark& mark, JournalHead* head);
  int GrowTo(std::int64_t size);
  // Flushes every file the journal names and empties it.
  int Checkpoint();
  std::string PathOf(std::string_view name) const;

  EngineSetup setup_;
  std::string folder_;
  std::unique_ptr<File> file_;
  Mark end_;                            // behind the last entry; known while writing
  std::int64_t size_ = 0;               // of the file; known while writing
  std::vector<Mark> notes_;             // of the unit at hand
  std::vector<JournalLength> lengths_;  // that its last note holds
  std::vector<File*> ahead_;            // that were written to and not flushed
  bool writing_ = false;
  bool unapplied_ = false;
  bool in_doubt_ = false;  // an entry that was refused may be found after a power cut
  bool gives_up_ = false;  // units of files that are gone
  bool read_only_ = false;
  std::uint64_t quiet_at_ = 0;   // the next entry's number when WasQuiet last looked
  std::uint64_t empty_at_ = 0;   // the first number of the empty journal that this workstation has flushed
  std::set<std::string> named_;  // files whose names are durable
};

}  // namespace tallwick::engine
