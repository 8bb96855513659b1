// The display texts of status codes, exactly as grids and reports show them; some end with a blank.
#pragma once

#include <string>
#include <string_view>

namespace tallwick {

std::string CheckStatusText(std::string_view code);
std::string WireStatusText(std::string_view code);
// True while the bank has not done with a transaction: neither cleared, voided nor stopped. A status that is
// not known counts as outstanding.
bool IsOutstanding(std::string_view status);
// Vouchers and deposit items: "Outstanding" or "Cleared".
std::string VoucherStatusText(std::string_view code);

}  // namespace tallwick
