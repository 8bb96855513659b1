// The restore. Everything is first written beside the data; then, in one step, it takes their place. Until
// that step a failure, a stop or a crash leaves the old data, afterwards the new ones.
#include <algorithm>

#include "core/text.h"
#include "maintenance/byte_progress.h"
#include "maintenance/control_file.h"
#include "maintenance/copy_folder.h"
#include "maintenance/copy_manifest.h"
#include "maintenance/data_copy.h"
#include "maintenance/exclusive_access.h"
#include "maintenance/maintained_table.h"
#include "maintenance/stray_tables.h"
#include "maintenance/table_measures.h"
#include "shell/main_commands.h"
#include "store/clsKVRData.h"
#include "tables/bank_table.h"

namespace tallwick {
namespace {

constexpr std::string_view kTitle = "Restore Databases";
constexpr std::string_view kAborted = "Restore Databases Aborted...";
constexpr std::string_view kNotWhole = "Escrow databases may NOT have been restored successfully...";
constexpr std::string_view kUntouched = "Nothing has been changed: the data are as they were.";
constexpr std::size_t kProblemsShown = 10;

// Settings that belong to the workstation, where a copy has come from a remote reconciliation.
bool IsLocalSetting(std::string_view name) {
  const std::string start = ToUpper(name.substr(0, 10));
  return start == "CHECK_PRIN" || start == "MICR_PRINT" || start == "POSITIVE_P";
}

struct TableHeadFacts {
  bool has_memo = false;
  bool has_index = false;
};

// From a table's first 32 bytes: the version byte at 0 and the flags at 28 (1 index, 2 memo).
std::optional<TableHeadFacts> ReadTableHead(const FileSystem& files, const std::string& path) {
  const std::optional<std::string> head = files.ReadPart(path, 0, 32);
  if (!head || head->size() < 32) return std::nullopt;
  const auto version = static_cast<unsigned char>((*head)[0]);
  const auto flags = static_cast<unsigned char>((*head)[28]);
  const bool later_variant = version >= 0x30 && version <= 0x32;
  const bool memo = later_variant ? (flags & 2) != 0 : version == 0x83 || version == 0x8B || version == 0xF5;
  return TableHeadFacts{memo, (flags & 1) != 0};
}

class RestoreRun {
 public:
  RestoreRun(Session& session, WorkProgress& progress)
      : session_(session),
        files_(session.Files()),
        boxes_(session.Boxes()),
        data_(session.Data()),
        bytes_(progress),
        folder_(CopyFolder(session)) {}

  CopyOutcome Run() {
    ExclusiveAccess access(session_);
    if (!MayCarryOut(session_, "mnuFileRestoreDatabases") || !HasCopy() || !IsConfirmed() ||
        !IsProvenOrWanted() || !access.Take(kTitle))
      return Abort(kAborted);
    RemoveLeftovers();
    if (!StageAll()) {
      RemoveStaged();
      access.Return();
      return Abort(std::string(kAborted) + "\r\r" + std::string(kUntouched));
    }
    const int code = data_.ReplaceFiles(replaced_, removed_);
    const bool unfinished = data_.ReplaceUnfinished();
    if (code == engine::kSuccess) MakeIndexes();
    access.Return();
    code == engine::kSuccess ? Finish() : TellFailure(code, unfinished);
    return std::move(outcome_);
  }

 private:
  CopyOutcome Abort(std::string_view message) {
    outcome_.message = message;
    outcome_.files.clear();
    boxes_.Exclaim(kTitle, message);
    return std::move(outcome_);
  }

  bool HasCopy() {
    copied_ = WalkedGroups(files_, folder_);
    for (FileGroup& group : SharedGroups(files_, folder_)) {
      // One that the copy lacks is asked about only where there is a copy at all.
      if (!group.files.empty() || !copied_.empty()) copied_.push_back(std::move(group));
    }
    if (!copied_.empty()) return true;
    boxes_.Critical(
        kTitle, "There is no copy in " + files_.PlatformPath(folder_) + ".  Make one before you restore it.");
    return false;
  }

  bool IsConfirmed() {
    const CopyStamp stamp = ReadStamp(session_);
    const std::string text = "Data files will be restored to " + files_.PlatformPath(session_.DataPath()) +
                             "\r\rBackup was made " + stamp.When() + "\rPrepared by: " + stamp.user;
    return boxes_.Show({BoxIcon::kQuestion, std::string(kTitle), text, BoxButtons::kOkCancel,
                        BoxAnswer::kOk}) == BoxAnswer::kOk;
  }

  bool IsProvenOrWanted() {
    const std::optional<std::string> text = files_.Read(folder_ + std::string(CopyManifest::kFileName));
    if (!text) return IsWantedUnproven();
    const std::vector<std::string> problems = ProblemsOf(ParseManifest(*text));
    if (bytes_.IsStopped() || problems.empty()) return !bytes_.IsStopped();
    std::string question = "The copy is not as it was made:\r";
    for (std::size_t i = 0; i < std::min(problems.size(), kProblemsShown); ++i)
      question += "\r" + problems[i];
    if (problems.size() > kProblemsShown)
      question += "\rand " + std::to_string(problems.size() - kProblemsShown) + " more";
    question += "\r\rRestore it all the same?";
    insisted_ = boxes_.Show({BoxIcon::kCritical, std::string(kTitle), question, BoxButtons::kYesNo,
                             BoxAnswer::kNo}) == BoxAnswer::kYes;
    return insisted_;
  }

  // From an earlier program, or put together by hand.
  bool IsWantedUnproven() {
    const std::string question = "The copy came without the list of its files (" +
                                 std::string(CopyManifest::kFileName) +
                                 "), so it can not be proven to be whole.\r\rRestore it all the same?";
    return boxes_.Show({BoxIcon::kExclamation, std::string(kTitle), question, BoxButtons::kYesNo,
                        BoxAnswer::kNo}) == BoxAnswer::kYes;
  }

  std::vector<std::string> ProblemsOf(const std::optional<CopyManifest>& manifest) {
    if (!manifest) return {std::string(CopyManifest::kFileName) + " cannot be understood"};
    std::vector<std::string> problems;
    if (!manifest->complete) problems.emplace_back("the copy was not completed");
    bytes_.Begin(SizeOf(*manifest));
    for (const CopiedFile& file : manifest->files) {
      if (!bytes_.Show("Verifying " + file.name + ".")) return problems;
      const std::optional<CopiedFile> found = Fingerprint(files_, folder_, file.name, bytes_.OfFile());
      if (bytes_.IsStopped()) return problems;
      if (!found)
        problems.push_back(file.name + " is missing");
      else if (*found != file)
        problems.push_back(file.name + " has changed");
    }
    for (const FileGroup& group : copied_) {
      for (const std::string& name : group.files)
        if (manifest->Find(name) == nullptr) problems.push_back(name + " did not belong to it");
    }
    return problems;
  }

  // --- Beside the data ---

  bool StageAll() {
    bytes_.Begin(SizeOf(files_, folder_, copied_));
    for (const FileGroup& group : copied_) {
      if (!bytes_.Show("Restoring " + group.name + " from " + files_.PlatformPath(folder_) + "."))
        return false;
      if (group.is_data_file && !MayOverwrite(group.name)) continue;
      if (!StageGroup(group) && (bytes_.IsStopped() || !GoesOnWithout(group.name))) return false;
    }
    return true;
  }

  bool MayOverwrite(const std::string& name) {
    if (!files_.FileExists(session_.DataPath() + name)) return true;
    std::string text = Quoted(name) + " exists - Overwrite?";
    if (IsLocalSetting(name)) {
      text += "\r\rNote: If restoring files from a remote reconciliation then the usual response is 'No'.";
    }
    return boxes_.Show({BoxIcon::kQuestion, "Restore Escrow Files", text, BoxButtons::kYesNo,
                        BoxAnswer::kNo}) == BoxAnswer::kYes;
  }

  bool GoesOnWithout(const std::string& name) {
    outcome_.failed.push_back(name);
    return boxes_.Show({BoxIcon::kCritical, std::string(kTitle), name + " was not copied.",
                        BoxButtons::kOkCancel, BoxAnswer::kOk}) == BoxAnswer::kOk;
  }

  // All files of a group or none: a table never meets an index or a memo file of another generation.
  bool StageGroup(const FileGroup& group) {
    std::vector<std::string> staged;
    bool whole = !group.files.empty() && (group.is_data_file || IsTableWhole(group));
    for (const std::string& name : group.files) {
      if (!whole) break;
      const std::string target = session_.DataPath() + name;
      staged.push_back(target);
      whole = files_.Copy(folder_ + name, data_.NewFormOf(target), bytes_.OfFile()) &&
              files_.SizeOf(data_.NewFormOf(target)) == files_.SizeOf(folder_ + name);
    }
    if (!whole) {
      for (const std::string& target : staged) files_.Remove(data_.NewFormOf(target));
      return false;
    }
    replaced_.insert(replaced_.end(), staged.begin(), staged.end());
    outcome_.files.insert(outcome_.files.end(), group.files.begin(), group.files.end());
    if (!group.is_data_file) RemoveStaleCompanions(group);
    return true;
  }

  static bool Holds(const FileGroup& group, std::string_view file) {
    return std::any_of(group.files.begin(), group.files.end(),
                       [&](const std::string& name) { return EqualsIgnoreCase(name, file); });
  }

  // Its own index can be made anew; its memos, and the index of a table that is not ours, cannot. Nor can a
  // table be replaced under another program that has it open.
  bool IsTableWhole(const FileGroup& group) {
    const std::string stem(BaseNameOf(group.name));
    const std::optional<TableHeadFacts> head = ReadTableHead(files_, folder_ + group.name);
    if (!head || (head->has_memo && !Holds(group, stem + ".FPT"))) return false;
    const bool ours = LayoutOfTable(stem) != nullptr;
    if (head->has_index && !ours && !Holds(group, stem + ".CDX")) return false;
    NoteCount(group.name);
    return !data_.IsInUse(session_.DataPath() + group.name);
  }

  // Opening such a table corrects its count, and what was lost is then no longer to be seen.
  void NoteCount(const std::string& name) {
    const std::optional<TableMeasures> measures = ReadTableMeasures(files_, folder_ + name);
    const std::uint64_t size = files_.SizeOf(folder_ + name).value_or(0);
    if (measures && measures->HeldIn(size) != measures->counted)
      miscounted_ += (miscounted_.empty() ? "" : ", ") + name;
  }

  void RemoveStaleCompanions(const FileGroup& group) {
    const std::string stem(BaseNameOf(group.name));
    for (const char* extension : {".CDX", ".FPT", ".SWP~"}) {
      const std::string path = session_.DataPath() + stem + extension;
      if (!Holds(group, stem + extension) && files_.FileExists(path)) removed_.push_back(path);
    }
    const TableLayout* layout = LayoutOfTable(stem);
    if (layout != nullptr && !layout->tags.empty() && !Holds(group, stem + ".CDX"))
      without_index_.emplace_back(session_.DataPath() + group.name, layout);
  }

  // Of restores that were cut short while they wrote.
  void RemoveLeftovers() {
    for (const std::string& name : files_.List(session_.DataPath(), "*~.*.tmp"))
      files_.Remove(session_.DataPath() + name);
  }

  void RemoveStaged() {
    for (const std::string& path : replaced_) files_.Remove(data_.NewFormOf(path));
  }

  // --- In their place ---

  void MakeIndexes() {
    for (const auto& [path, layout] : without_index_) {
      if (data_.RebuildIndex(path, layout->tags) != engine::kSuccess)
        outcome_.failed.emplace_back(FileNameOf(path));
    }
  }

  void TellFailure(int code, bool unfinished) {
    const std::string why = std::string(engine::error4text(code)) + " (" + std::to_string(code) + ")";
    outcome_.message = std::string(kNotWhole);
    if (unfinished) {
      boxes_.Critical(kTitle,
                      "The copy has been brought back, but could not be put in its place yet: " + why +
                          ".  Mend that, and start Escrow Accounting again: it finishes the restore "
                          "before it opens a table.");
      return;
    }
    outcome_.files.clear();
    boxes_.Critical(kTitle,
                    "The copy could not be put in its place: " + why + ".  " + std::string(kUntouched));
  }

  void Finish() {
    const bool controlled = SetupApplicationControlFile(session_);
    outcome_.completed = controlled && outcome_.failed.empty();
    if (outcome_.completed) {
      outcome_.message = "Restore Databases Completed...";
      boxes_.Inform(outcome_.message, "Escrow databases have been restored.");
    } else {
      outcome_.message = kNotWhole;
      boxes_.Exclaim(kTitle, kNotWhole);
    }
    if (const std::string text = WhatToSeeTo(); !text.empty()) boxes_.Exclaim(kTitle, text);
  }

  // What the restored data ask for before anybody works with them; "" for nothing.
  std::string WhatToSeeTo() {
    std::string text;
    if (insisted_) text = "The copy was not as it was made.  ";
    if (!miscounted_.empty()) text += "The number of records was not right in " + miscounted_ + ".  ";
    if (!text.empty())
      return text +
             "Have \"escrowctl verify\" say what is wrong with the data before anybody works with them.";
    const std::vector<StrayTable> strays = StraysThatStay();
    if (strays.empty()) return {};
    return "These tables stay, of banks that the copy does not have: " + ListOf(strays) +
           ".  Have them carried out of the folder before a bank gets such a code again.";
  }

  // None where the bank table does not say which banks there are, and none that the copy itself brought.
  std::vector<StrayTable> StraysThatStay() {
    const TableHome& home = session_.Home();
    bool whole = false;
    const std::vector<std::string> banks = EveryBankCode(home, &whole);
    if (!whole) return {};
    std::vector<StrayTable> strays = FindStrayTables(home, banks);
    std::erase_if(strays, [this](const StrayTable& stray) {
      return !stray.MayBeOfABank() || std::any_of(replaced_.begin(), replaced_.end(), [&](const auto& path) {
        return EqualsIgnoreCase(BaseNameOf(path), stray.name);
      });
    });
    return strays;
  }

  Session& session_;
  FileSystem& files_;
  MessageBoxes& boxes_;
  clsKVRData& data_;
  ByteProgress bytes_;
  std::string folder_;
  std::vector<FileGroup> copied_;
  std::vector<std::string> replaced_;  // paths in the data, their new forms beside them
  std::vector<std::string> removed_;
  std::vector<std::pair<std::string, const TableLayout*>> without_index_;
  bool insisted_ = false;   // the copy was restored although it is not as it was made
  std::string miscounted_;  // tables of the copy that hold fewer or more records than they count
  CopyOutcome outcome_;
};

}  // namespace

CopyOutcome RestoreDatabases(Session& session, WorkProgress& progress) {
  return RestoreRun(session, progress).Run();
}

}  // namespace tallwick
