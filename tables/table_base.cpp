#include "tables/table_base.h"

#include <algorithm>
#include <utility>

#include "core/text.h"
#include "tables/bank_code.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

// Expressions are compared as the engine reads them: without regard to case and blanks.
std::string Normalized(std::string_view expression) {
  std::string text = ToUpper(expression);
  std::erase(text, ' ');
  return text;
}

bool SameField(const FieldProperties& found, const FieldLayout& wanted) {
  return EqualsIgnoreCase(found.name, wanted.name) && found.type == wanted.type &&
         found.width == wanted.width && found.decimals == wanted.decimals;
}

bool SameTag(const TagProperties& found, const TagLayout& wanted) {
  return Normalized(found.expression) == Normalized(wanted.expression) &&
         Normalized(found.filter) == Normalized(wanted.filter) && (found.unique != 0) == wanted.unique &&
         found.descending == wanted.descending;
}

}  // namespace

TableBase::TableBase(const TableHome& home, const TableLayout& layout) : home_(home), layout_(layout) {
  if (!layout.per_bank) name_ = layout.name;
}

TableBase::~TableBase() {
  Close();
}

std::string TableBase::PathWith(std::string_view extension) const {
  return WithBackslash(Trim(home_.folder)) + name_ + std::string(extension);
}

bool TableBase::UseBank(std::string_view bank_code) {
  Close();
  if (!layout_.per_bank) return true;
  std::string problem = BankCodeProblem(bank_code);
  if (!problem.empty()) {
    home_.boxes.Critical(layout_.texts.open_title, problem);
    return false;
  }
  name_ = std::string(layout_.name) + TrimmedBankCode(bank_code);
  return true;
}

// --- Making and opening ---

bool TableBase::Exists(std::string_view bank_code) {
  return UseBank(bank_code) && home_.files.FileExists(Path());
}

int TableBase::Create(std::string_view bank_code) {
  return UseBank(bank_code) ? CreateNamed() : engine::kErrorParameter;
}

int TableBase::CreateMissing(std::string_view bank_code) {
  if (!UseBank(bank_code)) return engine::kErrorParameter;
  const int code = MakeEmptyOrFind();
  if (code != engine::kSuccess) ReportNotCreated(code);
  return code;
}

int TableBase::CreateNamed() {
  int code = MakeEmpty();
  if (code != engine::kSuccess) ReportNotCreated(code);
  return code;
}

int TableBase::MakeEmpty() {
  DataHandle made = home_.data.CreateDatabase(Path(), layout_.fields, layout_.tags);
  return made > 0 ? home_.data.CloseDatabase(made) : home_.data.LastErrorCode();
}

int TableBase::MakeEmptyOrFind() {
  const int code = MakeEmpty();
  return code == engine::kErrorExists ? static_cast<int>(engine::kSuccess) : code;
}

bool TableBase::HasTexts() const {
  return home_.files.SizeOf(PathWith(".FPT")).value_or(0) > kEmptyMemoBytes;
}

void TableBase::ReportNotCreated(int code) {
  const TableTexts& texts = layout_.texts;
  const std::string advice = home_.data.AdviceFor(code);
  home_.boxes.Critical(texts.create_title, name_ + std::string(texts.not_created) +
                                               std::string(texts.code_lead) + std::to_string(code) +
                                               std::string(texts.code_tail) +
                                               (advice.empty() ? advice : "\r\r" + advice));
}

bool TableBase::MayMake() {
  const std::string why = WhyLost();
  if (why.empty()) return true;
  const std::string text =
      Quoted(name_) + " is missing, but " + why +
      ".  Nobody should post before it is back.\r\rAnswer No, and have the file brought back.  Or answer "
      "Yes to restore a copy at once with Restore Databases: until then an empty table stands in its place." +
      (HasTexts() ? "  The memo file that is there is kept, with LOST in its name." : "") +
      "\r\rMake an empty one?";
  return home_.boxes.Show({BoxIcon::kCritical, std::string(layout_.texts.open_title), text,
                           BoxButtons::kYesNo, BoxAnswer::kNo}) == BoxAnswer::kYes;
}

int TableBase::MakeMissing() {
  if (!layout_.per_bank || home_.files.FileExists(Path())) return engine::kSuccess;
  if (!MayMake()) return engine::kErrorOpen;
  int code = MakeEmptyOrFind();
  if (code != engine::kSuccess) {
    ReportNotCreated(code);
  } else if (home_.made_on_open) {
    home_.made_on_open(name_);
  }
  return code;
}

DataHandle TableBase::Open(std::string_view bank_code) {
  if (!UseBank(bank_code)) return engine::kErrorParameter;
  int made = MakeMissing();
  if (made != engine::kSuccess) return made < 0 ? made : 0;
  DataHandle handle = OpenTelling(false);
  if (handle <= 0) {
    ReportOpenFailed(handle);
    if (handle == engine::kErrorDataHeader && OfferAfterDamagedHeader()) handle = OpenTelling(false);
  }
  return Settle(handle);
}

// With the rebuild that the user may have asked for.
DataHandle TableBase::OpenTelling(bool exclusive) {
  const DataHandle handle = OpenWhole(exclusive);
  if (handle > 0 || !home_.data.RebuildRequested()) return handle;
  home_.data.ClearRebuildRequest();
  return RebuildOnDisk({}) == engine::kSuccess ? OpenWhole(exclusive) : handle;
}

// The store offers a rebuild. Where a field is gone that a tag needs, none helps; and the suite's tables are
// rebuilt by an administrator, not by whoever comes first.
DataHandle TableBase::OpenWhole(bool exclusive) {
  const bool offers = !layout_.of_suite && !FindMissingField(home_.files, Path(), layout_);
  DataHandle handle = offers ? engine::kErrorDataHeader : home_.data.OpenDatabaseSilent(Path(), exclusive);
  if (handle == engine::kErrorDataHeader)
    handle = exclusive ? home_.data.OpenDatabaseExclusive(Path()) : home_.data.OpenDatabase(Path());
  if (exclusive) home_.data.SetSharedAccess();
  lack_ = LackOf(handle);
  if (handle <= 0 || !lack_) return lack_ ? lack_.code : handle;
  if (offers) return home_.data.RefuseOpened(handle, lack_.code, lack_.text);
  home_.data.CloseDatabase(handle);
  return lack_.code;
}

// The engine blames the index where a field is gone that a tag needs.
TableLack TableBase::LackOf(DataHandle handle) const {
  if (handle > 0) return FindLack(home_.data, handle, layout_);
  return handle == engine::kErrorTagExpression ? FindMissingField(home_.files, Path(), layout_) : TableLack();
}

DataHandle TableBase::OpenExclusive(std::string_view bank_code) {
  if (!UseBank(bank_code)) return engine::kErrorParameter;
  const DataHandle handle = OpenTelling(true);
  if (handle <= 0) ReportOpenFailed(handle);
  return Settle(handle);
}

DataHandle TableBase::OpenQuietly(std::string_view bank_code, bool exclusive) {
  const DataHandle handle = OpenAsItIs(bank_code, exclusive);
  lack_ = LackOf(handle);
  if (!lack_) return handle;
  Close();
  return lack_.code;
}

DataHandle TableBase::OpenAsItIs(std::string_view bank_code, bool exclusive) {
  lack_ = {};
  return UseBank(bank_code) ? Settle(home_.data.OpenDatabaseSilent(Path(), exclusive))
                            : engine::kErrorParameter;
}

void TableBase::ReportOpenFailed(int code) {
  std::string text = "Open database " + name_ + " failed.\r" + std::to_string(code);
  if (code == engine::kErrorFieldName) {
    text += "\r\r" + lack_.text + ".  " + lack_.advice;
  } else if (layout_.of_suite && IsIndexDamage(code)) {
    text += "\r\r" + WhyNotOpen(code) + ".  " + SuiteIndexAdvice(name_);
  } else if (const std::string advice(clsKVRData::StandstillAdvice(code)); !advice.empty()) {
    text += "\r\r" + advice + ".";
  }
  home_.boxes.Critical(layout_.texts.open_title, text);
}

DataHandle TableBase::Settle(DataHandle handle) {
  if (handle <= 0) return handle;
  handle_ = handle;
  fields_.clear();
  for (const FieldLayout& field : layout_.fields)
    fields_.push_back(home_.data.FindField(handle_, field.name));
  return handle_;
}

void TableBase::Close() {
  if (!IsOpen()) return;
  home_.data.CloseDatabase(handle_);
  handle_ = 0;
  fields_.clear();
}

LayoutState TableBase::CheckVersion() {
  std::vector<FieldProperties> fields = home_.data.FieldList(handle_);
  if (!std::equal(fields.begin(), fields.end(), layout_.fields.begin(), layout_.fields.end(), SameField)) {
    return LayoutState::kOtherFields;
  }
  if (home_.data.TagNames(handle_).size() != layout_.tags.size()) return LayoutState::kOtherTags;
  for (const TagLayout& tag : layout_.tags) {
    std::optional<TagProperties> found = home_.data.GetTagProperties(handle_, tag.name);
    if (!found || !SameTag(*found, tag)) return LayoutState::kOtherTags;
  }
  return LayoutState::kCurrent;
}

std::string TableBase::OtherTag() const {
  for (const TagLayout& tag : layout_.tags) {
    const std::optional<TagProperties> found = home_.data.GetTagProperties(handle_, tag.name);
    if (found && !SameTag(*found, tag)) return std::string(tag.name);
  }
  return {};
}

// --- Navigation ---

void TableBase::TellDamage(std::string_view text) {
  // Nobody may sit before a box while others wait for the unit.
  if (home_.data.UnitActive()) return home_.data.TellUnreadable(handle_, engine::kErrorFieldValue);
  home_.boxes.Critical("Read Database", text);
}

bool TableBase::Reached(int code) {
  failed_ = code < 0;
  // A unit of work must not stand on it, however often it was told.
  const bool tell = failed_ && (!std::exchange(told_unreadable_, true) || home_.data.UnitActive());
  if (tell) home_.data.TellUnreadable(handle_, code);
  return code == engine::kSuccess;
}

bool TableBase::Top(std::string_view tag) {
  return home_.data.SelectTag(handle_, tag) && Reached(home_.data.TopDatabase(handle_));
}

bool TableBase::Bottom(std::string_view tag) {
  return home_.data.SelectTag(handle_, tag) && Reached(home_.data.BottomDatabase(handle_));
}

bool TableBase::Skip(std::int64_t count) {
  return Reached(home_.data.SkipDatabase(handle_, count));
}

bool TableBase::GoTo(std::int32_t record) {
  return Reached(home_.data.GoToRecordNo(handle_, record));
}

bool TableBase::Seek(std::string_view tag, std::string_view key) {
  const bool found =
      home_.data.SelectTag(handle_, tag) && Reached(home_.data.SeekDatabase(handle_, UpperKey(key)));
  walk_start_ = found ? RecordNumber() : 0;
  return found;
}

bool TableBase::SeekNext(std::string_view key) {
  return Reached(home_.data.SeekDatabaseNext(handle_, UpperKey(key))) && RecordNumber() != walk_start_;
}

FieldHandle TableBase::Field(std::string_view name) const {
  auto found = std::find_if(layout_.fields.begin(), layout_.fields.end(),
                            [name](const FieldLayout& field) { return EqualsIgnoreCase(field.name, name); });
  auto position = static_cast<std::size_t>(found - layout_.fields.begin());
  return position < fields_.size() ? fields_[position] : 0;
}

// --- Changing the current record ---

int TableBase::Lock(bool no_prompt) {
  if (RecordNumber() == 0) return engine::kNoRecord;
  if (!home_.data.LockTheRecord(handle_, no_prompt)) return home_.data.LastErrorCode();
  int code = home_.data.RefreshRecord(handle_);
  if (code == engine::kSuccess && home_.data.IsRecordDeleted(handle_)) code = engine::kNoRecord;
  if (code != engine::kSuccess) Unlock();
  return code;
}

int TableBase::Delete() {
  int code = Lock();
  if (code != engine::kSuccess) return code;
  home_.data.DeleteRecord(handle_);
  code = home_.data.WriteTheRecord(handle_);
  Unlock();
  return code;
}

}  // namespace tallwick
