#include "desktop/theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <QStyleFactory>
#include <QToolTip>

#include "desktop/house_style.h"

namespace kaunter {
namespace {

const Looks kLight{false,     "#f3f5f7", "#ffffff", "#ffffff", "#f1f3f5", "#c9d0d8",
                   "#dfe4e9", "#1d2530", "#5d6875", "#0f6e66", "#0b5a54", "#dcefec",
                   "#ffffff", "#f7f9fa", "#2f8f5b", "#c98a12", "#c0392f", "#e2f3e8",
                   "#fdf2d8", "#fce4e1", "#e9edf1", "#dcdcff"};
const Looks kDark{true,      "#1a1e24", "#22272f", "#1c2027", "#262c35", "#434c59",
                  "#333a45", "#e7ebef", "#9ca7b4", "#1f8f84", "#27a599", "#1d3f3d",
                  "#ffffff", "#262b34", "#3fa56f", "#d79d2c", "#dd6257", "#1f3a2c",
                  "#41361c", "#472726", "#2f3641", "#2a2d52"};

ThemeChoice g_choice = ThemeChoice::light;
const Looks* g_tones = &kLight;

bool SystemIsDark() {
  const std::unique_ptr<QStyle> fusion(QStyleFactory::create("Fusion"));
  return fusion && fusion->standardPalette().color(QPalette::Window).lightness() < 128;
}

QPalette MakePalette(const Looks& t) {
  QPalette p;
  p.setColor(QPalette::Window, t.window);
  p.setColor(QPalette::WindowText, t.text);
  p.setColor(QPalette::Base, t.field);
  p.setColor(QPalette::AlternateBase, t.stripe);
  p.setColor(QPalette::Text, t.text);
  p.setColor(QPalette::PlaceholderText, t.muted);
  p.setColor(QPalette::Button, t.card);
  p.setColor(QPalette::ButtonText, t.text);
  p.setColor(QPalette::BrightText, t.bad);
  p.setColor(QPalette::Highlight, t.accent);
  p.setColor(QPalette::HighlightedText, t.on_accent);
  p.setColor(QPalette::Link, t.accent);
  p.setColor(QPalette::ToolTipBase, t.card);
  p.setColor(QPalette::ToolTipText, t.text);
  p.setColor(QPalette::Light, t.card);
  p.setColor(QPalette::Midlight, t.line);
  p.setColor(QPalette::Mid, t.border);
  p.setColor(QPalette::Dark, t.border);
  p.setColor(QPalette::Shadow, t.dark ? QColor("#000000") : QColor("#8b95a1"));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    QColor faint = t.text;
    faint.setAlphaF(0.42F);
    p.setColor(QPalette::Disabled, role, faint);
  }
  p.setColor(QPalette::Disabled, QPalette::Base, t.locked);
  p.setColor(QPalette::Disabled, QPalette::Highlight, t.border);
  return p;
}

// Frames, tables, menus and scroll bars; boxes and buttons are HouseStyle's.
QString MakeSheet(const Looks& t) {
  QString sheet = R"(
QFrame[card="true"] { background: @card; border: 1px solid @line; border-radius: 8px; }
QLabel[heading="true"] { color: @text; }
QLabel[muted="true"] { color: @muted; }
QLabel[muted="true"]:disabled { color: @faint; }
QLabel[trouble="true"] { background: @badsoft; color: @bad; padding: 6px 16px; }
QFrame[foot="true"] { background: @window; border: none; border-top: 1px solid @line; }
QTableView { background: @card; alternate-background-color: @stripe; border: none;
  gridline-color: transparent; selection-background-color: @soft; selection-color: @text; }
QPlainTextEdit { background: @field; border: 1px solid @border; border-radius: 5px;
  padding: 2px 3px; }
QPlainTextEdit:focus { border: 1px solid @accent; }
QPlainTextEdit[locked="true"], QPlainTextEdit:disabled { background: @locked; border-color: @line; }
QPlainTextEdit[marked="true"] { background: @badsoft; border: 1px solid @bad; }
QHeaderView { background: transparent; border: none; }
QHeaderView::section { background: @card; color: @muted; border: none;
  border-bottom: 1px solid @border; padding: 6px 9px; }
QTableCornerButton::section { background: @card; border: none; }
QScrollArea { background: transparent; border: none; }
QScrollBar:vertical { background: transparent; width: 12px; margin: 0; }
QScrollBar:horizontal { background: transparent; height: 12px; margin: 0; }
QScrollBar::handle { background: @border; border-radius: 4px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 32px; }
QScrollBar::handle:horizontal { min-width: 32px; }
QScrollBar::handle:hover { background: @muted; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QMenuBar { background: @card; border-bottom: 1px solid @line; padding: 2px 6px; }
QMenuBar::item { background: transparent; padding: 6px 12px; border-radius: 6px; }
QMenuBar::item:selected { background: @soft; }
QMenu { background: @card; border: 1px solid @border; padding: 6px; }
QMenu::item { padding: 6px 28px 6px 14px; border-radius: 5px; }
QMenu::item:selected { background: @soft; color: @text; }
QMenu::item:disabled { color: @faint; }
QMenu::separator { height: 1px; background: @line; margin: 5px 8px; }
QStatusBar { background: @card; border-top: 1px solid @line; }
QStatusBar::item { border: none; }
QMessageBox QLabel#qt_msgbox_label { padding: 4px 6px; }
QToolTip { background: @card; color: @text; border: 1px solid @border; padding: 4px; }
QTabWidget::pane { background: @card; border: 1px solid @line; border-radius: 8px; top: -1px; }
QTabBar::tab { background: transparent; color: @muted; padding: 8px 14px;
  border: none; border-bottom: 2px solid transparent; }
QTabBar::tab:selected { color: @text; border-bottom: 2px solid @accent; }
QTabBar::tab:hover:!selected { color: @text; }
QProgressBar { background: @line; border: none; border-radius: 4px; max-height: 8px; }
QProgressBar::chunk { background: @accent; border-radius: 4px; }
QCalendarWidget QWidget#qt_calendar_navigationbar { background: @card; }
QCalendarWidget QToolButton { color: @text; padding: 4px 8px; border-radius: 5px; }
QCalendarWidget QToolButton:hover { background: @soft; }
QCalendarWidget QAbstractItemView { background: @card; selection-background-color: @accent;
  selection-color: @onaccent; outline: 0; }
)";
  QColor faint = t.text;
  faint.setAlphaF(0.4F);
  const std::pair<const char*, QColor> names[] = {
      {"@badsoft", t.bad_soft}, {"@bad", t.bad},           {"@field", t.field},
      {"@locked", t.locked},    {"@card", t.card},         {"@line", t.line},
      {"@border", t.border},    {"@text", t.text},         {"@muted", t.muted},
      {"@window", t.window},    {"@stripe", t.stripe},     {"@soft", t.accent_soft},
      {"@accent", t.accent},    {"@onaccent", t.on_accent}};
  sheet.replace("@onaccent", t.on_accent.name());
  sheet.replace(
      "@faint",
      QString("rgba(%1,%2,%3,40%)").arg(faint.red()).arg(faint.green()).arg(faint.blue()));
  for (const auto& [name, color] : names) sheet.replace(name, color.name());
  return sheet;
}

// One family per script, the first that is installed: figures of equal width and clear Chinese.
QFont MakeFont() {
  const QStringList wanted = {"Segoe UI",         "Inter",           "Noto Sans",   "Source Sans 3",
                              "Noto Sans CJK SC", "Microsoft YaHei", "PingFang SC", "DejaVu Sans"};
  const QStringList installed = QFontDatabase::families();
  QStringList families;
  for (const QString& family : wanted) {
    if (installed.contains(family)) families << family;
  }
  QFont font;
  if (!families.isEmpty()) font.setFamilies(families);
  font.setPointSizeF(10);
  font.setStyleStrategy(QFont::PreferAntialias);
  return font;
}

void Apply(QApplication& application) {
  const bool dark =
      g_choice == ThemeChoice::dark || (g_choice == ThemeChoice::system && SystemIsDark());
  g_tones = dark ? &kDark : &kLight;
  application.setPalette(MakePalette(*g_tones));
  application.setStyleSheet(MakeSheet(*g_tones));
  QToolTip::setPalette(MakePalette(*g_tones));
}

}  // namespace

const Looks& Look() { return *g_tones; }

void ApplyTheme(QApplication& application, ThemeChoice choice) {
  g_choice = choice;
  application.setStyle(new HouseStyle);
  application.setFont(MakeFont());
  Apply(application);
}

void FollowSystem(QApplication& application) {
  if (g_choice == ThemeChoice::system && SystemIsDark() != g_tones->dark) Apply(application);
}

QFont ScaledFont(double factor, bool bold) {
  QFont font = QApplication::font();
  font.setPointSizeF(font.pointSizeF() * factor);
  if (bold) font.setWeight(QFont::DemiBold);
  return font;
}

}  // namespace kaunter
