#include "checks/sign_password.h"

#include "core/text.h"
#include "posting/bank_settings.h"
#include "shell/rights.h"
#include "shell/sha256.h"

namespace tallwick {
namespace {

constexpr std::string_view kTitle = "Password to Sign Check";

}  // namespace

std::string SignPasswordDigest(std::string_view bank_code, std::string_view password) {
  return Sha256Hex(ToUpper(Trim(bank_code)) + ":" + std::string(password));
}

bool SetSignPassword(Session& session, std::string_view bank_code, std::string_view password) {
  if (!session.MayUse(kAdministrator)) {
    session.Boxes().Critical(kTitle, "Only the administrator sets the password to sign checks.");
    return false;
  }
  BankSettings layout(session.Files(), session.DataPath(), kCheckLayoutSettings, bank_code);
  if (layout.Set("SignPassword", password.empty() ? "" : SignPasswordDigest(bank_code, password)))
    return true;
  session.Boxes().Critical(
      kTitle,
      "The check layout could not be written to the company's data folder.  Make sure that "
      "you may write there.");
  return false;
}

}  // namespace tallwick
