#include "shell/sha256.h"

#include <openssl/evp.h>

#include <array>

namespace tallwick {

struct Sha256::State {
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  ~State() { EVP_MD_CTX_free(context); }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
  EVP_DigestInit_ex(state_->context, EVP_sha256(), nullptr);
}

Sha256::~Sha256() = default;

void Sha256::Add(std::string_view bytes) {
  EVP_DigestUpdate(state_->context, bytes.data(), bytes.size());
}

std::string Sha256::Hex() {
  std::array<unsigned char, 32> digest{};
  EVP_DigestFinal_ex(state_->context, digest.data(), nullptr);
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string hex;
  hex.reserve(2 * digest.size());
  for (unsigned char byte : digest) {
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

std::string Sha256Hex(std::string_view bytes) {
  Sha256 digest;
  digest.Add(bytes);
  return digest.Hex();
}

}  // namespace tallwick
