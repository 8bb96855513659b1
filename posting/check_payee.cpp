// Payees on the check screen: offered while the name is typed, looked up in the list, kept after a post.
#include "core/text.h"
#include "posting/check_posting.h"

namespace tallwick {
namespace {

constexpr std::size_t kMostOffers = 12;
constexpr std::string_view kPayee = "txtCheckPayee";
constexpr std::string_view kLookUp[] = {"txtFindPayee", "lstPayees", "cmdUsePayee", "cmdClosePayees"};

}  // namespace

void FrmEditChecksPost::OfferPayees() {
  SetRows(kPayee, payees_.Offers(Text(kPayee), kMostOffers));
}

// The offer that was chosen, with its address.
void FrmEditChecksPost::TakeOffer() {
  if (const Payee* known = payees_.Find(Text(kPayee))) ShowPayee(Payee(*known));
}

void FrmEditChecksPost::ShowPayee(const Payee& payee) {
  SetText(kPayee, payee.name);
  SetText("txtCheckAddr1", payee.address1);
  SetText("txtCheckAddr2", payee.address2);
  SetText("txtCheckCityState", payee.city_state);
}

void FrmEditChecksPost::OpenPayees() {
  if (!At(kPayee).enabled) return;
  payees_.Refresh();
  for (std::string_view control : kLookUp) SetVisible(control, true);
  SetText("txtFindPayee", {});
  ShowFoundPayees();
  SetFocus("txtFindPayee");
}

void FrmEditChecksPost::ClosePayees() {
  SetFocus(kPayee);
  for (std::string_view control : kLookUp) SetVisible(control, false);
}

void FrmEditChecksPost::ShowFoundPayees() {
  payee_rows_->Show(payees_.Search(Text("txtFindPayee")));
  SetSource("lstPayees", payee_rows_);
  RowsChanged("lstPayees");
  SetSelected("lstPayees", payee_rows_->RowCount() > 0 ? 1 : 0);
}

void FrmEditChecksPost::UsePayee() {
  const int row = At("lstPayees").selected;
  if (row <= 0 || static_cast<std::size_t>(row) > payee_rows_->RowCount()) return;
  const Payee payee = payee_rows_->Payees()[static_cast<std::size_t>(row) - 1];
  const std::string& old = Text(kPayee);
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

void FrmEditChecksPost::KeepPayee(const CheckRecord& check) {
  payees_.Keep({check.payee, check.address1, check.address2, check.city_state});
}

}  // namespace tallwick
