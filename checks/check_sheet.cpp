#include "checks/check_sheet.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "checks/check_frame.h"
#include "core/text.h"

namespace tallwick {
namespace {

constexpr double kSmallest = 0.5;  // of a field's letters
constexpr double kSizeStep = 0.05;
constexpr double kNarrowest = 0.8;
constexpr int kPantographGrey = 232;
constexpr double kMicroPoints = 1.2;
constexpr double kShortestMicro = 10;
constexpr double kMicroMargin = 3;  // from the edges of the check

struct Refusal {
  std::string_view status;
  std::string_view why;
};
constexpr Refusal kRefusals[] = {{"V", " is voided."},
                                 {"S", " has its payment stopped."},
                                 {"C", " has cleared."},
                                 {"H", " was written by hand."}};

double Width(const SheetFont& font, std::string_view text, const SheetMeasure& measure) {
  return measure.Width(font, text);
}

std::vector<std::string> Broken(std::string_view text, double width, const SheetFont& font,
                                const SheetMeasure& measure) {
  std::vector<std::string> lines;
  std::string line;
  for (const std::string& word : Split(text, ' ')) {
    std::string longer = line;
    if (!line.empty()) longer += ' ';
    longer += word;
    if (!line.empty() && Width(font, longer, measure) > width) {
      lines.push_back(line);
      line = word;
    } else {
      line = longer;
    }
  }
  lines.push_back(line);
  return lines;
}

// The lines at one size, and whether they fit.
struct Setting {
  SheetFont font;
  std::vector<std::string> lines;
  bool fits = false;
};

Setting SetAt(double scale, const std::vector<std::string>& lines, const FieldPlace& place, bool breaks,
              const SheetMeasure& measure) {
  Setting setting{{"", place.points * scale, place.bold}, lines, true};
  if (breaks) {
    setting.lines.clear();
    for (const std::string& line : lines) {
      for (std::string& part : Broken(line, place.box.width, setting.font, measure))
        setting.lines.push_back(std::move(part));
    }
  }
  const double narrowest = breaks ? 1 : kNarrowest;
  for (const std::string& line : setting.lines)
    setting.fits = setting.fits && Width(setting.font, line, measure) * narrowest <= place.box.width;
  setting.fits =
      setting.fits && static_cast<double>(setting.lines.size()) * SheetLineHeight(setting.font.points) <=
                          place.box.height + 0.001;
  return setting;
}

// As large as the lines fit; at the smallest size they may have no room.
Setting BestSetting(const std::vector<std::string>& lines, const FieldPlace& place, bool breaks,
                    const SheetMeasure& measure) {
  Setting setting = SetAt(1, lines, place, breaks, measure);
  for (double scale = 1 - kSizeStep; !setting.fits && scale > kSmallest - 0.001; scale -= kSizeStep)
    setting = SetAt(scale, lines, place, breaks, measure);
  return setting;
}

// How many lines have room, at least one.
std::size_t RoomFor(const Setting& setting, const FieldPlace& place) {
  const auto room =
      static_cast<std::size_t>((place.box.height + 0.001) / SheetLineHeight(setting.font.points));
  return std::max<std::size_t>(room, 1);
}

// Lines that fit into a box, set smaller, then narrower, where they must be. With `breaks` they go on in the
// next line between words. Lines are cut, at their end, only when they have no room even at half the size.
std::vector<SheetText> FitIntoBox(const std::vector<std::string>& lines, const FieldPlace& place, bool breaks,
                                  const SheetMeasure& measure) {
  Setting setting = BestSetting(lines, place, breaks, measure);
  const double line_height = SheetLineHeight(setting.font.points);
  const std::size_t room = RoomFor(setting, place);
  if (setting.lines.size() > room) setting.lines.resize(room);
  std::vector<SheetText> texts;
  double y = place.box.y;
  for (const std::string& line : setting.lines) {
    const double natural = Width(setting.font, line, measure);
    const double width = std::min(natural, place.box.width);
    const double free = place.box.width - width;
    const double x = place.box.x + (place.alignment == '>' ? free : place.alignment == '^' ? free / 2 : 0);
    if (natural > 0) texts.push_back({line, {x, y, width, line_height}, setting.font, width / natural});
    y += line_height;
  }
  return texts;
}

using Lines = std::vector<std::string>;

Lines TextLines(std::string_view text) {
  Lines lines;
  for (const std::string& line : Split(text, '\n')) lines.emplace_back(TrimRight(line));
  return lines;
}

// Captions of the form itself, which stock with lines has already.
bool IsOfForm(CheckField field) {
  return field == CheckField::kPayTo || field == CheckField::kSignature;
}

Lines ContentOf(CheckField field, const CheckOnPaper& paper, const CheckStationery& stationery,
                const CheckLayout& layout) {
  const CheckRecord& check = paper.check;
  switch (field) {
    case CheckField::kBranch:
    case CheckField::kStubBranch:
      return {stationery.branch};
    case CheckField::kBranchAddress: {
      Lines lines = FilledLines({layout.account_title});
      lines.insert(lines.end(), stationery.branch_address.begin(), stationery.branch_address.end());
      return lines;
    }
    case CheckField::kBank:
      return stationery.bank;
    case CheckField::kNumber:
      return {check.number};
    case CheckField::kStubNumber:
      return {"Check " + check.number};
    case CheckField::kDate:
    case CheckField::kStubDate:
      return {DisplayDate(check.dated)};
    case CheckField::kPayTo:
      return {"PAY TO THE", "ORDER OF"};
    case CheckField::kPayee:
      return {check.payee};
    case CheckField::kFigures:
    case CheckField::kStubFigures:
      return {paper.figures};
    case CheckField::kWords:
      return {paper.words};
    case CheckField::kAddress:
    case CheckField::kStubPayee:
      return FilledLines({check.payee, check.address1, check.address2, check.city_state});
    case CheckField::kFileNumber:
    case CheckField::kStubFileNumber: {
      const bool named = !FrameOf(field, layout).caption.empty();
      return FilledLines(
          {check.file_number.empty() || named ? check.file_number : "File No. " + check.file_number});
    }
    case CheckField::kRemittance:
    case CheckField::kStubRemittance:
      return TextLines(paper.remittance_advice);
    case CheckField::kSignature:
      return {"AUTHORIZED SIGNATURE"};
  }
  return {};
}

bool BreaksLines(CheckField field) {
  return field == CheckField::kWords || field == CheckField::kRemittance ||
         field == CheckField::kStubRemittance;
}

// The fields whose text must be on the check whole, as a person calls them.
struct NeededField {
  CheckField field;
  std::string_view name;
};
constexpr NeededField kNeeded[] = {{CheckField::kBranch, "the branch's name"},
                                   {CheckField::kBranchAddress, "the branch's address"},
                                   {CheckField::kBank, "the bank's name and address"},
                                   {CheckField::kNumber, "its number"},
                                   {CheckField::kDate, "its date"},
                                   {CheckField::kPayee, "its payee"},
                                   {CheckField::kFigures, "its amount in figures"},
                                   {CheckField::kWords, "its amount in words"},
                                   {CheckField::kAddress, "the payee's address"},
                                   {CheckField::kFileNumber, "its file number"}};

std::string RoomProblem(const CheckOnPaper& paper, const CheckStationery& stationery,
                        const CheckLayout& layout, const SheetMeasure& measure) {
  for (const auto& [field, name] : kNeeded) {
    if (!layout.Place(field).shown) continue;
    const Lines content = ContentOf(field, paper, stationery, layout);
    if (BestSetting(content, FrameOf(field, layout).inside, BreaksLines(field), measure).fits) continue;
    return std::string(name) + " has no room in the field " + std::string(NameOf(field)) +
           ".  Make the field larger in the bank's check layout.";
  }
  return {};
}

bool IsCut(CheckField field, const CheckOnPaper& paper, const CheckStationery& stationery,
           const CheckLayout& layout, const SheetMeasure& measure) {
  if (!layout.Place(field).shown || (IsOnStub(field) && layout.stub_tops.empty())) return false;
  const FieldPlace place = FrameOf(field, layout).inside;
  const Setting setting =
      BestSetting(ContentOf(field, paper, stationery, layout), place, BreaksLines(field), measure);
  return setting.lines.size() > RoomFor(setting, place);
}

// How far one can go from (x, y) in a direction before one comes to an edge of the rectangle; 0 outside of
// it.
double Reach(double x, double y, double right, double down, const SheetRect& area) {
  if (x < area.x || x > area.Right() || y < area.y || y > area.Bottom()) return 0;
  constexpr double level = 1e-9;
  double reach = area.width + area.height;
  if (right > level) reach = std::min(reach, (area.Right() - x) / right);
  if (right < -level) reach = std::min(reach, (area.x - x) / right);
  if (down > level) reach = std::min(reach, (area.Bottom() - y) / down);
  if (down < -level) reach = std::min(reach, (area.y - y) / down);
  return reach;
}

void DropLetter(std::string& text) {
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U) text.pop_back();
  if (!text.empty()) text.pop_back();
}

// Where the security line of a check begins, its angle and its greatest length.
struct MicroPlace {
  double x = 0;
  double y = 0;  // of its lower edge
  double angle = 0;
  double length = 0;
};

MicroPlace PlaceOfMicro(const CheckLayout& layout) {
  const SecurityLine& line = *layout.security_line;
  if (line.at_signature) {
    const FieldPlace& field = layout.Place(CheckField::kSignature);
    if (!field.shown) return {};
    const FieldFrame frame = FrameOf(CheckField::kSignature, layout);
    const double foot = field.box.Bottom() - SheetLineHeight(field.points);
    return {field.box.x, frame.rules.empty() ? foot : frame.rules.front().Bottom(), 0, field.box.width};
  }
  const double radians = line.angle * std::numbers::pi / 180;
  const SheetRect area{kMicroMargin, kMicroMargin, layout.width - 2 * kMicroMargin,
                       layout.FieldsEnd() - kMicroMargin};
  return {line.x, line.y, line.angle, Reach(line.x, line.y, std::cos(radians), -std::sin(radians), area)};
}

class Placer {
 public:
  Placer(const CheckStationery& stationery, const CheckLayout& layout, SheetOffset offset,
         const SheetMeasure& measure)
      : stationery_(stationery), layout_(layout), offset_(offset), measure_(measure) {}

  void PlaceCheck(const CheckOnPaper& paper, double top, bool is_copy, SheetPage& page) const {
    top += offset_.y;
    PlaceFields(paper, top, false, page);
    const double bottom = top + layout_.panel_height;
    if (is_copy) {
      PlaceIn({9, layout_.panel_height - 12, layout_.width - 18, 7}, "COPY - NOT NEGOTIABLE", 14, top,
              page.texts);
    } else if (layout_.micr) {
      PlaceMicrLine(
          MakeMicrLine(stationery_.routing, stationery_.account, paper.check.number, stationery_.micr),
          stationery_.micr, layout_.width + offset_.x, bottom, page);
    }
    if (layout_.security_line && !is_copy) PlaceSecurityLine(paper, top, page);
    if (layout_.pantograph) PlacePantograph(top, page);
  }

  void PlaceStub(const CheckOnPaper& paper, double top, SheetPage& page) const {
    PlaceFields(paper, top + offset_.y, true, page);
  }

 private:
  void PlaceFields(const CheckOnPaper& paper, double top, bool stub, SheetPage& page) const {
    for (std::size_t i = 0; i < kCheckFields; ++i) {
      const auto field = static_cast<CheckField>(i);
      if (!layout_.Place(field).shown || IsOnStub(field) != stub) continue;
      if (!layout_.lines && IsOfForm(field)) continue;
      const FieldFrame frame = FrameOf(field, layout_);
      if (!IsSecurityLine(field)) {
        for (const SheetRect& rule : frame.rules) page.bars.push_back(Moved(rule, top));
      }
      if (!frame.caption.empty())
        Place(FitIntoBox({std::string(frame.caption)}, frame.caption_place, false, measure_), top, page);
      std::vector<SheetText> texts = FitIntoBox(ContentOf(field, paper, stationery_, layout_), frame.inside,
                                                BreaksLines(field), measure_);
      Stand(frame, texts);
      Place(std::move(texts), top, page);
    }
  }

  // The rule to sign on is then one of letters.
  bool IsSecurityLine(CheckField field) const {
    return field == CheckField::kSignature && layout_.security_line && layout_.security_line->at_signature;
  }

  // Texts that leave room in their field stand where its frame wants them.
  static void Stand(const FieldFrame& frame, std::vector<SheetText>& texts) {
    if (texts.empty() || frame.stand == FieldFrame::Stand::kTop) return;
    const double free = frame.inside.box.Bottom() - texts.back().box.Bottom();
    for (SheetText& text : texts) text.box.y += frame.stand == FieldFrame::Stand::kMiddle ? free / 2 : free;
  }

  void Place(std::vector<SheetText> texts, double top, SheetPage& page) const {
    for (SheetText& text : texts) page.texts.push_back(Moved(std::move(text), top));
  }

  // Payer, number and amount over and over: who alters the check cannot alter this.
  void PlaceSecurityLine(const CheckOnPaper& paper, double top, SheetPage& page) const {
    const MicroPlace place = PlaceOfMicro(layout_);
    const SheetFont font{"", kMicroPoints, false};
    const std::string unit =
        ToUpper(stationery_.branch) + " " + paper.check.number + " " + paper.figures + " ";
    std::string text = unit;
    const double width = measure_.Width(font, unit);
    for (int times = 1; times * width <= place.length; ++times) text += unit;
    while (measure_.Width(font, text) > place.length) DropLetter(text);
    const double height = SheetLineHeight(kMicroPoints);
    SheetText line{text, {place.x, place.y - height, measure_.Width(font, text), height}, font};
    line.angle = place.angle;
    page.micro.push_back(Moved(std::move(line), top));
  }

  void PlaceIn(const SheetRect& box, const std::string& text, double points, double top,
               std::vector<SheetText>& texts) const {
    const FieldPlace place{true, box, points, '^', true};
    for (SheetText& line : FitIntoBox({text}, place, false, measure_))
      texts.push_back(Moved(std::move(line), top));
  }

  void PlacePantograph(double top, SheetPage& page) const {
    constexpr double column = 34;
    constexpr double row = 16;
    const std::size_t begin = page.background.size();
    for (double y = 6; y + row <= layout_.panel_height - kMicrClearBand; y += row) {
      for (double x = 6; x + column <= layout_.width; x += column)
        PlaceIn({x, y, column, row}, "VOID", 30, top, page.background);
    }
    for (std::size_t i = begin; i < page.background.size(); ++i) page.background[i].grey = kPantographGrey;
  }

  SheetRect Moved(SheetRect rule, double top) const {
    rule.x += offset_.x;
    rule.y += top;
    return rule;
  }
  SheetText Moved(SheetText text, double top) const {
    text.box.x += offset_.x;
    text.box.y += top;
    return text;
  }

  const CheckStationery& stationery_;
  const CheckLayout& layout_;
  const SheetOffset offset_;
  const SheetMeasure& measure_;
};

}  // namespace

std::vector<std::string> FilledLines(std::initializer_list<std::string_view> texts) {
  std::vector<std::string> lines;
  for (const std::string_view text : texts) {
    if (!Trim(text).empty()) lines.emplace_back(Trim(text));
  }
  return lines;
}

std::string StatusProblem(const CheckRecord& check) {
  for (const Refusal& refusal : kRefusals) {
    if (check.status == refusal.status)
      return "Check " + check.number + std::string(refusal.why) + "  Only outstanding checks are printed.";
  }
  return {};
}

std::string CheckProblem(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                         const CheckLayout& layout, const SheetMeasure& measure) {
  if (layout.security_line && PlaceOfMicro(layout).length < kShortestMicro)
    return "The security line has less than 10 millimetres of room on the check.  Correct SECLINEX, "
           "SECLINEY and SECLINEANG in the bank's record, or switch it off with PRTSECLINE.";
  for (const CheckOnPaper& paper : checks) {
    if (std::string problem = StatusProblem(paper.check); !problem.empty()) return problem;
    const std::string name = "Check " + paper.check.number + ": ";
    if (!paper.check.amount.IsValid() || paper.check.amount.IsNegative())
      return name + "its amount is below zero or out of range.  Correct the check.";
    if (std::string problem = RoomProblem(paper, stationery, layout, measure); !problem.empty())
      return name + problem;
    if (!layout.micr) continue;
    const MicrLine line =
        MakeMicrLine(stationery.routing, stationery.account, paper.check.number, stationery.micr);
    if (!line.problem.empty()) return name + line.problem;
    const int farthest = line.characters.empty() ? 0 : line.characters.front().position;
    if (kMicrRightMargin + farthest * kMicrPitch > layout.width)
      return name + "its MICR line is wider than the paper.  Correct Paper in the layout.";
  }
  return {};
}

std::string CutNote(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                    const CheckLayout& layout, const SheetMeasure& measure) {
  constexpr int most_named = 10;
  std::string note;
  int count = 0;
  for (const CheckOnPaper& paper : checks) {
    for (std::size_t i = 0; i < kCheckFields; ++i) {
      const auto field = static_cast<CheckField>(i);
      const bool beside = field == CheckField::kRemittance || IsOnStub(field);
      if (!beside || !IsCut(field, paper, stationery, layout, measure)) continue;
      if (++count <= most_named)
        note += "Check " + paper.check.number + ": the field " + std::string(NameOf(field)) +
                " has no room for all of its text.  The end is not printed.\r\n";
    }
  }
  if (count > most_named) note += "So it is " + std::to_string(count - most_named) + " times more.\r\n";
  return note;
}

SheetDocument PlaceChecks(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                          const CheckLayout& layout, int prints, SheetOffset offset,
                          const SheetMeasure& measure) {
  SheetDocument document;
  document.width = layout.width;
  document.height = layout.height;
  document.prints = std::max(prints, 1);
  if (checks.empty()) return document;
  document.name = checks.size() == 1
                      ? "Check " + checks.front().check.number
                      : "Checks " + checks.front().check.number + " to " + checks.back().check.number;
  const Placer placer(stationery, layout, offset, measure);
  const std::size_t per_sheet = layout.check_tops.size();
  for (int copy = 0; copy < document.prints; ++copy) {
    for (std::size_t i = 0; i < checks.size(); ++i) {
      if (i % per_sheet == 0) document.pages.emplace_back();
      placer.PlaceCheck(checks[i], layout.check_tops[i % per_sheet], copy > 0, document.pages.back());
      // Stubs belong to the one check of their sheet.
      if (per_sheet > 1) continue;
      for (const double top : layout.stub_tops) placer.PlaceStub(checks[i], top, document.pages.back());
    }
  }
  return document;
}

}  // namespace tallwick
