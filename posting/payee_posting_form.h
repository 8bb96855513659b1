// A posting screen with a payee: names are offered while one is typed, and cmdRolodex opens the list of
// payees with a search, above the register.
//
// Controls of the look-up: cmdRolodex, and while it is open txtFindPayee, lstPayees, cmdUsePayee and
// cmdClosePayees.
#pragma once

#include <memory>
#include <string_view>

#include "posting/payee_book.h"
#include "posting/posting_form.h"

namespace tallwick {

// The entries that a payee fills; "" for the address lines of a screen that has none.
struct PayeeEntries {
  std::string_view name;
  std::string_view address1 = {};
  std::string_view address2 = {};
  std::string_view city_state = {};
};

class PayeePostingForm : public PostingForm {
 protected:
  PayeePostingForm(Session& session, const PostingScreen& screen, ScreenOpener* opener,
                   const PayeeEntries& entries);

  // Adds the controls of the look-up.
  void AddPayeeLookUp();
  // Remembers a payee to whom something was posted.
  void KeepPayee(const Payee& payee) { payees_.Keep(payee); }
  // The entries hold another item: their address is its own.
  void ForgetFilled() { filled_ = {}; }
  void OpenPayees() { OpenLookUp(entries_.name); }

  // The screen's events, as far as they concern payees.
  void OnOpen() override { payees_.Refresh(); }
  void OnChange(Control& control) override;
  void OnLeave(Control& control) override;
  void OnChoose(Control& control) override;
  void OnClick(Control& control) override;

 private:
  void ShowPayee(const Payee& payee);
  void ShowAddress(const Payee& payee);
  bool UsePayee(std::size_t row);

  const PayeeEntries entries_;
  PayeeBook payees_;
  Payee filled_;  // whose address has been filled in
  std::shared_ptr<PayeeRows> rows_ = std::make_shared<PayeeRows>();
};

}  // namespace tallwick
