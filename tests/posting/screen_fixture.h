// A posting screen over an office with the bank FNB, and the tables behind it.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/office.h"

namespace tallwick::testing {

template <class Screen>
class PostingScreenTest : public ::testing::Test {
 protected:
  void OpenOffice(const std::function<void(BankRecord&)>& change = {}) {
    ASSERT_TRUE(office_.Open(change));
    office_.suite.files = {"24-0117", "24-0118"};
    // A person may be long in coming: until then every other workstation must be able to write.
    office_.boxes.on_show = [this](const Box& box) {
      EXPECT_FALSE(office_.session->Data().UnitActive()) << box.text;
      if (meanwhile_) std::exchange(meanwhile_, nullptr)();
    };
    tables_ = std::make_unique<BankTables>(office_.session->Home());
    ASSERT_TRUE(tables_->Open("FNB"));
    OpenForm();
  }
  virtual std::unique_ptr<Screen> MakeForm() {
    if constexpr (std::is_constructible_v<Screen, Session&, ScreenOpener&>) {
      return std::make_unique<Screen>(*office_.session, office_);
    } else if constexpr (std::is_constructible_v<Screen, Session&, ScreenOpener*>) {
      return std::make_unique<Screen>(*office_.session, &office_);
    } else {
      return std::make_unique<Screen>(*office_.session);
    }
  }
  void OpenForm() {
    form_ = MakeForm();
    ASSERT_TRUE(form_->OpenTables());
    form_->Opened();
  }
  void Set(std::string_view control, std::string text, int index = 0) {
    form_->Enter(control, index);
    form_->Change(control, std::move(text), index);
  }
  // Posts what has been entered; nothing may be said about it.
  void Post() {
    form_->Click("cmdOk");
    ASSERT_EQ(office_.TakeTexts(), std::vector<std::string>());
  }
  struct Step {
    const char *control, *text, *message, *focus;
    int index = 0;        // of the control that is set
    int focus_index = 0;  // of the one that has the cursor afterwards
  };
  // Everything is wrong at first; each step mends what was refused.
  void RefusesInOrder(std::span<const Step> steps) {
    for (const Step& step : steps) {
      Set(step.control, step.text, step.index);
      form_->Click("cmdOk");
      EXPECT_EQ(office_.TakeTexts(), std::vector<std::string>{step.message});
      ASSERT_NE(form_->Focus(), nullptr);
      EXPECT_EQ(form_->Focus()->name, step.focus) << step.message;
      EXPECT_EQ(form_->Focus()->index, step.focus_index) << step.message;
    }
  }
  XrefTable& Xrefs() { return office_.session->Company().xrefs; }
  BankRecord Bank() { return *office_.session->Company().banks.Find("FNB"); }
  void ChangeBank(const std::function<void(BankRecord&)>& change) {
    BankRecord bank = Bank();
    change(bank);
    ASSERT_EQ(office_.session->Company().banks.Update(bank), 0);
  }
  std::string Log() { return office_.ReadFile("Logs\\FNB\\Audit_Trail.log"); }

  // As another workstation reconciles the account.
  void Reconcile(const Period& through) {
    ChangeBank([&](BankRecord& bank) { bank.reconciled = through; });
  }

  Office office_;
  std::function<void()> meanwhile_;  // done once, while the next box waits for its answer
  std::unique_ptr<BankTables> tables_;
  std::unique_ptr<Screen> form_;
};

}  // namespace tallwick::testing
