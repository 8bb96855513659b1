// Whether the office knows an escrow file.
#pragma once

#include <string_view>

#include "shell/session.h"

namespace tallwick {

// True when any bank has a transaction of the file, or the suite's file list holds it.
bool IsOnFile(Session& session, std::string_view file_number);

}  // namespace tallwick
