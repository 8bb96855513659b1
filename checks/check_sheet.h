// Checks as sheets: every text fitted into its field, the MICR line at the foot. Pure: what it is given
// decides what stands where.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "checks/check_layout.h"
#include "checks/micr_line.h"
#include "core/sheet.h"
#include "posting/check_ports.h"

namespace tallwick {

// What all checks of a bank share.
struct CheckStationery {
  std::string branch;  // the name of who writes the checks
  std::vector<std::string> branch_address;
  std::vector<std::string> bank;  // name and address of who pays them
  std::string routing;
  std::string account;
  MicrSettings micr;
};

// Those of the texts that are not blank, trimmed: lines of an address.
std::vector<std::string> FilledLines(std::initializer_list<std::string_view> texts);

// Why a check with this status is not printed; "" for an outstanding one and for one that is not posted.
std::string StatusProblem(const CheckRecord& check);

// Why these checks cannot be printed ("Check 10452: …"), "" when they can: their status, the MICR line,
// amounts below zero or out of range, a text of the check itself that has no room even at half the size.
std::string CheckProblem(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                         const CheckLayout& layout, const SheetMeasure& measure);

// What the person must know before these checks are printed: of remittance advice and stubs, what has no room
// is cut. "" when all of it has.
std::string CutNote(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                    const CheckLayout& layout, const SheetMeasure& measure);

// One document of all checks, in their order, behind them their copies: `prints` is 1 for the checks alone.
// Only for checks without a problem.
SheetDocument PlaceChecks(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                          const CheckLayout& layout, int prints, SheetOffset offset,
                          const SheetMeasure& measure);

}  // namespace tallwick
