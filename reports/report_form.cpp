#include "reports/report_form.h"

#include "reports/report_pages.h"

namespace tallwick {

ReportForm::ReportForm(std::string name, Session& session)
    : Form(std::move(name), session.Boxes()), session_(session) {
  Add(ControlKind::kMenu, "mnuFilePreview", "Print Pre&view...");
  Add(ControlKind::kMenu, "mnuFilePrint", "&Print...");
  Add(ControlKind::kMenu, "mnuFilePdf", "Save as P&DF...");
  Add(ControlKind::kMenu, "mnuFileExit", "E&xit");
}

void ReportForm::SetPrintable(bool on) {
  for (std::string_view command : {"mnuFilePreview", "mnuFilePrint", "mnuFilePdf"}) SetEnabled(command, on);
}

void ReportForm::OnMenu(Control& control) {
  if (control.name == "mnuFilePreview") Send(&DocumentPrinter::Preview);
  if (control.name == "mnuFilePrint") Send(&DocumentPrinter::Print);
  if (control.name == "mnuFilePdf") Send(&DocumentPrinter::SavePdf);
  if (control.name == "mnuFileExit") Close();
}

bool ReportForm::OnKey(std::string_view key) {
  if (key == "Esc") {
    Close();
    return true;
  }
  if (key != "Ctrl+P") return false;
  Menu("mnuFilePrint");
  return true;
}

void ReportForm::Send(bool (DocumentPrinter::*how)(const PrintDocument&)) {
  if (session_.Documents() == nullptr) {
    Boxes().Exclaim(Caption(), "There is no printer here.  Print from the desktop.");
    return;
  }
  (session_.Documents()->*how)(MakePages(Report()));
}

}  // namespace tallwick
