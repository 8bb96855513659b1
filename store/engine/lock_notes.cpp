#include "store/engine/lock_notes.h"

#include <algorithm>
#include <vector>

#include "core/text.h"
#include "store/engine/file_swap.h"

namespace tallwick::engine {
namespace {

constexpr std::size_t kSlotBytes = 128;
constexpr int kMaxSlots = 1024;
constexpr std::int64_t kSlotLockAt = 0x40000000;

// The next line of a slot's text, taken off its front.
std::string_view TakeLine(std::string_view* text) {
  const std::size_t end = std::min(text->find('\n'), text->size());
  const std::string_view line = text->substr(0, end);
  text->remove_prefix(std::min(end + 1, text->size()));
  return line;
}

std::string Shown(std::string_view computer, std::string_view process) {
  return std::string(computer) + " (process " + std::string(process) + ")";
}

}  // namespace

LockNotes::LockNotes(const EngineSetup& setup, const std::string& table)
    : setup_(setup),
      path_(TableFolder(table) + "/" + std::string(kFileName)),
      table_(ToUpper(FileNameOf(table))) {}

bool LockNotes::Open(OpenMode mode) {
  int rc = kSuccess;
  bool read_only = false;
  if (!file_) file_ = OpenOrRead(setup_.files, path_, mode, &read_only, &rc);
  return file_ != nullptr;
}

std::string LockNotes::Text(std::uint32_t record) const {
  return table_ + "\n" + std::to_string(record) + "\n" + setup_.workstation.ComputerName() + "\n" +
         std::to_string(setup_.workstation.ProcessId()) + "\n";
}

void LockNotes::Note(std::uint32_t record) {
  std::string text = Text(record);
  if (slots_.contains(record) || text.size() > kSlotBytes || !Open(OpenMode::kOpenOrCreate)) return;
  text.resize(kSlotBytes, '\0');
  for (int slot = 0; slot < kMaxSlots; ++slot) {
    const bool own =
        std::any_of(slots_.begin(), slots_.end(), [&](const auto& at) { return at.second == slot; });
    if (own || file_->Lock(kSlotLockAt + slot, 1, LockKind::kExclusive) != kSuccess) continue;
    const std::int64_t at = slot * static_cast<std::int64_t>(kSlotBytes);
    if (file_->WriteAt(at, text.data(), text.size()) == kSuccess) {
      slots_[record] = slot;
    } else {
      file_->Unlock(kSlotLockAt + slot, 1);
    }
    return;
  }
}

void LockNotes::Drop(std::uint32_t record) {
  const auto slot = slots_.find(record);
  if (slot == slots_.end()) return;
  file_->Unlock(kSlotLockAt + slot->second, 1);
  slots_.erase(slot);
}

void LockNotes::DropAll() {
  while (!slots_.empty()) Drop(slots_.begin()->first);
}

std::string LockNotes::Holder(std::uint32_t record) {
  if (!setup_.files.Exists(path_) || !Open(OpenMode::kReadWrite)) return {};
  std::vector<char> notes(kSlotBytes * kMaxSlots);
  const std::int64_t got = file_->ReadAt(0, notes.data(), notes.size());
  for (std::int64_t at = 0; at + static_cast<std::int64_t>(kSlotBytes) <= got; at += kSlotBytes) {
    std::string_view text(notes.data() + at, kSlotBytes);
    const bool ours = TakeLine(&text) == table_;
    const std::string_view noted = TakeLine(&text);
    if (!ours || (record != 0 && noted != "0" && noted != std::to_string(record))) continue;
    const std::int64_t lock = kSlotLockAt + at / static_cast<std::int64_t>(kSlotBytes);
    const bool own = std::any_of(slots_.begin(), slots_.end(),
                                 [&](const auto& slot) { return kSlotLockAt + slot.second == lock; });
    const bool live = own || file_->Lock(lock, 1, LockKind::kShared) == kLocked;
    if (!live) file_->Unlock(lock, 1);
    const std::string_view computer = TakeLine(&text);
    if (live && !computer.empty()) return Shown(computer, TakeLine(&text));
  }
  return {};
}

}  // namespace tallwick::engine
