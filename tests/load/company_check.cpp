#include "tests/load/company_check.h"

#include <algorithm>

namespace tallwick::load {
namespace {

// Every record in a tag's order.
template <class Table, class Use>
void ForEach(Table& table, std::string_view tag, Use use) {
  for (bool on = table.Top(tag); on; on = table.Skip()) use(table.Read());
}

std::string Text(const XrefRecord& xref) {
  return xref.file_number + "|" + xref.bank_code + "|" + xref.kind + "|" + xref.reference;
}
std::string Text(const DepositXrefRecord& xref) {
  return xref.file_number + "|" + xref.dated + "|" + xref.sequence + "|" + xref.item;
}

// Both lists must hold the same; the first difference is told.
std::string Difference(const std::string& table, std::vector<std::string> wanted,
                       std::vector<std::string> found) {
  std::sort(wanted.begin(), wanted.end());
  std::sort(found.begin(), found.end());
  const auto [want, have] = std::mismatch(wanted.begin(), wanted.end(), found.begin(), found.end());
  if (want == wanted.end() && have == found.end()) return {};
  return table + ": wanted " + std::to_string(wanted.size()) + " (" +
         (want == wanted.end() ? "none" : *want) + "), found " + std::to_string(found.size()) + " (" +
         (have == found.end() ? "none" : *have) + ")\n";
}

std::string Compare(const std::string& table, const std::atomic<std::int8_t>* wanted,
                    const std::vector<std::int8_t>& found) {
  for (std::size_t number = 0; number < found.size(); ++number) {
    if (wanted[number] != found[number]) {
      return table + " " + std::to_string(number) + ": acknowledged " + std::to_string(wanted[number]) +
             " times, found " + std::to_string(found[number]) + " times\n";
    }
  }
  return {};
}

// What the files find of a deposit.
void AddReferences(const DepositRecord& deposit, std::vector<std::string>& company,
                   std::vector<std::string>& bank) {
  for (int item = 1; item <= kDepositItems; ++item) {
    const std::string& file = deposit.items[static_cast<std::size_t>(item) - 1].file_number;
    if (file.empty()) continue;
    company.push_back(Text(DepositItemXref(file, kBank, deposit.dated, deposit.sequence, item)));
    bank.push_back(Text(DepositXrefRecord{file, deposit.dated, deposit.sequence, std::to_string(item)}));
  }
}

// A voucher that is used names a check that pays out and names it.
std::string WrongUse(Workplace& place, const VoucherRecord& voucher) {
  if (voucher.check_number.empty()) return {};
  const bool found = place.tables->checks.SeekNumber(voucher.check_number);
  const CheckRecord check = found ? place.tables->checks.Read() : CheckRecord{};
  if (check.voucher_number == voucher.number && check.status != "V") return {};
  return "voucher " + voucher.number + " is held by check " + voucher.check_number + " in vain\n";
}

}  // namespace

std::string WrongInTables(Workplace& place) {
  std::vector<TableBase*> tables = {&place.Banks(), &place.Xrefs()};
  for (TableBase* table : place.tables->All()) tables.push_back(table);
  std::string wrong;
  for (TableBase* table : tables) {
    std::vector<engine::TableProblem> problems;
    const int code = table->Data().VerifyDatabase(table->Handle(), &problems);
    if (code != engine::kSuccess) wrong += table->Name() + " could not be examined\n";
    for (const auto& problem : problems)
      wrong += table->Name() + " " + std::to_string(problem.record) + ": " + problem.problem + "\n";
  }
  return wrong;
}

std::string WrongInReferences(Workplace& place) {
  std::vector<std::string> wanted;
  std::vector<std::string> wanted_in_bank;
  std::string wrong;
  std::int64_t last_voucher = 0;
  ForEach(place.tables->checks, "CHXNUMBER", [&](const CheckRecord& check) {
    wanted.push_back(Text(CheckXref(check.file_number, kBank, check.number)));
  });
  ForEach(place.tables->vouchers, "VCHRNUMBER", [&](const VoucherRecord& voucher) {
    wanted.push_back(Text(VoucherXref(voucher.file_number, kBank, voucher.number)));
    last_voucher = std::max<std::int64_t>(last_voucher, std::stoll(voucher.number));
    wrong += WrongUse(place, voucher);
  });
  ForEach(place.tables->deposits, "DEPODATED",
          [&](const DepositRecord& deposit) { AddReferences(deposit, wanted, wanted_in_bank); });
  ForEach(place.tables->wires, "WIRENUMBER", [&](const WireRecord& wire) {
    wanted.push_back(Text(WireXref(wire.file_number, kBank, wire.number)));
  });
  std::vector<std::string> found;
  std::vector<std::string> found_in_bank;
  ForEach(place.Xrefs(), "XRFSFILEBK", [&](const XrefRecord& one) { found.push_back(Text(one)); });
  ForEach(place.tables->deposit_xrefs, "DXRFFILENO",
          [&](const DepositXrefRecord& one) { found_in_bank.push_back(Text(one)); });
  wrong += Difference("cross-references", wanted, found) +
           Difference("deposit cross-references", wanted_in_bank, found_in_bank);
  if (place.Banks().Find(kBank)->last_voucher < last_voucher) wrong += "the voucher counter is behind\n";
  return wrong;
}

std::string WrongAgainst(Workplace& place, const Tally& tally) {
  std::vector<std::int8_t> checks(kMostNumbers);
  std::vector<std::int8_t> vouchers(kMostNumbers);
  std::vector<std::int8_t> deposits(kMostNumbers);
  std::string wrong;
  const auto see = [&](std::vector<std::int8_t>& seen, std::size_t number, bool whole, const char* what) {
    ++seen[number];
    if (!whole) wrong += std::string(what) + " " + std::to_string(number) + " is torn\n";
  };
  const auto number_of = [](const auto& record) {
    return static_cast<std::size_t>(std::stoll(record.number));
  };
  ForEach(place.tables->checks, "CHXNUMBER",
          [&](const CheckRecord& check) { see(checks, number_of(check), IsWhole(check), "check"); });
  ForEach(place.tables->vouchers, "VCHRNUMBER",
          [&](const VoucherRecord& one) { see(vouchers, number_of(one), IsWhole(one), "voucher"); });
  ForEach(place.tables->deposits, "DEPODATED", [&](const DepositRecord& deposit) {
    see(deposits, static_cast<std::size_t>(KeyOf(deposit)), IsWhole(deposit), "deposit");
  });
  return wrong + Compare("check", tally.checks, checks) + Compare("voucher", tally.vouchers, vouchers) +
         Compare("deposit", tally.deposits, deposits);
}

}  // namespace tallwick::load
