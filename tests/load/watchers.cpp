#include "tests/load/watchers.h"

#include "reports/ledger_reader.h"

namespace tallwick::load {

void RegisterWalker::Work() {
  CheckTable& checks = place_.tables->checks;
  clsKVRData& data = checks.Data();
  read_ahead_ = !read_ahead_;
  data.SetReadAhead(checks.Handle(), read_ahead_);
  data.SelectTag(checks.Handle(), "CHXNUMBER");
  std::vector<bool> seen(must_see_.size());
  std::int64_t last = 0;
  int code = data.TopDatabase(checks.Handle());
  for (; code == engine::kSuccess; code = data.SkipDatabase(checks.Handle())) {
    const CheckRecord check = checks.Read();
    const std::int64_t number = std::stoll("0" + check.number);
    if (number <= last) return tally_.Fail("check " + check.number + " behind " + std::to_string(last));
    if (!IsWhole(check)) return tally_.Fail("a walk saw a torn check " + check.number + ": " + check.payee);
    seen[static_cast<std::size_t>(number)] = true;
    last = number;
    ++tally_.walked_records;
  }
  if (code != engine::kEof) return tally_.Fail("a walk ended with " + std::to_string(code));
  for (std::size_t number = 0; number < seen.size(); number += kDeletedNever) {
    if (must_see_[number] && !seen[number])
      return tally_.Fail("a walk missed check " + std::to_string(number));
    if (seen[number]) must_see_[number] = true;
  }
  ++tally_.walks;
}

bool MakePillars(Workplace& place, Tally& tally) {
  for (int i = 1; i <= kPillarItems; ++i) {
    const CheckRecord check = MakeCheck(i, kPillarCheckCents, kPillarFile);
    if (!PostCheck(*place.tables, place.Xrefs(), kBank, check).Done()) return false;
    DepositRecord deposit = MakeDeposit(i * 7);
    AddItem(deposit, kPillarDepositCents, kPillarFile);
    if (!PostDeposit(*place.tables, place.Xrefs(), kBank, deposit).Done()) return false;
    ++tally.checks[i];
    ++tally.deposits[i * 7];
  }
  return true;
}

void LedgerReader::Work() {
  const int turn = turn_++ % 3;
  const std::string file = turn == 0   ? std::string(kPillarFile)
                           : turn == 1 ? std::string(kGrowingFile)
                                       : "24-" + std::to_string(1000 + turn_ % 40);
  const LedgerReading reading = ReadFileLedger(*place_.session, file);
  if (!reading.complete) return tally_.Fail("a ledger: " + reading.message);
  ++tally_.ledgers;
  if (reading.ledger.Banks().empty()) return;
  const BankLedger& bank = reading.ledger.Banks()[0];
  for (const CheckRecord& check : bank.Checks()) {
    if (!IsWhole(check)) return tally_.Fail("a ledger saw a torn check " + check.number + ": " + check.payee);
  }
  if (turn == 0) {
    const auto balance = Currency::FromCents(kPillarItems * (kPillarDepositCents - kPillarCheckCents));
    if (bank.BankBalance() != balance) tally_.Fail("a ledger of an untouched file has another balance");
  }
  if (turn == 1) {
    const int count = bank.TotalChecksCount();
    if (count < growing_checks_) tally_.Fail("a ledger lost checks of a file that only grows");
    if (bank.TotalChecks() != Currency::FromCents(count * std::int64_t{100}))
      tally_.Fail("a ledger's checks of 1.00 add up to something else");
    growing_checks_ = count;
  }
}

}  // namespace tallwick::load
