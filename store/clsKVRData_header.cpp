// Check and repair of the record count in a table's header.
//
// Of the header's first 32 bytes, little-endian: 4 to 7 the record count, 8 and 9 the header's length, 10 and
// 11 the record's length. The count that must stand there is (file length - header length) / record length,
// rounded down, so that the marker byte at the file's end does not count.

#include <algorithm>
#include <limits>
#include <optional>

#include "store/clsKVRData.h"
#include "store/engine/file_swap.h"
#include "store/engine/instance.h"
#include "store/engine/table_header.h"

namespace tallwick {

namespace {

struct HeaderFacts {
  int header_length = 0;
  int record_length = 0;
  std::uint32_t counted = 0;  // records by the header
  std::uint32_t records = 0;  // that the file's length holds
  std::int64_t lock_at = engine::kIndexedAppendAt;

  // Of a record, from 1.
  std::int64_t OffsetOf(std::uint32_t record) const {
    return header_length + (static_cast<std::int64_t>(record) - 1) * record_length;
  }
};

// Nothing for a head that is damaged in any other place than its count.
std::optional<HeaderFacts> ReadHeader(engine::File& file) {
  std::vector<std::uint8_t> bytes(engine::kTableHeadBytes);
  const std::int64_t size = file.Size();
  if (file.ReadAt(0, bytes.data(), bytes.size()) != std::ssize(bytes)) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(engine::ReadHeaderLength(bytes)));
  engine::TableHeader header;
  if (file.ReadAt(0, bytes.data(), bytes.size()) != std::ssize(bytes) ||
      engine::ParseTableHeader(bytes, &header) != engine::kSuccess || size < header.header_length)
    return std::nullopt;
  HeaderFacts facts;
  facts.header_length = header.header_length;
  facts.record_length = header.record_length;
  std::int64_t records = (size - facts.header_length) / facts.record_length;
  if (records > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  facts.records = static_cast<std::uint32_t>(records);
  facts.counted = header.record_count;
  if (!header.has_index) facts.lock_at = engine::kPlainAppendAt;
  return facts;
}

// Highest byte first: a torn write leaves a count that is still wrong rather than one that looks right.
bool WriteCount(engine::File& file, std::uint32_t count) {
  for (int offset = 7; offset >= 4; --offset) {
    auto byte = static_cast<std::uint8_t>(count >> (8 * (offset - 4)));
    if (file.WriteAt(offset, &byte, 1) != engine::kSuccess) return false;
  }
  return file.Flush() == engine::kSuccess;
}

// How many records are left without the last ones that are not counted and hold zero bytes only, as a power cut
// leaves them: they were never written. One of them may begin with the mark of the file's old end.
std::uint32_t WithoutEmptyEnd(engine::File& file, const HeaderFacts& facts) {
  std::vector<std::uint8_t> record(static_cast<std::size_t>(facts.record_length));
  std::uint32_t records = facts.records;
  for (; records > facts.counted; --records) {
    if (file.ReadAt(facts.OffsetOf(records), record.data(), record.size()) != std::ssize(record)) break;
    if (record[0] == engine::kEndOfFileMark) record[0] = 0;
    if (std::any_of(record.begin(), record.end(), [](auto byte) { return byte != 0; })) break;
  }
  return records;
}

// Ends the file behind the last record.
bool CutBehind(engine::File& file, const HeaderFacts& facts) {
  const std::int64_t end = facts.OffsetOf(facts.records + 1);
  return file.WriteAt(end, &engine::kEndOfFileMark, 1) == engine::kSuccess &&
         file.Truncate(end + 1) == engine::kSuccess && file.Flush() == engine::kSuccess;
}

enum class EmptyEnd { kCounted, kCut };

// Writes the count that fits the file, while no other workstation has the table, nor another program appends.
int Repair(engine::File& file, EmptyEnd empty_end, HeaderFacts* repaired) {
  if (file.Lock(engine::kTablePresenceAt, 1, engine::LockKind::kExclusive) != engine::kSuccess)
    return engine::kErrorOpenRefused;
  std::optional<HeaderFacts> facts = ReadHeader(file);
  if (!facts) return engine::kErrorDataHeader;
  if (file.Lock(facts->lock_at, 1, engine::LockKind::kExclusive) != engine::kSuccess)
    return engine::kErrorOpenRefused;
  facts = ReadHeader(file);  // an append may have come to its end meanwhile
  if (!facts) return engine::kErrorDataHeader;
  const std::uint32_t held = facts->records;
  if (empty_end == EmptyEnd::kCut) facts->records = WithoutEmptyEnd(file, *facts);
  if (!WriteCount(file, facts->records) || (facts->records < held && !CutBehind(file, *facts)))
    return engine::kErrorDataHeader;
  *repaired = *facts;
  return engine::kSuccess;
}

// The same in a folder at rest: what a dead workstation's unit left behind the last record has been cut off.
int RepairAtRest(engine::Code4& code, const std::string& path, EmptyEnd empty_end, HeaderFacts* repaired) {
  engine::QuietJournal quiet(code, engine::TableFolder(path));
  if (const int rc = quiet.Begin(); rc != engine::kSuccess) return rc;
  int rc = engine::kSuccess;
  const auto file = code.setup.files.Open(path, engine::OpenMode::kReadWrite, &rc);
  return file ? Repair(*file, empty_end, repaired) : rc;
}

}  // namespace

std::string clsKVRData::TableFile(std::string_view name) const {
  std::string path(name);
  if (FileNameOf(path).find('.') == std::string_view::npos) path += ".dbf";
  return ports_.file_system.PlatformPath(path);
}

bool clsKVRData::CheckDatabaseHeader(DataHandle data) {
  if (!header_check_) return true;
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), false;
  int code = engine::kSuccess;
  std::unique_ptr<engine::File> file =
      ports_.files.Open(engine::d4fileName(*table->data), engine::OpenMode::kReadOnly, &code);
  std::optional<HeaderFacts> facts = file ? ReadHeader(*file) : std::nullopt;
  if (facts && facts->records == engine::d4recCountDo(*table->data)) {
    Finish(engine::kSuccess);
    return true;
  }
  Finish(engine::kErrorDataHeader);
  ports_.boxes.Critical(
      "Corrupt Header",
      DatabaseName(data) + " has a Corrupt File Header.  Swith to Exclusive File Access to fix.");
  return false;
}

bool clsKVRData::CheckRecordCount(DataHandle data) {
  OpenTable* table = Find(data);
  if (!table) return NotOpen(), false;
  return Finish(engine::d4headerCheck(*table->data)) == engine::kSuccess;
}

int clsKVRData::CorrectRecordCount(std::string_view name) {
  HeaderFacts facts;
  return Finish(RepairAtRest(*engine_, TableFile(name), EmptyEnd::kCut, &facts));
}

int clsKVRData::SetTableAside(std::string_view name, std::string_view kept) {
  return Finish(engine::d4setAside(*engine_, TableFile(name), ports_.file_system.PlatformPath(kept)));
}

// What a long unit wrote behind the last record, before its workstation died, is cut off by the next writer
// and never becomes records.
bool clsKVRData::CountFitsAtRest(std::string_view name) {
  engine::QuietJournal quiet(*engine_, engine::TableFolder(TableFile(name)));
  if (quiet.Begin() != engine::kSuccess) return false;
  int code = engine::kSuccess;
  const auto file = ports_.files.Open(TableFile(name), engine::OpenMode::kReadOnly, &code);
  const std::optional<HeaderFacts> facts = file ? ReadHeader(*file) : std::nullopt;
  return facts && facts->counted == facts->records;
}

int clsKVRData::FixDatabaseHeader(std::string_view name) {
  if (CountFitsAtRest(name)) return engine::kSuccess;
  std::string shown = ShownName(name);
  BoxAnswer answer = ports_.boxes.Show({BoxIcon::kCritical, "Corrupt Header",
                                        shown + " has a corrupt file header.  Attempt to correct?",
                                        BoxButtons::kOkCancel, BoxAnswer::kCancel});
  if (answer != BoxAnswer::kOk) return engine::kErrorDataHeader;
  HeaderFacts facts;
  if (RepairAtRest(*engine_, TableFile(name), EmptyEnd::kCounted, &facts) != engine::kSuccess) {
    ports_.boxes.Critical(
        "Corrupt Header",
        shown +
            " could not be corrected: the file is in use on another workstation, or may not be "
            "written.  Close it there and try again.");
    return engine::kErrorDataHeader;
  }
  ports_.boxes.Inform("Corrected Header",
                      "File Header for " + shown +
                          " has been revised...\rRecord Length: " + std::to_string(facts.record_length) +
                          " Start Data: " + std::to_string(facts.header_length) +
                          " Number Records: " + std::to_string(facts.records));
  return engine::kSuccess;
}

}  // namespace tallwick
