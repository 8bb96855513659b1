#include "maintenance/purge.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "core/encoding.h"
#include "core/text.h"
#include "core/text_format.h"
#include "maintenance/maintained_table.h"
#include "tables/bank_table.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"
#include "tables/xref_table.h"

namespace tallwick {
namespace {

constexpr std::string_view kReserved = "VOID";
constexpr const char* kNoFile = "";
constexpr int kLastDay = 99;  // in a key: every day of the month, and a month without a day

// The last moment of a period, to compare the keys of either form with.
std::int32_t EndOf(const Period& period) {
  return period.day == 0 ? MakeKey(period.year, period.month, kLastDay) : MakeKey(period);
}

std::string KeyOfFile(std::string_view number) {
  return UpperKey(Trim(number));
}

struct FileState {
  ClosedFile file;
  std::map<std::string, Currency> balances;  // by bank
  bool open = false;

  bool IsSquare() const {
    return std::all_of(balances.begin(), balances.end(),
                       [](const auto& balance) { return balance.second == Currency(); });
  }
};

// A part of a ticket that no file answers for.
bool IsOfNoFile(const DepositItem& item) {
  return item.file_number.empty() && item.amount != Currency();
}

class Finder {
 public:
  Finder(Session& session, const Period& through, WorkProgress& progress)
      : session_(session), through_(EndOf(through)), progress_(progress) {}

  PurgeSearch Run() {
    PurgeSearch search;
    bool every_bank = false;
    const std::vector<std::string> codes = EveryBankCode(session_.Home(), &every_bank);
    if (!every_bank) return search;
    std::int64_t done = 0;
    for (const std::string& code : codes) {
      progress_.Show("Processing " + code, done++, static_cast<std::int64_t>(codes.size()));
      if (progress_.StopWanted() || !ReadBank(code)) return search;
    }
    KeepTicketsTogether();
    for (auto& [key, state] : states_) {
      if (key != kReserved && !key.empty() && !state.open) search.files.push_back(std::move(state.file));
    }
    search.whole = true;
    return search;
  }

 private:
  bool ReadBank(const std::string& code) {
    BankTables bank(session_.Home());
    BankTable banks(session_.Home());
    if (banks.OpenQuietly({}, false) <= 0 || !banks.SeekCode(code) || !bank.Open(code)) return false;
    code_ = code;
    const Period reconciled = banks.Read().reconciled;
    limit_ = reconciled.IsEmpty() ? 0 : std::min(through_, EndOf(reconciled));
    return Each(bank.checks,
                [this](const CheckRecord& check) {
                  const bool voided = check.status == "V";
                  Add(check.file_number, voided ? Currency() : -check.amount, voided || check.status == "C",
                      {check.accounting, check.statement});
                }) &&
           Each(bank.wires,
                [this](const WireRecord& wire) {
                  Add(wire.file_number, -wire.amount, wire.status == "C", {wire.accounting, wire.statement});
                }) &&
           Each(bank.vouchers,
                [this](const VoucherRecord& voucher) {
                  Add(voucher.file_number, Currency(), !voucher.check_number.empty(), {voucher.accounting});
                }) &&
           Each(bank.deposits, [this](const DepositRecord& deposit) { AddTicket(deposit); });
  }

  // False after a message: what cannot be read may hold an open item.
  template <class Record, class Look>
  static bool Each(TypedTable<Record>& table, Look look) {
    return table.ForEachLive([&] {
      look(table.Read());
      return true;
    });
  }

  void AddTicket(const DepositRecord& deposit) {
    std::set<std::string> files;
    for (const DepositItem& item : deposit.items) {
      if (IsOfNoFile(item)) {
        files.insert(kNoFile);
        states_[kNoFile].open = true;
      }
      if (item.file_number.empty()) continue;
      Add(item.file_number, item.amount, item.status == "C", {deposit.accounting, item.statement});
      files.insert(KeyOfFile(item.file_number));
    }
    tickets_.push_back(std::move(files));
  }

  void Add(const std::string& number, Currency amount, bool settled, std::initializer_list<Period> periods) {
    FileState& state = states_[KeyOfFile(number)];
    if (state.file.items++ == 0) state.file.number = Trim(number);
    if (state.file.banks.empty() || state.file.banks.back() != code_) state.file.banks.push_back(code_);
    state.balances[code_] += amount;
    for (const Period& period : periods) {
      const std::int32_t key = MakeKey(period);
      state.open = state.open || key > limit_;
      state.file.last_key = std::max(state.file.last_key, key);
    }
    state.open = state.open || !settled || limit_ == 0;
  }

  // One file of a ticket that is not closed keeps the others, and theirs in turn.
  void KeepTicketsTogether() {
    for (auto& [key, state] : states_) state.open = state.open || !state.IsSquare();
    for (bool changed = true; changed;) {
      changed = false;
      for (const std::set<std::string>& files : tickets_) {
        const bool open = std::any_of(files.begin(), files.end(),
                                      [this](const std::string& file) { return states_[file].open; });
        for (const std::string& file : files) {
          if (!open || states_[file].open) continue;
          states_[file].open = changed = true;
        }
      }
    }
  }

  Session& session_;
  std::int32_t through_;
  WorkProgress& progress_;
  std::string code_;
  std::int32_t limit_ = 0;  // the last key that may be purged in the bank at hand; 0 = none
  std::map<std::string, FileState> states_;
  std::vector<std::set<std::string>> tickets_;
};

class Purger {
 public:
  Purger(Session& session, const std::vector<ClosedFile>& files, WorkProgress& progress)
      : session_(session), data_(session.Data()), progress_(progress) {
    for (const ClosedFile& file : files) {
      files_.insert(KeyOfFile(file.number));
      banks_.insert(file.banks.begin(), file.banks.end());
    }
  }

  int Run() {
    XrefTable xrefs(session_.Home());
    BankTable banks(session_.Home());
    if (xrefs.Open() <= 0 || banks.Open() <= 0) return engine::kErrorOpen;
    int code = data_.BeginUnit();
    if (code == engine::kSuccess) code = Delete(xrefs, [&] { return Holds(xrefs.Read().file_number); });
    for (const std::string& bank : banks_) {
      if (code == engine::kSuccess) code = PurgeBank(bank, banks);
    }
    if (code == engine::kSuccess && progress_.StopWanted()) code = engine::kStopped;
    if (code == engine::kSuccess) return data_.CommitUnit();
    data_.RollbackUnit();
    return code;
  }

 private:
  bool Holds(std::string_view file) const { return files_.contains(KeyOfFile(file)); }

  // True for a transaction of one of the files; its periods are then among those that were purged.
  bool Goes(std::string_view file, std::initializer_list<Period> periods) {
    if (!Holds(file)) return false;
    for (const Period& period : periods) last_key_ = std::max(last_key_, MakeKey(period));
    return true;
  }

  int Delete(TableBase& table, const std::function<bool()>& goes) {
    progress_.Show("Processing " + table.Name(), 0, 0);
    int code = engine::kSuccess;
    const bool whole = table.ForEachLive([&] {
      if (goes()) code = table.Delete();
      return code == engine::kSuccess;
    });
    return whole || code != engine::kSuccess ? code : int{engine::kErrorRead};
  }

  // The tables stay open until the unit ends.
  int PurgeBank(const std::string& bank_code, BankTable& banks) {
    opened_.push_back(std::make_unique<BankTables>(session_.Home()));
    BankTables& bank = *opened_.back();
    if (!bank.Open(bank_code)) return engine::kErrorOpen;
    last_key_ = 0;
    int code = Delete(bank.checks, [&] {
      const CheckRecord check = bank.checks.Read();
      return Goes(check.file_number, {check.accounting, check.statement});
    });
    if (code == engine::kSuccess)
      code = Delete(bank.deposits, [&] { return TicketGoes(bank.deposits.Read()); });
    if (code == engine::kSuccess)
      code = Delete(bank.deposit_xrefs, [&] { return Holds(bank.deposit_xrefs.Read().file_number); });
    if (code == engine::kSuccess) {
      code = Delete(bank.vouchers, [&] {
        const VoucherRecord voucher = bank.vouchers.Read();
        return Goes(voucher.file_number, {voucher.accounting});
      });
    }
    if (code == engine::kSuccess) {
      code = Delete(bank.wires, [&] {
        const WireRecord wire = bank.wires.Read();
        return Goes(wire.file_number, {wire.accounting, wire.statement});
      });
    }
    if (code != engine::kSuccess || !banks.SeekCode(bank_code)) return code;
    BankRecord record = banks.Read();
    if (last_key_ <= MakeKey(record.purged)) return code;
    record.purged = SplitKey(last_key_);
    return banks.Update(record);
  }

  bool TicketGoes(const DepositRecord& deposit) {
    bool any = false;
    for (const DepositItem& item : deposit.items) {
      if (IsOfNoFile(item)) return false;
      if (item.file_number.empty()) continue;
      if (!Holds(item.file_number)) return false;
      any = true;
    }
    for (const DepositItem& item : deposit.items)
      Goes(item.file_number, {deposit.accounting, item.statement});
    return any;
  }

  Session& session_;
  clsKVRData& data_;
  WorkProgress& progress_;
  std::set<std::string> files_;
  std::set<std::string> banks_;
  std::int32_t last_key_ = 0;  // the last period of what was purged in the bank at hand
  std::vector<std::unique_ptr<BankTables>> opened_;
};

// One write, so that entries of two workstations never mix.
bool WriteLog(Session& session, const std::vector<ClosedFile>& files, const Period& through) {
  std::string text = FormatDateTime(session.TheClock().Now(), "yyyy-mm-dd hh:nn:ss ") +
                     session.TheWorkstation().ComputerName() + " " + session.Login() + ": purged through " +
                     LongForm(through) + "\r\n";
  for (const ClosedFile& file : files)
    text += "  " + file.number + " (" + std::to_string(file.items) + " items)\r\n";
  session.Files().CreateFolder(session.DataPath() + "Logs\\");
  return session.Files().Append(session.DataPath() + "Logs\\Purged_Files.log",
                                ToWindows1252(text).value_or(text));
}

}  // namespace

PurgeSearch FindClosedFiles(Session& session, const Period& through, WorkProgress& progress) {
  return Finder(session, through, progress).Run();
}

PurgeResult PurgeFiles(Session& session, const std::vector<ClosedFile>& files, const Period& through,
                       WorkProgress& progress) {
  const int code = Purger(session, files, progress).Run();
  return {code, code == engine::kSuccess && WriteLog(session, files, through)};
}

}  // namespace tallwick
