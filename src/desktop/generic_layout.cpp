// GenericLayout: a layout made from the declarations of a screen alone.
#include <algorithm>

#include "desktop/layout_table.h"
#include "screen/screen.h"

namespace kaunter {
namespace {

bool IsFill(const Control& control) {
  return control.type() == ControlType::grid || control.type() == ControlType::picture;
}

bool IsWide(const Control& control) {
  if (const auto* box = dynamic_cast<const TextBox*>(&control)) return box->kind() == Kind::memo;
  return control.type() == ControlType::bar;
}

class Maker {
 public:
  explicit Maker(const Screen& screen) : screen_(screen) {}

  // Everything inside a container (null: the screen itself), in order of declaration.
  LayoutNode Contents(const Control* parent, std::vector<std::string>& buttons) {
    std::vector<LayoutNode> parts;
    std::vector<FieldPlace> run;
    std::vector<LayoutNode> beside;  // frames without a grid stand beside each other
    const auto close_run = [&] {
      if (!run.empty()) parts.push_back(Fields(0, std::move(run)));
      run.clear();
    };
    const auto close_beside = [&] {
      if (beside.size() == 1) parts.push_back(std::move(beside.front()));
      if (beside.size() > 1) parts.push_back(Across(std::move(beside)));
      beside.clear();
    };
    std::string group;  // of the options that share the line being made
    for (const Control* control : screen_.Children(parent)) {
      const auto* option = dynamic_cast<const Option*>(control);
      if (option && !run.empty() && group == option->group() && last_was_option_) {
        run.back().controls.push_back(option->name());
        run.back().wide = true;
        continue;
      }
      last_was_option_ = option != nullptr;
      if (option) group = option->group();
      if (const auto* button = dynamic_cast<const Button*>(control)) {
        buttons.push_back(button->name());
        last_was_option_ = option != nullptr;
      } else if (control->type() == ControlType::container) {
        close_run();
        LayoutNode node = Container(static_cast<const Frame&>(*control));
        const bool small = node.kind == LayoutNode::Kind::inside && !HasFill(node);
        if (small) {
          beside.push_back(std::move(node));
          if (beside.size() == 2) close_beside();
        } else {
          close_beside();
          parts.push_back(std::move(node));
        }
      } else if (IsFill(*control)) {
        close_run();
        close_beside();
        parts.push_back(Fill(control->name()));
      } else {
        close_beside();
        run.emplace_back(control->name(), IsWide(*control));
      }
    }
    close_run();
    close_beside();
    if (parts.size() == 1) return std::move(parts.front());
    return Down(std::move(parts));
  }

 private:
  LayoutNode Container(const Frame& frame) {
    if (frame.is_tab_set()) {
      std::vector<LayoutNode> pages;
      for (const Control* page : screen_.Children(&frame)) {
        pages.push_back(Page(page->name(), WithButtons(page)));
      }
      return Tabs(frame.name(), std::move(pages));
    }
    return Inside(frame.name(), WithButtons(&frame));
  }

  // Buttons declared in a frame act there: they close it.
  LayoutNode WithButtons(const Control* frame) {
    std::vector<std::string> buttons;
    LayoutNode contents = Contents(frame, buttons);
    if (buttons.empty()) return contents;
    std::vector<LayoutNode> parts;
    parts.push_back(std::move(contents));
    parts.push_back(ButtonsHere(std::move(buttons)));
    return Down(std::move(parts));
  }

  static bool HasFill(const LayoutNode& node) {
    return node.kind == LayoutNode::Kind::fill ||
           std::any_of(node.children.begin(), node.children.end(), HasFill);
  }

  const Screen& screen_;
  bool last_was_option_ = false;
};

}  // namespace

Layout GenericLayout(const Screen& screen) {
  Layout layout;
  layout.screen = screen.name();
  layout.root = Maker(screen).Contents(nullptr, layout.buttons);
  return layout;
}

}  // namespace kaunter
