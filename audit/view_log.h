// frmViewLog: the audit trail viewer of the open bank. It reads the log, searches it, shows what was found
// and previews, prints and saves it; and it says whether the log stands as it was written.
//
// Controls, in order:
//   txtLogFile
//   menu        mnuFileRefresh, mnuFilePreview, mnuFilePrint, mnuFilePdf, mnuFileProve, mnuFileExit
//   criteria    cboReferenceNum, cboLogin, cboCompName, lstTXCode, txtFrom, txtTo, lstEntries, lstControls
//   grids       fraGrids, cboGrids, cmdAddGrid, lstGrids, cmdDeleteGrid, optGridSelect(1..3), txtGridColumns,
//               lstColumnList, chkPrintEntireGrid, lblGridNote; seen only where the log holds grid changes
//   options     chkMeetAllValues, optOrder(1 ascending, 2 descending), chkLandscape, cmdSearch, cmdClear
//   result      grdEntries, lblFound, lblProof
// Invariant: what grdEntries shows is the result of the last search over the log as it was last read;
// criteria changed since do not touch it, only the order and the choice of grids do.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "audit/audit_document.h"
#include "audit/audit_search.h"
#include "core/form.h"
#include "shell/session.h"

namespace tallwick {

class FrmViewLog : public Form {
 public:
  // For the bank that is open now.
  explicit FrmViewLog(Session& session);

 protected:
  void OnOpen() override;
  void OnLeave(Control& control) override;
  void OnChange(Control& control) override;
  void OnChoose(Control& control) override;
  void OnMark(Control& control, int row) override;
  void OnClick(Control& control) override;
  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;

 private:
  void AddControls();
  void ReadLog();
  void OfferValues();
  void ShowProof();
  void Prove();
  void Search();
  void RunSearch();
  AuditCriteria Criteria();
  void ShowFound();
  void Clear();
  void ToPrinter(bool (DocumentPrinter::*how)(const PrintDocument&));

  void AddGrid();
  void DeleteGrid();
  void ShowGrids();
  void ShowGridChoice();
  void TakeGridChoice();
  GridChoice* CurrentGrid();

  Session& session_;
  std::string bank_code_;
  std::string path_;
  std::shared_ptr<const AuditLog> log_;
  AuditCriteria searched_;  // of the result shown
  std::vector<std::uint32_t> found_;
  GridView view_;
};

}  // namespace tallwick
