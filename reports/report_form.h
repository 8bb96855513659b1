// A screen that shows a report: its commands preview, print and save it, Ctrl+P prints, Esc closes.
//
// Controls: mnuFilePreview, mnuFilePrint, mnuFilePdf, mnuFileExit.
#pragma once

#include <string>
#include <string_view>

#include "core/form.h"
#include "core/print_document.h"
#include "reports/report_document.h"
#include "shell/session.h"

namespace tallwick {

class ReportForm : public Form {
 protected:
  ReportForm(std::string name, Session& session);

  // What is shown now.
  virtual ReportDocument Report() = 0;
  void SetPrintable(bool on);

  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;

  Session& session_;

 private:
  void Send(bool (DocumentPrinter::*how)(const PrintDocument&));
};

}  // namespace tallwick
