// The screens of the maintenance commands. Each runs its command as soon as it is open and closes when there
// is nothing left to read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/text_rows.h"
#include "maintenance/maintenance_run.h"
#include "maintenance/purge.h"
#include "maintenance/work_form.h"

namespace tallwick {

// frmMaintenance: rebuild and reindex, update of versions, pack. Controls: those of WorkForm and grdTables.
class FrmMaintenance : public WorkForm {
 public:
  FrmMaintenance(Session& session, MaintenanceOperation operation);

 protected:
  void OnOpen() override;
  void Tell(std::string_view table, std::string_view result) override;

 private:
  MaintenanceOperation operation_;
  std::shared_ptr<TextRows> tables_;
};

// frmCopyDatabases and frmRestoreDatabases. Controls: those of WorkForm and lblFolder.
class FrmDataCopy : public WorkForm {
 public:
  enum class Direction { kCopy, kRestore };
  FrmDataCopy(Session& session, Direction direction);

 protected:
  void OnOpen() override;

 private:
  Direction direction_;
};

// frmCheckDatabaseVersion. Controls: those of WorkForm and grdVersions.
class FrmCheckDatabaseVersion : public WorkForm {
 public:
  explicit FrmCheckDatabaseVersion(Session& session);

 protected:
  void OnOpen() override;
};

// frmCheckXReference, of the open bank. Controls: those of WorkForm, lblNote, chkDisplay, chkCreateMissing,
// chkStopOnErrors, cmdOk, grdFindings, lblResult.
class FrmCheckXReference : public WorkForm {
 public:
  explicit FrmCheckXReference(Session& session);

 protected:
  void OnOpen() override;
  void OnClick(Control& control) override;

 private:
  void Check();
};

// frmPurgeFiles. The escrow files are this workstation's alone until it closes. Controls: those of WorkForm,
// txtThrough, cmdFind, grdFiles, lblResult, cmdOk.
class FrmPurgeFiles : public WorkForm {
 public:
  explicit FrmPurgeFiles(Session& session);

 protected:
  void OnOpen() override;
  void OnChange(Control& control) override;
  void OnClick(Control& control) override;
  bool OnClose() override;

 private:
  void Find();
  void Purge();
  void ShowFiles(std::vector<ClosedFile> files);

  ExclusiveAccess access_;
  Period through_;
  std::vector<ClosedFile> files_;
};

}  // namespace tallwick
