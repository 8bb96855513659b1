// Where everything stands on a bank's check stock: defaults for the two kinds of stock, and the office's own
// layout in "Check_Print_<bank>.dat", one "name=value" a line, lengths in millimetres:
//
//   Stock=voucher                        or three: three checks on a sheet
//   Paper=215.9,279.4                    width and height
//   PanelHeight=88.9                     of a check and of a stub
//   CheckTops=0                          upper edges of the checks on the sheet
//   StubTops=88.9,177.8                  upper edges of the stubs
//   Words=9,37,158,9,10,left             a field: x, y, width, height, size of the letters in points, left,
//                                        right or center, and bold where it is to be strong; or off
//   Lines=on                             off for stock that has its lines and captions already
//   AccountTitle=ESCROW ACCOUNT          below the name of who writes the checks
//   Offset=0,0.5                         moves everything to the right and down, on every printer
//   Offset.Front desk=-1,0               the same on one printer
//   Copies=1                             prints of a check; those behind the first are marked as copies and
//                                        have no MICR line
//   Micr=on                              off for stock that carries the line already
//   Pantograph=off                       on: the word VOID in light grey behind the check
//   SignPassword=5E88…                   what is asked for before checks are printed (sign_password.h)
//
// x and y of a field count from the upper left corner of its check or stub; fields of stubs begin with
// "Stub". What the file does not name stays as the stock has it; a line that begins with ";" is a remark.
// Invariant: a layout without a problem has no field outside its panel, over another or in the clear band of
// the MICR line.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/sheet.h"
#include "tables/bank_table.h"

namespace tallwick {

enum class CheckStock { kVoucher, kThreePerPage };

enum class CheckField {
  kBranch,         // the name of who writes the checks
  kBranchAddress,  // and the title of the account
  kBank,
  kNumber,
  kDate,
  kPayTo,  // the words before the payee
  kPayee,
  kFigures,
  kWords,
  kAddress,  // payee and address, for the window of an envelope
  kFileNumber,
  kRemittance,
  kSignature,
  kStubBranch,
  kStubNumber,
  kStubDate,
  kStubPayee,
  kStubFileNumber,
  kStubFigures,
  kStubRemittance,
};
inline constexpr std::size_t kCheckFields = static_cast<std::size_t>(CheckField::kStubRemittance) + 1;

struct FieldPlace {
  bool shown = true;
  SheetRect box;  // in its panel
  double points = 10;
  char alignment = '<';  // ">" right, "^" centred
  bool bold = false;
};

struct SheetOffset {
  double x = 0;
  double y = 0;
};

// A line of letters too small to be copied. Where it begins is measured in millimetres from the check's upper
// left corner; the angle in degrees, counterclockwise from a line to the right.
struct SecurityLine {
  bool at_signature = false;  // on the rule to sign on, whatever the place says
  double x = 0;
  double y = 0;
  double angle = 0;
};

struct CheckLayout {
  CheckStock stock = CheckStock::kVoucher;
  double width = 215.9;
  double height = 279.4;
  double panel_height = 88.9;
  std::vector<double> check_tops;
  std::vector<double> stub_tops;
  std::array<FieldPlace, kCheckFields> fields;
  std::vector<std::pair<std::string, SheetOffset>> offsets;  // by printer; "" = every other one
  std::optional<int> copies;                                 // none: as the bank's record says
  bool micr = true;
  bool lines = true;  // captions, rules to write on, the box around the figures
  bool pantograph = false;
  std::string account_title = "ESCROW ACCOUNT";
  std::string sign_password;                  // "" = none is asked for
  std::optional<SecurityLine> security_line;  // of the bank's record, not of the file

  // Above it is for the fields of a check; below it for nothing but the MICR line.
  double FieldsEnd() const;
  const FieldPlace& Place(CheckField field) const { return fields[static_cast<std::size_t>(field)]; }
  // Names of printers are compared without regard to case.
  SheetOffset OffsetFor(std::string_view printer) const;
};

bool IsOnStub(CheckField field);
// "Words", "StubDate".
std::string_view NameOf(CheckField field);

// By how it begins: "voucher", "three" or "3", in any case and whatever stands behind, as banks' records of
// other programs name their stock; nullopt for anything else.
std::optional<CheckStock> ParseStock(std::string_view text);

// `position` is the place of the check on voucher stock: "TOP", "MIDDLE" or "BOTTOM".
CheckLayout DefaultLayout(CheckStock stock, std::string_view position = "TOP");

struct LayoutReading {
  CheckLayout layout;
  std::string problem;  // which line is wrong and what it should be; "" when the layout can be used
};

// The layout of a bank's file; `text` "" = there is none. `stock` overrules the file and the bank: fields
// that the file places on other stock are then left aside.
LayoutReading ReadLayout(std::string_view text, const BankRecord& bank,
                         std::optional<CheckStock> stock = std::nullopt);

// A file that holds the whole layout, to be edited.
std::string LayoutText(const CheckLayout& layout);

}  // namespace tallwick
