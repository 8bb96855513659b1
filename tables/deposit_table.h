// ESCROW_DEPOSITS_<bank>: one record per deposit ticket of up to 15 items.
#pragma once

#include <array>

#include "core/period.h"
#include "tables/typed_table.h"

namespace tallwick {

inline constexpr int kDepositItems = 15;

struct DepositItem {
  std::string number;  // "1" to "15"; "" in an unused group
  std::string file_number;
  std::string source;
  Currency amount;
  Period statement;
  std::string status;  // "O" when newly posted
  friend bool operator==(const DepositItem&, const DepositItem&) = default;
};

// Whether anything was posted in the item's place. Other programs may leave its number or its file blank.
bool IsUsed(const DepositItem& item);

struct DepositRecord {
  std::string dated;     // "CCYYMMDD"
  std::string sequence;  // within the date
  Period accounting;
  std::int32_t item_count = 0;                     // items used, 1 to 15
  std::array<DepositItem, kDepositItems> items{};  // items[0] is item 1
  std::string spare;
  friend bool operator==(const DepositRecord&, const DepositRecord&) = default;
};

// The wire-in mark of an item (1 to 15): the money came by wire. It is the "X" at the item's position of the
// spare field.
bool IsWireIn(const DepositRecord& deposit, int item);
void SetWireIn(DepositRecord* deposit, int item, bool on);

extern const TableLayout kDepositLayout;

class DepositTable : public TypedTable<DepositRecord> {
 public:
  explicit DepositTable(const TableHome& home);
  // On the deposit, in the tag DEPODATED; also finds a sequence stored left-aligned.
  bool SeekDeposit(std::string_view dated, std::string_view sequence);
};

}  // namespace tallwick
