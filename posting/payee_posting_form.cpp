#include "posting/payee_posting_form.h"

#include "core/text.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::size_t kMostOffers = 12;
constexpr std::string_view kLookUp[] = {"txtFindPayee", "lstPayees", "cmdUsePayee", "cmdClosePayees"};

}  // namespace

PayeePostingForm::PayeePostingForm(Session& session, const PostingScreen& screen, ScreenOpener* opener,
                                   const PayeeEntries& entries)
    : PostingForm(session, screen, opener), entries_(entries), payees_(session.Company().agent) {}

void PayeePostingForm::AddPayeeLookUp() {
  Add(ControlKind::kButton, "cmdRolodex", "Payees");
  Add(ControlKind::kText, "txtFindPayee", "F&ind Payee");
  Add(ControlKind::kGrid, "lstPayees", "Payees");
  Add(ControlKind::kButton, "cmdUsePayee", "Use Pa&yee");
  Add(ControlKind::kButton, "cmdClosePayees", "Close Payees");
  for (std::string_view control : kLookUp) At(control).visible = false;
}

void PayeePostingForm::OnChange(Control& control) {
  if (control.name == entries_.name) SetRows(entries_.name, payees_.Offers(control.text, kMostOffers));
  if (control.name == "txtFindPayee") ShowFoundPayees();
}

// An offer comes with its address.
void PayeePostingForm::OnChoose(Control& control) {
  if (control.name != entries_.name) return;
  if (const Payee* known = payees_.Find(control.text)) ShowPayee(Payee(*known));
}

void PayeePostingForm::OnClick(Control& control) {
  if (control.name == "cmdRolodex") OpenPayees();
  if (control.name == "cmdUsePayee") UsePayee();
  if (control.name == "cmdClosePayees") ClosePayees();
}

bool PayeePostingForm::OnKey(std::string_view key) {
  const std::string_view at = Focus() != nullptr ? std::string_view(Focus()->name) : "";
  if (key == "F4" && at == entries_.name) {
    OpenPayees();
    return true;
  }
  if (key == "Enter" && (at == "txtFindPayee" || at == "lstPayees")) {
    UsePayee();
    return true;
  }
  if (key == "Esc" && At("lstPayees").visible) {
    ClosePayees();
    return true;
  }
  return PostingForm::OnKey(key);
}

void PayeePostingForm::ShowPayee(const Payee& payee) {
  const auto show = [this](std::string_view entry, const std::string& text) {
    if (!entry.empty()) SetText(entry, text);
  };
  show(entries_.name, payee.name);
  show(entries_.address1, payee.address1);
  show(entries_.address2, payee.address2);
  show(entries_.city_state, payee.city_state);
}

void PayeePostingForm::OpenPayees() {
  if (!At(entries_.name).enabled) return;
  payees_.ReadAnew();
  for (std::string_view control : kLookUp) SetVisible(control, true);
  ShowFoundPayees();
  SetFocus("txtFindPayee");
}

// What was searched for is no part of the entry: the audit trail must not meet it.
void PayeePostingForm::ClosePayees() {
  SetFocus(entries_.name);
  SetText("txtFindPayee", {});
  for (std::string_view control : kLookUp) SetVisible(control, false);
}

void PayeePostingForm::ShowFoundPayees() {
  rows_->Show(payees_.Search(Text("txtFindPayee")));
  SetSource("lstPayees", rows_);
  RowsChanged("lstPayees");
  SetSelected("lstPayees", rows_->RowCount() > 0 ? 1 : 0);
}

void PayeePostingForm::UsePayee() {
  const int row = At("lstPayees").selected;
  if (row <= 0 || static_cast<std::size_t>(row) > rows_->RowCount()) return;
  // The list may have stood open for long.
  const Payee listed = rows_->Payees()[static_cast<std::size_t>(row) - 1];
  const Payee* now = payees_.Find(listed.name);
  const Payee payee = now != nullptr ? *now : listed;
  const std::string& old = Text(entries_.name);
  if (!Trim(old).empty()) {
    const std::string question = "Replace payee " + Quoted(old) + " with " + Quoted(payee.name) + " ?";
    if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kYes}) !=
        BoxAnswer::kYes) {
      return;
    }
  }
  ShowPayee(payee);
  ClosePayees();
}

}  // namespace tallwick
