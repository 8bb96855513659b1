// Who may read and write a file that takes the place of another one.
#pragma once

#include <string>

namespace tallwick {

// Gives the file `fresh` the owner, group and mode of `old`, where there is one and as far as this user may:
// in a shared folder the others must not be locked out by who happened to write a file anew. Platform paths.
void KeepRights(const std::string& fresh, const std::string& old);

}  // namespace tallwick
