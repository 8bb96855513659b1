#include "recon/recon_update.h"

#include "core/text_format.h"
#include "posting/post_unit.h"
#include "shell/company_tables.h"

namespace tallwick {
namespace {

constexpr std::string_view kPostedMeanwhile =
    "Something was posted while the figures were computed, or they could not be computed once more.  Nothing "
    "was updated: compute again.";

// "2024-03-31 09:30:00 jdoe FRONTDESK2"
std::string Signature(Session& session) {
  return FormatDateTime(session.TheClock().Now(), "yyyy-mm-dd hh:nn:ss") + " " + session.Login() + " " +
         session.TheWorkstation().ComputerName();
}

ReconHistory HistoryOf(Session& session, const BankRecord& bank) {
  return ReconHistory(session.Files(), session.DataPath(), bank.code);
}

// Locks the bank's record. Whatever else others have changed in it since it was read may stand; not what a
// reconciliation changes.
int HoldState(BankTable& banks, const BankRecord& bank) {
  if (!banks.Find(bank.code)) return kChangedElsewhere;
  if (const int code = banks.Lock(); code != engine::kSuccess) return code;
  return BankState::Of(banks.Read()) == BankState::Of(bank) ? engine::kSuccess : kChangedElsewhere;
}

// Gives why nothing shall be written, or "".
using Objection = std::function<std::string()>;

// Writes the state into the bank's record. `before_writing` runs while the record is held; `before_commit`
// when no other workstation can write until the commit, which is from the first change on.
std::string WriteState(Session& session, BankRecord* bank, const BankState& after,
                       const Objection& before_writing, const Objection& before_commit = {}) {
  BankTable& banks = session.Company().banks;
  std::string objection;
  const auto ask = [&objection](const Objection& asked) {
    if (asked) objection = asked();
    return objection.empty() ? engine::kSuccess : kCalledOff;
  };
  const PostPiece pieces[] = {
      {PostOutcome::Step::kItem, [&] { return HoldState(banks, *bank); }},
      {PostOutcome::Step::kItem, [&] { return ask(before_writing); }},
      {PostOutcome::Step::kItem,
       [&] {
         BankRecord now = banks.Read();
         after.PutInto(&now);
         return banks.Update(now);
       }},
  };
  const PostOutcome outcome = AsOneUnit(session.Data(), pieces, [&] { return ask(before_commit); });
  banks.Unlock();
  if (!objection.empty()) return objection;
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
                                 const ReconEntries& entries, Currency ending,
                                 const std::function<bool()>& same_figures) {
  PastReconciliation made;
  made.entries = entries;
  made.before = BankState::Of(*bank);
  made.after = StateAfter(*bank, statement, ending);
  made.made = Signature(session);
  ReconHistory history = HistoryOf(session, *bank);
  bool noted = false;
  const auto note = [&] {
    std::string problem = history.Add(*bank, made);
    noted = problem.empty();
    return problem.empty() ? problem : problem + "  Nothing was updated.";
  };
  const auto look_again = [&] { return same_figures() ? std::string() : std::string(kPostedMeanwhile); };
  std::string failure = WriteState(session, bank, made.after, note, look_again);
  // What cannot be taken out again agrees with no bank record, and so does not count.
  if (!failure.empty() && noted) history.Drop(made);
  return failure;
}

std::string TakeBackReconciliation(Session& session, BankRecord* bank, const PastReconciliation& last,
                                   std::string_view reason) {
  ReconHistory history = HistoryOf(session, *bank);
  bool marked = false;
  const std::string failure = WriteState(session, bank, last.before, [&] {
    const std::string problem = history.MarkTakenBack(last, Signature(session) + " " + std::string(reason));
    marked = problem.empty();
    return problem.empty() ? problem : problem + "  Nothing was taken back.";
  });
  // A mark that cannot be taken off again agrees with no bank record, and so does not count.
  if (!failure.empty() && marked) history.DropMark(last);
  return failure;
}

TakeBackOffer OfferTakeBack(Session& session, const BankRecord& bank) {
  if (bank.reconciled.IsEmpty()) return {{}, "The account has not been reconciled yet."};
  const ReconReading reading = HistoryOf(session, bank).Read();
  TakeBackOffer offer{LastStanding(reading, bank), {}};
  if (!reading.problem.empty()) {
    offer.refusal = "The last reconciliation cannot be taken back: it is not known.  " + reading.problem;
  } else if (!offer.last) {
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
