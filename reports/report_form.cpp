#include "reports/report_form.h"

#include <algorithm>

#include "reports/report_pages.h"
#include "reports/report_rtf.h"

namespace tallwick {
namespace {

bool Preview(DocumentPrinter& printer, const ReportDocument& report) {
  return printer.Preview(MakePages(report));
}

bool Print(DocumentPrinter& printer, const ReportDocument& report) {
  return printer.Print(MakePages(report));
}

bool SavePdf(DocumentPrinter& printer, const ReportDocument& report) {
  return printer.SavePdf(MakePages(report));
}

bool SaveRtf(DocumentPrinter& printer, const ReportDocument& report) {
  return printer.SaveRtf(report.name, MakeRtf(report));
}

// The ways of a report.
struct Way {
  std::string_view command;
  std::string_view caption;
  std::string_view button;
  std::string_view button_caption;
  bool (*send)(DocumentPrinter&, const ReportDocument&);
};
constexpr Way kWays[] = {
    {"mnuFilePreview", "Print Pre&view...", "cmdPreview", "Previe&w", Preview},
    {"mnuFilePrint", "&Print...", "cmdPrint", "&Print", Print},
    {"mnuFilePdf", "Save as P&DF...", "cmdPdf", "Sav&e as PDF", SavePdf},
    {"mnuFileRtf", "Save as RT&F...", "cmdRtf", "S&ave as RTF", SaveRtf},
};

}  // namespace

ReportForm::ReportForm(std::string name, Session& session, ScreenOpener* opener)
    : RoutedForm(std::move(name), session, opener) {
  for (const Way& way : kWays) Add(ControlKind::kMenu, std::string(way.command), std::string(way.caption));
  Add(ControlKind::kMenu, "mnuFileExit", "E&xit");
}

void ReportForm::AddReportButtons() {
  for (const Way& way : kWays)
    Add(ControlKind::kButton, std::string(way.button), std::string(way.button_caption));
}

void ReportForm::SetPrintable(bool on) {
  for (const Way& way : kWays) {
    SetEnabled(way.command, on);
    if (Find(way.button) != nullptr) SetEnabled(way.button, on);
  }
}

bool ReportForm::Send(std::string_view control) {
  const auto* way = std::find_if(std::begin(kWays), std::end(kWays), [&](const Way& one) {
    return one.command == control || one.button == control;
  });
  const std::optional<ReportDocument> report = way != std::end(kWays) ? Report() : std::nullopt;
  if (!report) return false;
  if (session_.Documents() == nullptr) {
    Boxes().Exclaim(Caption(), "There is no printer here.  Print from the desktop.");
    return false;
  }
  const bool done = way->send(*session_.Documents(), *report);
  if (done) Sent();
  return done;
}

void ReportForm::OnMenu(Control& control) {
  Send(control.name);
  if (control.name == "mnuFileExit") Close();
  RoutedForm::OnMenu(control);
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

}  // namespace tallwick
