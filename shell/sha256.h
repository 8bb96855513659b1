// SHA-256 over bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tallwick {

// The digest as 64 upper-case hexadecimal digits.
std::string Sha256Hex(std::string_view bytes);

// The same over bytes that come piece by piece.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void Add(std::string_view bytes);
  // Once, at the end.
  std::string Hex();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tallwick
