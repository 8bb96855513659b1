#include "shell/clsSecurity.h"

#include <algorithm>
#include <random>

#include "core/encoding.h"
#include "core/text.h"
#include "shell/rights.h"
#include "shell/sha256.h"

namespace tallwick {

bool clsSecurity::IsSecurityOff(int right) const {
  const std::string rights = ToWindows1252(sSecurity).value_or(sSecurity);
  if (right < 1 || right > static_cast<int>(rights.size())) return true;
  return rights[static_cast<std::size_t>(right) - 1] == '0';
}

void clsSecurity::SetRight(int right, bool granted) {
  if (right < 1 || IsSecurityOff(right) == granted) return;
  std::string rights = ToWindows1252(sSecurity).value_or(sSecurity);
  const auto place = static_cast<std::size_t>(right) - 1;
  if (rights.size() <= place) rights.resize(place + 1, '0');
  rights[place] = granted ? '0' : '1';
  sSecurity = FromWindows1252(rights);
}

bool clsSecurity::MayUse(int right) const {
  if (right == 0) return true;
  return right == kAdministrator ? IsAdministrator() : bLoggedIn && IsSecurityOff(right);
}

bool clsSecurity::MayUseBank(std::string_view bank_code) const {
  return std::find(sBankCodes.begin(), sBankCodes.end(), Trim(bank_code)) != sBankCodes.end();
}

bool clsSecurity::SameSettings(const clsSecurity& other) const {
  return osLogin == other.osLogin && sUserName == other.sUserName && sGroup == other.sGroup &&
         sSecurity == other.sSecurity && sBankCodes == other.sBankCodes && iMustChange == other.iMustChange &&
         iDisabled == other.iDisabled;
}

std::string clsSecurity::Digest(std::string_view text) {
  return Sha256Hex(ToWindows1252(text).value_or(std::string(text)));
}

std::string clsSecurity::GroupOfDigest(std::string_view digest) {
  for (std::string_view name : {"Administrator", "Power User"}) {
    if (Digest(name) == digest) return std::string(name);
  }
  return "User";
}

namespace {

// One character of a kind: 1 a capital, 2 a small letter, 3 a digit; "\0" for any other kind.
char RandomCharacter(int kind, double random) {
  constexpr std::string_view kRanges[] = {"AZ", "az", "09"};
  if (kind < 1 || kind > 3) return '\0';
  const std::string_view range = kRanges[kind - 1];
  return static_cast<char>(static_cast<int>((range[1] - range[0] + 1) * random + range[0]));
}

}  // namespace

std::optional<std::string> PasswordGenerator(int length, const std::function<double()>& random) {
  std::string password;
  for (int i = 0; i < length; ++i) {
    const int kind = static_cast<int>(random() * 3 + 1);
    const char character = RandomCharacter(kind, random());
    if (character == '\0') return std::nullopt;
    password += character;
  }
  return ToUpper(password);
}

std::string PasswordGenerator(int length, Clock& clock) {
  const DateTime now = clock.Now();
  std::random_device device;  // two passwords made within one second must not be the same
  std::seed_seq seed{now.date.year,
                     now.date.month,
                     now.date.day,
                     now.hour,
                     now.minute,
                     now.second,
                     static_cast<int>(device())};
  std::mt19937 generator(seed);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  return PasswordGenerator(length, [&] { return unit(generator); }).value_or("");
}

}  // namespace tallwick
