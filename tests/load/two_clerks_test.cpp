// Two clerks at two workstations post into one bank at once, through the screens: checks, deposits, wires and
// vouchers. Both want the next number all the time; whoever is late takes the one after it.
#include <gtest/gtest.h>

#include <vector>

#include "posting/check_posting.h"
#include "posting/deposit_posting.h"
#include "posting/voucher_posting.h"
#include "posting/wire_posting.h"
#include "shell/bank_select.h"
#include "tests/load/company_check.h"
#include "tests/support/processes.h"

namespace tallwick::load {
namespace {

constexpr int kRounds = 40;

// A workstation with the four posting screens open.
class Desk : public ScreenOpener {
 public:
  explicit Desk(const std::string& folder) : place_(folder) {}
  bool Open() {
    if (!place_.Open() || !SelectBank(*place_.session, kBank)) return false;
    checks_ = std::make_unique<FrmEditChecksPost>(*place_.session, *this);
    deposits_ = std::make_unique<FrmEditDepositsPost>(*place_.session);
    wires_ = std::make_unique<FrmEditWiresPost>(*place_.session);
    vouchers_ = std::make_unique<FrmEditVouchersPost>(*place_.session);
    for (PostingForm* form : Forms()) {
      if (!form->OpenTables()) return false;
      form->Opened();
    }
    return true;
  }
  void OpenScreen(std::string_view, std::string_view) override {}

  // One of each kind; false where one was not posted.
  bool Work(int clerk, int round) {
    const std::string file = "24-" + std::to_string(round % 7);
    const std::string cents = std::to_string(round) + ".25";
    using Entries = std::vector<std::pair<const char*, std::string>>;
    return Post(*vouchers_, Entries{{"txtVCHRFileNumber", file}, {"txtVCHRAmount", cents}}) &&
           Post(*checks_, Entries{{"txtCheckPayee", "SMITH TITLE CO"},
                                  {"txtCheckAmount", cents},
                                  {"txtCheckFileNumber", file},
                                  {"txtCheckVoucherNumber", vouchers_->LastPosted()}}) &&
           Post(*deposits_, Entries{{"txtFileNumbers", file}, {"txtAmounts", cents}}, 1) &&
           Post(*wires_, Entries{{"txtWireNumber", std::to_string(clerk) + "-" + std::to_string(round)},
                                 {"txtWireAmount", cents},
                                 {"txtWireFileNumber", file}});
  }

 private:
  std::vector<PostingForm*> Forms() {
    return {checks_.get(), deposits_.get(), wires_.get(), vouchers_.get()};
  }
  // Fills and posts; questions are answered with Yes: they offer the next number.
  bool Post(PostingForm& form, const std::vector<std::pair<const char*, std::string>>& entries,
            int index = 0) {
    for (const auto& [control, text] : entries) form.Change(control, text, index);
    place_.boxes.answers.assign(kRounds, BoxAnswer::kYes);
    place_.boxes.shown.clear();
    const std::string before = form.LastPosted();
    form.Click("cmdOk");
    if (form.LastPosted() != before) return true;
    std::fprintf(stderr, "%s: %s\n", form.Name().c_str(), place_.boxes.LastText().c_str());
    return false;
  }

  Workplace place_;
  std::unique_ptr<FrmEditChecksPost> checks_;
  std::unique_ptr<FrmEditDepositsPost> deposits_;
  std::unique_ptr<FrmEditWiresPost> wires_;
  std::unique_ptr<FrmEditVouchersPost> vouchers_;
};

TEST(TwoClerks, PostAllFourKindsIntoOneBank) {
  testing::TempFolder folder;
  ASSERT_TRUE(Workplace(folder.Held()).Open());
  std::vector<pid_t> children;
  for (int clerk = 1; clerk <= 2; ++clerk) {
    children.push_back(testing::Spawn([&folder, clerk] {
      Desk desk(folder.Held());
      if (!desk.Open()) return 1;
      for (int round = 1; round <= kRounds; ++round) {
        if (!desk.Work(clerk, round)) return 2;
      }
      return 0;
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(testing::ExitOf(child, std::chrono::seconds(60)), 0);
  Workplace place(folder.Held());
  ASSERT_TRUE(place.Open());
  EXPECT_EQ(WrongInTables(place), "");
  EXPECT_EQ(WrongInReferences(place), "");
  EXPECT_EQ(place.tables->checks.LastNumber(), std::to_string(2 * kRounds));
  EXPECT_EQ(place.Banks().Find(kBank)->last_voucher, 2 * kRounds);
  int used = 0;
  for (bool on = place.tables->vouchers.Top("VCHRNUMBER"); on; on = place.tables->vouchers.Skip())
    used += place.tables->vouchers.Read().check_number.empty() ? 0 : 1;
  EXPECT_EQ(used, 2 * kRounds) << "every check holds its voucher";
  EXPECT_EQ(place.tables->deposits.RecordCount(), 2 * kRounds);
  EXPECT_EQ(place.tables->wires.RecordCount(), 2 * kRounds);
}

}  // namespace
}  // namespace tallwick::load
