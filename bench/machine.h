// What measurements need of the machine.
#pragma once

#include <cstdint>
#include <string>

namespace tallwick::bench {

// Returns when everything written so far, by anyone, is on the disk: one run's writes do not slow the next.
void SettleDisk();

// Reads a file from end to end in blocks of 128 KiB; the bytes read, 0 when it cannot be read.
std::int64_t ReadThrough(const std::string& path);

// The most memory that this process has had at once, in bytes.
std::int64_t PeakMemory();

// What a command prints; empty when it fails.
std::string OutputOf(const std::string& command);

}  // namespace tallwick::bench
