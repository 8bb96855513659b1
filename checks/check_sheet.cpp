#include "checks/check_sheet.h"

#include <algorithm>

#include "core/text.h"

namespace tallwick {
namespace {

constexpr double kSmallest = 0.5;  // of a field's letters
constexpr double kSizeStep = 0.05;
constexpr double kNarrowest = 0.8;
constexpr double kRule = 0.25;
constexpr int kPantographGrey = 232;

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
    const std::string longer = line.empty() ? word : line + " " + word;
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

using Lines = std::vector<std::string>;

Lines Filled(std::initializer_list<std::string> texts) {
  Lines lines;
  for (const std::string& text : texts) {
    if (!Trim(text).empty()) lines.push_back(text);
  }
  return lines;
}

Lines TextLines(std::string_view text) {
  Lines lines;
  for (const std::string& line : Split(text, '\n')) lines.emplace_back(TrimRight(line));
  return lines;
}

Lines ContentOf(CheckField field, const CheckOnPaper& paper, const CheckStationery& stationery) {
  const CheckRecord& check = paper.check;
  switch (field) {
    case CheckField::kBranch:
      return stationery.branch;
    case CheckField::kStubBranch:
      return stationery.branch.empty() ? Lines{} : Lines{stationery.branch.front()};
    case CheckField::kBank:
      return stationery.bank;
    case CheckField::kNumber:
    case CheckField::kStubNumber:
      return {check.number};
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
      return Filled({check.payee, check.address1, check.address2, check.city_state});
    case CheckField::kFileNumber:
    case CheckField::kStubFileNumber:
      return check.file_number.empty() ? Lines{} : Lines{"File No. " + check.file_number};
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
constexpr NeededField kNeeded[] = {{CheckField::kBranch, "the branch's name and address"},
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
    const FieldPlace& place = layout.Place(field);
    const Lines content = ContentOf(field, paper, stationery);
    if (!place.shown || BestSetting(content, place, BreaksLines(field), measure).fits) continue;
    return std::string(name) + " has no room in the field " + std::string(NameOf(field)) +
           ".  Make the field larger in the bank's check layout.";
  }
  return {};
}

bool IsCut(CheckField field, const CheckOnPaper& paper, const CheckStationery& stationery,
           const CheckLayout& layout, const SheetMeasure& measure) {
  const FieldPlace& place = layout.Place(field);
  if (!place.shown || (IsOnStub(field) && layout.stub_tops.empty())) return false;
  const Setting setting =
      BestSetting(ContentOf(field, paper, stationery), place, BreaksLines(field), measure);
  return setting.lines.size() > RoomFor(setting, place);
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
    if (layout_.pantograph) PlacePantograph(top, page);
  }

  void PlaceStub(const CheckOnPaper& paper, double top, SheetPage& page) const {
    PlaceFields(paper, top + offset_.y, true, page);
  }

 private:
  void PlaceFields(const CheckOnPaper& paper, double top, bool stub, SheetPage& page) const {
    for (std::size_t i = 0; i < kCheckFields; ++i) {
      const auto field = static_cast<CheckField>(i);
      FieldPlace place = layout_.Place(field);
      if (!place.shown || IsOnStub(field) != stub) continue;
      if (field == CheckField::kSignature) RuleAbove(place, top, page);
      for (SheetText& text :
           FitIntoBox(ContentOf(field, paper, stationery_), place, BreaksLines(field), measure_))
        page.texts.push_back(Moved(std::move(text), top));
    }
  }

  // The person signs above the rule: the words stand at the foot of the field.
  void RuleAbove(FieldPlace& place, double top, SheetPage& page) const {
    const double line = SheetLineHeight(place.points);
    place.box.y = place.box.Bottom() - line;
    place.box.height = line;
    page.bars.push_back({place.box.x + offset_.x, place.box.y - kRule + top, place.box.width, kRule});
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

std::string StatusProblem(const CheckRecord& check) {
  for (const Refusal& refusal : kRefusals) {
    if (check.status == refusal.status)
      return "Check " + check.number + std::string(refusal.why) + "  Only outstanding checks are printed.";
  }
  return {};
}

std::string CheckProblem(std::span<const CheckOnPaper> checks, const CheckStationery& stationery,
                         const CheckLayout& layout, const SheetMeasure& measure) {
  for (const CheckOnPaper& paper : checks) {
    if (const std::string problem = StatusProblem(paper.check); !problem.empty()) return problem;
    const std::string name = "Check " + paper.check.number + ": ";
    if (!paper.check.amount.IsValid() || paper.check.amount.IsNegative())
      return name + "its amount is below zero or out of range.  Correct the check.";
    if (const std::string problem = RoomProblem(paper, stationery, layout, measure); !problem.empty())
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
  if (checks.empty()) return document;
  document.name = checks.size() == 1
                      ? "Check " + checks.front().check.number
                      : "Checks " + checks.front().check.number + " to " + checks.back().check.number;
  const Placer placer(stationery, layout, offset, measure);
  const std::size_t per_sheet = layout.check_tops.size();
  for (int copy = 0; copy < std::max(prints, 1); ++copy) {
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
