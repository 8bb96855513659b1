#include "cli/drive/transcript.h"

#include <algorithm>

#include "cli/drive/script.h"

namespace tallwick::cli {

std::string QuotedText(std::string_view text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '\r')
      quoted += "\\r";
    else if (c == '\n')
      quoted += "\\n";
    else if (c == '"' || c == '\\')
      quoted += {'\\', c};
    else
      quoted += c;
  }
  return quoted + '"';
}

std::string BoxLine(const ShownBox& shown) {
  const std::string_view icon = IconWord(shown.box.icon);
  return "box " + std::string(icon.empty() ? "message" : icon) + ' ' + QuotedText(shown.box.title) + ' ' +
         QuotedText(shown.box.text) + " -> " +
         (shown.answered ? std::string(AnswerWord(shown.answer)) : "no answer");
}

namespace {

bool ShowsCaption(const Control& control) {
  switch (control.kind) {
    case ControlKind::kCheck:
    case ControlKind::kOption:
    case ControlKind::kButton:
    case ControlKind::kMenu:
    case ControlKind::kFrame:
      return true;
    case ControlKind::kLabel:
      return control.text.empty();
    default:
      return false;
  }
}

std::string_view CheckedWord(const Control& control) {
  const bool is_box = control.kind == ControlKind::kCheck || control.kind == ControlKind::kOption;
  if (!is_box && control.kind != ControlKind::kMenu) return "";
  if (control.value == 1) return " (checked)";
  if (!is_box) return "";
  return control.value == 0 ? " (unchecked)" : " (grayed)";
}

}  // namespace

std::size_t RowCount(const Control& control) {
  return control.source ? control.source->RowCount() : control.rows.size();
}

std::string ControlLine(const Control& control) {
  std::string line = ControlText(control.name, control.index) + " = ";
  const bool has_text = control.kind != ControlKind::kGrid && control.kind != ControlKind::kCheckList;
  const bool rows = control.kind == ControlKind::kList || !has_text;
  if (has_text) line += QuotedText(ShowsCaption(control) ? control.caption : control.text);
  if (rows) line += (line.back() == ' ' ? "" : " ") + std::to_string(RowCount(control)) + " rows";
  if (control.kind == ControlKind::kCheckList)
    line += ", " + std::to_string(std::count(control.marks.begin(), control.marks.end(), true)) + " checked";
  if (!control.enabled) line += " (disabled)";
  line += CheckedWord(control);
  if (!control.visible) line += " (hidden)";
  return line;
}

std::string RowLine(const Control& control, int row) {
  const std::string name = ControlText(control.name, row) + " = ";
  const std::size_t place = static_cast<std::size_t>(row) - 1;
  if (row < 1 || place >= RowCount(control)) return name + "no row";
  const bool marked = control.kind == ControlKind::kCheckList;
  if (!control.source)
    return name + QuotedText(control.rows[place]) +
           (!marked                ? ""
            : control.marks[place] ? " (checked)"
                                   : " (unchecked)");
  std::string cells;
  for (const std::string& cell : control.source->Row(place)) cells += (cells.empty() ? "" : " | ") + cell;
  return name + QuotedText(cells);
}

}  // namespace tallwick::cli
