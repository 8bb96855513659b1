// The key that the entries of a posting screen belong to: a number, or a date and sequence. One that was lost
// to another workstation's item stays with them until it is typed again; then it is looked up, and shows who
// has it.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace tallwick {

class EntryKey {
 public:
  void Set(std::string key) {
    key_ = std::move(key);
    lost_ = typed_ = false;
  }
  const std::string& Get() const { return key_; }
  void Lose() { lost_ = true; }
  // The user has typed a key.
  void Typed() { typed_ = lost_; }
  // The control shows the key again.
  void PutBack() { typed_ = false; }
  // Whether what is typed stands for the entries that are shown, and needs no look-up.
  bool Stands(std::string_view typed) const { return typed == key_ && !typed_; }

 private:
  std::string key_;
  bool lost_ = false;
  bool typed_ = false;  // since it was lost
};

}  // namespace tallwick
