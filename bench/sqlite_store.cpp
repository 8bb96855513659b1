// The checks in SQLite: one row a check, its texts without the padding, six indexes of the same content.
// Where a text is all digits or upper case anyway the index is on the plain column, which is the faster
// choice for SQLite.
#include <sqlite3.h>

#include <array>
#include <filesystem>

#include "bench/check_store.h"

namespace tallwick::bench {
namespace {

constexpr const char* kSchema = R"(
CREATE TABLE checks (chxnumber TEXT, chxdated TEXT, chxpayee TEXT, chxaddr1 TEXT, chxaddr2 TEXT, chxcityst TEXT,
  chxamount INTEGER, chxacctmo INTEGER, chxacctyr INTEGER, chxstmtmo INTEGER, chxstmtyr INTEGER, chxstatus TEXT,
  chxcontrol TEXT, chxvchrno TEXT, chxfileno TEXT, chxtinno TEXT, chxacctda INTEGER, chxstmtda INTEGER, chxsreason TEXT);
CREATE UNIQUE INDEX chxfileno ON checks (chxfileno, chxnumber);
CREATE UNIQUE INDEX chxnumber ON checks (chxnumber);
CREATE INDEX chxpayee ON checks (upper(chxpayee));
CREATE INDEX chxdated ON checks (chxdated, chxnumber);
CREATE INDEX chxacct ON checks (chxacctyr, chxacctmo, chxacctda);
CREATE INDEX chxstmt ON checks (chxstmtyr, chxstmtmo, chxstmtda);
CREATE TABLE xrfs (xrfsfileno TEXT, xrfsbankid TEXT, xrfstxtype TEXT, xrfstxrefn TEXT);
CREATE UNIQUE INDEX xrfsfilebk ON xrfs (xrfsfileno, xrfsbankid, xrfstxtype, xrfstxrefn);
CREATE UNIQUE INDEX xrfsbankfi ON xrfs (xrfsbankid, xrfsfileno, xrfstxtype, xrfstxrefn);
)";

// A prepared statement; its parameters are bound in order.
class Statement {
 public:
  Statement(sqlite3* base, const char* text) : base_(base) {
    if (sqlite3_prepare_v2(base, text, -1, &statement_, nullptr) != SQLITE_OK) Refused();
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  void Bind(int position, const std::string& text) {
    sqlite3_bind_text(statement_, position, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }
  void Bind(int position, std::int64_t number) { sqlite3_bind_int64(statement_, position, number); }

  // True on a row, false at the end.
  bool Step() {
    const int result = sqlite3_step(statement_);
    if (result != SQLITE_ROW && result != SQLITE_DONE) Refused();
    return result == SQLITE_ROW;
  }
  void Reset() { sqlite3_reset(statement_); }

  std::int64_t Number(int column) { return sqlite3_column_int64(statement_, column); }
  std::string_view Text(int column) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
  }

 private:
  void Refused() { Fail(std::string("SQLite: ") + sqlite3_errmsg(base_)); }

  sqlite3* base_;
  sqlite3_stmt* statement_ = nullptr;
};

class SqliteStore : public CheckStore {
 public:
  SqliteStore(std::string folder, const Workload& workload)
      : folder_(std::move(folder)), workload_(workload) {}
  ~SqliteStore() override { sqlite3_close(base_); }
  SqliteStore(const SqliteStore&) = delete;
  SqliteStore& operator=(const SqliteStore&) = delete;

  std::string Name() const override {
    return std::string("SQLite ") + sqlite3_libversion() +
           ", synchronous=FULL, journal_mode=DELETE (durable posts: WAL), 64 MiB of cache";
  }

  void Prepare(Work work) override {
    sqlite3_close(base_);
    base_ = nullptr;
    if (work == Work::kAppend) {
      std::filesystem::remove_all(folder_);
      std::filesystem::create_directories(folder_);
    }
    if (sqlite3_open((folder_ + "/checks.sqlite").c_str(), &base_) != SQLITE_OK) Fail("SQLite: open");
    Execute("PRAGMA synchronous=FULL");
    Execute("PRAGMA cache_size=-65536");
    Execute(work == Work::kPost ? "PRAGMA journal_mode=WAL" : "PRAGMA journal_mode=DELETE");
    if (work == Work::kAppend) Execute(kSchema);
    if (work != Work::kPost) return;
    posts_ = MakeChecks(next_post_, workload_.posts);
    next_post_ += workload_.posts;
  }

  std::int64_t Run(Work work) override {
    switch (work) {
      case Work::kAppend:
        return AppendAll();
      case Work::kFind:
        return Find();
      case Work::kWalk:
        return Walk();
      case Work::kSum:
        return Sum();
      case Work::kReindex:
        Execute("REINDEX checks");
        return static_cast<std::int64_t>(workload_.checks.size());
      case Work::kPost:
        return Post();
    }
    return 0;
  }

 private:
  void Execute(const char* text) {
    if (sqlite3_exec(base_, text, nullptr, nullptr, nullptr) != SQLITE_OK)
      Fail(std::string("SQLite: ") + sqlite3_errmsg(base_));
  }

  static constexpr const char* kInsert = "INSERT INTO checks VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)";

  static void Insert(Statement& insert, const Check& check) {
    int position = 0;
    ForEachField(
        check, [&](const std::string& value) { insert.Bind(++position, value); },
        [&](std::int64_t cents) { insert.Bind(++position, cents); },
        [&](int value) { insert.Bind(++position, std::int64_t{value}); });
    insert.Step();
    insert.Reset();
  }

  std::int64_t AppendAll() {
    Execute("BEGIN IMMEDIATE");
    Statement insert(base_, kInsert);
    for (const Check& check : workload_.checks) Insert(insert, check);
    Execute("COMMIT");
    return static_cast<std::int64_t>(workload_.checks.size());
  }

  std::int64_t Find() {
    Statement select(base_, "SELECT chxnumber, chxamount, chxstatus FROM checks WHERE chxnumber = ?");
    std::int64_t sum = 0;
    for (const std::string& number : workload_.numbers) {
      select.Bind(1, number);
      if (!select.Step()) Fail("SQLite: a check is missing");
      sum = Mix(sum, select.Text(0), select.Number(1), select.Text(2));
      select.Reset();
    }
    return sum;
  }

  std::int64_t Walk() {
    Statement select(base_, "SELECT chxnumber, chxamount, chxstatus FROM checks ORDER BY chxnumber");
    std::int64_t sum = 0;
    while (select.Step()) sum = Mix(sum, select.Text(0), select.Number(1), select.Text(2));
    return sum;
  }

  std::int64_t Sum() {
    Statement select(base_,
                     "SELECT sum(chxamount) FROM checks WHERE chxstatus = 'O' "
                     "AND chxacctyr * 10000 + chxacctmo * 100 + chxacctda <= ?");
    select.Bind(1, std::int64_t{workload_.last_period});
    select.Step();
    return select.Number(0);
  }

  std::int64_t Post() {
    Statement insert(base_, kInsert);
    Statement refer(base_, "INSERT INTO xrfs VALUES (?, 'FIRST', 'C', ?)");
    for (const Check& check : posts_) {
      Execute("BEGIN IMMEDIATE");
      Insert(insert, check);
      refer.Bind(1, check.file_number);
      refer.Bind(2, check.number);
      refer.Step();
      refer.Reset();
      Execute("COMMIT");
    }
    return static_cast<std::int64_t>(posts_.size());
  }

  std::string folder_;
  const Workload& workload_;
  std::vector<Check> posts_;
  std::uint32_t next_post_ = kFirstPosted;
  sqlite3* base_ = nullptr;
};

}  // namespace

std::unique_ptr<CheckStore> MakeSqliteStore(const std::string& folder, const Workload& workload) {
  return std::make_unique<SqliteStore>(folder, workload);
}

}  // namespace tallwick::bench
