#include "tables/deposit_table.h"

#include <utility>

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {

namespace {

// A field name with an item's number behind it, kept for the whole run.
struct NumberedName {
  std::array<char, 10> characters{};
  std::size_t length = 0;
  constexpr std::string_view View() const { return {characters.data(), length}; }
};

constexpr NumberedName Numbered(std::string_view prefix, int number) {
  NumberedName name;
  for (char c : prefix) name.characters[name.length++] = c;
  if (number >= 10) name.characters[name.length++] = static_cast<char>('0' + number / 10);
  name.characters[name.length++] = static_cast<char>('0' + number % 10);
  return name;
}

// The eight columns of item `index` + 1.
template <std::size_t index>
struct ItemColumns {
  static constexpr int kNumber = static_cast<int>(index) + 1;
  static constexpr std::array kNames = {Numbered("DEPOITEM", kNumber), Numbered("DEPOFILE", kNumber),
                                        Numbered("DEPOSRC", kNumber),  Numbered("DEPOAMT", kNumber),
                                        Numbered("DEPOSTMO", kNumber), Numbered("DEPOSTDA", kNumber),
                                        Numbered("DEPOSTYR", kNumber), Numbered("DEPOSTAT", kNumber)};

  template <auto Member>
  static constexpr Column<DepositRecord> Of(std::size_t name, char type, int width, int decimals = 0,
                                            TextForm form = TextForm::kPlain) {
    return {{kNames[name].View(), type, width, decimals},
            [](DepositRecord& record) -> ValueRef { return &(record.items[index].*Member); },
            form};
  }
  template <auto Member>
  static constexpr Column<DepositRecord> OfStatement(std::size_t name, int width) {
    return {{kNames[name].View(), 'N', width},
            [](DepositRecord& record) -> ValueRef { return &(record.items[index].statement.*Member); }};
  }

  static constexpr std::array kColumns = {
      Of<&DepositItem::number>(0, 'C', 2, 0, TextForm::kNumber),
      Of<&DepositItem::file_number>(1, 'C', 14),
      Of<&DepositItem::source>(2, 'C', 60),
      Of<&DepositItem::amount>(3, 'N', 12, 2),
      OfStatement<&Period::month>(4, 2),
      OfStatement<&Period::day>(5, 2),
      OfStatement<&Period::year>(6, 4),
      Of<&DepositItem::status>(7, 'C', 2),
  };
};

constexpr std::array kHead = {
    Text<&DepositRecord::dated>("DEPODATED", 8),
    Digits<&DepositRecord::sequence>("DEPOSEQNC", 2),
    Number<&DepositRecord::accounting, &Period::month>("DEPOACCTMO", 2),
    Number<&DepositRecord::accounting, &Period::day>("DEPOACCTDA", 2),
    Number<&DepositRecord::accounting, &Period::year>("DEPOACCTYR", 4),
    Number<&DepositRecord::item_count>("DEPOITMNOS", 2),
};

constexpr std::size_t kColumnsPerItem = 8;
constexpr std::size_t kColumnCount = kHead.size() + kColumnsPerItem * kDepositItems + 1;

template <std::size_t... index>
constexpr auto AllColumns(std::index_sequence<index...>) {
  std::array<Column<DepositRecord>, kColumnCount> columns{};
  std::size_t next = 0;
  for (const auto& column : kHead) columns[next++] = column;
  auto append = [&](const auto& item) {
    for (const auto& column : item) columns[next++] = column;
  };
  (append(ItemColumns<index>::kColumns), ...);
  columns[next] = AsStored<&DepositRecord::spare>("DEPOSPARE", 20);
  return columns;
}

constexpr auto kColumns = AllColumns(std::make_index_sequence<kDepositItems>());
constexpr auto kFields = FieldsOf(kColumns);

constexpr TagLayout kTags[] = {
    {"DEPOACCTYR", "STR(DEPOACCTYR,4,0) + STR(DEPOACCTMO,2,0) + STR(DEPOACCTDA,2,0)", kLiveRecords},
    {"DEPODATED", "UPPER (DEPODATED + DEPOSEQNC)", kLiveRecords, true},
};

constexpr std::string_view kMayBeEmpty[] = {"DEPOACCTDA", "DEPOSTDA", "DEPOSPARE"};

}  // namespace

constexpr TableLayout kDepositLayout{
    "ESCROW_DEPOSITS_", true, kFields, kTags, TextsFor("Open Database DEPOSITS"), kMayBeEmpty};

bool IsUsed(const DepositItem& item) {
  return !item.file_number.empty() || !item.source.empty() || !item.amount.IsZero();
}

bool IsWireIn(const DepositRecord& deposit, int item) {
  const auto place = static_cast<std::size_t>(item) - 1;
  return place < deposit.spare.size() && deposit.spare[place] == 'X';
}

void SetWireIn(DepositRecord* deposit, int item, bool on) {
  const auto place = static_cast<std::size_t>(item) - 1;
  deposit->spare = PadRight(deposit->spare, place + 1);
  deposit->spare[place] = on ? 'X' : ' ';
  deposit->spare = TrimRight(deposit->spare);
}

DepositTable::DepositTable(const TableHome& home) : TypedTable(home, kDepositLayout, kColumns) {}

bool DepositTable::SeekDeposit(std::string_view dated, std::string_view sequence) {
  std::string date = KeyPart(dated, 8);
  sequence = Trim(sequence);
  return Seek("DEPODATED", date + PadLeft(sequence, 2)) || Seek("DEPODATED", date + PadRight(sequence, 2));
}

}  // namespace tallwick
