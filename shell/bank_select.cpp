#include "shell/bank_select.h"

#include <algorithm>

#include "core/encoding.h"
#include "core/text.h"
#include "shell/company_tables.h"
#include "shell/date_advance.h"

namespace tallwick {
namespace {

bool Contains(const std::vector<std::string>& codes, std::string_view code) {
  return std::find(codes.begin(), codes.end(), code) != codes.end();
}

std::string ListLine(const BankRecord& bank) {
  return bank.name + "   (" + bank.code + ")";
}

std::string AddressText(const BankRecord& bank) {
  std::string text;
  for (const std::string* line : {&bank.address1, &bank.address2, &bank.city_state}) {
    if (!line->empty()) text += *line + "\r";
  }
  return text + "Account No. " + bank.account_number;
}

std::string DatesText(const BankRecord& bank) {
  return "Last Reconciliation was " + LongForm(bank.reconciled) + "\rCurrent Accounting Period is " +
         LongForm(bank.accounting);
}

}  // namespace

std::vector<std::string> InactiveBanks(const Session& session) {
  std::vector<std::string> codes;
  const std::string path = WithBackslash(session.TheSuite().InactiveBanksPath()) + "Inactive Banks.dat";
  const std::optional<std::string> text = session.Files().Read(path);
  if (!text) return codes;
  // A line is the code, character by character; only the blanks that pad it are not part of it.
  for (const std::string& line : Split(FromTextFile(*text), '\n')) {
    if (!TrimRight(line).empty()) codes.emplace_back(TrimRight(line));
  }
  return codes;
}

std::vector<BankRecord> UserBanks(Session& session) {
  std::vector<BankRecord> banks = session.Company().banks.InNameOrder();
  std::erase_if(banks, [&](const BankRecord& bank) { return !session.MayUseBank(bank.code); });
  return banks;
}

std::string OtherBanksNote(Session& session) {
  if (UserBanks(session).size() == session.Company().banks.InNameOrder().size()) return {};
  return "Only your bank accounts are counted: the company has others.";
}

std::vector<BankRecord> OfferedBanks(Session& session) {
  const std::vector<std::string> inactive = InactiveBanks(session);
  std::vector<BankRecord> banks = UserBanks(session);
  std::erase_if(banks, [&](const BankRecord& bank) { return Contains(inactive, bank.code); });
  return banks;
}

bool SelectBank(Session& session, std::string_view code) {
  const std::optional<BankRecord> bank = session.Company().banks.Find(Trim(code));
  if (!bank) {
    session.Boxes().Critical("Select Bank Account", BankGoneMessage(code));
    return false;
  }
  const std::vector<BankRecord> offered = OfferedBanks(session);
  if (std::none_of(offered.begin(), offered.end(),
                   [&](const BankRecord& one) { return one.code == bank->code; })) {
    session.Boxes().Critical("Select Bank Account",
                             "Bank " + Quoted(bank->code) +
                                 " is inactive or not among your banks.  Choose another bank, "
                                 "or ask the administrator for it.");
    return false;
  }
  session.SetBank(bank->code, bank->name);
  if (AdvanceAccountingDate(session)) session.NotifyChanged(SessionChange::kBank);
  return true;
}

std::string BankGoneMessage(std::string_view code) {
  return Quoted(Trim(code)) + " is no longer a valid Bank ID Code...";
}

FrmBankSelect::FrmBankSelect(Session& session) : Form("frmBankSelect", session.Boxes()), session_(session) {
  SetFormCaption("Select Bank Account");
  Add(ControlKind::kList, "lstBankNames", "&Bank accounts");
  Add(ControlKind::kLabel, "lblBankName");
  Add(ControlKind::kLabel, "lblAcctStmtDates");
  Add(ControlKind::kButton, "cmdOk", "&Ok").enabled = false;
  Add(ControlKind::kButton, "cmdCancel", "&Cancel");
}

void FrmBankSelect::OnOpen() {
  std::vector<std::string> lines;
  int selected = 0;
  for (const BankRecord& bank : OfferedBanks(session_)) {
    lines.push_back(ListLine(bank));
    codes_.push_back(bank.code);
    if (bank.code == session_.BankCode()) selected = static_cast<int>(codes_.size());
  }
  if (codes_.empty()) {
    session_.SetBank({}, {});
    Boxes().Inform(Caption(),
                   "\rNo banks have been created for\r" + Quoted(session_.TheSuite().CompanyName()));
    return;
  }
  if (selected == 0) selected = 1;
  SetRows("lstBankNames", std::move(lines), selected);
  SetFocus("lstBankNames");
  ShowBank();
}

void FrmBankSelect::OnChoose(Control&) {
  ShowBank();
}

void FrmBankSelect::ShowBank() {
  const int row = At("lstBankNames").selected;
  std::optional<BankRecord> bank;
  if (row > 0) {
    const std::string& code = codes_[static_cast<std::size_t>(row) - 1];
    bank = session_.Company().banks.Find(code);
    if (!bank) {
      Boxes().Critical(Caption(), BankGoneMessage(code));
      SetSelected("lstBankNames", 0);
    }
  }
  SetCaption("lblBankName", bank ? AddressText(*bank) : "");
  SetCaption("lblAcctStmtDates", bank ? DatesText(*bank) : "");
  SetEnabled("cmdOk", bank.has_value());
}

void FrmBankSelect::OnClick(Control& control) {
  if (control.name == "cmdOk") Confirm();
  if (control.name == "cmdCancel") Close();
}

void FrmBankSelect::Confirm() {
  const int row = At("lstBankNames").selected;
  if (row > 0 && SelectBank(session_, codes_[static_cast<std::size_t>(row) - 1])) Close();
}

bool FrmBankSelect::OnKey(std::string_view key) {
  if (key == "Esc") {
    Close();
    return true;
  }
  if (key != "Enter" || !At("cmdOk").enabled) return false;
  Confirm();
  return true;
}

}  // namespace tallwick
