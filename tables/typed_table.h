// A table read and written in whole records. Fields go by their kept handles, never by name.
// A value equal to what the field holds already is not written again, so that an untouched field keeps its
// bytes as another program left them, and unused fields of a new record stay blank.
#pragma once

#include "tables/table_base.h"

namespace tallwick {

void ReadValue(clsKVRData& data, DataHandle table, FieldHandle field, TextForm form, const ValueRef& value);
// 0, or the code of a refused value; clsKVRData::LastFieldProblem says which field and why.
int WriteValue(clsKVRData& data, DataHandle table, FieldHandle field, const FieldLayout& layout,
               TextForm form, const ValueRef& value);

template <class Record>
class TypedTable : public TableBase {
 public:
  TypedTable(const TableHome& home, const TableLayout& layout, std::span<const Column<Record>> columns)
      : TableBase(home, layout), columns_(columns) {}

  // Reads the current record over `record`.
  void Read(Record& record) const {
    for (std::size_t i = 0; i < Fields().size(); ++i) {
      ReadValue(Data(), Handle(), Fields()[i], columns_[i].form, columns_[i].value(record));
    }
  }
  Record Read() const {
    Record record;
    Read(record);
    return record;
  }

  // Appends a record. 0; engine::kUnique when a unique tag has its key; engine::kErrorFieldValue with nothing
  // written when a value does not fit its field; or another code.
  int Add(const Record& record, bool silent = false) {
    int code = Data().AddRecordStart(Handle());
    if (code == engine::kSuccess) code = Write(record);
    if (code != engine::kSuccess) {
      Data().SetChangedFlag(Handle(), false);
      return code;
    }
    return silent ? Data().AddRecordFinishSilent(Handle()) : Data().AddRecordFinish(Handle());
  }

  // Locks the current record, writes what differs and unlocks it. Codes as Add and Lock.
  int Update(const Record& record) {
    int code = Lock();
    if (code != engine::kSuccess) return code;
    code = Write(record);
    if (code == engine::kSuccess) {
      code = Data().WriteTheRecord(Handle());
    } else {
      Data().SetChangedFlag(Handle(), false);
      Data().RefreshRecord(Handle());
    }
    Unlock();
    return code;
  }

 private:
  int Write(const Record& record) {
    Record values = record;
    for (std::size_t i = 0; i < Fields().size(); ++i) {
      int code = WriteValue(Data(), Handle(), Fields()[i], columns_[i].field, columns_[i].form,
                            columns_[i].value(values));
      if (code != engine::kSuccess) return code;
    }
    return engine::kSuccess;
  }

  std::span<const Column<Record>> columns_;
};

}  // namespace tallwick
