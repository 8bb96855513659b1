#include "app/screen_catalogue.h"

#include "clearing/deposit_clearing.h"
#include "posting/check_posting.h"
#include "posting/deposit_posting.h"
#include "posting/voucher_posting.h"
#include "posting/wire_posting.h"
#include "shell/bank_select.h"
#include "shell/main_window.h"
#include "shell/rights.h"
#include "shell/start_up.h"

namespace tallwick {
namespace {

using Maker = std::unique_ptr<Form> (*)(Session&, ScreenOpener&);

struct Screen {
  std::string_view name;
  std::string_view mode;  // "" where the screen has only one way to open
  bool needs_bank;
  int right;  // 0 = none
  Maker make;
};

std::unique_ptr<Form> MakeMain(Session& session, ScreenOpener& opener) {
  return std::make_unique<FrmMainEscrowAccounting>(session, opener);
}

std::unique_ptr<Form> MakeBankSelect(Session& session, ScreenOpener&) {
  return std::make_unique<FrmBankSelect>(session);
}

template <class PostingScreenForm>
std::unique_ptr<Form> MakePosting(Session& session, ScreenOpener&) {
  auto form = std::make_unique<PostingScreenForm>(session);
  if (!form->OpenTables()) return nullptr;
  return form;
}

template <CheckMode::Kind kMode>
std::unique_ptr<Form> MakeChecks(Session& session, ScreenOpener& opener) {
  auto form = std::make_unique<FrmEditChecksPost>(session, opener, kMode);
  if (!form->OpenTables()) return nullptr;
  return form;
}

std::unique_ptr<Form> MakeDepositViewing(Session& session, ScreenOpener&) {
  auto form = std::make_unique<FrmEditDepositsPost>(session, DepositMode::kViewing);
  if (!form->OpenTables()) return nullptr;
  return form;
}

// Modes of one screen stand together, the usual one first.
constexpr Screen kScreens[] = {
    {"frmMainEscrowAccounting", "", false, 0, MakeMain},
    {"frmBankSelect", "", false, 0, MakeBankSelect},
    {"frmEditChecksPost", "Posting", true, kRightPostChecks, MakeChecks<CheckMode::Kind::kPosting>},
    {"frmEditChecksPost", "Viewing", true, 0, MakeChecks<CheckMode::Kind::kViewing>},
    {"frmEditChecksPost", "Clearing", true, kRightClearChecks, MakeChecks<CheckMode::Kind::kClearing>},
    {"frmEditChecksPost", "Voiding", true, kRightVoidChecks, MakeChecks<CheckMode::Kind::kVoiding>},
    {"frmEditChecksPost", "Stop Payment", true, kRightVoidChecks, MakeChecks<CheckMode::Kind::kStopPayment>},
    {"frmEditDepositsPost", "Posting", true, kRightPostDeposits, MakePosting<FrmEditDepositsPost>},
    {"frmEditDepositsPost", "Viewing", true, 0, MakeDepositViewing},
    {"frmEditDepositsClear", "Clearing", true, kRightClearDeposits, MakePosting<FrmEditDepositsClear>},
    {"frmEditWiresPost", "Posting", true, kRightWires, MakePosting<FrmEditWiresPost>},
    {"frmEditVouchersPost", "Posting", true, kRightPostChecks, MakePosting<FrmEditVouchersPost>},
};

const Screen* FindScreen(std::string_view name, std::string_view mode) {
  for (const Screen& screen : kScreens) {
    if (screen.name == name && (mode.empty() || screen.mode == mode)) return &screen;
  }
  return nullptr;
}

}  // namespace

std::vector<std::string_view> ScreenCatalogue::Names() {
  std::vector<std::string_view> names;
  for (const Screen& screen : kScreens) {
    if (names.empty() || names.back() != screen.name) names.push_back(screen.name);
  }
  return names;
}

std::vector<std::string_view> ScreenCatalogue::Modes(std::string_view screen) {
  std::vector<std::string_view> modes;
  for (const Screen& one : kScreens) {
    if (one.name == screen && !one.mode.empty()) modes.push_back(one.mode);
  }
  return modes;
}

bool ScreenCatalogue::Knows(std::string_view screen, std::string_view mode) {
  return FindScreen(screen, mode) != nullptr;
}

std::unique_ptr<Form> ScreenCatalogue::Make(std::string_view screen, std::string_view mode) {
  const Screen* found = FindScreen(screen, mode);
  if (found == nullptr) return nullptr;
  if (found->right != 0 && !session_.MayUse(found->right)) {
    session_.Boxes().Critical(kProgramName,
                              "You do not have the right to use this screen.  Ask the administrator for it.");
    return nullptr;
  }
  if (found->needs_bank && session_.BankCode().empty()) {
    session_.Boxes().Critical(kProgramName, "No bank account is open.  Open a bank account first.");
    return nullptr;
  }
  return found->make(session_, opener_);
}

}  // namespace tallwick
