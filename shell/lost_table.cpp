#include "shell/lost_table.h"

#include <algorithm>

#include "core/text.h"
#include "tables/bank_table.h"
#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/deposit_xref_table.h"
#include "tables/voucher_table.h"
#include "tables/wire_table.h"
#include "tables/xref_table.h"

namespace tallwick {
namespace {

struct BankTableKind {
  const TableLayout& layout;
  std::string_view xref_kind;
};

const BankTableKind kKinds[] = {{kCheckLayout, "C"},
                                {kDepositLayout, "D"},
                                {kDepositXrefLayout, "D"},
                                {kWireLayout, "W"},
                                {kVoucherLayout, "V"}};

// The first reference to a transaction of the table's bank and kind tells, in record order.
bool IsReferredTo(const TableHome& home, std::string_view kind, std::string_view bank_code) {
  XrefTable xrefs(home);
  if (!xrefs.Exists() || xrefs.OpenQuietly({}, false) <= 0) return false;
  home.data.SetReadAhead(xrefs.Handle(), true);
  for (bool on = xrefs.Top(""); on; on = xrefs.Skip()) {
    if (home.data.IsRecordDeleted(xrefs.Handle())) continue;
    const XrefRecord xref = xrefs.Read();
    if (xref.kind == kind && EqualsIgnoreCase(Trim(xref.bank_code), bank_code)) return true;
  }
  return false;
}

std::string WhyBankTableLost(const TableHome& home, std::string_view table) {
  for (const BankTableKind& kind : kKinds) {
    if (!ToUpper(table).starts_with(kind.layout.name)) continue;
    if (IsReferredTo(home, kind.xref_kind, table.substr(kind.layout.name.size())))
      return std::string(kXrefLayout.name) + " names transactions of it";
  }
  return {};
}

// Banks without their table, and transactions without their references, cannot have come about by themselves.
std::string WhyCompanyTableLost(const TableHome& home, std::string_view table) {
  if (!EqualsIgnoreCase(table, kBankLayout.name) && !EqualsIgnoreCase(table, kXrefLayout.name)) return {};
  const bool in_use = std::any_of(std::begin(kKinds), std::end(kKinds), [&](const BankTableKind& kind) {
    return !home.files.List(home.folder, std::string(kind.layout.name) + "*.DBF").empty();
  });
  return in_use ? "the folder holds tables of bank accounts" : std::string();
}

// A copy, or what was written down when the last one was made.
std::string WhyKnown(const TableHome& home, std::string_view table) {
  const std::string name(table);
  if (home.files.FileExists(home.folder + "DBFCOPYS\\" + name + ".DBF")) return "the last copy holds it";
  const std::string control = home.files.Read(home.folder + "Escrow_Control.txt").value_or("");
  const bool listed = ("\n" + ToUpper(control)).find("\n" + ToUpper(name) + "=") != std::string::npos;
  return listed ? "Escrow_Control.txt lists it" : std::string();
}

}  // namespace

std::string WhyLost(const TableHome& home, std::string_view table) {
  std::string why = WhyKnown(home, table);
  if (why.empty()) why = WhyCompanyTableLost(home, table);
  return why.empty() ? WhyBankTableLost(home, table) : why;
}

}  // namespace tallwick
