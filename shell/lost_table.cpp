#include "shell/lost_table.h"

#include <algorithm>

#include "core/text.h"
#include "tables/bank_table.h"
#include "tables/check_table.h"
#include "tables/deposit_table.h"
#include "tables/deposit_xref_table.h"
#include "tables/users_table.h"
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

std::string WasThere(std::string_view evidence) {
  return "it was there: " + std::string(evidence);
}

// The first reference to a transaction of the table's bank and kind tells, in record order. References that
// can not be read through tell nothing, and that is no reason to believe the table new.
std::string WhyReferredTo(const TableHome& home, std::string_view kind, std::string_view bank_code) {
  XrefTable xrefs(home);
  if (!xrefs.Exists()) return {};
  int code = xrefs.OpenQuietly({}, false);
  if (xrefs.IsOpen()) {
    home.data.SetReadAhead(xrefs.Handle(), true);
    home.data.SelectTag(xrefs.Handle(), "");
    code = home.data.TopDatabase(xrefs.Handle());
    for (; code == engine::kSuccess; code = home.data.SkipDatabase(xrefs.Handle())) {
      if (home.data.IsRecordDeleted(xrefs.Handle())) continue;
      const XrefRecord xref = xrefs.Read();
      if (xref.kind == kind && EqualsIgnoreCase(Trim(xref.bank_code), bank_code))
        return WasThere(std::string(kXrefLayout.name) + " names transactions of it");
    }
    if (code == engine::kEof) return {};
  }
  return "whether it was there can not be told: " + std::string(kXrefLayout.name) + " can not be read (" +
         std::to_string(code) + ")";
}

std::string WhyBankTableLost(const TableHome& home, std::string_view table) {
  for (const BankTableKind& kind : kKinds) {
    if (!ToUpper(table).starts_with(kind.layout.name)) continue;
    std::string why = WhyReferredTo(home, kind.xref_kind, table.substr(kind.layout.name.size()));
    if (!why.empty()) return why;
  }
  return {};
}

// Users and their banks are made together, users first.
std::string WhyUsersLost(const TableHome& home, std::string_view table) {
  const bool companion = EqualsIgnoreCase(table, kUsersLayout.name) &&
                         home.files.FileExists(home.folder + std::string(kUserBanksLayout.name) + ".DBF");
  return companion ? WasThere(std::string(kUserBanksLayout.name) + " with the banks of its users is there")
                   : std::string();
}

// Banks without their table, and transactions without their references, cannot have come about by themselves.
std::string WhyCompanyTableLost(const TableHome& home, std::string_view table) {
  if (!EqualsIgnoreCase(table, kBankLayout.name) && !EqualsIgnoreCase(table, kXrefLayout.name)) return {};
  const bool in_use = std::any_of(std::begin(kKinds), std::end(kKinds), [&](const BankTableKind& kind) {
    return !home.files.List(home.folder, std::string(kind.layout.name) + "*.DBF").empty();
  });
  return in_use ? WasThere("the folder holds tables of bank accounts") : std::string();
}

// Its own texts, a copy, or what was written down when the last one was made.
std::string WhyKnown(const TableHome& home, std::string_view table) {
  const std::string name(table);
  if (home.files.SizeOf(home.folder + name + ".FPT").value_or(0) > kEmptyMemoBytes)
    return WasThere("its memo file is there");
  if (home.files.FileExists(home.folder + "DBFCOPYS\\" + name + ".DBF"))
    return WasThere("the last copy holds it");
  const std::optional<std::string> control = home.files.ReadIfThere(home.folder + "Escrow_Control.txt");
  if (!control) return "whether it was there can not be told: Escrow_Control.txt can not be read";
  const bool listed = ("\n" + ToUpper(*control)).find("\n" + ToUpper(name) + "=") != std::string::npos;
  return listed ? WasThere("Escrow_Control.txt lists it") : std::string();
}

}  // namespace

std::string WhyLost(const TableHome& home, std::string_view table) {
  std::string why = WhyKnown(home, table);
  if (why.empty()) why = WhyUsersLost(home, table);
  if (why.empty()) why = WhyCompanyTableLost(home, table);
  return why.empty() ? WhyBankTableLost(home, table) : why;
}

}  // namespace tallwick
