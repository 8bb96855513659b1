#include "posting/check_ports.h"

#include "core/amount_in_words.h"
#include "core/text_format.h"

namespace tallwick {

CheckOnPaper MakeCheckOnPaper(const CheckRecord& check, std::string_view remittance_advice) {
  return {check, "**" + AmountInWords(check.amount) + "**", FormatNumber(check.amount, "$##,###,###,###.00"),
          std::string(remittance_advice)};
}

}  // namespace tallwick
