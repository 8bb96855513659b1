#include "maintenance/table_upgrade.h"

#include <algorithm>

#include "core/text.h"
#include "maintenance/table_measures.h"
#include "tables/table_base.h"

namespace tallwick {
namespace {

constexpr int kRecordsPerUnit = 1000;
constexpr std::string_view kNewTable = "ESCROW_LAYOUT~";  // while it is being filled
constexpr std::string_view kParts[] = {".DBF", ".CDX", ".FPT"};

// The first field that the table lacks and that is never made up while there are records; "" for none.
std::string FieldNotToMakeUp(const Session& session, const MaintainedTable& table) {
  const std::string path = table.Path(session);
  const std::optional<TableMeasures> measures = ReadTableMeasures(session.Files(), path);
  if (!measures || measures->counted == 0) return {};
  for (const FieldLayout& field : MissingFields(session.Files(), path, *table.layout))
    if (!MayBeMadeUp(*table.layout, field)) return std::string(field.name);
  return {};
}

// The index anew. Tags whose fields the table lacks must wait until it has them.
int MakeIndex(const Session& session, const MaintainedTable& table, const engine::Progress& progress) {
  const std::string path = table.Path(session);
  std::vector<TagLayout> tags(table.layout->tags.begin(), table.layout->tags.end());
  for (const FieldLayout& field : MissingFields(session.Files(), path, *table.layout))
    std::erase_if(tags, [&](const TagLayout& tag) { return Needs(tag, field); });
  return session.Data().RebuildIndex(path, tags, progress);
}

// The records of a table of an older layout, copied into a new table of the present one.
class LayoutCopy {
 public:
  LayoutCopy(const Session& session, const MaintainedTable& table, const engine::Progress& progress)
      : data_(session.Data()),
        files_(session.Files()),
        table_(table),
        progress_(progress),
        old_path_(table.Path(session)),
        folder_(session.DataPath()) {}

  UpgradeResult Run(TableBase& old) {
    old_ = old.Handle();
    const std::string made_up = MissingFields();
    RemoveNew();
    fresh_ = data_.CreateDatabase(New(".DBF"), table_.layout->fields, table_.layout->tags);
    int code = fresh_ > 0 ? CopyRecords() : data_.LastErrorCode();
    // Without a new table the old one must not go.
    if (fresh_ <= 0 && code == engine::kSuccess) code = engine::kErrorCreate;
    const bool drops_fields = FieldsFallAway();
    if (fresh_ > 0) data_.CloseDatabase(fresh_);
    old.Close();
    if (code == engine::kSuccess && drops_fields) code = KeepOld();
    if (code == engine::kSuccess) code = PutInPlace();
    if (code != engine::kSuccess) RemoveNew();
    if (code == engine::kSuccess) return Done(made_up);
    return {code, problem_.empty() ? std::string(engine::error4text(code)) : problem_};
  }

 private:
  std::string New(std::string_view extension) const {
    return folder_ + std::string(kNewTable) + std::string(extension);
  }
  std::string Old(std::string_view extension) const {
    return old_path_.substr(0, old_path_.size() - 4) + std::string(extension);
  }
  void RemoveNew() {
    for (std::string_view part : kParts) files_.Remove(New(part));
  }

  UpgradeResult Done(const std::string& made_up) const {
    UpgradeResult result{engine::kSuccess, std::to_string(count_) + " records brought to the new layout"};
    if (count_ == 0 || made_up.empty()) return result;
    result.made_up = made_up;
    result.text += "; empty, since they were not there before: " + made_up;
    return result;
  }

  bool IsMissing(const FieldLayout& field) const { return data_.FindField(old_, field.name) == 0; }

  std::string MissingFields() const {
    std::string names;
    for (const FieldLayout& field : table_.layout->fields) {
      if (IsMissing(field)) names += (names.empty() ? "" : ", ") + std::string(field.name);
    }
    return names;
  }

  int CopyRecords() {
    const std::int32_t total = data_.RecordCount(old_);
    data_.SelectTag(old_, "");
    data_.SetReadAhead(old_, true);
    int code = data_.BeginUnit();
    int on = data_.TopDatabase(old_);
    for (; on == engine::kSuccess && code == engine::kSuccess; on = data_.SkipDatabase(old_)) {
      if (!data_.IsRecordDeleted(old_)) code = CopyRecord();
      if (code != engine::kSuccess || data_.CurrentRecord(old_) % kRecordsPerUnit != 0) continue;
      code = data_.CommitUnit();
      if (code == engine::kSuccess) code = data_.BeginUnit();
      if (!progress_(static_cast<std::uint32_t>(data_.CurrentRecord(old_)),
                     static_cast<std::uint32_t>(total)))
        code = engine::kStopped;
    }
    // A copy that ends at a record that cannot be read must not take the table's place.
    if (code == engine::kSuccess && on != engine::kEof) code = on;
    if (code == engine::kSuccess) return data_.CommitUnit();
    if (data_.UnitActive()) data_.RollbackUnit();
    return code;
  }

  int CopyRecord() {
    int code = data_.AddRecordStart(fresh_);
    for (const FieldLayout& field : table_.layout->fields) {
      if (code == engine::kSuccess) code = CopyField(field);
    }
    if (code == engine::kSuccess) code = data_.AddRecordFinishSilent(fresh_);
    if (code == engine::kSuccess) {
      ++count_;
      return code;
    }
    data_.SetChangedFlag(fresh_, false);
    problem_ = "record " + std::to_string(data_.CurrentRecord(old_)) + ": " +
               (code == engine::kErrorFieldValue ? data_.LastFieldProblem().text
                                                 : std::string(engine::error4text(code)));
    return code;
  }

  int CopyField(const FieldLayout& field) {
    const FieldHandle from = data_.FindField(old_, field.name);
    const FieldHandle to = data_.FindField(fresh_, field.name);
    if (from == 0) return engine::kSuccess;
    const char old_type = data_.GetFieldTypeByPointer(old_, from);
    if (old_type == 'M' || field.type == 'M') {
      const std::string memo = data_.GetMemoFieldValueByPointer(old_, from);
      if (const int code = data_.LastErrorCode(); code < 0) return code;
      return data_.SetMemoFieldValueByPointer(fresh_, to, memo);
    }
    // Leading blanks of a text count; of anything else they do not.
    std::string text = data_.GetStringFieldRawValueByPointer(old_, from);
    text = old_type == 'C' && field.type == 'C' ? std::string(TrimRight(text)) : std::string(Trim(text));
    if (text.empty()) return engine::kSuccess;
    if (field.type == 'C') return data_.SetStringFieldValueByPointer(fresh_, to, text);
    if (old_type == 'D') text = data_.GetDateFieldValueByPointer(old_, from);
    return data_.SetFieldTextByPointer(fresh_, to, text);
  }

  bool FieldsFallAway() const {
    const std::vector<FieldProperties> fields = data_.FieldList(old_);
    return std::any_of(fields.begin(), fields.end(), [&](const FieldProperties& field) {
      return std::none_of(
          table_.layout->fields.begin(), table_.layout->fields.end(),
          [&](const FieldLayout& wanted) { return EqualsIgnoreCase(wanted.name, field.name); });
    });
  }

  int KeepOld() {
    const int code = data_.CopyFile(old_path_, Old(".OLD"), progress_);
    const bool has_memo = code == engine::kSuccess && files_.FileExists(Old(".FPT"));
    return has_memo ? data_.CopyFile(Old(".FPT"), Old(".OLD.FPT"), progress_) : code;
  }

  // The new files must be on the disk before they count: the writers are held for that, since it empties the
  // journal.
  int PutInPlace() {
    int code = data_.HoldWriters(folder_);
    if (code != engine::kSuccess) return code;
    std::vector<std::string> replaced;
    std::vector<std::string> removed;
    for (std::string_view part : kParts) {
      if (files_.FileExists(New(part))) {
        if (!files_.Rename(New(part), data_.NewFormOf(Old(part)))) code = engine::kErrorRename;
        replaced.push_back(Old(part));
      } else if (files_.FileExists(Old(part))) {
        removed.push_back(Old(part));
      }
    }
    if (code == engine::kSuccess) code = data_.ReplaceFiles(replaced, removed);
    data_.ReleaseWriters();
    return code;
  }

  clsKVRData& data_;
  FileSystem& files_;
  const MaintainedTable& table_;
  const engine::Progress& progress_;
  std::string old_path_;
  std::string folder_;
  DataHandle old_ = 0;
  DataHandle fresh_ = 0;
  int count_ = 0;
  std::string problem_;
};

}  // namespace

UpgradeResult UpgradeTable(const Session& session, const MaintainedTable& table,
                           const engine::Progress& progress) {
  clsKVRData& data = session.Data();
  if (const std::string field = FieldNotToMakeUp(session, table); !field.empty())
    return {engine::kErrorFieldName,
            "it lacks the field " + field + ", which is never made up: restore the table from a copy"};
  TableBase old(session.Home(), *table.layout);
  int opened = old.OpenAsItIs(table.bank_code, true);
  bool index_made = false;
  if (IsIndexDamage(opened)) {
    opened = MakeIndex(session, table, progress);
    index_made = opened == engine::kSuccess;
    if (index_made) opened = old.OpenAsItIs(table.bank_code, true);
  }
  if (opened <= 0) return {opened, std::string(engine::error4text(opened))};
  switch (old.CheckVersion()) {
    case LayoutState::kCurrent:
      return {engine::kSuccess, index_made ? "index made anew" : "current already"};
    case LayoutState::kOtherFields:
      return LayoutCopy(session, table, progress).Run(old);
    case LayoutState::kOtherTags:
      break;
  }
  old.Close();
  const int code = data.RebuildIndex(table.Path(session), table.layout->tags, progress);
  return {code, code == engine::kSuccess ? "index brought to the new layout"
                                         : std::string(engine::error4text(code))};
}

}  // namespace tallwick
