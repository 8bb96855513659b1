// What the posting screens ask of an escrow file number.
#pragma once

#include <string_view>

#include "shell/session.h"

namespace tallwick {

// True when any bank has a transaction of the file, or the suite's file list holds it.
bool IsOnFile(Session& session, std::string_view file_number);

// True for a text that tables can hold as a file number. Any other is on no file, and is refused as it
// stands.
bool CanBeFile(std::string_view file_number);

// True for "VOID", in any case: the number that stands on voided checks only.
bool IsVoidFile(std::string_view file_number);

}  // namespace tallwick
