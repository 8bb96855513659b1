// SHA-256 over bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tallwick {

// The digest as 64 upper-case hexadecimal digits.
std::string Sha256Hex(std::string_view bytes);

// The same of bytes that come piece by piece.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  void Add(std::string_view bytes);
  std::string Hex();  // ends the digest

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tallwick
