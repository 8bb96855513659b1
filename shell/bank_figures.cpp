#include "shell/bank_figures.h"

#include <algorithm>

#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"

namespace tallwick {
namespace {

// The key of a period whose three fields begin with `prefix` ("CHXACCT").
class PeriodFields {
 public:
  PeriodFields(const TableBase& table, const std::string& prefix)
      : month_(table.Field(prefix + "MO")),
        day_(table.Field(prefix + "DA")),
        year_(table.Field(prefix + "YR")) {}
  std::int32_t Key(const TableBase& table) const {
    return MakeKey(Number(table, year_), Number(table, month_), Number(table, day_));
  }

 private:
  static std::int32_t Number(const TableBase& table, FieldHandle field) {
    return static_cast<std::int32_t>(table.Data().GetIntegerByPointer(table.Handle(), field));
  }
  FieldHandle month_, day_, year_;
};

Currency Amount(const TableBase& table, FieldHandle field) {
  return table.Data().GetCurrencyFieldValueByPointer(table.Handle(), field);
}

std::string Text(const TableBase& table, FieldHandle field) {
  return table.Data().GetStringFieldValueByPointer(table.Handle(), field);
}

bool IsReturned(std::string_view status) {
  return status == "V" || status == "S";
}

}  // namespace

// What the current record of a table adds.
class BankFigures::Reader {
 public:
  Reader(BankFigures& figures, std::int32_t reconciled) : figures_(figures), reconciled_(reconciled) {}
  virtual ~Reader() = default;
  virtual Item Read() = 0;

 protected:
  bool IsLater(std::int32_t key) const { return key > reconciled_; }
  void Charge(Item& item, const std::string& file_number, Currency amount) const {
    if (!Trim(file_number).empty()) item.shares.push_back({figures_.FileId(file_number), amount});
  }

 private:
  BankFigures& figures_;
  std::int32_t reconciled_;
};

class BankFigures::CheckReader : public Reader {
 public:
  CheckReader(BankFigures& figures, std::int32_t reconciled, const CheckTable& table)
      : Reader(figures, reconciled),
        table_(table),
        amount_(table.Field("CHXAMOUNT")),
        status_(table.Field("CHXSTATUS")),
        file_(table.Field("CHXFILENO")),
        accounting_(table, "CHXACCT"),
        statement_(table, "CHXSTMT") {}
  Item Read() override {
    Item item;
    const Currency amount = Amount(table_, amount_);
    const std::string status = Text(table_, status_);
    if (IsLater(accounting_.Key(table_))) item.book_balance -= amount;
    if (IsReturned(status)) {
      // One without a statement period has come back too; one of a reconciled period is in that balance
      // already.
      const std::int32_t returned = statement_.Key(table_);
      if (returned == 0 || IsLater(returned)) item.book_balance += amount;
      return item;
    }
    if (status != "C") item.outstanding = {amount, 1};
    Charge(item, Text(table_, file_), Currency() - amount);
    return item;
  }

 private:
  const CheckTable& table_;
  FieldHandle amount_, status_, file_;
  PeriodFields accounting_, statement_;
};

class BankFigures::WireReader : public Reader {
 public:
  WireReader(BankFigures& figures, std::int32_t reconciled, const WireTable& table)
      : Reader(figures, reconciled),
        table_(table),
        amount_(table.Field("WIREAMOUNT")),
        file_(table.Field("WIREFILENO")),
        accounting_(table, "WIREACCT") {}
  Item Read() override {
    Item item;
    const Currency amount = Amount(table_, amount_);
    if (IsLater(accounting_.Key(table_))) item.book_balance -= amount;
    Charge(item, Text(table_, file_), Currency() - amount);
    return item;
  }

 private:
  const WireTable& table_;
  FieldHandle amount_, file_;
  PeriodFields accounting_;
};

class BankFigures::DepositReader : public Reader {
 public:
  DepositReader(BankFigures& figures, std::int32_t reconciled, const DepositTable& table)
      : Reader(figures, reconciled), table_(table), accounting_(table, "DEPOACCT") {
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const std::string number = std::to_string(i + 1);
      items_[i] = {table.Field("DEPOAMT" + number), table.Field("DEPOSTAT" + number),
                   table.Field("DEPOFILE" + number)};
    }
  }
  Item Read() override {
    Item item;
    const bool later = IsLater(accounting_.Key(table_));
    for (const Fields& fields : items_) {
      const std::string status = Text(table_, fields.status);
      if (status.empty()) continue;
      const Currency amount = Amount(table_, fields.amount);
      if (later) item.book_balance += amount;
      if (status == "O") {
        item.outstanding.sum += amount;
        ++item.outstanding.count;
      }
      Charge(item, Text(table_, fields.file), amount);
    }
    return item;
  }

 private:
  struct Fields {
    FieldHandle amount = 0;
    FieldHandle status = 0;
    FieldHandle file = 0;
  };
  const DepositTable& table_;
  std::array<Fields, kDepositItems> items_{};
  PeriodFields accounting_;
};

BankFigures::BankFigures(Session& session)
    : session_(session), watch_(session.Data().WatchWrites([this](DataHandle data, std::int32_t record) {
        NoteWritten(data, record);
      })) {}

BankFigures::~BankFigures() {
  session_.Data().UnwatchWrites(watch_);
}

void BankFigures::NoteWritten(DataHandle data, std::int32_t record) {
  if (bank_code_.empty()) return;
  const std::string table = session_.Data().DatabaseName(data);
  for (Kept& kept : kept_) {
    if (kept.table == table) kept.written.insert(record);
  }
}

BankOverview BankFigures::Read(std::chrono::milliseconds budget) {
  const Deadline deadline = std::chrono::steady_clock::now() + budget;
  BankOverview overview;
  const std::optional<BankRecord> bank = session_.Company().banks.Find(session_.BankCode());
  BankTables tables(session_.Home());
  if (!bank || !tables.Open(bank->code)) {
    Forget();
    return overview;
  }
  const std::int32_t reconciled = MakeKey(bank->reconciled);
  if (bank_code_ != bank->code || reconciled_ != reconciled) StartOver(bank->code, reconciled);
  CheckReader checks(*this, reconciled, tables.checks);
  WireReader wires(*this, reconciled, tables.wires);
  DepositReader deposits(*this, reconciled, tables.deposits);
  const bool complete = Update(kChecks, tables.checks, checks, deadline) &&
                        Update(kWires, tables.wires, wires, deadline) &&
                        Update(kDeposits, tables.deposits, deposits, deadline);
  if (!complete) {
    const std::int64_t all = std::int64_t{tables.checks.RecordCount()} + tables.wires.RecordCount() +
                             tables.deposits.RecordCount();
    std::int64_t read = 0;
    for (const Kept& kept : kept_) read += static_cast<std::int64_t>(kept.items.size());
    overview.percent_read =
        static_cast<int>(std::min<std::int64_t>(99, read * 100 / std::max<std::int64_t>(1, all)));
  }
  overview.book_balance = bank->beginning_balance + book_change_;
  overview.outstanding_checks = kept_[kChecks].outstanding;
  overview.outstanding_deposits = kept_[kDeposits].outstanding;
  overview.files_overdrawn = overdrawn_;
  overview.latest = ReadLatestPostings(tables);
  return overview;
}

void BankFigures::StartOver(const std::string& bank_code, std::int32_t reconciled) {
  bank_code_ = bank_code;
  reconciled_ = reconciled;
  kept_ = {};
  book_change_ = Currency();
  file_ids_.clear();
  file_balances_.clear();
  overdrawn_ = 0;
}

bool BankFigures::Update(Source source, TableBase& table, Reader& reader, Deadline deadline) {
  Kept& kept = kept_[source];
  kept.table = table.Data().DatabaseName(table.Handle());
  const auto count = static_cast<std::size_t>(table.RecordCount());
  const std::size_t known = kept.items.size();
  const auto read = [&](std::int32_t record, bool there) {
    const bool counts = there && !table.Data().IsRecordDeleted(table.Handle());
    Replace(kept, record, counts ? reader.Read() : Item());
  };
  // A table that has been packed is another one.
  for (std::size_t record = count + 1; record <= known; ++record)
    read(static_cast<std::int32_t>(record), false);
  kept.items.resize(std::min(known, count));
  for (const std::int32_t record : kept.written) {
    if (record > 0 && static_cast<std::size_t>(record) <= std::min(known, count))
      read(record, table.GoTo(record));
  }
  kept.written.clear();
  return known >= count || ReadNew(kept, table, reader, deadline);
}

// What can not be read counts as nothing, and is not tried again.
bool BankFigures::ReadNew(Kept& kept, TableBase& table, Reader& reader, Deadline deadline) {
  constexpr std::size_t kBetweenLooks = 64;  // records
  const auto count = static_cast<std::size_t>(table.RecordCount());
  if (kept.items.empty()) kept.items.reserve(count);
  table.Data().SetReadAhead(table.Handle(), true);
  bool in_time = true;
  bool on = table.Top("") && table.GoTo(static_cast<std::int32_t>(kept.items.size() + 1));
  for (; on && in_time && static_cast<std::size_t>(table.RecordNumber()) <= count; on = table.Skip()) {
    kept.items.resize(static_cast<std::size_t>(table.RecordNumber()));
    const bool counts = !table.Data().IsRecordDeleted(table.Handle());
    Replace(kept, table.RecordNumber(), counts ? reader.Read() : Item());
    const bool look = kept.items.size() % kBetweenLooks == 0 && kept.items.size() < count;
    in_time = !look || std::chrono::steady_clock::now() < deadline;
  }
  table.Data().SetReadAhead(table.Handle(), false);
  if (in_time) kept.items.resize(count);
  return in_time;
}

void BankFigures::Replace(Kept& kept, std::int32_t record, Item item) {
  Item& old = kept.items[static_cast<std::size_t>(record) - 1];
  Count(kept, old, false);
  Count(kept, item, true);
  old = std::move(item);
}

void BankFigures::Count(Kept& kept, const Item& item, bool add) {
  const auto counted = [add](Currency amount) { return add ? amount : Currency() - amount; };
  book_change_ += counted(item.book_balance);
  kept.outstanding.sum += counted(item.outstanding.sum);
  kept.outstanding.count += add ? item.outstanding.count : -item.outstanding.count;
  for (const Share& share : item.shares) {
    Currency& balance = file_balances_[share.file];
    if (balance < Currency()) --overdrawn_;
    balance += counted(share.amount);
    if (balance < Currency()) ++overdrawn_;
  }
}

// Files are told apart as their index keys are: without regard to case.
std::uint32_t BankFigures::FileId(std::string_view file_number) {
  const auto [found, is_new] =
      file_ids_.try_emplace(ToUpper(Trim(file_number)), static_cast<std::uint32_t>(file_balances_.size()));
  if (is_new) file_balances_.emplace_back();
  return found->second;
}

}  // namespace tallwick
