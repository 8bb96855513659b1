// "Escrow_Control.txt" in the data path: the tables that the company was last found to have, each with its
// number of records. It is made anew after a copy and a restore, which proves that every table opens.
#pragma once

#include "shell/session.h"

namespace tallwick {

// False when a table of the company does not open, or the file cannot be written.
bool SetupApplicationControlFile(Session& session);

}  // namespace tallwick
