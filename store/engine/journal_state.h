// What an examination of a folder's journal of units of work finds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tallwick::engine {

inline constexpr std::string_view kJournalFileName = "ESCROW_UNITS.JNL";

enum class JournalState {
  kNone,         // there is none
  kSettled,      // every unit of work is in the tables, or its writer is at work
  kWaiting,      // whole units stand in it that no one has brought to the tables
  kFileMissing,  // one of them is for a table or memo file that is gone, or for another one than is there
  kForeign,      // a file of this name that is no journal
  kDamaged,      // the chain of entries is broken: after a power cut they could not be done again
  kUnreadable,   // it cannot be opened or read
};

struct JournalFindings {
  JournalState state = JournalState::kNone;
  std::uint64_t waiting = 0;  // units that no one has brought to the tables
  std::string missing;        // the file of kFileMissing, without the folder
};

}  // namespace tallwick::engine
