// How a table is described: once, as constant data. The list of columns binds every field to the member of
// the typed record that holds its value; create, version check, reading and writing all derive from it.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "core/currency.h"
#include "core/date.h"
#include "store/clsKVRData.h"

namespace tallwick {

// Where a field's value lives in a record in memory.
using ValueRef = std::variant<std::string*, Currency*, Date*, std::int32_t*, std::int64_t*, bool*>;

// How a text stands in its field.
enum class TextForm {
  kPlain,     // left-aligned, read trimmed on both sides
  kNumber,    // digits right-aligned, anything else left-aligned; read trimmed
  kAsStored,  // leading blanks count; only the trailing ones are cut
};

template <class Record>
struct Column {
  FieldLayout field;
  ValueRef (*value)(Record&);
  TextForm form = TextForm::kPlain;
};

template <class Record, class Member>
Record RecordOf(Member Record::*);

// A column for a member (`First`), or for a member of that member (`Rest`), as a period's month.
template <auto First, auto... Rest>
constexpr auto Bind(const FieldLayout& field, TextForm form = TextForm::kPlain) {
  static_assert(sizeof...(Rest) <= 1);
  using Record = decltype(RecordOf(First));
  return Column<Record>{field,
                        [](Record& record) -> ValueRef {
                          if constexpr (sizeof...(Rest) == 0) {
                            return &(record.*First);
                          } else {
                            return &((record.*First).*(Rest, ...));
                          }
                        },
                        form};
}

template <auto... Member>
constexpr auto Text(std::string_view name, int width) {
  return Bind<Member...>({name, 'C', width});
}
// The number of a check, voucher, sequence or item: digits stand on the right.
template <auto... Member>
constexpr auto Digits(std::string_view name, int width) {
  return Bind<Member...>({name, 'C', width}, TextForm::kNumber);
}
template <auto... Member>
constexpr auto AsStored(std::string_view name, int width) {
  return Bind<Member...>({name, 'C', width}, TextForm::kAsStored);
}
template <auto... Member>
constexpr auto Number(std::string_view name, int width) {
  return Bind<Member...>({name, 'N', width});
}
template <auto... Member>
constexpr auto Money(std::string_view name, int width) {
  return Bind<Member...>({name, 'N', width, 2});
}
template <auto... Member>
constexpr auto Day(std::string_view name) {
  return Bind<Member...>({name, 'D', 8});
}
template <auto... Member>
constexpr auto Switch(std::string_view name) {
  return Bind<Member...>({name, 'C', 1});
}
template <auto... Member>
constexpr auto Memo(std::string_view name) {
  return Bind<Member...>({name, 'M', 10});
}

template <class Record, std::size_t count>
constexpr std::array<FieldLayout, count> FieldsOf(const std::array<Column<Record>, count>& columns) {
  std::array<FieldLayout, count> fields{};
  for (std::size_t i = 0; i < count; ++i) fields[i] = columns[i].field;
  return fields;
}

// The filter of every tag but DEL4REUSE: deleted records never appear in an ordered walk.
inline constexpr std::string_view kLiveRecords = ".NOT. Deleted ()";

// The tag of deleted records, by record number.
inline constexpr TagLayout kDeletedForReuse{"DEL4REUSE", "RECNO()", "DELETED()"};

// What is said when a table cannot be made or opened.
struct TableTexts {
  std::string_view not_created;  // behind the table's name
  std::string_view code_lead;    // before the engine's code
  std::string_view code_tail;    // behind it
  std::string_view create_title;
  std::string_view open_title;
};

constexpr TableTexts TextsFor(std::string_view open_title) {
  return {"  was not created.", "\r", "", "Create New Database", open_title};
}

struct TableLayout {
  std::string_view name;  // of the table, or the prefix to which the bank code is joined
  bool per_bank = false;
  std::span<const FieldLayout> fields;
  std::span<const TagLayout> tags;
  TableTexts texts;
  // Beginnings of the names of fields that tables of older programs may lack. Empty in every record they say
  // nothing false, as a balance, a status, a number, a file or a period would.
  std::span<const std::string_view> may_be_empty = {};
  bool of_suite = false;  // the suite makes the table, and changes its layout
};

// How a table's field list and tags stand to its layout.
enum class LayoutState { kCurrent, kOtherFields, kOtherTags };

}  // namespace tallwick
