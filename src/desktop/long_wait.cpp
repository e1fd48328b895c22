#include "desktop/long_wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include "platform/sql/waiting.h"

namespace kaunter {

void PaintDuringStatements() {
  SetWhileWaiting([since = QElapsedTimer()]() mutable {
    constexpr int kBetweenPaints = 40;  // milliseconds
    if (since.isValid() && since.elapsed() < kBetweenPaints) return;
    // Timers run: a window asks for its repaint through one.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::ExcludeSocketNotifiers);
    since.start();
  });
}

}  // namespace kaunter
