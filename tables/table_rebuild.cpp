// Rebuild of one table: opened exclusively, a copy kept as ".SAV" (its memo file as ".SAV.FPT"), packed by
// the engine into new files that replace the old ones whole, proven, and only then is the copy dropped. A
// fuller copy that is there already stays, as ".SAV2". At every moment the old table, the new one or the copy
// is complete on disk. A damaged or missing index is first built anew from the records, with the tags of the
// layout; one that only lacks tags keeps those it has.

#include "tables/table_base.h"

namespace tallwick {

int TableBase::Rebuild(std::string_view bank_code, const engine::Progress& progress) {
  return UseBank(bank_code) ? RebuildOnDisk(progress) : engine::kErrorParameter;
}

int TableBase::RebuildQuietly(std::string_view bank_code, const engine::Progress& progress) {
  if (!UseBank(bank_code)) return engine::kErrorParameter;
  DataHandle data = OpenMended();
  return data > 0 ? PackAndProve(data, progress) : data;
}

int TableBase::RebuildOnDisk(const engine::Progress& progress) {
  DataHandle data = OpenMended();
  int code = data > 0 ? PackAndProve(data, progress) : data;
  BoxIcon icon = code == engine::kSuccess ? BoxIcon::kInformation : BoxIcon::kCritical;
  home_.boxes.Show({icon, "Rebuild " + name_, "Pack Result Code: " + std::to_string(code)});
  return code;
}

// The table stays with this workstation until the new one is proven or the old one is back, so that nobody
// posts into a table that is about to be replaced.
int TableBase::PackAndProve(DataHandle data, const engine::Progress& progress) {
  std::int32_t live_records = CountLive(data);
  int code = KeepOld(progress);
  if (code != engine::kSuccess) {
    home_.data.CloseDatabase(data);
    DropOld();
    return code;
  }
  code = home_.data.PackDatabase(data, progress);
  bool proven = code != engine::kSuccess || IsProven(data, live_records);
  if (!proven) {
    RestoreOld();
    code = engine::kErrorDataStructure;
  }
  home_.data.CloseDatabase(data);
  if (proven) {
    DropOld();
  } else {
    home_.data.RebuildIndex(Path(), layout_.tags);
  }
  return code;
}

std::int32_t TableBase::CountLive(DataHandle data) {
  std::int32_t live = 0;
  home_.data.SelectTag(data, "");
  for (int code = home_.data.TopDatabase(data); code == engine::kSuccess;
       code = home_.data.SkipDatabase(data)) {
    if (!home_.data.IsRecordDeleted(data)) ++live;
  }
  return live;
}

// The packed table fits its length, holds as many records as were live, and has every tag of the layout, with
// those records or, for tags of deleted records, nothing.
bool TableBase::IsProven(DataHandle data, std::int32_t live_records) {
  bool proven = home_.data.CheckRecordCount(data) && home_.data.RecordCount(data) == live_records;
  if (FindMissingTag(home_.data, data, layout_.tags)) return false;
  for (const TagLayout& tag : layout_.tags) {
    bool filled = live_records > 0 && tag.filter == kLiveRecords;
    home_.data.SelectTag(data, tag.name);
    proven = proven && home_.data.TopDatabase(data) == (filled ? engine::kSuccess : engine::kEof);
  }
  return proven;
}

// --- The copy of the old table ---

// A copy that holds more than the table may be all there is of what the table has lost.
bool TableBase::SetFullerCopyAside() {
  const std::string kept = PathWith(".SAV");
  if (!home_.files.FileExists(kept) || home_.files.SizeOf(kept) <= home_.files.SizeOf(Path())) return true;
  int number = 2;
  while (home_.files.FileExists(kept + std::to_string(number))) ++number;
  const std::string aside = kept + std::to_string(number);
  const std::string memos = PathWith(".SAV.FPT");
  return home_.files.Rename(kept, aside) &&
         (!home_.files.FileExists(memos) || home_.files.Rename(memos, aside + ".FPT"));
}

int TableBase::KeepOld(const engine::Progress& progress) {
  if (!SetFullerCopyAside()) return engine::kErrorRename;
  const int code = home_.data.CopyFile(Path(), PathWith(".SAV"), progress);
  const bool has_memo = code == engine::kSuccess && home_.files.FileExists(PathWith(".FPT"));
  return has_memo ? home_.data.CopyFile(PathWith(".FPT"), PathWith(".SAV.FPT"), progress) : code;
}

void TableBase::DropOld() {
  home_.files.Remove(PathWith(".SAV"));
  home_.files.Remove(PathWith(".SAV.FPT"));
}

// The index goes first: without it nobody can open the old records with the new table's keys.
void TableBase::RestoreOld() {
  home_.files.Remove(PathWith(".CDX"));
  if (home_.files.FileExists(PathWith(".SAV.FPT")))
    home_.files.Rename(PathWith(".SAV.FPT"), PathWith(".FPT"));
  home_.files.Rename(PathWith(".SAV"), Path());
}

// Opens the table for this workstation alone, its header and index mended where they are damaged, its tags
// made where it lacks one.
DataHandle TableBase::OpenMended() {
  DataHandle data = home_.data.OpenDatabaseSilent(Path(), true);
  if (data == engine::kErrorDataHeader && home_.data.FixDatabaseHeader(Path()) == engine::kSuccess) {
    data = home_.data.OpenDatabaseSilent(Path(), true);
  }
  if (data > 0) {
    if (!FindMissingTag(home_.data, data, layout_.tags)) return data;
    const TagsToBuild tags(home_.data, data, layout_.tags);
    home_.data.CloseDatabase(data);
    return OpenWithIndex(tags.All());
  }
  if (LackOf(data)) return engine::kErrorFieldName;
  return IsIndexDamage(data) && !layout_.tags.empty() ? OpenWithIndex(layout_.tags) : data;
}

DataHandle TableBase::OpenWithIndex(std::span<const TagLayout> tags) {
  const int code = home_.data.RebuildIndex(Path(), tags);
  return code == engine::kSuccess ? home_.data.OpenDatabaseSilent(Path(), true) : code;
}

}  // namespace tallwick
