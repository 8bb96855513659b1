// The entry of a check between screen and record: which control holds which field.
#pragma once

#include <span>

#include "posting/entry_fields.h"
#include "tables/check_table.h"

namespace tallwick {

using CheckEntryField = EntryField<CheckRecord>;

// Every entry in the order in which it is typed, the number first.
std::span<const CheckEntryField> CheckEntryFields();

}  // namespace tallwick
