// A screen that shows a report: its commands preview, print and save it, Ctrl+P prints, Esc closes.
//
// Controls: mnuFilePreview, mnuFilePrint, mnuFilePdf, mnuFileRtf, mnuFileExit; on a screen that has them the
// buttons cmdPreview, cmdPrint, cmdPdf and cmdRtf, which do the same.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/print_document.h"
#include "reports/report_document.h"
#include "shell/routed_form.h"

namespace tallwick {

class ReportForm : public RoutedForm {
 public:
  // What is shown now; nullopt where there is nothing to print.
  virtual std::optional<ReportDocument> Report() = 0;

 protected:
  ReportForm(std::string name, Session& session, ScreenOpener* opener);

  void AddReportButtons();
  void SetPrintable(bool on);
  // Carries out one of the commands or buttons; false when it is another control, or the report did not go
  // where it was sent.
  bool Send(std::string_view control);
  // The report has gone to paper or to a file.
  virtual void Sent() {}

  void OnMenu(Control& control) override;
  bool OnKey(std::string_view key) override;
};

}  // namespace tallwick
