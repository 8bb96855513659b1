// Posted checks that are to be printed in one go.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/message_boxes.h"
#include "posting/check_ports.h"
#include "tables/bank_tables.h"

namespace tallwick {

struct CheckBatch {
  std::vector<CheckOnPaper> checks;  // in the order in which they were named
  // Of ranges, the numbers that no check to be printed has: "10455", "10457-10459".
  std::vector<std::string> left_out;
  std::string problem;  // why one of them cannot be printed; "" when all can
};

// Each text names one check ("10452"), which must be posted and outstanding, or a range ("10452-10460") of
// which those are taken that are, and the others named. The reason of a check's voucher is its remittance
// advice where `advice` is "".
CheckBatch CollectChecks(BankTables& tables, std::span<const std::string> numbers,
                         std::string_view advice = {});

// "Left out, since no check to be printed has the number: 10455, 10457-10459."; "" when nothing was.
std::string LeftOutText(const CheckBatch& batch);

// Tells what was left out, asks about checks of zero and warns of blank payees, as the check screen does.
// False when one of them shall not be printed.
bool AgreesToPrint(const CheckBatch& batch, MessageBoxes& boxes, std::string_view title);

}  // namespace tallwick
