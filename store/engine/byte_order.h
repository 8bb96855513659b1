// Integers in the byte orders of the file formats.
#pragma once

#include <cstdint>

namespace tallwick::engine {

inline std::uint16_t Load16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}
inline std::uint32_t Load32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}
inline std::uint64_t Load64(const std::uint8_t* p) {
  return static_cast<std::uint64_t>(Load32(p)) | static_cast<std::uint64_t>(Load32(p + 4)) << 32;
}
inline void Store16(std::uint8_t* p, std::uint32_t v) {
  p[0] = static_cast<std::uint8_t>(v);
  p[1] = static_cast<std::uint8_t>(v >> 8);
}
inline void Store32(std::uint8_t* p, std::uint32_t v) {
  Store16(p, v);
  Store16(p + 2, v >> 16);
}
inline void Store64(std::uint8_t* p, std::uint64_t v) {
  Store32(p, static_cast<std::uint32_t>(v));
  Store32(p + 4, static_cast<std::uint32_t>(v >> 32));
}

inline std::uint16_t Load16Big(const std::uint8_t* p) {
  return static_cast<std::uint16_t>((p[0] << 8) | p[1]);
}
inline std::uint32_t Load32Big(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
         static_cast<std::uint32_t>(p[2]) << 8 | static_cast<std::uint32_t>(p[3]);
}
inline std::uint64_t Load64Big(const std::uint8_t* p) {
  return static_cast<std::uint64_t>(Load32Big(p)) << 32 | Load32Big(p + 4);
}
inline void Store16Big(std::uint8_t* p, std::uint32_t v) {
  p[0] = static_cast<std::uint8_t>(v >> 8);
  p[1] = static_cast<std::uint8_t>(v);
}
inline void Store32Big(std::uint8_t* p, std::uint32_t v) {
  Store16Big(p, v >> 16);
  Store16Big(p + 2, v);
}

}  // namespace tallwick::engine
