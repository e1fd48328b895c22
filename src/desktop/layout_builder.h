// Builds the widgets of a screen from its layout.
#pragma once

class QWidget;

namespace kaunter {

class ScreenFace;
struct Layout;

struct BuiltScreen {
  QWidget* body = nullptr;     // everything but the row of buttons
  QWidget* buttons = nullptr;  // null when the screen has none at its foot
  bool grows = false;          // something takes all the room that it gets
};

// The widgets belong to the face's host. Sets the order of Enter and Tab.
BuiltScreen BuildScreen(ScreenFace& face, const Layout& layout);

}  // namespace kaunter
