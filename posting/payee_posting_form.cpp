#include "posting/payee_posting_form.h"

#include "core/text.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::size_t kMostOffers = 12;

}  // namespace

PayeePostingForm::PayeePostingForm(Session& session, const PostingScreen& screen, ScreenOpener* opener,
                                   const PayeeEntries& entries)
    : PostingForm(session, screen, opener), entries_(entries), payees_(session.Company().agent) {}

void PayeePostingForm::AddPayeeLookUp() {
  Add(ControlKind::kButton, "cmdRolodex", "Payees");
  AddLookUp({entries_.name, "txtFindPayee", "lstPayees", "cmdUsePayee", "cmdClosePayees",
             [this] {
               payees_.Refresh();
               return true;
             },
             rows_, [this](std::string_view text) { rows_->Show(payees_.Search(text)); },
             [this](std::size_t row, int) { return UsePayee(row); }},
            {"Find Payee", "Payees", "Use Payee", "Close Payees"});
}

void PayeePostingForm::OnChange(Control& control) {
  if (control.name == entries_.name) SetRows(entries_.name, payees_.Offers(control.text, kMostOffers));
  PostingForm::OnChange(control);
}

// An offer comes with its address.
void PayeePostingForm::OnChoose(Control& control) {
  if (control.name != entries_.name) return;
  if (const Payee* known = payees_.Find(control.text)) ShowPayee(Payee(*known));
}

void PayeePostingForm::OnClick(Control& control) {
  if (control.name == "cmdRolodex") OpenPayees();
  PostingForm::OnClick(control);
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

bool PayeePostingForm::UsePayee(std::size_t row) {
  if (row >= rows_->RowCount()) return false;
  const Payee payee = rows_->Payees()[row];
  const std::string& old = Text(entries_.name);
  if (!Trim(old).empty()) {
    const std::string question = "Replace payee " + Quoted(old) + " with " + Quoted(payee.name) + " ?";
    if (Boxes().Show({BoxIcon::kQuestion, Caption(), question, BoxButtons::kYesNo, BoxAnswer::kYes}) !=
        BoxAnswer::kYes) {
      return false;
    }
  }
  ShowPayee(payee);
  return true;
}

}  // namespace tallwick
