#include "maintenance/xref_check.h"

#include <algorithm>
#include <functional>

#include "core/text.h"
#include "shell/company_tables.h"
#include "tables/bank_tables.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

constexpr int kShowEvery = 100;  // items between two words of progress

// A deposit item's reference taken apart: 8 characters date, 2 sequence, 2 item.
struct ItemReference {
  std::string dated;
  std::string sequence;
  int item = 0;  // 0: the text is no reference
};

int ItemNumber(std::string_view text) {
  const std::string_view digits = Trim(text);
  if (!IsAllDigits(digits) || digits.size() > 2) return 0;
  const int number = std::stoi(std::string(digits));
  return number <= kDepositItems ? number : 0;
}

ItemReference TakeApart(const std::string& reference) {
  if (reference.size() < 12) return {};
  return {reference.substr(0, 8), reference.substr(8, 2), ItemNumber(std::string_view(reference).substr(10))};
}

class Checker {
 public:
  Checker(Session& session, const XrefCheckOptions& options, WorkProgress& progress)
      : session_(session),
        options_(options),
        progress_(progress),
        bank_(session.Home()),
        xrefs_(session.Company().xrefs),
        code_(session.BankCode()) {}

  XrefCheckResult Run() {
    result_.opened = bank_.Open(code_);
    if (!result_.opened) return std::move(result_);
    for (TableBase* table : bank_.All()) total_ += table->RecordCount();
    total_ += xrefs_.RecordCount();
    result_.completed = CheckChecks() && CheckWires() && CheckVouchers() && CheckDeposits() &&
                        CheckDepositXrefs() && CheckXrefs();
    return std::move(result_);
  }

 private:
  // False when the check ends here.
  bool Goes(const TableBase& table) {
    if (result_.examined++ % kShowEvery == 0)
      progress_.Show("Processing " + table.Name(), std::min<std::int64_t>(result_.examined, total_), total_);
    return !stopped_ && !progress_.StopWanted();
  }
  void Report(XrefFinding finding) {
    stopped_ = stopped_ || options_.stop_on_errors;
    progress_.Tell(finding.item, finding.problem);
    result_.findings.push_back(std::move(finding));
  }

  // Live records, in the order in which they stand: an index that lacks one must not hide it.
  bool ForEach(TableBase& table, const std::function<void()>& look) {
    for (bool on = table.Top(""); on; on = table.Skip()) {
      if (table.Data().IsRecordDeleted(table.Handle())) continue;
      if (!Goes(table)) return false;
      look();
    }
    return !stopped_;
  }

  // Whether the record just judged still stands as it was read: what another workstation has changed since is
  // no finding.
  static bool IsStill(TableBase& table) {
    const std::vector<std::uint8_t> seen = BytesOf(table);
    clsKVRData& data = table.Data();
    return data.RefreshRecord(table.Handle()) == engine::kSuccess && !data.IsRecordDeleted(table.Handle()) &&
           seen == BytesOf(table);
  }
  static std::vector<std::uint8_t> BytesOf(TableBase& table) {
    const std::span<const std::uint8_t> bytes = table.Data().RecordBytes(table.Handle());
    return {bytes.begin(), bytes.end()};
  }

  bool CheckChecks() {
    return ForEach(bank_.checks, [this] {
      const CheckRecord check = bank_.checks.Read();
      Require(bank_.checks, CheckXref(check.file_number, code_, check.number), "Check " + check.number);
    });
  }
  bool CheckWires() {
    return ForEach(bank_.wires, [this] {
      const WireRecord wire = bank_.wires.Read();
      Require(bank_.wires, WireXref(wire.file_number, code_, wire.number), "Wire " + wire.number);
    });
  }
  bool CheckVouchers() {
    return ForEach(bank_.vouchers, [this] {
      const VoucherRecord voucher = bank_.vouchers.Read();
      Require(bank_.vouchers, VoucherXref(voucher.file_number, code_, voucher.number),
              "Voucher " + voucher.number);
    });
  }
  bool CheckDeposits() {
    return ForEach(bank_.deposits, [this] {
      const DepositRecord deposit = bank_.deposits.Read();
      for (int item = 1; item <= kDepositItems; ++item) {
        const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
        if (!file.empty() && !stopped_) RequireItem(deposit, file, item);
      }
    });
  }

  void Require(TableBase& table, const XrefRecord& xref, std::string item) {
    if (xrefs_.SeekReference(xref)) return;
    const auto add = [&] { return xrefs_.SeekReference(xref) ? 0 : xrefs_.Add(xref, true); };
    ReportMissing(table, std::move(item), xref.file_number, add);
  }

  void RequireItem(const DepositRecord& deposit, const std::string& file, int item) {
    const XrefRecord xref = DepositItemXref(file, code_, deposit.dated, deposit.sequence, item);
    const DepositXrefRecord own{file, deposit.dated, deposit.sequence, std::to_string(item)};
    if (xrefs_.SeekReference(xref) && bank_.deposit_xrefs.SeekItem(own)) return;
    const auto add = [&] {
      int code = xrefs_.SeekReference(xref) ? 0 : xrefs_.Add(xref, true);
      if (code == engine::kSuccess && !bank_.deposit_xrefs.SeekItem(own))
        code = bank_.deposit_xrefs.Add(own, true);
      return code;
    };
    ReportMissing(bank_.deposits, ItemName(deposit.dated, deposit.sequence, item), file, add);
  }

  void ReportMissing(TableBase& table, std::string item, const std::string& file,
                     const std::function<int()>& add) {
    if (!IsStill(table)) return;
    XrefFinding finding{std::move(item), file, "Missing", false, false};
    if (options_.create_missing) {
      const int code = Create(table, add);
      finding.created = code == engine::kSuccess;
      finding.problem +=
          finding.created ? " - created" : " - not created (" + std::string(engine::error4text(code)) + ")";
    }
    Report(std::move(finding));
  }

  // Under the transaction's lock, so that nobody changes its file or removes it meanwhile; a transaction that
  // was just changed has been given its references by whoever changed it.
  int Create(TableBase& table, const std::function<int()>& add) {
    clsKVRData& data = session_.Data();
    const std::vector<std::uint8_t> seen = BytesOf(table);
    int code = table.Lock(true);
    if (code != engine::kSuccess) return code;
    if (seen != BytesOf(table)) code = engine::kLocked;
    if (code == engine::kSuccess) code = data.BeginUnit();
    if (code == engine::kSuccess) {
      code = add();
      if (code == engine::kSuccess)
        code = data.CommitUnit();
      else
        data.RollbackUnit();
    }
    table.Unlock();
    return code;
  }

  static std::string ItemName(std::string_view dated, std::string_view sequence, int item) {
    return "Deposit " + std::string(dated) + " " + std::string(Trim(sequence)) + " item " +
           std::to_string(item);
  }

  bool HasItem(std::string_view dated, std::string_view sequence, int item, std::string_view file) {
    return item >= 1 && bank_.deposits.SeekDeposit(dated, sequence) &&
           SameKey(bank_.deposits.Read().items[static_cast<std::size_t>(item) - 1].file_number, file);
  }

  bool CheckDepositXrefs() {
    return ForEach(bank_.deposit_xrefs, [this] {
      const DepositXrefRecord xref = bank_.deposit_xrefs.Read();
      const int item = ItemNumber(xref.item);
      if (!HasItem(xref.dated, xref.sequence, item, xref.file_number) && IsStill(bank_.deposit_xrefs))
        Report({ItemName(xref.dated, xref.sequence, item), xref.file_number, "Invalid", true, false});
    });
  }

  bool CheckXrefs() {
    return ForEach(xrefs_, [this] {
      const XrefRecord xref = xrefs_.Read();
      if (SameKey(xref.bank_code, code_) && !HasTransaction(xref) && IsStill(xrefs_))
        Report({KindName(xref.kind) + " " + std::string(Trim(xref.reference)), xref.file_number, "Invalid",
                true, false});
    });
  }

  static std::string KindName(std::string_view kind) {
    if (kind == "C") return "Check";
    if (kind == "D") return "Deposit";
    if (kind == "W") return "Wire";
    return kind == "V" ? "Voucher" : "Kind " + Quoted(kind);
  }

  bool HasTransaction(const XrefRecord& xref) {
    if (xref.kind == "C")
      return bank_.checks.SeekNumber(xref.reference) &&
             SameKey(bank_.checks.Read().file_number, xref.file_number);
    if (xref.kind == "W")
      return bank_.wires.SeekNumber(xref.reference) &&
             SameKey(bank_.wires.Read().file_number, xref.file_number);
    if (xref.kind == "V")
      return bank_.vouchers.SeekNumber(xref.reference) &&
             SameKey(bank_.vouchers.Read().file_number, xref.file_number);
    if (xref.kind != "D") return false;
    const ItemReference item = TakeApart(xref.reference);
    return HasItem(item.dated, item.sequence, item.item, xref.file_number);
  }

  Session& session_;
  const XrefCheckOptions& options_;
  WorkProgress& progress_;
  BankTables bank_;
  XrefTable& xrefs_;
  std::string code_;
  std::int64_t total_ = 0;
  bool stopped_ = false;
  XrefCheckResult result_;
};

template <class Predicate>
int CountOf(const std::vector<XrefFinding>& findings, Predicate predicate) {
  return static_cast<int>(std::count_if(findings.begin(), findings.end(), predicate));
}

}  // namespace

int XrefCheckResult::Missing() const {
  return CountOf(findings, [](const XrefFinding& finding) { return !finding.invalid; });
}

int XrefCheckResult::Invalid() const {
  return CountOf(findings, [](const XrefFinding& finding) { return finding.invalid; });
}

int XrefCheckResult::Created() const {
  return CountOf(findings, [](const XrefFinding& finding) { return finding.created; });
}

XrefCheckResult CheckXReferences(Session& session, const XrefCheckOptions& options, WorkProgress& progress) {
  return Checker(session, options, progress).Run();
}

}  // namespace tallwick
