#include "shell/transactions_switch.h"

namespace tallwick {
namespace {

std::string PathOf(const Session& session, std::string_view file) {
  return session.DataPath() + std::string(file);
}

// Where the switch stands now.
std::string SwitchPath(const Session& session) {
  const std::string path = PathOf(session, kSwitchFile);
  const std::string former = PathOf(session, kFormerSwitchFile);
  return session.Files().IsMissing(path) && !session.Files().IsMissing(former) ? former : path;
}

}  // namespace

bool TransactionsOpen(const Session& session) {
  const std::string path = SwitchPath(session);
  const std::optional<std::string> text = session.Files().Read(path);
  if (!text) return session.Files().IsMissing(path);
  return text->rfind('T', 0) == 0;
}

bool SetTransactionsOpen(Session& session, bool open) {
  if (!session.Files().Write(PathOf(session, kSwitchFile), open ? "T\r\n" : "F\r\n")) return false;
  session.Files().Remove(PathOf(session, kFormerSwitchFile));  // one that stays has no say any more
  return true;
}

}  // namespace tallwick
