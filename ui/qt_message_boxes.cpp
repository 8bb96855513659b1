#include "ui/qt_message_boxes.h"

#include <QApplication>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <utility>
#include <vector>

#include "ui/bound_widget.h"
#include "ui/style.h"

namespace tallwick {
namespace {

constexpr int kPictureSize = 40;
constexpr int kWidestText = 560;
constexpr int kTitleButtons = 120;
constexpr qsizetype kLongestLine = 400;

using Pair = std::pair<BoxAnswer, QMessageBox::StandardButton>;
constexpr Pair kOk{BoxAnswer::kOk, QMessageBox::Ok};
constexpr Pair kCancel{BoxAnswer::kCancel, QMessageBox::Cancel};
constexpr Pair kYes{BoxAnswer::kYes, QMessageBox::Yes};
constexpr Pair kNo{BoxAnswer::kNo, QMessageBox::No};
constexpr Pair kRetry{BoxAnswer::kRetry, QMessageBox::Retry};

std::vector<Pair> ButtonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kOk:
      return {kOk};
    case BoxButtons::kOkCancel:
      return {kOk, kCancel};
    case BoxButtons::kYesNo:
      return {kYes, kNo};
    case BoxButtons::kYesNoCancel:
      return {kYes, kNo, kCancel};
    case BoxButtons::kRetryCancel:
      return {kRetry, kCancel};
  }
  return {kOk};
}

QMessageBox::Icon IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kNone:
      return QMessageBox::NoIcon;
    case BoxIcon::kCritical:
      return QMessageBox::Critical;
    case BoxIcon::kQuestion:
      return QMessageBox::Question;
    case BoxIcon::kExclamation:
      return QMessageBox::Warning;
    case BoxIcon::kInformation:
      return QMessageBox::Information;
  }
  return QMessageBox::NoIcon;
}

// The drawn picture beside the text; the kind of box is told to screen readers by setIcon.
void ShowPicture(QMessageBox& shown, BoxIcon icon) {
  shown.setIcon(IconOf(icon));
  if (icon == BoxIcon::kNone) return;
  const std::string_view word = IconWord(icon);
  const QString name = "box_" + QString::fromLatin1(word.data(), static_cast<qsizetype>(word.size()));
  shown.setIconPixmap(DrawnIcon(name, icon == BoxIcon::kCritical ? kAlarmRole : kAccentRole)
                          .pixmap(QSize(kPictureSize, kPictureSize), shown.devicePixelRatioF()));
}

// A longer line quotes something that was pasted: its middle goes, or the box would not fit the screen.
QString WithShortLines(const QString& text) {
  QStringList lines = text.split('\n');
  for (QString& line : lines) {
    if (line.size() > kLongestLine) {
      line = line.left(kLongestLine / 2) + " ... " + line.right(kLongestLine / 2);
    }
  }
  return lines.join('\n');
}

// Lines are broken where the message breaks them, unless one is too long for any screen. A short text leaves
// room for the title above it, which the system draws in bold letters between its buttons.
void FitText(QMessageBox& shown) {
  QFont title_font = shown.font();
  title_font.setBold(true);
  int widest = QFontMetrics(title_font).horizontalAdvance(shown.windowTitle()) + kTitleButtons;
  for (const QString& line : shown.text().split('\n')) {
    widest = std::max(widest, shown.fontMetrics().horizontalAdvance(line));
  }
  if (auto* label = shown.findChild<QLabel*>("qt_msgbox_label")) {
    label->setMinimumWidth(std::min(widest + 8, kWidestText));
  }
}

}  // namespace

std::optional<std::string> QtMessageBoxes::AskSecret(std::string_view title, std::string_view prompt) {
  bool taken = false;
  const QString typed = QInputDialog::getText(QApplication::activeWindow(), ShownText(title),
                                              ShownText(prompt), QLineEdit::Password, {}, &taken);
  if (!taken) return std::nullopt;
  return typed.toStdString();
}

BoxAnswer QtMessageBoxes::Show(const Box& box) {
  QMessageBox shown(QApplication::activeWindow());
  shown.setWindowTitle(QString::fromStdString(box.title));
  shown.setTextFormat(Qt::PlainText);
  shown.setText(WithShortLines(ShownText(box.text)));
  ShowPicture(shown, box.icon);
  FitText(shown);
  const std::vector<Pair> buttons = ButtonsOf(box.buttons);
  const BoxAnswer safe = SafeAnswer(box);
  QMessageBox::StandardButton preset = QMessageBox::NoButton;
  QMessageBox::StandardButton escape = QMessageBox::NoButton;
  for (const auto& [answer, button] : buttons) {
    shown.addButton(button)->setIcon({});
    if (answer == box.preset) preset = button;
    if (answer == safe) escape = button;
  }
  shown.setDefaultButton(preset != QMessageBox::NoButton ? preset : escape);
  shown.setEscapeButton(escape);
  const int pressed = shown.exec();
  for (const auto& [answer, button] : buttons) {
    if (button == pressed) return answer;
  }
  return safe;
}

}  // namespace tallwick
