// The payees to whom checks have been posted, kept with their addresses in the agent table beside the agent's
// own record and told from it by their mark. A payee is kept once: names are the same whatever their case.
//
// Invariant: what the book holds in memory is sorted by name. For the offers while a name is typed it reads
// the table once and then only what others have appended; an address is given, or written over, as its record
// stands at that moment.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/form.h"
#include "tables/agent_table.h"

namespace tallwick {

struct Payee {
  std::string name;
  std::string address1;
  std::string address2;
  std::string city_state;

  bool HasAddress() const { return !(address1.empty() && address2.empty() && city_state.empty()); }
  friend bool operator==(const Payee&, const Payee&) = default;
};

class PayeeBook {
 public:
  // The open table must outlive the book.
  explicit PayeeBook(AgentTable& table) : table_(table) {}

  // Reads what the table has beyond what the book holds.
  void Refresh();
  // Reads the whole table again, with the addresses that others have changed.
  void ReadAnew();
  // The payee of this name, as the table has it now; null when there is none.
  const Payee* Find(std::string_view name);
  // Names that begin with the text, in order, at most `most`; none for a blank text.
  std::vector<std::string> Offers(std::string_view text, std::size_t most) const;
  // Payees with the text anywhere in name or address: first those whose name begins with it, then those whose
  // name has it, then the others, each in order of the name; all for a blank text.
  std::vector<Payee> Search(std::string_view text) const;
  // Remembers the payee, or its new address. A payee without an address keeps the one known. Failures stay
  // without a word: the list is a help, no record of money.
  void Keep(const Payee& payee);

 private:
  struct Entry {
    std::string key;  // of the name
    Payee payee;
    std::int32_t record = 0;
  };
  void Put(Entry entry);
  std::vector<Entry>::const_iterator From(std::string_view key) const;
  Entry* FindKey(std::string_view key);
  Entry* FindNow(std::string_view key);
  void Add(const Payee& payee);
  void ChangeAddress(const Entry& entry, const Payee& payee);

  AgentTable& table_;
  std::vector<Entry> entries_;
  std::int32_t records_read_ = 0;
};

// The payees that a search has found, as rows.
class PayeeRows : public RowSource {
 public:
  void Show(std::vector<Payee> payees) { payees_ = std::move(payees); }
  const std::vector<Payee>& Payees() const { return payees_; }

  std::vector<std::string> Headings() const override { return {"Payee", "Address", "City, State ZIP"}; }
  std::size_t RowCount() override { return payees_.size(); }
  std::vector<std::string> Row(std::size_t row) override;

 private:
  std::vector<Payee> payees_;
};

}  // namespace tallwick
