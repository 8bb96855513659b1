#include "tables/record_pass.h"

#include <algorithm>

namespace tallwick {
namespace {

constexpr std::int64_t kRecordsPerReport = 8192;

// Visits the current record and those at hand behind it; their number.
std::int64_t VisitRun(const clsKVRData& data, DataHandle table, const RunVisit& visit) {
  const std::size_t length = data.RecordBytes(table).size();
  const RecordView run = data.RecordRun(table);
  visit(run, length, data.recordNumber);
  return static_cast<std::int64_t>(run.size() / length);
}

PassEnd Walk(TableBase& table, std::string_view what, const PassProgress& progress, const RunVisit& visit) {
  clsKVRData& data = table.Data();
  const std::int64_t total = table.RecordCount();
  std::int64_t done = 0;
  std::int64_t next_report = 0;
  data.SelectTagByPointer(table.Handle(), 0);
  int code = data.TopDatabase(table.Handle());
  while (code == engine::kSuccess) {
    if (done >= next_report && progress) {
      if (!progress(what, std::min(done, total), total)) return PassEnd::kStopped;
      next_report = done + kRecordsPerReport;
    }
    const std::int64_t records = VisitRun(data, table.Handle(), visit);
    done += records;
    code = data.SkipDatabase(table.Handle(), records);
  }
  if (code < 0) {
    data.TellUnreadable(table.Handle(), code);
    return PassEnd::kUnreadable;
  }
  return PassEnd::kDone;
}

}  // namespace

std::string NoNumberText(const TableBase& table, std::int32_t record) {
  return "Record " + std::to_string(record) + " of " + table.Name() + " holds an amount that is no number";
}

PassEnd AmountsOfPass::End(PassEnd end) const {
  if (end != PassEnd::kDone || first_bad_ == 0) return end;
  table_.TellDamage(
      NoNumberText(table_, first_bad_) +
      ".  No figures are given without it: \"escrowctl verify\" names every such field.  Compare "
      "the record with the paper and correct it, or restore the table from a copy.");
  return PassEnd::kUnreadable;
}

PassEnd PassOverRuns(TableBase& table, const PackedFields& fields, std::string_view what,
                     const PassProgress& progress, const RunVisit& visit) {
  clsKVRData& data = table.Data();
  if (!fields.Missing().empty()) {
    data.TellUnreadable(table.Handle(), engine::kErrorFieldName);
    return PassEnd::kUnreadable;
  }
  data.SetReadAhead(table.Handle(), true);
  const PassEnd end = Walk(table, what, progress, visit);
  data.SetReadAhead(table.Handle(), false);
  return end;
}

}  // namespace tallwick
