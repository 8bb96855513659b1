#include "reports/report_form.h"

#include <algorithm>

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

std::vector<std::string> ReportGrid::Row(std::size_t row) {
  return row < lines_.size() ? lines_[row].cells : std::vector<std::string>();
}

std::string ReportGrid::RowStyle(std::size_t row) {
  return row < lines_.size() ? lines_[row].style : std::string();
}

bool ReportGrid::IsNumeric(std::size_t column) const {
  return std::find(numeric_.begin(), numeric_.end(), column) != numeric_.end();
}

}  // namespace tallwick
