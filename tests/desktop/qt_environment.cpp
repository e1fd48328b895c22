// Every test of the desktop runs off screen, with one application object for all of them.
#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>

#include "desktop/alt_keys.h"
#include "desktop/theme.h"
#include "desktop/window_memory.h"

namespace kaunter {
namespace {

class QtEnvironment : public ::testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // No paper comes out of a printer that this PC may have.
    if (!qEnvironmentVariableIsSet("CUPS_SERVER")) qputenv("CUPS_SERVER", "127.0.0.1:9");
    static int argc = 1;
    static char name[] = "test_desktop";
    static char* argv[] = {name, nullptr};
    application_ = new QApplication(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    SetWindowMemory(false);
    ApplyTheme(*application_, ThemeChoice::light);
    LetAltTypeNothing(*application_);
  }
  void TearDown() override { delete application_; }

 private:
  QApplication* application_ = nullptr;
};

const auto* const kEnvironment = ::testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace
}  // namespace kaunter
