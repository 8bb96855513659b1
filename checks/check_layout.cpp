#include "checks/check_layout.h"

#include <algorithm>
#include <cmath>

#include "checks/micr_line.h"
#include "core/text.h"

namespace tallwick {
namespace {

using Field = CheckField;

constexpr double kPanel = 88.9;
constexpr double kEpsilon = 0.001;

struct FieldDefault {
  Field field;
  std::string_view name;
  FieldPlace place;
};

// In the order of CheckField. The window of an envelope shows what stands 22 to 110 millimetres from the left
// edge and 43 to 68 from the upper one.
constexpr FieldDefault kFields[] = {
    {Field::kBranch, "Branch", {true, {9, 6.5, 86, 6}, 12.5, '<', true}},
    {Field::kBranchAddress, "BranchAddress", {true, {9, 12.8, 86, 14}, 8, '<', false}},
    {Field::kBank, "Bank", {true, {98, 7.5, 58, 14}, 8, '^', false}},
    {Field::kNumber, "Number", {true, {165, 6.5, 42, 6.5}, 13, '>', true}},
    {Field::kDate, "Date", {true, {169, 15, 38, 9}, 10, '^', false}},
    {Field::kPayTo, "PayTo", {true, {9, 28.5, 20, 7}, 6.5, '<', false}},
    {Field::kPayee, "Payee", {true, {30, 28, 127, 7.5}, 12, '<', true}},
    {Field::kFigures, "Figures", {true, {162, 27, 45, 8.5}, 12.5, '>', true}},
    {Field::kWords, "Words", {true, {9, 37, 198, 10}, 10, '<', false}},
    {Field::kAddress, "Address", {true, {24, 49.5, 86, 16.5}, 9, '<', false}},
    {Field::kFileNumber, "FileNumber", {true, {9, 68.4, 50, 4.5}, 8, '<', false}},
    {Field::kRemittance, "Remittance", {true, {61, 68.4, 60, 4.5}, 8, '<', false}},
    {Field::kSignature, "Signature", {true, {125, 57, 82, 15.5}, 6.5, '^', false}},
    {Field::kStubBranch, "StubBranch", {true, {9, 7, 148, 7}, 11, '<', true}},
    {Field::kStubNumber, "StubNumber", {true, {157, 7, 50, 7}, 11, '>', true}},
    {Field::kStubDate, "StubDate", {true, {9, 16, 26, 9}, 9, '<', false}},
    {Field::kStubPayee, "StubPayee", {true, {72, 16, 88, 20}, 9, '<', false}},
    {Field::kStubFileNumber, "StubFileNumber", {true, {36, 16, 35, 9}, 9, '<', false}},
    {Field::kStubFigures, "StubFigures", {true, {161, 16, 46, 9}, 10, '>', true}},
    {Field::kStubRemittance, "StubRemittance", {true, {9, 38, 198, 44}, 9, '<', false}},
};
static_assert(std::size(kFields) == kCheckFields);

constexpr std::string_view kFieldForm =
    "x,y,width,height,size,left|right|center in millimetres and points, with bold at the end where it is "
    "strong, or off";

// --- Reading ---

struct Line {
  std::string text;
  std::string name;
  std::string value;
};

std::vector<Line> SettingsIn(std::string_view text) {
  std::vector<Line> lines;
  for (const std::string& raw : Split(text, '\n')) {
    const std::string line(Trim(raw));
    const std::size_t equals = line.find('=');
    if (line.empty() || line.front() == ';') continue;
    lines.push_back({line, std::string(Trim(line.substr(0, equals))),
                     equals == std::string::npos ? "" : std::string(Trim(line.substr(equals + 1)))});
  }
  return lines;
}

// The first line whose name an earlier one has; null where there is none.
const Line* SecondOfItsName(const std::vector<Line>& lines) {
  for (auto line = lines.begin(); line != lines.end(); ++line) {
    const auto is_same = [&](const Line& earlier) { return EqualsIgnoreCase(earlier.name, line->name); };
    if (std::any_of(lines.begin(), line, is_same)) return &*line;
  }
  return nullptr;
}

// A plain decimal within a sheet's reach: no exponent, no more than a thousand.
std::optional<double> ParseLength(std::string_view text) {
  const std::optional<Currency> exact = Currency::Parse(Trim(text));
  if (!exact || exact->Abs() > Currency::FromCents(1000'00)) return std::nullopt;
  return static_cast<double>(exact->TenThousandths()) / 10000;
}

std::optional<std::vector<double>> ParseLengths(std::string_view text) {
  std::vector<double> lengths;
  if (Trim(text).empty()) return lengths;
  for (const std::string& piece : Split(text, ',')) {
    const std::optional<double> length = ParseLength(piece);
    if (!length) return std::nullopt;
    lengths.push_back(*length);
  }
  return lengths;
}

bool ParseSwitch(std::string_view value, bool& on) {
  on = EqualsIgnoreCase(value, "on");
  return on || EqualsIgnoreCase(value, "off");
}

bool ParseField(std::string_view value, FieldPlace& place) {
  place.shown = !EqualsIgnoreCase(value, "off");
  if (!place.shown) return true;
  const std::vector<std::string> pieces = Split(value, ',');
  if (pieces.size() < 6 || pieces.size() > 7) return false;
  double numbers[5] = {};
  for (std::size_t i = 0; i < 5; ++i) {
    const std::optional<double> number = ParseLength(pieces[i]);
    if (!number || *number < 0) return false;
    numbers[i] = *number;
  }
  place.box = {numbers[0], numbers[1], numbers[2], numbers[3]};
  place.points = numbers[4];
  const std::string alignment = ToLower(Trim(pieces[5]));
  place.alignment = alignment == "right" ? '>' : alignment == "center" ? '^' : '<';
  place.bold = pieces.size() == 7;
  return (place.alignment != '<' || alignment == "left") &&
         (!place.bold || EqualsIgnoreCase(Trim(pieces[6]), "bold"));
}

const FieldDefault* FindField(std::string_view name) {
  const auto* found = std::find_if(std::begin(kFields), std::end(kFields),
                                   [&](const FieldDefault& one) { return EqualsIgnoreCase(one.name, name); });
  return found == std::end(kFields) ? nullptr : found;
}

bool IsOffset(std::string_view name) {
  return EqualsIgnoreCase(name, "Offset") || EqualsIgnoreCase(name.substr(0, 7), "Offset.");
}

// What a line should have been; "" when it is right.
std::string TakeOffset(const Line& line, CheckLayout& layout) {
  const auto lengths = ParseLengths(line.value);
  if (!lengths || lengths->size() != 2) return "Offset=right,down in millimetres";
  const std::string printer = line.name.size() > 7 ? line.name.substr(7) : "";
  layout.offsets.push_back({printer, {(*lengths)[0], (*lengths)[1]}});
  return {};
}

std::string TakeSetting(const Line& line, CheckLayout& layout) {
  const std::string name = ToLower(line.name);
  const auto lengths = ParseLengths(line.value);
  if (name == "stock") return ParseStock(line.value) ? "" : "Stock=voucher or Stock=three";
  if (name == "micr") return ParseSwitch(line.value, layout.micr) ? "" : "Micr=on or Micr=off";
  if (name == "lines") return ParseSwitch(line.value, layout.lines) ? "" : "Lines=on or Lines=off";
  if (name == "pantograph")
    return ParseSwitch(line.value, layout.pantograph) ? "" : "Pantograph=on or Pantograph=off";
  if (name == "copies") {
    if (!IsAllDigits(line.value) || line.value.size() > 1) return "Copies=0 to Copies=9";
    layout.copies = line.value[0] - '0';
  } else if (name == "accounttitle") {
    layout.account_title = line.value;
  } else if (name == "signpassword") {
    layout.sign_password = line.value;
  } else if (name == "paper") {
    if (!lengths || lengths->size() != 2) return "Paper=width,height in millimetres";
    layout.width = (*lengths)[0];
    layout.height = (*lengths)[1];
  } else if (name == "panelheight") {
    if (!lengths || lengths->size() != 1) return "PanelHeight=height in millimetres";
    layout.panel_height = lengths->front();
  } else if (name == "checktops") {
    if (!lengths || lengths->empty()) return "CheckTops=one height in millimetres for each check of a sheet";
    layout.check_tops = *lengths;
  } else if (name == "stubtops") {
    if (!lengths) return "StubTops=one height in millimetres for each stub";
    layout.stub_tops = *lengths;
  } else {
    return "a setting or field that is known: " + Quoted(line.name) + " is none";
  }
  return {};
}

// Offsets, copies and switches hold on any stock.
bool IsOfStock(std::string_view name) {
  return FindField(name) != nullptr || EqualsIgnoreCase(name, "PanelHeight") ||
         EqualsIgnoreCase(name, "CheckTops") || EqualsIgnoreCase(name, "StubTops");
}

std::string TakeLine(const Line& line, CheckLayout& layout) {
  if (const FieldDefault* field = FindField(line.name)) {
    const bool read = ParseField(line.value, layout.fields[static_cast<std::size_t>(field->field)]);
    return read ? "" : std::string(field->name) + "=" + std::string(kFieldForm);
  }
  return IsOffset(line.name) ? TakeOffset(line, layout) : TakeSetting(line, layout);
}

// Of a bank's record, whose SECLINEX and SECLINEY count twips (1440 to the inch) from the check's upper left
// corner, and whose SECLINEANG counts degrees; both places 0 mean the signature. None unless PRTSECLINE is 1.
std::optional<SecurityLine> SecurityLineOf(const BankRecord& bank) {
  if (bank.print_security_line != 1) return std::nullopt;
  constexpr double twip = kMillimetresPerInch / 1440;
  return SecurityLine{bank.security_line_x == 0 && bank.security_line_y == 0, bank.security_line_x * twip,
                      bank.security_line_y * twip, static_cast<double>(bank.security_line_angle)};
}

// --- Problems ---

bool Overlap(const SheetRect& one, const SheetRect& other) {
  return one.x < other.Right() - kEpsilon && other.x < one.Right() - kEpsilon &&
         one.y < other.Bottom() - kEpsilon && other.y < one.Bottom() - kEpsilon;
}

std::string PlaceProblem(const CheckLayout& layout, const FieldDefault& field) {
  const FieldPlace& place = layout.Place(field.field);
  const std::string name(field.name);
  if (!place.shown) return {};
  if (place.points < 4 || place.points > 36) return name + " has letters that are not 4 to 36 points high";
  if (place.box.height + kEpsilon < SheetLineHeight(place.points))
    return name + " is too low for a line of its letters";
  if (place.box.width < 5) return name + " is narrower than 5 millimetres";
  const double bottom = IsOnStub(field.field) ? layout.panel_height : layout.FieldsEnd();
  if (place.box.Right() > layout.width + kEpsilon || place.box.Bottom() > layout.panel_height + kEpsilon)
    return name + " reaches beyond its check or stub";
  if (place.box.Bottom() > bottom + kEpsilon)
    return name + " reaches into the lowest 15.9 millimetres, which are kept clear for the MICR line";
  for (const FieldDefault& other : kFields) {
    if (other.field >= field.field || IsOnStub(other.field) != IsOnStub(field.field)) continue;
    if (layout.Place(other.field).shown && Overlap(place.box, layout.Place(other.field).box))
      return name + " stands over " + std::string(other.name);
  }
  return {};
}

std::string PanelProblem(const CheckLayout& layout) {
  std::vector<double> tops = layout.check_tops;
  tops.insert(tops.end(), layout.stub_tops.begin(), layout.stub_tops.end());
  std::sort(tops.begin(), tops.end());
  if (layout.width < 100 || layout.height < 50) return "the paper is smaller than 100 by 50 millimetres";
  if (layout.panel_height < 40) return "PanelHeight is less than 40 millimetres";
  for (std::size_t i = 0; i < tops.size(); ++i) {
    if (tops[i] < 0 || tops[i] + layout.panel_height > layout.height + kEpsilon)
      return "a check or stub reaches beyond the paper";
    if (i > 0 && tops[i - 1] + layout.panel_height > tops[i] + kEpsilon)
      return "a check or stub stands over another";
  }
  if (layout.check_tops.size() > 1 && !layout.stub_tops.empty())
    return "StubTops names stubs, which belong to the only check of a sheet, and CheckTops names several "
           "checks";
  return {};
}

constexpr double kFarthestOffset = 6;  // a printer that needs more has its paper in the wrong way round

bool LeavesPaper(const CheckLayout& layout, const std::vector<double>& tops, const SheetRect& box,
                 const SheetOffset& offset) {
  return std::any_of(tops.begin(), tops.end(), [&](double top) {
    return box.x + offset.x < 0 || box.Right() + offset.x > layout.width || top + box.y + offset.y < 0 ||
           top + box.Bottom() + offset.y > layout.height;
  });
}

std::string OffsetProblem(const CheckLayout& layout) {
  for (const auto& [printer, offset] : layout.offsets) {
    if (std::max(std::abs(offset.x), std::abs(offset.y)) > kFarthestOffset)
      return "an offset moves the print by more than 6 millimetres";
    for (const FieldDefault& field : kFields) {
      const FieldPlace& place = layout.Place(field.field);
      const std::vector<double>& tops = IsOnStub(field.field) ? layout.stub_tops : layout.check_tops;
      if (place.shown && LeavesPaper(layout, tops, place.box, offset))
        return "an offset moves " + std::string(field.name) + " off the paper";
    }
  }
  return {};
}

// What breaks the invariant; "" when nothing does.
std::string LayoutProblem(const CheckLayout& layout) {
  std::string problem = PanelProblem(layout);
  if (problem.empty()) problem = OffsetProblem(layout);
  for (const FieldDefault& field : kFields) {
    if (problem.empty()) problem = PlaceProblem(layout, field);
  }
  return problem;
}

// --- Writing ---

// "88.9"; as many decimals as are needed, up to four.
std::string LengthText(double length) {
  const double scaled = length * 10000 + (length < 0 ? -0.5 : 0.5);
  return Currency::FromTenThousandths(static_cast<std::int64_t>(scaled)).ToText(0);
}

std::string LengthsText(const std::vector<double>& lengths) {
  std::string text;
  for (const double length : lengths) text += (text.empty() ? "" : ",") + LengthText(length);
  return text;
}

std::string FieldText(const FieldPlace& place) {
  if (!place.shown) return "off";
  const SheetRect& box = place.box;
  const char* alignment = place.alignment == '>' ? ",right" : place.alignment == '^' ? ",center" : ",left";
  return LengthsText({box.x, box.y, box.width, box.height, place.points}) + alignment +
         (place.bold ? ",bold" : "");
}

}  // namespace

bool IsOnStub(CheckField field) {
  return field >= CheckField::kStubBranch;
}

std::string_view NameOf(CheckField field) {
  return kFields[static_cast<std::size_t>(field)].name;
}

std::optional<CheckStock> ParseStock(std::string_view text) {
  const std::string upper = ToUpper(Trim(text));
  if (upper.rfind("VOUCHER", 0) == 0) return CheckStock::kVoucher;
  if (upper.rfind("THREE", 0) == 0 || upper.rfind('3', 0) == 0) return CheckStock::kThreePerPage;
  return std::nullopt;
}

SheetOffset CheckLayout::OffsetFor(std::string_view printer) const {
  SheetOffset found;
  for (const auto& [name, offset] : offsets) {
    if (!name.empty() && EqualsIgnoreCase(name, printer)) return offset;
    if (name.empty()) found = offset;
  }
  return found;
}

double CheckLayout::FieldsEnd() const {
  return panel_height - (micr ? kMicrClearBand : 0);
}

CheckLayout DefaultLayout(CheckStock stock, std::string_view position) {
  CheckLayout layout;
  layout.stock = stock;
  for (const FieldDefault& field : kFields)
    layout.fields[static_cast<std::size_t>(field.field)] = field.place;
  if (stock == CheckStock::kThreePerPage) {
    layout.check_tops = {0, kPanel, 2 * kPanel};
    return layout;
  }
  // The stubs have the remittance advice.
  layout.fields[static_cast<std::size_t>(Field::kRemittance)].shown = false;
  const std::string place = ToUpper(Trim(position));
  const std::size_t check = place == "BOTTOM" ? 2 : place == "MIDDLE" ? 1 : 0;
  for (std::size_t panel = 0; panel < 3; ++panel) {
    const double top = static_cast<double>(panel) * kPanel;
    (panel == check ? layout.check_tops : layout.stub_tops).push_back(top);
  }
  return layout;
}

LayoutReading ReadLayout(std::string_view text, const BankRecord& bank, std::optional<CheckStock> stock) {
  const std::vector<Line> lines = SettingsIn(text);
  CheckStock of_file = ParseStock(bank.check_stock).value_or(CheckStock::kVoucher);
  for (const Line& line : lines) {
    if (EqualsIgnoreCase(line.name, "Stock")) of_file = ParseStock(line.value).value_or(of_file);
  }
  LayoutReading reading;
  if (const Line* second = SecondOfItsName(lines)) {
    reading.problem =
        "The line " + Quoted(second->text) + " is a second one of its name.  Leave one of them out.";
    return reading;
  }
  reading.layout = DefaultLayout(stock.value_or(of_file), bank.check_position);
  reading.layout.security_line = SecurityLineOf(bank);
  for (const Line& line : lines) {
    if (reading.layout.stock != of_file && IsOfStock(line.name)) continue;
    const std::string wanted = TakeLine(line, reading.layout);
    if (wanted.empty()) continue;
    reading.problem = "The line " + Quoted(line.text) + " should be " + wanted + ".";
    return reading;
  }
  const std::string problem = LayoutProblem(reading.layout);
  if (!problem.empty()) reading.problem = "In this layout " + problem + ".";
  return reading;
}

std::string LayoutText(const CheckLayout& layout) {
  const auto on_off = [](bool on) { return on ? "on" : "off"; };
  std::vector<std::string> lines = {
      "; Check layout.  Lengths are millimetres from the upper left corner of a check or stub.",
      "; A field is x,y,width,height,size in points,left|right|center, with bold where it is strong; or off.",
      std::string("Stock=") + (layout.stock == CheckStock::kVoucher ? "voucher" : "three"),
      "Paper=" + LengthsText({layout.width, layout.height}),
      "PanelHeight=" + LengthText(layout.panel_height),
      "CheckTops=" + LengthsText(layout.check_tops),
      "StubTops=" + LengthsText(layout.stub_tops),
      std::string("Micr=") + on_off(layout.micr),
      std::string("Lines=") + on_off(layout.lines),
      std::string("Pantograph=") + on_off(layout.pantograph),
      "AccountTitle=" + layout.account_title};
  if (!layout.sign_password.empty()) lines.push_back("SignPassword=" + layout.sign_password);
  if (layout.copies) lines.push_back("Copies=" + std::to_string(*layout.copies));
  for (const auto& [printer, offset] : layout.offsets)
    lines.push_back("Offset" + (printer.empty() ? "" : "." + printer) + "=" +
                    LengthsText({offset.x, offset.y}));
  for (const FieldDefault& field : kFields)
    lines.push_back(std::string(field.name) + "=" + FieldText(layout.Place(field.field)));
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

}  // namespace tallwick
