#include "recon/recon_history.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

using Lines = std::map<std::string, std::string, std::less<>>;

std::string OnDisk(const std::string& text) {
  if (std::optional<std::string> bytes = ToWindows1252(text)) return *bytes;
  std::string plain = text;
  for (char& letter : plain) {
    if (static_cast<unsigned char>(letter) >= 0x80) letter = '?';
  }
  return plain;
}

void Put(std::string& text, std::string_view name, const std::string& value) {
  text += std::string(name) + "=" + value + "\r\n";
}

std::string KeyText(const Period& period) {
  return std::to_string(MakeKey(period));
}

void PutState(std::string& text, const std::string& prefix, const BankState& state) {
  Put(text, prefix + "Reconciled", KeyText(state.reconciled));
  Put(text, prefix + "WorkInProgress", KeyText(state.work_in_progress));
  Put(text, prefix + "Beginning", state.beginning_balance.ToText());
  Put(text, prefix + "Ending", state.ending_balance.ToText());
}

std::string TextOf(const PastReconciliation& past) {
  std::string text = "[" + ShortForm(past.after.reconciled) + "]\r\n";
  Put(text, "Made", past.made);
  Put(text, "StatementBalance", past.entries.statement_balance.ToText());
  Put(text, "Adjustments", past.entries.adjustments.ToText());
  Put(text, "CheckBookBalance", past.entries.beginning_balance.ToText());
  Put(text, "Credits", past.entries.credits.ToText());
  Put(text, "Charges", past.entries.charges.ToText());
  PutState(text, "Before", past.before);
  PutState(text, "After", past.after);
  if (!past.taken_back.empty()) Put(text, "TakenBack", past.taken_back);
  return text;
}

// Reads the values of one reconciliation; what is missing or no value makes it unreadable.
class LineReader {
 public:
  explicit LineReader(const Lines& lines) : lines_(lines) {}

  bool Good() const { return good_; }
  std::string Text(std::string_view name) const {
    const auto found = lines_.find(name);
    return found == lines_.end() ? std::string() : found->second;
  }
  Currency Money(std::string_view name) {
    const std::optional<Currency> money = Currency::Parse(Text(name));
    good_ = good_ && money;
    return money.value_or(Currency());
  }
  Period Date(std::string_view name) {
    const std::string text = Text(name);
    std::int32_t key = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), key);
    good_ = good_ && error == std::errc() && end == text.data() + text.size() && key >= 0;
    return SplitKey(key);
  }
  BankState State(const std::string& prefix) {
    return {Date(prefix + "Reconciled"), Date(prefix + "WorkInProgress"), Money(prefix + "Beginning"),
            Money(prefix + "Ending")};
  }

 private:
  const Lines& lines_;
  bool good_ = true;
};

void ReadOne(const Lines& lines, std::vector<PastReconciliation>& all) {
  LineReader reader(lines);
  PastReconciliation past;
  past.entries = {reader.Money("StatementBalance"), reader.Money("Adjustments"),
                  reader.Money("CheckBookBalance"), reader.Money("Credits"), reader.Money("Charges")};
  past.before = reader.State("Before");
  past.after = reader.State("After");
  past.made = reader.Text("Made");
  past.taken_back = reader.Text("TakenBack");
  if (reader.Good()) all.push_back(std::move(past));
}

// The place of the last one that stands, from 1; 0 when none does.
std::size_t LastStanding(const std::vector<PastReconciliation>& all, const BankState& now) {
  for (std::size_t count = all.size(); count > 0; --count) {
    const PastReconciliation& past = all[count - 1];
    if (past.taken_back.empty() && past.after == now) return count;
  }
  return 0;
}

}  // namespace

BankState BankState::Of(const BankRecord& bank) {
  return {bank.reconciled, bank.work_in_progress, bank.beginning_balance, bank.ending_balance};
}

void BankState::PutInto(BankRecord* bank) const {
  bank->reconciled = reconciled;
  bank->work_in_progress = work_in_progress;
  bank->beginning_balance = beginning_balance;
  bank->ending_balance = ending_balance;
}

ReconHistory::ReconHistory(FileSystem& files, std::string_view data_path, std::string_view bank_code)
    : files_(files),
      path_(std::string(data_path) + "Reconciliations_" + std::string(Trim(bank_code)) + ".dat") {}

std::vector<PastReconciliation> ReconHistory::All() const {
  std::vector<PastReconciliation> all;
  const std::optional<std::string> text = files_.Read(path_);
  if (!text) return all;
  Lines lines;
  for (const std::string& line : Split(*text, '\n')) {
    const std::string plain(Trim(FromWindows1252(line)));
    const std::size_t equals = plain.find('=');
    if (plain.starts_with('[')) {
      if (!lines.empty()) ReadOne(lines, all);
      lines.clear();
    } else if (equals != std::string::npos) {
      lines[plain.substr(0, equals)] = plain.substr(equals + 1);
    }
  }
  if (!lines.empty()) ReadOne(lines, all);
  return all;
}

std::optional<PastReconciliation> ReconHistory::Last(const BankRecord& bank) const {
  const std::vector<PastReconciliation> all = All();
  const std::size_t count = LastStanding(all, BankState::Of(bank));
  if (count == 0) return std::nullopt;
  return all[count - 1];
}

bool ReconHistory::Add(const BankRecord& bank, const PastReconciliation& made) {
  std::vector<PastReconciliation> all = All();
  // What lies behind the one that stands, and was not taken back, was never made. Where none stands the
  // bank's state came from elsewhere, and only what was to follow on it goes.
  const BankState now = BankState::Of(bank);
  const std::size_t standing = LastStanding(all, now);
  const auto never_made = [&](const PastReconciliation& past) {
    return past.taken_back.empty() && (standing != 0 || past.before == now);
  };
  all.erase(std::remove_if(all.begin() + static_cast<std::ptrdiff_t>(standing), all.end(), never_made),
            all.end());
  all.push_back(made);
  return Write(all);
}

bool ReconHistory::MarkTakenBack(const PastReconciliation& taken, std::string_view note) {
  std::vector<PastReconciliation> all = All();
  const auto found = std::find(all.rbegin(), all.rend(), taken);
  if (found == all.rend()) return true;
  found->taken_back = note;
  return Write(all);
}

bool ReconHistory::Write(const std::vector<PastReconciliation>& all) {
  std::string text;
  for (const PastReconciliation& past : all) text += TextOf(past);
  return files_.Write(path_, OnDisk(text));
}

}  // namespace tallwick
