#include "posting/payee_posting_form.h"

#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/keys.h"

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
               payees_.ReadAnew();
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

// Another payee that is typed over the one that was looked up does not get the check at that one's address.
void PayeePostingForm::OnLeave(Control& control) {
  if (control.name != entries_.name || !filled_.HasAddress()) return;
  const Payee shown{filled_.name, Text(entries_.address1), Text(entries_.address2),
                    Text(entries_.city_state)};
  if (shown != filled_ || UpperKey(Trim(control.text)) == UpperKey(filled_.name)) return;
  const Payee* known = payees_.Find(control.text);
  ShowAddress(known != nullptr ? Payee(*known) : Payee());
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
  SetText(entries_.name, payee.name);
  ShowAddress(payee);
}

void PayeePostingForm::ShowAddress(const Payee& payee) {
  if (entries_.address1.empty()) return;
  SetText(entries_.address1, payee.address1);
  SetText(entries_.address2, payee.address2);
  SetText(entries_.city_state, payee.city_state);
  filled_ = payee;
}

bool PayeePostingForm::UsePayee(std::size_t row) {
  if (row >= rows_->RowCount()) return false;
  // The list may have stood open for long.
  const Payee listed = rows_->Payees()[row];
  const Payee* now = payees_.Find(listed.name);
  const Payee payee = now != nullptr ? *now : listed;
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
