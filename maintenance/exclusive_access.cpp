#include "maintenance/exclusive_access.h"

#include "shell/company_tables.h"
#include "store/clsKVRData.h"

namespace tallwick {
namespace {

constexpr std::string_view kEscrowTables = "ESCROW_*.DBF";

}  // namespace

void ReopenCompany(Session& session) {
  for (TableBase* table : session.Company().All()) {
    if (!table->IsOpen()) table->Open();
  }
  if (session.BankCode().empty()) return session.NotifyChanged(SessionChange::kPosted);
  BankTable& banks = session.Company().banks;
  const std::optional<BankRecord> bank = banks.IsOpen() ? banks.Find(session.BankCode()) : std::nullopt;
  bank ? session.SetBank(bank->code, bank->name) : session.SetBank({}, {});
}

ExclusiveAccess::~ExclusiveAccess() {
  Return();
}

bool ExclusiveAccess::Take(std::string_view title) {
  for (TableBase* table : session_.Company().All()) table->Close();
  code_ = session_.Data().TakeFolder(session_.DataPath(), kEscrowTables);
  taken_ = code_ == engine::kSuccess;
  if (taken_) return true;
  const std::string advice = session_.Data().AdviceFor(code_);
  session_.Boxes().Critical(title, "Could not get exclusive file access.  Try again later..." +
                                       (advice.empty() ? advice : "\r\r" + advice));
  ReopenCompany(session_);
  return false;
}

void ExclusiveAccess::Return() {
  if (!taken_) return;
  taken_ = false;
  session_.Data().ReleaseFolder();
  session_.Data().SetSharedAccess();
  ReopenCompany(session_);
}

}  // namespace tallwick
