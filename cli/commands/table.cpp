// table: any xBase table, for support. Every access goes through the record store; nothing of a company is
// needed. A table holds what every bank and user has in it, passwords too: while security is on, only an
// administrator uses these commands.
#include "cli/commands/command.h"
#include "cli/commands/open_table.h"
#include "cli/field_values.h"
#include "cli/json_values.h"
#include "cli/problems.h"
#include "core/text.h"
#include "maintenance/bank_trail.h"
#include "maintenance/verify_table.h"
#include "posting/item_number.h"
#include "tables/bank_table.h"

namespace tallwick::cli {

namespace {

struct TableArguments {
  std::string file;
  std::string tag;
  std::string key;
  std::int32_t record = 0;
  std::vector<std::string> values;
  bool deleted = false;
};

Json TagJson(const TagProperties& tag) {
  return {{"name", tag.name},
          {"expression", tag.expression},
          {"filter", tag.filter},
          {"unique", tag.unique != 0},
          {"descending", tag.descending}};
}

int Info(Office& office, const TableArguments& arguments) {
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  clsKVRData& store = table.Store();
  Json fields = Json::array();
  std::vector<std::vector<std::string>> field_rows;
  for (const FieldProperties& field : store.FieldList(table.Data())) {
    fields.push_back({{"name", field.name},
                      {"type", std::string(1, field.type)},
                      {"width", field.width},
                      {"decimals", field.decimals}});
    field_rows.push_back(
        {field.name, {field.type}, std::to_string(field.width), std::to_string(field.decimals)});
  }
  Json tags = Json::array();
  std::vector<std::vector<std::string>> tag_rows;
  for (const std::string& name : store.TagNames(table.Data())) {
    const std::optional<TagProperties> tag = store.GetTagProperties(table.Data(), name);
    if (!tag) continue;
    tags.push_back(TagJson(*tag));
    tag_rows.push_back({tag->name, tag->unique != 0 ? "unique" : "", tag->descending ? "descending" : "",
                        tag->expression, tag->filter});
  }
  Output& out = office.Out();
  out.Set("fields", fields);
  out.Set("tags", tags);
  out.Set("records", store.RecordCount(table.Data()));
  out.Line(TextTable({"Field", "Type", "Width", "Dec"}, "<<>>", field_rows));
  if (!tag_rows.empty()) {
    out.Line("");
    out.Line(TextTable({"Tag", "Unique", "Order", "Expression", "Filter"}, "<<<<<", tag_rows));
  }
  out.Line("");
  out.Line(std::to_string(store.RecordCount(table.Data())) + " records");
  return kDone;
}

// One record of a dump: JSON with its number and deletion mark, text with tabs between the values.
void DumpRecord(OpenTable& table, const std::vector<FieldProperties>& fields, Output& out) {
  clsKVRData& store = table.Store();
  const std::int32_t number = store.CurrentRecord(table.Data());
  const bool deleted = store.IsRecordDeleted(table.Data());
  Json record = {{"_recno", number}, {"_deleted", deleted}};
  std::string line = std::to_string(number) + (deleted ? "*" : "");
  for (const FieldProperties& field : fields) {
    Json value = FieldJson(store, table.Data(), field, Trimming::kRight);
    if (!out.IsJson()) line += '\t' + PlainText(value);
    record[field.name] = std::move(value);
  }
  out.Item(record, line);
}

// False after a message where the table has no such tag; "" is the record order.
bool SelectTag(Office& office, OpenTable& table, const std::string& tag) {
  if (table.Store().SelectTag(table.Data(), tag)) return true;
  office.Out().Fail("The table has no tag " + Quoted(tag));
  return false;
}

int Dump(Office& office, const TableArguments& arguments) {
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  clsKVRData& store = table.Store();
  if (!SelectTag(office, table, arguments.tag)) return kRefused;
  const std::vector<FieldProperties> fields = store.FieldList(table.Data());
  std::string heading = "record";
  for (const FieldProperties& field : fields) heading += '\t' + field.name;
  office.Out().Line(heading);
  office.Out().StartList("records");
  int code = store.TopDatabase(table.Data());
  for (; code == 0; code = store.SkipDatabase(table.Data()))
    if (arguments.deleted || !store.IsRecordDeleted(table.Data())) DumpRecord(table, fields, office.Out());
  office.Out().EndList();
  return code < 0 ? table.Failed("could not be read to its end", code) : kDone;
}

// Characters of the field with which the tag's keys begin; 0 where that holds no characters.
std::size_t WidthOfFirstField(clsKVRData& store, DataHandle data, const std::string& tag_name) {
  const std::optional<TagProperties> tag = store.GetTagProperties(data, tag_name);
  if (!tag) return 0;
  const std::string& expression = tag->expression;
  const std::size_t open = expression.find('(');
  const std::size_t first = open < expression.find('+') ? open + 1 : 0;
  const std::string name(Trim(expression.substr(first, expression.find_first_of("+),", first) - first)));
  for (const FieldProperties& field : store.FieldList(data))
    if (field.type == 'C' && EqualsIgnoreCase(field.name, name)) return static_cast<std::size_t>(field.width);
  return 0;
}

// Counted numbers are stored right-aligned: one that is not found as it was typed is sought as it is stored.
int SeekTyped(clsKVRData& store, DataHandle data, const std::string& tag, const std::string& key) {
  const int code = store.SeekDatabase(data, key);
  if (code <= 0 || !IsAllDigits(key) || WidthOfFirstField(store, data, tag) != kNumberWidth) return code;
  return store.SeekDatabase(data, PadLeft(key, kNumberWidth));
}

int Seek(Office& office, const TableArguments& arguments) {
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  clsKVRData& store = table.Store();
  if (!SelectTag(office, table, arguments.tag)) return kRefused;
  const int code = SeekTyped(store, table.Data(), arguments.tag, arguments.key);
  if (code < 0) return table.Failed("cannot be sought for this key", code);
  const bool found = code == 0;
  const std::int32_t record = found ? store.CurrentRecord(table.Data()) : 0;
  office.Out().Set("found", found);
  office.Out().Set("recno", record);
  office.Out().Line(found ? "record " + std::to_string(record) : "not found");
  return kDone;
}

// Prints the current record after a change.
int ShowRecord(Office& office, OpenTable& table) {
  clsKVRData& store = table.Store();
  const std::int32_t number = store.CurrentRecord(table.Data());
  const Json fields = RecordJson(store, table.Data(), store.FieldList(table.Data()), Trimming::kRight);
  office.Out().Set("recno", number);
  office.Out().Set("fields", fields);
  office.Out().Line("record " + std::to_string(number));
  return kDone;
}

int Append(Office& office, const TableArguments& arguments) {
  std::vector<FieldAssignment> assignments;
  if (!ParseAssignments(arguments.values, &assignments, office.Out())) return kWrongUsage;
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  clsKVRData& store = table.Store();
  store.AddRecordStart(table.Data());
  if (const std::string problem = AssignFields(store, table.Data(), assignments); !problem.empty()) {
    store.SetChangedFlag(table.Data(), false);
    return office.Refuse(problem);
  }
  const int code = store.AddRecordFinish(table.Data());
  return code == 0 ? ShowRecord(office, table) : table.Failed("did not take the record", code);
}

// Null for a table that is not the banks'.
std::unique_ptr<BankTrail> TrailOf(Office& office, OpenTable& table) {
  if (!EqualsIgnoreCase(table.Name(), kBankLayout.name)) return nullptr;
  const AuditTarget target{false,
                           office.Files(),
                           office.TheClock(),
                           table.Folder(),
                           {},
                           office.Options().user,
                           office.TheWorkstation().ComputerName()};
  return std::make_unique<BankTrail>(target, office.Boxes(), table.Store(), table.Data());
}

// Locks the record, lets `change` work on it and writes it; what fails leaves the record as it was. `change`
// gives what is wrong, or "".
template <typename Change>
int ChangeRecord(Office& office, OpenTable& table, std::int32_t record, Change change) {
  clsKVRData& store = table.Store();
  if (record < 1 || record > store.RecordCount(table.Data()))
    return office.Refuse("There is no record " + std::to_string(record));
  const int found = store.GoToRecordNo(table.Data(), record);
  if (found != 0) return table.Failed("could not be read", found);
  if (!store.LockTheRecord(table.Data())) {
    const int refused = store.LastErrorCode();
    if (refused != engine::kLocked) return table.Failed("cannot be changed", refused);
    return office.Refuse("Record " + std::to_string(record) +
                         " is in use at another workstation.  Try again when it is free");
  }
  const std::unique_ptr<BankTrail> trail = TrailOf(office, table);
  const std::string problem = change();
  const int code = problem.empty() ? store.WriteTheRecord(table.Data()) : 0;
  if (!problem.empty() || code != 0) store.SetChangedFlag(table.Data(), false);
  if (trail && problem.empty() && code == 0) trail->Write();
  store.UnlockTheRecord(table.Data());
  if (!problem.empty()) return office.Refuse(problem);
  return code == 0 ? ShowRecord(office, table) : table.Failed("did not take the change", code);
}

int Set(Office& office, const TableArguments& arguments) {
  std::vector<FieldAssignment> assignments;
  if (!ParseAssignments(arguments.values, &assignments, office.Out())) return kWrongUsage;
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  return ChangeRecord(office, table, arguments.record,
                      [&] { return AssignFields(table.Store(), table.Data(), assignments); });
}

int Delete(Office& office, const TableArguments& arguments) {
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  return ChangeRecord(office, table, arguments.record, [&] {
    const int code = table.Store().DeleteRecord(table.Data());
    return code == 0 ? std::string() : "The record was not deleted: " + std::string(engine::error4text(code));
  });
}

int Verify(Office& office, const TableArguments& arguments) {
  OpenTable table(office, arguments.file);
  if (!table) return table.Status();
  return ReportProblems(VerifyTable(table.Store(), table.Data(), table.Name()), office.Out());
}

// Reindex and pack need the table for themselves.
template <typename Work>
int WithExclusive(Office& office, const TableArguments& arguments, std::string_view failure, Work work) {
  OpenTable table(office, arguments.file, OpenTable::Access::kExclusive);
  if (!table) return table.Status();
  const int code = work(table.Store(), table.Data());
  if (code != 0) return table.Failed(failure, code);
  const std::int32_t records = table.Store().RecordCount(table.Data());
  office.Out().Set("completed", true);
  office.Out().Set("records", records);
  office.Out().Line(std::to_string(records) + " records");
  return kDone;
}

int Reindex(Office& office, const TableArguments& arguments) {
  return WithExclusive(office, arguments, "could not be indexed again",
                       [](clsKVRData& store, DataHandle data) { return store.ReindexDatabase(data); });
}

int Pack(Office& office, const TableArguments& arguments) {
  return WithExclusive(office, arguments, "could not be packed",
                       [](clsKVRData& store, DataHandle data) { return store.PackDatabase(data); });
}

}  // namespace

void AddTableCommands(CLI::App& app, Action& chosen) {
  CLI::App* table = app.add_subcommand("table", "Any xBase table, by path or by its name in the data folder");
  table->require_subcommand(1);
  auto arguments = std::make_shared<TableArguments>();
  const auto add = [&](const char* name, const char* what, int (*run)(Office&, const TableArguments&)) {
    CLI::App* command = table->add_subcommand(name, what);
    command->add_option("FILE", arguments->file, "Path of the table, or its name in the data folder")
        ->required();
    Choose(command, chosen, arguments, run);
    return command;
  };
  add("info", "Fields, tags and number of records", Info);
  CLI::App* dump = add("dump", "Every record, in record order or in a tag's", Dump);
  dump->add_option("--tag", arguments->tag, "In the order of this tag; of the records where none is named");
  dump->add_flag("--deleted", arguments->deleted, "Deleted records too");
  CLI::App* seek = add("seek", "The first record with a key, or with the beginning of one", Seek);
  seek->add_option("TAG", arguments->tag, "Tag in which the key is sought")->required();
  seek->add_option("KEY", arguments->key, "The key, or the beginning of one")->required();
  CLI::App* append = add("append", "Adds a record", Append);
  append->add_option("FIELD=VALUE", arguments->values, "Fields; what is not named is blank");
  CLI::App* set = add("set", "Changes fields of a record", Set);
  set->add_option("RECNO", arguments->record, "Number of the record, from 1")->required();
  set->add_option("FIELD=VALUE", arguments->values, "Fields; what is not named stays")->required();
  CLI::App* remove = add("delete", "Marks a record as deleted", Delete);
  remove->add_option("RECNO", arguments->record, "Number of the record, from 1")->required();
  add("verify", "Every tag against the table", Verify);
  add("reindex", "Builds every tag anew", Reindex);
  add("pack", "Takes deleted records out for good", Pack);
}

}  // namespace tallwick::cli
