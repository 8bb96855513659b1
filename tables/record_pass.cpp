#include "tables/record_pass.h"

namespace tallwick {
namespace {

constexpr std::int64_t kRecordsPerReport = 8192;

PassEnd Walk(TableBase& table, std::string_view what, const PassProgress& progress,
             const std::function<void(RecordView)>& visit) {
  clsKVRData& data = table.Data();
  const std::int64_t total = table.RecordCount();
  std::int64_t done = 0;
  data.SelectTagByPointer(table.Handle(), 0);
  int code = data.TopDatabase(table.Handle());
  for (; code == engine::kSuccess; code = data.SkipDatabase(table.Handle())) {
    if (done % kRecordsPerReport == 0 && progress && !progress(what, done, total)) return PassEnd::kStopped;
    ++done;
    const RecordView record = data.RecordBytes(table.Handle());
    if (IsLive(record)) visit(record);
  }
  if (code < 0) {
    data.TellUnreadable(table.Handle(), code);
    return PassEnd::kUnreadable;
  }
  return PassEnd::kDone;
}

}  // namespace

PassEnd PassOver(TableBase& table, const PackedFields& fields, std::string_view what,
                 const PassProgress& progress, const std::function<void(RecordView)>& visit) {
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
