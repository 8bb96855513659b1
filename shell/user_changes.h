// Who may change the suite's users, and to what. Asked where they are written: by the screen of users and by
// the command line alike.
#pragma once

#include <string>

#include "shell/clsSecurity.h"
#include "shell/session.h"

namespace tallwick {

// Why the session's user may change no user at all; "" when that is granted.
std::string UserChangeProblem(Session& session);

// Why `user` may not be saved in the place of `before`, who is clsSecurity::NewUser() for one who is added:
// the text, "" when nothing is wrong, and the field of USERS or USERSESC that is to blame, "" for none.
FieldProblem UserSaveProblem(Session& session, const clsSecurity& before, const clsSecurity& user);

}  // namespace tallwick
