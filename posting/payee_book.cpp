#include "posting/payee_book.h"

#include <algorithm>

#include "core/text.h"
#include "tables/keys.h"

namespace tallwick {
namespace {

std::string KeyOf(std::string_view name) {
  return UpperKey(Trim(name));
}

Payee PayeeIn(const AgentRecord& record) {
  return {record.name, record.address1, record.address2, record.city_state};
}

void SetAddress(const Payee& payee, AgentRecord* record) {
  record->address1 = payee.address1;
  record->address2 = payee.address2;
  record->city_state = payee.city_state;
}

}  // namespace

void PayeeBook::Refresh() {
  const std::int32_t records = table_.RecordCount();
  if (records < records_read_) {  // packed meanwhile
    entries_.clear();
    records_read_ = 0;
  }
  if (records == records_read_) return;
  std::vector<Entry> read;
  for (bool on = table_.GoTo(records_read_ + 1); on; on = table_.Skip()) {
    if (table_.Data().IsRecordDeleted(table_.Handle())) continue;
    const AgentRecord record = table_.Read();
    if (IsPayee(record)) read.push_back({KeyOf(record.name), PayeeIn(record), table_.RecordNumber()});
  }
  records_read_ = records;
  // In order, each goes behind those that stand already.
  std::stable_sort(read.begin(), read.end(),
                   [](const Entry& left, const Entry& right) { return left.key < right.key; });
  for (Entry& entry : read) Put(std::move(entry));
}

std::vector<PayeeBook::Entry>::const_iterator PayeeBook::From(std::string_view key) const {
  return std::lower_bound(entries_.begin(), entries_.end(), key,
                          [](const Entry& entry, std::string_view wanted) { return entry.key < wanted; });
}

void PayeeBook::ReadAnew() {
  entries_.clear();
  records_read_ = 0;
  table_.Data().SetReadAhead(table_.Handle(), true);
  Refresh();
  table_.Data().SetReadAhead(table_.Handle(), false);
}

PayeeBook::Entry* PayeeBook::FindKey(std::string_view key) {
  const auto found = entries_.begin() + (From(key) - entries_.cbegin());
  return found != entries_.end() && found->key == key ? &*found : nullptr;
}

// The entry with what its record holds now. A record that is another payee's by now has the book read anew.
PayeeBook::Entry* PayeeBook::FindNow(std::string_view key) {
  Refresh();
  Entry* entry = FindKey(key);
  if (entry == nullptr) return nullptr;
  const bool is_there = table_.GoTo(entry->record) &&
                        table_.Data().RefreshRecord(table_.Handle()) == engine::kSuccess &&
                        !table_.Data().IsRecordDeleted(table_.Handle());
  const AgentRecord record = is_there ? table_.Read() : AgentRecord{};
  if (IsPayee(record) && KeyOf(record.name) == key) {
    entry->payee = PayeeIn(record);
    return entry;
  }
  ReadAnew();
  return FindKey(key);
}

// Two workstations may have added the same payee at once: the later record holds.
void PayeeBook::Put(Entry entry) {
  if (entry.key.empty()) return;
  const auto place = entries_.begin() + (From(entry.key) - entries_.cbegin());
  if (place != entries_.end() && place->key == entry.key) {
    *place = std::move(entry);
  } else {
    entries_.insert(place, std::move(entry));
  }
}

const Payee* PayeeBook::Find(std::string_view name) {
  const Entry* entry = FindNow(KeyOf(name));
  return entry != nullptr ? &entry->payee : nullptr;
}

std::vector<std::string> PayeeBook::Offers(std::string_view text, std::size_t most) const {
  const std::string key = KeyOf(text);
  std::vector<std::string> names;
  if (key.empty()) return names;
  for (auto at = From(key); at != entries_.end() && at->key.starts_with(key) && names.size() < most; ++at) {
    names.push_back(at->payee.name);
  }
  return names;
}

std::vector<Payee> PayeeBook::Search(std::string_view text) const {
  const std::string wanted = KeyOf(text);
  std::vector<Payee> found;
  std::vector<Payee> by_name;
  std::vector<Payee> by_address;
  for (const Entry& entry : entries_) {
    const Payee& payee = entry.payee;
    const std::size_t in_name = entry.key.find(wanted);
    if (in_name == 0) {
      found.push_back(payee);
    } else if (in_name != std::string::npos) {
      by_name.push_back(payee);
    } else if (UpperKey(payee.address1 + "\n" + payee.address2 + "\n" + payee.city_state).find(wanted) !=
               std::string::npos) {
      by_address.push_back(payee);
    }
  }
  found.insert(found.end(), by_name.begin(), by_name.end());
  found.insert(found.end(), by_address.begin(), by_address.end());
  return found;
}

void PayeeBook::Keep(const Payee& payee) {
  if (Trim(payee.name).empty()) return;
  const Entry* known = FindNow(KeyOf(payee.name));
  if (known == nullptr) return Add(payee);
  const Payee same_address{known->payee.name, payee.address1, payee.address2, payee.city_state};
  if (payee.HasAddress() && same_address != known->payee) ChangeAddress(*known, same_address);
}

void PayeeBook::Add(const Payee& payee) {
  AgentRecord record = NewPayeeRecord();
  record.name = payee.name;
  SetAddress(payee, &record);
  if (table_.Add(record, true) == engine::kSuccess) Refresh();
}

void PayeeBook::ChangeAddress(const Entry& entry, const Payee& payee) {
  if (!table_.GoTo(entry.record) || table_.Lock(true) != engine::kSuccess) return;
  AgentRecord record = table_.Read();
  if (IsPayee(record) && KeyOf(record.name) == entry.key) {
    SetAddress(payee, &record);
    if (table_.Update(record) == engine::kSuccess) Put({entry.key, payee, entry.record});
  }
  table_.Unlock();
}

std::vector<std::string> PayeeRows::Row(std::size_t row) {
  if (row >= payees_.size()) return {};
  const Payee& payee = payees_[row];
  const bool both = !payee.address1.empty() && !payee.address2.empty();
  return {payee.name, payee.address1 + (both ? ", " : "") + payee.address2, payee.city_state};
}

}  // namespace tallwick
