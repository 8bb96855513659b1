#include "maintenance/xref_check.h"

#include <algorithm>
#include <functional>

#include "core/text.h"
#include "maintenance/reference_rules.h"
#include "shell/company_tables.h"
#include "shell/main_commands.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

constexpr int kShowEvery = 100;  // items between two words of progress

class Checker {
 public:
  Checker(Session& session, const XrefCheckOptions& options, WorkProgress& progress)
      : session_(session),
        options_(options),
        progress_(progress),
        bank_(session.Home()),
        targets_(bank_, [](const TableBase& table) { return table.IsOpen(); }),
        xrefs_(session.Company().xrefs),
        code_(session.BankCode()) {}

  XrefCheckResult Run() {
    result_.opened = bank_.Open(code_);
    if (!result_.opened) return std::move(result_);
    for (TableBase* table : bank_.All()) total_ += table->RecordCount();
    total_ += xrefs_.RecordCount();
    result_.completed = CheckItems(bank_.checks, kCheckItems) && CheckItems(bank_.wires, kWireItems) &&
                        CheckItems(bank_.vouchers, kVoucherItems) && CheckDeposits() && CheckDepositXrefs() &&
                        CheckXrefs();
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

  // False when the check ends here: stopped, or the table cannot be read.
  bool ForEach(TableBase& table, const std::function<void()>& look) {
    const bool whole = table.ForEachLive([&] {
      if (!Goes(table)) return false;
      look();
      return true;
    });
    return whole && !stopped_;
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

  bool CheckItems(TableBase& table, const ItemKind& kind) {
    return ForEach(table, [this, &table, &kind] {
      const Item item = CurrentItem(table, kind);
      Require(table, kind.xref(item.file_number, code_, item.number),
              std::string(kind.title) + " " + item.number);
    });
  }
  bool CheckDeposits() {
    return ForEach(bank_.deposits, [this] {
      for (const ReferredItem& item : ItemsOf(bank_.deposits.Read(), code_))
        if (!stopped_) RequireItem(item);
    });
  }

  void Require(TableBase& table, const XrefRecord& xref, std::string item) {
    if (xrefs_.SeekReference(xref)) return;
    const auto add = [&] { return xrefs_.SeekReference(xref) ? 0 : xrefs_.Add(xref, true); };
    ReportMissing(table, std::move(item), xref.file_number, add);
  }

  void RequireItem(const ReferredItem& item) {
    if (xrefs_.SeekReference(item.xref) && bank_.deposit_xrefs.SeekItem(item.own)) return;
    const auto add = [&] {
      int code = xrefs_.SeekReference(item.xref) ? 0 : xrefs_.Add(item.xref, true);
      if (code == engine::kSuccess && !bank_.deposit_xrefs.SeekItem(item.own))
        code = bank_.deposit_xrefs.Add(item.own, true);
      return code;
    };
    ReportMissing(bank_.deposits, ItemName(item.own), item.own.file_number, add);
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

  static std::string ItemName(const DepositXrefRecord& xref) {
    return "Deposit " + xref.dated + " " + std::string(Trim(xref.sequence)) + " item " +
           std::string(Trim(xref.item));
  }

  bool CheckDepositXrefs() {
    return ForEach(bank_.deposit_xrefs, [this] {
      const DepositXrefRecord xref = bank_.deposit_xrefs.Read();
      if (targets_.Find(xref) != ReferenceTarget::kThere && IsStill(bank_.deposit_xrefs))
        Report({ItemName(xref), xref.file_number, "Invalid", true, false});
    });
  }

  bool CheckXrefs() {
    return ForEach(xrefs_, [this] {
      const XrefRecord xref = xrefs_.Read();
      if (SameKey(xref.bank_code, code_) && targets_.Find(xref) != ReferenceTarget::kThere && IsStill(xrefs_))
        Report({KindName(xref.kind) + " " + std::string(Trim(xref.reference)), xref.file_number, "Invalid",
                true, false});
    });
  }

  static std::string KindName(std::string_view kind) {
    for (const ItemKind* items : {&kCheckItems, &kWireItems, &kVoucherItems})
      if (kind == items->kind) return std::string(items->title);
    return kind == "D" ? "Deposit" : "Kind " + Quoted(kind);
  }

  Session& session_;
  const XrefCheckOptions& options_;
  WorkProgress& progress_;
  BankTables bank_;
  ReferenceTargets targets_;
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
  if (!MayCarryOut(session, "mnuFileCheckXReference")) return {};
  return Checker(session, options, progress).Run();
}

}  // namespace tallwick
