#include "maintenance/work_form.h"

#include <algorithm>

namespace tallwick {

WorkForm::WorkForm(std::string name, Session& session)
    : Form(std::move(name), session.Boxes()), session_(session) {
  Add(ControlKind::kLabel, "lblStatus");
  Add(ControlKind::kLabel, "prgProgress").visible = false;
  Add(ControlKind::kButton, "cmdCancel", "Close");
}

void WorkForm::SetWorking(bool working) {
  stopped_ = false;
  SetValue("prgProgress", 0);
  SetVisible("prgProgress", working);
  SetCaption("cmdCancel", working ? "Stop" : "Close");
  if (working) return;
  SetCaption("prgProgress", {});
}

void WorkForm::Show(std::string_view what, std::int64_t done, std::int64_t total) {
  SayStatus(std::string(what));
  const std::int64_t share = total > 0 ? std::clamp<std::int64_t>(100 * done / total, 0, 100) : 0;
  SetValue("prgProgress", static_cast<int>(share));
  SetCaption("prgProgress", std::to_string(share) + " %");
}

bool WorkForm::StopWanted() {
  stopped_ = stopped_ || StopAsked();
  return stopped_;
}

void WorkForm::OnClick(Control& control) {
  if (control.name == "cmdCancel") Close();
}

bool WorkForm::OnKey(std::string_view key) {
  if (key != "Esc") return false;
  Close();
  return true;
}

}  // namespace tallwick
