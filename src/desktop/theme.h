// The looks of the desktop: one accent, calm greys, a light and a dark set of tones, the fonts and
// the few distances that every window shares.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QApplication;

namespace kaunter {

enum class ThemeChoice { system, light, dark };

struct Looks {
  bool dark;
  QColor window;  // behind everything
  QColor card;    // groups, tables
  QColor field;   // a box that takes text
  QColor locked;  // a box that only shows text
  QColor border;  // around boxes
  QColor line;    // between parts of a window
  QColor text;
  QColor muted;   // labels, hints
  QColor accent;  // the primary action, the focus
  QColor accent_hover;
  QColor accent_soft;  // selected row, hovered tile
  QColor on_accent;
  QColor stripe;                          // every second row
  QColor good, warn, bad;                 // strong: parts of a bar, marks
  QColor good_soft, warn_soft, bad_soft;  // row backgrounds
  QColor total;                           // background of a total row
  QColor info_soft;                       // of a row that tells something, neither good nor bad
};

// The tones in force.
const Looks& Look();

// Style, palette, style sheet and font of the whole program. `system` follows the desktop.
void ApplyTheme(QApplication& application, ThemeChoice choice);
// Looks again what the system wants; does nothing when the choice was not `system`.
void FollowSystem(QApplication& application);

// The program's font at a size relative to its usual one, e.g. 1.3 for a heading.
QFont ScaledFont(double factor, bool bold = false);

// Distances in device-independent pixels.
inline constexpr int kBoxHeight = 30;
inline constexpr int kMargin = 16;
inline constexpr int kGap = 12;

}  // namespace kaunter
