#include "recon/recon_update.h"

#include "core/text_format.h"
#include "posting/post_unit.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

// "2024-03-31 09:30:00 jdoe FRONTDESK2"
std::string Signature(Session& session) {
  return FormatDateTime(session.TheClock().Now(), "yyyy-mm-dd hh:nn:ss") + " " + session.TheSuite().Login() +
         " " + session.TheWorkstation().ComputerName();
}

ReconHistory HistoryOf(Session& session, const BankRecord& bank) {
  return ReconHistory(session.Files(), session.DataPath(), bank.code);
}

// Puts the state into the bank's record, whatever else others have changed in it since it was read; not when
// they have changed what a reconciliation changes.
int ReplaceState(BankTable& banks, const BankRecord& bank, const BankState& after) {
  if (!banks.Find(bank.code)) return kChangedElsewhere;
  if (const int code = banks.Lock(); code != engine::kSuccess) return code;
  BankRecord now = banks.Read();
  if (BankState::Of(now) != BankState::Of(bank)) return kChangedElsewhere;
  after.PutInto(&now);
  return banks.Update(now);
}

std::string WriteState(Session& session, BankRecord* bank, const BankState& after) {
  BankTable& banks = session.Company().banks;
  const PostPiece pieces[] = {
      {PostOutcome::Step::kItem, [&] { return ReplaceState(banks, *bank, after); }},
  };
  const PostOutcome outcome = AsOneUnit(session.Data(), pieces);
  banks.Unlock();
  if (!outcome.Done()) {
    return FailureMessage(outcome, "The bank record", "The bank record was not written.", "bank");
  }
  if (std::optional<BankRecord> now = banks.Find(bank->code)) *bank = std::move(*now);
  return {};
}

}  // namespace

BankState StateAfter(const BankRecord& bank, const Period& statement, Currency ending) {
  BankState after{statement, bank.work_in_progress, ending, ending};
  if (bank.date_type == 1) after.work_in_progress = bank.reconciled;
  return after;
}

std::string RecordReconciliation(Session& session, BankRecord* bank, const Period& statement,
                                 const ReconEntries& entries, Currency ending) {
  PastReconciliation made;
  made.entries = entries;
  made.before = BankState::Of(*bank);
  made.after = StateAfter(*bank, statement, ending);
  made.made = Signature(session);
  if (!HistoryOf(session, *bank).Add(*bank, made)) {
    return "The file of past reconciliations could not be written in the company's data path.  Nothing was "
           "updated: make room or ask for write access, then try again.";
  }
  return WriteState(session, bank, made.after);
}

std::string TakeBackReconciliation(Session& session, BankRecord* bank, const PastReconciliation& last,
                                   std::string_view reason) {
  std::string failure = WriteState(session, bank, last.before);
  if (!failure.empty()) return failure;
  // A note that cannot be written changes nothing: what the bank record does not bear out does not count.
  HistoryOf(session, *bank).MarkTakenBack(last, Signature(session) + " " + std::string(reason));
  return {};
}

TakeBackOffer OfferTakeBack(Session& session, const BankRecord& bank) {
  if (bank.reconciled.IsEmpty()) return {{}, "The account has not been reconciled yet."};
  TakeBackOffer offer{HistoryOf(session, bank).Last(bank), {}};
  if (!offer.last) {
    offer.refusal =
        "The last reconciliation cannot be taken back: it was made with another program, or the bank record "
        "was changed since.";
  } else if (MakeKey(bank.purged) > MakeKey(offer.last->before.reconciled)) {
    offer.refusal = "The last reconciliation cannot be taken back: files were purged through " +
                    ShortForm(bank.purged) + ", and their transactions are gone.";
    offer.last.reset();
  }
  return offer;
}

}  // namespace tallwick
