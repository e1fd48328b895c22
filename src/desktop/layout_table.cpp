#include "desktop/layout_table.h"

#include <fmt/format.h>

#include <map>

#include "core/texts.h"
#include "screen/screen.h"

namespace kaunter {

FieldPlace Line(std::vector<std::string> controls) {
  FieldPlace place(controls.front());
  place.controls = std::move(controls);
  return place;
}

FieldPlace Beside(std::vector<std::string> controls) {
  FieldPlace place = Line(std::move(controls));
  place.bare = true;
  return place;
}

FieldPlace Stacked(std::vector<std::string> controls) {
  FieldPlace place = Line(std::move(controls));
  place.stacked = true;
  return place;
}

FieldPlace Wide(FieldPlace place) {
  place.wide = true;
  return place;
}

namespace {

LayoutNode Node(LayoutNode::Kind kind) {
  LayoutNode node;
  node.kind = kind;
  return node;
}

LayoutNode Holding(LayoutNode::Kind kind, std::string control, std::vector<LayoutNode> children) {
  LayoutNode node = Node(kind);
  node.control = std::move(control);
  node.children = std::move(children);
  return node;
}

}  // namespace

LayoutNode Down(std::vector<LayoutNode> children, std::vector<int> weights) {
  LayoutNode node = Holding(LayoutNode::Kind::down, {}, std::move(children));
  node.weights = std::move(weights);
  return node;
}

LayoutNode Across(std::vector<LayoutNode> children, std::vector<int> weights) {
  LayoutNode node = Holding(LayoutNode::Kind::across, {}, std::move(children));
  node.weights = std::move(weights);
  return node;
}

LayoutNode Group(Caption caption, int columns, std::vector<FieldPlace> fields) {
  LayoutNode node = Fields(columns, std::move(fields));
  node.caption = std::move(caption);
  node.card = true;
  return node;
}

LayoutNode Fields(int columns, std::vector<FieldPlace> fields) {
  LayoutNode node = Node(LayoutNode::Kind::group);
  node.columns = columns;
  node.fields = std::move(fields);
  return node;
}

LayoutNode Fill(std::string control) {
  return Holding(LayoutNode::Kind::fill, std::move(control), {});
}

LayoutNode Tabs(std::string control, std::vector<LayoutNode> pages) {
  return Holding(LayoutNode::Kind::tabs, std::move(control), std::move(pages));
}

LayoutNode Page(std::string control, LayoutNode child) {
  return Holding(LayoutNode::Kind::page, std::move(control), {std::move(child)});
}

LayoutNode Inside(std::string control, LayoutNode child) {
  return Holding(LayoutNode::Kind::inside, std::move(control), {std::move(child)});
}

LayoutNode ButtonsHere(std::vector<std::string> controls) {
  LayoutNode node = Node(LayoutNode::Kind::buttons);
  for (auto& control : controls) node.fields.emplace_back(std::move(control));
  return node;
}

LayoutNode Title(std::string label) {
  return Holding(LayoutNode::Kind::title, std::move(label), {});
}

LayoutNode Thumbnail(std::string picture) {
  return Holding(LayoutNode::Kind::thumbnail, std::move(picture), {});
}

LayoutNode Figures(std::vector<std::string> controls) {
  LayoutNode node = ButtonsHere(std::move(controls));
  node.kind = LayoutNode::Kind::figures;
  return node;
}

LayoutNode Heading(Caption text) {
  LayoutNode node = Node(LayoutNode::Kind::heading);
  node.caption = std::move(text);
  return node;
}

namespace {

void Collect(const LayoutNode& node, std::vector<std::string>& names) {
  if (!node.control.empty()) names.push_back(node.control);
  for (const auto& field : node.fields) {
    names.insert(names.end(), field.controls.begin(), field.controls.end());
  }
  for (const auto& child : node.children) Collect(child, names);
}

void CheckTypes(const LayoutNode& node, const Screen& screen, std::vector<std::string>& problems) {
  const Control* control = node.control.empty() ? nullptr : screen.Find(node.control);
  if (control) {
    using Kind = LayoutNode::Kind;
    const auto* frame = dynamic_cast<const Frame*>(control);
    const bool fits = node.kind == Kind::tabs     ? frame && frame->is_tab_set()
                      : node.kind == Kind::page   ? frame && frame->is_page()
                      : node.kind == Kind::inside ? frame && !frame->is_tab_set()
                                                  : !frame;
    if (!fits) problems.push_back(fmt::format("{} cannot stand there", node.control));
  }
  for (const auto& child : node.children) CheckTypes(child, screen, problems);
}

}  // namespace

std::vector<std::string> PlacedControls(const Layout& layout) {
  std::vector<std::string> names;
  Collect(layout.root, names);
  names.insert(names.end(), layout.buttons.begin(), layout.buttons.end());
  return names;
}

std::vector<std::string> LayoutProblems(const Layout& layout, const Screen& screen) {
  std::vector<std::string> problems;
  std::map<std::string, int> placed;
  for (const auto& name : PlacedControls(layout)) {
    if (!screen.Find(name)) problems.push_back(fmt::format("{} is unknown", name));
    if (++placed[Lower(name)] == 2) problems.push_back(fmt::format("{} is placed twice", name));
  }
  for (const Control* control : screen.controls()) {
    if (!placed.contains(Lower(control->name()))) {
      problems.push_back(fmt::format("{} is not placed", control->name()));
    }
  }
  for (const auto& name : layout.buttons) {
    const Control* control = screen.Find(name);
    if (control && control->type() != ControlType::button) {
      problems.push_back(fmt::format("{} is no button", name));
    }
  }
  CheckTypes(layout.root, screen, problems);
  return problems;
}

}  // namespace kaunter
