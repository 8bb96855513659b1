#include "ui/style.h"

#include <QFile>
#include <QIconEngine>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleFactory>
#include <QSvgRenderer>

// Resources of a static library are linked in only when they are named; the macro must stand outside any
// namespace.
static void LinkResources() {
  Q_INIT_RESOURCE(resources);
}

namespace tallwick {
namespace {

struct Colors {
  const char* window;  // behind everything
  const char* base;    // fields and registers
  const char* stripe;  // every other row, hovered buttons
  const char* text;
  const char* muted;
  const char* line;        // separators
  const char* field_line;  // borders of fields: at least 3 to 1 on the window
  const char* accent;
  const char* accent_hover;
  const char* on_accent;
  const char* alarm;
  const char* alarm_base;  // behind a refused field
};

constexpr Colors kLightColors{"#f5f6f7", "#ffffff", "#f0f3f6", "#1b1f24", "#59626c", "#d5dae0",
                              "#858e98", "#1d5fa6", "#184f8a", "#ffffff", "#b3261e", "#fdf0ef"};
constexpr Colors kDarkColors{"#212529", "#181b1e", "#262b30", "#e7eaed", "#a7b0b9", "#3a4148",
                             "#7b858f", "#79b0ee", "#94c1f3", "#0d1722", "#ff8f86", "#3a2322"};

bool IsDark(Scheme scheme) {
  if (scheme != Scheme::kSystem) return scheme == Scheme::kDark;
  const QPalette system = QGuiApplication::palette();
  return system.color(QPalette::Window).lightness() < system.color(QPalette::WindowText).lightness();
}

QPalette MakePalette(const Colors& colors) {
  const QColor window(colors.window), text(colors.text), muted(colors.muted);
  QPalette palette(window, window);
  palette.setColor(QPalette::Window, window);
  palette.setColor(QPalette::Base, colors.base);
  palette.setColor(QPalette::AlternateBase, colors.stripe);
  palette.setColor(QPalette::ToolTipBase, colors.base);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, muted);
  }
  palette.setColor(QPalette::Mid, colors.line);
  palette.setColor(QPalette::Link, colors.accent);
  palette.setColor(kMutedRole, muted);
  palette.setColor(kAlarmRole, colors.alarm);
  palette.setColor(kAccentRole, colors.accent);
  palette.setColor(QPalette::HighlightedText, colors.on_accent);
  return palette;
}

// The style sheet with its "@name" marks replaced.
QString MakeStyleSheet(const Colors& colors, bool dark) {
  QFile file(":/style.qss");
  if (!file.open(QIODevice::ReadOnly)) return {};
  QString sheet = QString::fromUtf8(file.readAll());
  // Longer names first, so that "@accent" does not eat the beginning of "@accent_hover".
  const std::pair<const char*, const char*> marks[] = {
      {"@window", colors.window},         {"@base", colors.base},
      {"@stripe", colors.stripe},         {"@text", colors.text},
      {"@muted", colors.muted},           {"@line", colors.line},
      {"@field_line", colors.field_line}, {"@accent_hover", colors.accent_hover},
      {"@accent", colors.accent},         {"@on_accent", colors.on_accent},
      {"@alarm_base", colors.alarm_base}, {"@alarm", colors.alarm}};
  for (const auto& [mark, color] : marks) sheet.replace(QLatin1String(mark), QLatin1String(color));
  return sheet.replace("@scheme", dark ? "dark" : "light");
}

// Draws an SVG whose lines are "currentColor" in a colour of the palette.
class DrawnIconEngine : public QIconEngine {
 public:
  DrawnIconEngine(const QString& name, QPalette::ColorRole color) : color_(color) {
    QFile file(":/icons/" + name + ".svg");
    if (file.open(QIODevice::ReadOnly)) svg_ = file.readAll();
  }
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QPalette palette = QGuiApplication::palette();
    const QColor color = mode == QIcon::Disabled ? palette.color(kMutedRole) : palette.color(color_);
    QByteArray drawn = svg_;
    drawn.replace("currentColor", color.name().toLatin1());
    if (mode == QIcon::Disabled) painter->setOpacity(0.6);
    QSvgRenderer(drawn).render(painter, rect);
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }
  QIconEngine* clone() const override { return new DrawnIconEngine(*this); }

 private:
  QByteArray svg_;
  QPalette::ColorRole color_;
};

}  // namespace

void ApplyStyle(QApplication& app, Scheme scheme) {
  LinkResources();
  const bool dark = IsDark(scheme);
  const Colors& colors = dark ? kDarkColors : kLightColors;
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setPalette(MakePalette(colors));
  app.setStyleSheet(MakeStyleSheet(colors, dark));
  QApplication::setWindowIcon(DrawnIcon("checks"));
}

void ApplyRoles(QWidget& root) {
  for (QLabel* label : root.findChildren<QLabel*>()) {
    const QString role = label->property("role").toString();
    if (role.isEmpty()) continue;
    QFont font = QApplication::font();
    if (role == "title") font.setPointSizeF(font.pointSizeF() * 1.4);
    if (role == "figure") font.setPointSizeF(font.pointSizeF() * 1.6);
    if (role == "title" || role == "heading") font.setWeight(QFont::DemiBold);
    label->setFont(font);
    if (role == "muted") label->setForegroundRole(kMutedRole);
  }
}

QIcon DrawnIcon(const QString& name, QPalette::ColorRole color) {
  return QIcon(new DrawnIconEngine(name, color));
}

void SetStyleProperty(QWidget& widget, const char* property, bool value) {
  if (widget.property(property).toBool() == value) return;
  widget.setProperty(property, value);
  widget.style()->unpolish(&widget);
  widget.style()->polish(&widget);
  widget.update();
}

}  // namespace tallwick
