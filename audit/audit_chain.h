// The companion of an audit log, "Audit_Trail.chain" beside it: what was appended, when, by which
// workstation, each record chained to the one before by a SHA-256, so that a line of the log that was changed
// or removed later shows. The log itself knows nothing of it.
//
// One record a line, CR LF, Windows-1252:
//   KIND BEGIN END DATE TIME DIGEST COMPUTER
//   E 0 107 2024-03-04 14:07:31 9F86...0A08 FRONTDESK2
// BEGIN and END are the bytes of the log it stands for, END not included. Kinds:
//   E  an entry, recorded by the workstation that wrote it;
//   G  bytes found in the log that nobody had recorded, taken up by the next writer: written by another
//      program, before the log had a companion, or by a workstation that stopped between log and companion;
//   L  the log was shorter than recorded: bytes from BEGIN on were lost, the log goes on at BEGIN.
// DIGEST is the SHA-256 of the digest before (64 zeros at first), the record without its digest ("KIND BEGIN
// END DATE TIME COMPUTER") and the bytes of the log, each of the first two followed by a line feed.
//
// Invariants: records are written under the lock of the companion, after their bytes are in the log; each
// begins where the one before ended. A last line without its line end is the rest of a write that was cut off
// and is written over. Behind a line that cannot be read the chain begins anew, from the log's first byte.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/clock.h"
#include "core/file_system.h"
#include "shell/sha256.h"
#include "store/engine/file.h"

namespace tallwick {

struct ChainRecord {
  char kind = 'E';
  std::int64_t begin = 0;
  std::int64_t end = 0;
  std::string moment;    // "2024-03-04 14:07:31"
  std::string digest;    // 64 hexadecimal digits
  std::string computer;  // Windows-1252, at most 63 bytes, without line ends
};

inline constexpr std::string_view kFirstDigest =
    "0000000000000000000000000000000000000000000000000000000000000000";

// "...\Audit_Trail.log" gives "...\Audit_Trail.chain".
std::string ChainPathOf(std::string_view log_path);

std::string ChainLine(const ChainRecord& record);
// Without its line end; nullopt for anything that is no record.
std::optional<ChainRecord> ParseChainLine(std::string_view line);

// A hash that has the digest before and the record behind it and waits for the bytes of the log.
void StartChainDigest(Sha256& hash, std::string_view digest_before, const ChainRecord& record);
std::string ChainDigest(std::string_view digest_before, const ChainRecord& record, std::string_view bytes);

// Keeps writers off while the log and its companion are read, so that they fit together. Where the lock
// cannot be had in a second they are read all the same.
class ChainHold {
 public:
  ChainHold(const FileSystem& files, engine::FileLayer& disk, Clock& clock, std::string_view log_path);

 private:
  std::unique_ptr<engine::File> companion_;
};

// One append to a log with its record. The companion is held from construction to destruction; where it
// cannot be had the log is written all the same, and the next writer takes the bytes up.
class ChainedAppend {
 public:
  struct Place {
    FileSystem& files;
    engine::FileLayer& disk;
    Clock& clock;
    std::string log_path;  // held form
    std::string computer;  // Windows-1252
  };

  explicit ChainedAppend(const Place& place);
  // Appends in one write and records it. False when the log did not take the bytes.
  bool Append(std::string_view bytes);

 private:
  bool LockCompanion();
  void ReadEnd();
  void TakeUpGap();
  void RecordAmongOthers(std::string_view bytes, std::int64_t size);
  void Record(char kind, std::int64_t begin, std::int64_t end, std::string_view bytes);
  void RecordFromLog(std::int64_t begin, std::int64_t end);
  ChainRecord NewRecord(char kind, std::int64_t begin, std::int64_t end) const;
  std::int64_t LogSize() const;
  void WriteRecords();

  Place place_;
  std::unique_ptr<engine::File> companion_;  // null where it cannot be had
  std::int64_t kept_ = 0;                    // bytes of the companion that stay
  std::int64_t recorded_ = 0;                // bytes of the log that have been recorded
  std::string digest_;                       // of the last record
  std::string lines_;                        // new records
};

}  // namespace tallwick
