#include "recon/recon_history.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>

#include "core/encoding.h"
#include "core/text.h"

namespace tallwick {
namespace {

constexpr std::string_view kTakenBack = "TakenBack";

using Lines = std::map<std::string, std::string, std::less<>>;

std::string OnDisk(const std::string& text) {
  if (std::optional<std::string> bytes = ToWindows1252(text)) return *bytes;
  std::string plain = text;
  for (char& letter : plain) {
    if (static_cast<unsigned char>(letter) >= 0x80) letter = '?';
  }
  return plain;
}

// A value is one line, whatever it holds.
void Put(std::string& text, std::string_view name, std::string value) {
  for (char& letter : value) {
    if (letter == '\r' || letter == '\n') letter = ' ';
  }
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
  if (!past.taken_back.empty()) Put(text, kTakenBack, past.taken_back);
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

std::optional<PastReconciliation> Understood(const std::string& piece) {
  Lines lines;
  for (const std::string& line : Split(piece, '\n')) {
    const std::string plain(Trim(FromWindows1252(line)));
    const std::size_t equals = plain.find('=');
    if (equals != std::string::npos && !plain.starts_with('['))
      lines[plain.substr(0, equals)] = plain.substr(equals + 1);
  }
  LineReader reader(lines);
  PastReconciliation past;
  past.entries = {reader.Money("StatementBalance"), reader.Money("Adjustments"),
                  reader.Money("CheckBookBalance"), reader.Money("Credits"), reader.Money("Charges")};
  past.before = reader.State("Before");
  past.after = reader.State("After");
  past.made = reader.Text("Made");
  past.taken_back = reader.Text(std::string(kTakenBack));
  if (!reader.Good()) return std::nullopt;
  return past;
}

// The file's bytes of one reconciliation, and what they say.
struct Piece {
  std::string bytes;
  std::optional<PastReconciliation> past;  // none where they cannot be understood
};
using Pieces = std::vector<Piece>;

// Together the pieces are the whole file.
Pieces PiecesOf(std::string_view file) {
  Pieces pieces;
  while (!file.empty()) {
    const std::size_t next = file.find("\n[");
    const std::size_t end = next == std::string_view::npos ? file.size() : next + 1;
    pieces.push_back({std::string(file.substr(0, end)), {}});
    pieces.back().past = Understood(pieces.back().bytes);
    file.remove_prefix(end);
  }
  return pieces;
}

// Whatever stands before it ends with its line.
void Append(Pieces& pieces, const PastReconciliation& past) {
  if (!pieces.empty() && !pieces.back().bytes.ends_with('\n')) pieces.back().bytes += "\r\n";
  pieces.push_back({OnDisk(TextOf(past)), past});
}

// The number of pieces up to the one that stands; 0 when none does.
std::size_t CountStanding(const Pieces& pieces, const BankState& now) {
  for (std::size_t count = pieces.size(); count > 0; --count) {
    const auto& past = pieces[count - 1].past;
    if (past && past->after == now) return count;
  }
  return 0;
}

// The mark of one that was to be taken back and stands all the same.
void DropMarkOf(Piece& piece) {
  if (!piece.past || piece.past->taken_back.empty()) return;
  std::string kept;
  for (std::string_view rest = piece.bytes; !rest.empty();) {
    const std::string_view line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
    if (!Trim(line).starts_with(std::string(kTakenBack) + "=")) kept += line;
    rest.remove_prefix(line.size());
  }
  piece.bytes = kept;
  piece.past->taken_back.clear();
}

// Of reconciliations that are the same but for their marks, the last.
Pieces::iterator FindLast(Pieces& pieces, PastReconciliation past) {
  past.taken_back.clear();
  const auto is_same = [&](const Piece& piece) {
    if (!piece.past) return false;
    PastReconciliation other = *piece.past;
    other.taken_back.clear();
    return other == past;
  };
  const auto found = std::find_if(pieces.rbegin(), pieces.rend(), is_same);
  return found == pieces.rend() ? pieces.end() : std::prev(found.base());
}

// Lets `change` work on the pieces of the file, which it may leave as they are (false).
std::string ChangeFile(FileSystem& files, const std::string& path,
                       const std::function<bool(Pieces&)>& change) {
  const std::optional<std::string> text = files.ReadIfThere(path);
  if (!text) return CannotBeReadText(path);
  Pieces pieces = PiecesOf(*text);
  if (!change(pieces)) return {};
  std::string changed;
  for (const Piece& piece : pieces) changed += piece.bytes;
  if (files.Write(path, changed)) return {};
  return "The file " + std::string(FileNameOf(path)) +
         " could not be written in the company's data folder.  Make room or ask for write access, then try "
         "again.";
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

ReconReading ReconHistory::Read() const {
  ReconReading reading;
  const std::optional<std::string> text = files_.ReadIfThere(path_);
  if (!text) reading.problem = CannotBeReadText(path_);
  for (Piece& piece : PiecesOf(text.value_or(""))) {
    if (piece.past) reading.all.push_back(std::move(*piece.past));
  }
  return reading;
}

std::string ReconHistory::Add(const BankRecord& bank, const PastReconciliation& made) {
  return ChangeFile(files_, path_, [&](Pieces& pieces) {
    // What lies behind the one that stands, and was not taken back, was never made. Where none stands the
    // bank's state came from elsewhere, and only what was to follow on it goes.
    const BankState now = BankState::Of(bank);
    const std::size_t standing = CountStanding(pieces, now);
    const auto never_made = [&](const Piece& piece) {
      return piece.past && piece.past->taken_back.empty() && (standing != 0 || piece.past->before == now);
    };
    if (standing != 0) DropMarkOf(pieces[standing - 1]);
    pieces.erase(
        std::remove_if(pieces.begin() + static_cast<std::ptrdiff_t>(standing), pieces.end(), never_made),
        pieces.end());
    Append(pieces, made);
    return true;
  });
}

std::string ReconHistory::Drop(const PastReconciliation& not_made) {
  return ChangeFile(files_, path_, [&](Pieces& pieces) {
    const auto found = FindLast(pieces, not_made);
    if (found == pieces.end()) return false;
    pieces.erase(found);
    return true;
  });
}

std::string ReconHistory::MarkTakenBack(const PastReconciliation& taken, std::string_view note) {
  bool known = false;
  const std::string problem = ChangeFile(files_, path_, [&](Pieces& pieces) {
    const auto found = FindLast(pieces, taken);
    known = found != pieces.end();
    if (!known) return false;
    DropMarkOf(*found);
    if (!found->bytes.ends_with('\n')) found->bytes += "\r\n";
    std::string line;
    Put(line, kTakenBack, std::string(note));
    found->bytes += OnDisk(line);
    return true;
  });
  if (known || !problem.empty()) return problem;
  return "The reconciliation is no longer in the file " + std::string(FileNameOf(path_)) +
         " of the company's data.";
}

std::string ReconHistory::DropMark(const PastReconciliation& not_taken) {
  return ChangeFile(files_, path_, [&](Pieces& pieces) {
    const auto found = FindLast(pieces, not_taken);
    if (found == pieces.end()) return false;
    DropMarkOf(*found);
    return true;
  });
}

std::optional<PastReconciliation> LastStanding(const ReconReading& reading, const BankRecord& bank) {
  const BankState now = BankState::Of(bank);
  const auto found = std::find_if(reading.all.rbegin(), reading.all.rend(),
                                  [&](const PastReconciliation& past) { return past.after == now; });
  if (found == reading.all.rend()) return std::nullopt;
  return *found;
}

}  // namespace tallwick
