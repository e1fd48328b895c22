#include "desktop/alt_keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>

namespace kaunter {
namespace {

// Shortcuts have been looked for before a window hears of the key. AltGr is another key, or comes
// with Ctrl.
class AltKeys : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const auto held = key.modifiers() & (Qt::AltModifier | Qt::ControlModifier);
    // The list below a box hands its keys on to that box.
    const bool in_menu = qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr;
    return held == Qt::AltModifier && !in_menu && !key.text().isEmpty() && key.text()[0].isPrint();
  }
};

}  // namespace

void LetAltTypeNothing(QApplication& qt) { qt.installEventFilter(new AltKeys(&qt)); }

}  // namespace kaunter
