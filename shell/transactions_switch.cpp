#include "shell/transactions_switch.h"

namespace tallwick {
namespace {

std::string SwitchFile(const Session& session) {
  return session.DataPath() + "Transactions.dat";
}

}  // namespace

bool TransactionsOpen(const Session& session) {
  const std::optional<std::string> text = session.Files().Read(SwitchFile(session));
  if (!text) return !session.Files().FileExists(SwitchFile(session));
  return text->rfind('T', 0) == 0;
}

bool SetTransactionsOpen(Session& session, bool open) {
  return session.Files().Write(SwitchFile(session), open ? "T\r\n" : "F\r\n");
}

}  // namespace tallwick
