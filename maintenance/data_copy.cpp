#include "maintenance/data_copy.h"

#include <algorithm>

#include "core/text.h"
#include "maintenance/byte_progress.h"
#include "maintenance/control_file.h"
#include "maintenance/copy_folder.h"
#include "maintenance/copy_manifest.h"
#include "maintenance/exclusive_access.h"
#include "shell/company_tables.h"
#include "shell/main_commands.h"
#include "store/clsKVRData.h"

namespace tallwick {
namespace {

constexpr std::string_view kTitle = "Copy Databases";
constexpr std::string_view kNotWhole = "Escrow databases may NOT have been copied successfully...";

class CopyRun {
 public:
  CopyRun(Session& session, WorkProgress& progress, bool tells_abort)
      : session_(session),
        files_(session.Files()),
        boxes_(session.Boxes()),
        bytes_(progress),
        folder_(CopyFolder(session)),
        tells_abort_(tells_abort) {}

  CopyOutcome Run() {
    if (!IsConfirmed() || !CopyQuietly() || !Prove()) {
      outcome_.message = "Copy Databases Aborted...";
      outcome_.stays = WhatStays();
      if (tells_abort_) boxes_.Exclaim(kTitle, outcome_.message + outcome_.stays);
      return std::move(outcome_);
    }
    Finish();
    return std::move(outcome_);
  }

 private:
  std::string WhatStays() const {
    if (!began_) return {};
    return std::string(
               "\r\rThe files copied until then stay in the copy folder, marked as incomplete; the "
               "copy before them is gone.  ") +
           (outcome_.failed.empty() ? "Copy again."
                                    : "See that its disk has room and may be written, and copy again.");
  }

  bool IsConfirmed() {
    const CopyStamp last = ReadStamp(session_);
    const std::string text = "Data files will be copied to " + files_.PlatformPath(folder_) +
                             "\r\rLast copy was made " + last.When() + "\rPrepared by: " + last.user;
    return boxes_.Show({BoxIcon::kQuestion, std::string(kTitle), text, BoxButtons::kOkCancel,
                        BoxAnswer::kOk}) == BoxAnswer::kOk;
  }

  bool Refuse(const std::string& text) {
    boxes_.Critical(kTitle, text);
    return false;
  }

  // The old copy steps aside whole before it goes, so that one which cannot be removed stays as it was.
  bool PrepareFolder() {
    const std::string aside = session_.DataPath() + "DBFCOPYS~\\";
    const std::string shown = files_.PlatformPath(folder_);
    bool removed = files_.RemoveFolder(aside);
    if (removed && files_.FolderExists(folder_)) {
      removed = files_.Rename(WithoutBackslash(folder_), WithoutBackslash(aside));
      if (removed && !files_.RemoveFolder(aside)) {
        files_.Rename(WithoutBackslash(aside), WithoutBackslash(folder_));
        removed = false;
      }
    }
    if (!removed) {
      return Refuse(
          "The last copy in " + shown +
          " could not be removed.  Close whatever uses its files, or have it removed by somebody who "
          "may, and copy again.");
    }
    began_ = true;
    if (!files_.CreateFolder(folder_) || !WriteManifest(false)) {
      return Refuse(
          "The folder " + shown +
          " could not be made or written.  See that the disk is neither full nor write-protected, and "
          "copy again.");
    }
    return true;
  }

  bool WriteManifest(bool complete) {
    manifest_.complete = complete;
    return files_.Write(folder_ + std::string(CopyManifest::kFileName), ManifestText(manifest_));
  }

  // Nobody posts while the files are read, so that no table is ahead of another; nor does another workstation
  // make a copy.
  bool CopyQuietly() {
    const int code = session_.Data().HoldWriters(session_.DataPath());
    if (code == engine::kErrorReadOnly || code == engine::kErrorCopying || code == engine::kErrorDiskFull)
      return Refuse(session_.Data().AdviceFor(code));
    if (code != engine::kSuccess) {
      return Refuse("Other workstations could not be kept from posting while the copy is made (" +
                    std::string(engine::error4text(code)) + ").  Try again later...");
    }
    const bool copied = PrepareFolder() && CopyGroups();
    session_.Data().ReleaseWriters();
    ReopenCompany(session_);
    return copied;
  }

  bool CopyGroups() {
    const std::vector<FileGroup> walked = WalkedGroups(files_, session_.DataPath());
    const std::vector<FileGroup> shared = SharedGroups(files_, session_.DataPath());
    // Read for the digest, then copied.
    bytes_.Begin(2 *
                 (SizeOf(files_, session_.DataPath(), walked) + SizeOf(files_, session_.DataPath(), shared)));
    for (const FileGroup& group : walked) {
      if (!CopyGroup(group)) return false;
    }
    for (TableBase* table : session_.Company().All()) table->Close();
    return std::all_of(shared.begin(), shared.end(),
                       [this](const FileGroup& group) { return CopyGroup(group); });
  }

  bool CopyGroup(const FileGroup& group) {
    if (!bytes_.Show("Copying " + group.name + " to " + files_.PlatformPath(folder_) + ".")) return false;
    if (group.files.empty()) return GoesOnWithout(group.name);
    for (const std::string& name : group.files) {
      const std::optional<CopiedFile> source =
          CopyManifest::CanList(name) ? Fingerprint(files_, session_.DataPath(), name, bytes_.OfFile())
                                      : std::nullopt;
      if (source && files_.Copy(session_.DataPath() + name, folder_ + name, bytes_.OfFile())) {
        manifest_.files.push_back(*source);
      } else if (bytes_.IsStopped() || !GoesOnWithout(name)) {
        return false;
      }
    }
    return true;
  }

  bool GoesOnWithout(const std::string& name) {
    outcome_.failed.push_back(name);
    return boxes_.Show({BoxIcon::kCritical, std::string(kTitle), name + " was not copied.",
                        BoxButtons::kOkCancel, BoxAnswer::kOk}) == BoxAnswer::kOk;
  }

  bool Prove() {
    std::vector<CopiedFile> proven;
    bytes_.Begin(SizeOf(manifest_));
    for (const CopiedFile& file : manifest_.files) {
      if (!bytes_.Show("Verifying " + file.name + ".")) return false;
      if (Fingerprint(files_, folder_, file.name, bytes_.OfFile()) == file) {
        proven.push_back(file);
        outcome_.files.push_back(file.name);
      } else if (bytes_.IsStopped() || !GoesOnWithout(file.name)) {
        return false;
      }
    }
    manifest_.files = std::move(proven);
    return true;
  }

  void Finish() {
    const bool whole = outcome_.failed.empty();
    const bool written = WriteManifest(whole) && WriteStamp(session_);
    const bool controlled = SetupApplicationControlFile(session_);
    if (!controlled) boxes_.Exclaim(kTitle, "Function SetupApplicationControlFile returned False...");
    outcome_.completed = whole && written && controlled;
    if (outcome_.completed) {
      outcome_.message = "Copy Databases Completed...";
      boxes_.Inform(kTitle, outcome_.message);
    } else {
      outcome_.message = kNotWhole;
      boxes_.Exclaim(kTitle, kNotWhole);
    }
  }

  Session& session_;
  FileSystem& files_;
  MessageBoxes& boxes_;
  ByteProgress bytes_;
  std::string folder_;
  bool tells_abort_;
  bool began_ = false;  // the last copy has been removed
  CopyManifest manifest_;
  CopyOutcome outcome_;
};

}  // namespace

CopyOutcome CopyDatabases(Session& session, WorkProgress& progress) {
  return MayCarryOut(session, "mnuFileCopyDatabases") ? CopyRun(session, progress, true).Run()
                                                      : CopyOutcome();
}

CopyOutcome BackUpDatabases(Session& session, WorkProgress& progress) {
  return CopyRun(session, progress, false).Run();
}

}  // namespace tallwick
