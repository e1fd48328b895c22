#include "desktop/layout_builder.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "desktop/control_view.h"
#include "desktop/fields_layout.h"
#include "desktop/layout_table.h"
#include "desktop/plain_views.h"
#include "desktop/text.h"
#include "desktop/text_box_view.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

class Builder {
 public:
  explicit Builder(ScreenFace& face) : face_(face) {}

  QWidget* Build(const LayoutNode& node) {
    switch (node.kind) {
      case LayoutNode::Kind::down:
        return Stack(node, false);
      case LayoutNode::Kind::across:
        return Stack(node, true);
      case LayoutNode::Kind::group:
        return Group(node);
      case LayoutNode::Kind::fill: {
        Control* control = face_.screen().Find(node.control);
        return control ? face_.View(*control).widget() : nullptr;
      }
      case LayoutNode::Kind::tabs:
        return Tabs(node);
      case LayoutNode::Kind::page:
        return node.children.empty() ? nullptr : Build(node.children.front());
      case LayoutNode::Kind::inside:
        return Inside(node);
      case LayoutNode::Kind::buttons:
        return Buttons(node);
      case LayoutNode::Kind::heading:
        return Heading(node);
    }
    return nullptr;
  }

  // The row at the foot: what else can be done at the left, the primary action and the way out at
  // the right, in the order in which offices know them.
  QWidget* Foot(const std::vector<std::string>& names) {
    if (names.empty()) return nullptr;
    auto* foot = new QFrame(face_.host());
    foot->setProperty("foot", true);
    auto* row = new QHBoxLayout(foot);
    row->setContentsMargins(kMargin, 10, kMargin, 10);
    row->setSpacing(8);
    std::vector<QWidget*> left, right, out;
    for (const std::string& name : names) {
      auto* button = dynamic_cast<Button*>(face_.screen().Find(name));
      if (!button) continue;
      QWidget* widget = face_.View(*button).widget();
      (button->role() == ButtonRole::primary  ? right
       : button->role() == ButtonRole::cancel ? out
                                              : left)
          .push_back(widget);
    }
    for (QWidget* widget : left) row->addWidget(widget);
    row->addStretch(1);
    for (QWidget* widget : right) row->addWidget(widget);
    for (QWidget* widget : out) row->addWidget(widget);
    return foot;
  }

  bool Grows(const LayoutNode& node) const {
    if (node.kind == LayoutNode::Kind::fill || node.kind == LayoutNode::Kind::tabs) return true;
    for (const auto& field : node.fields) {
      for (const auto& name : field.controls) {
        const auto* box = dynamic_cast<const TextBox*>(face_.screen().Find(name));
        if (box && box->kind() == Kind::memo) return true;
      }
    }
    for (const auto& child : node.children) {
      if (Grows(child)) return true;
    }
    return false;
  }

 private:
  QWidget* Stack(const LayoutNode& node, bool across) {
    auto* widget = new QWidget(face_.host());
    auto* layout =
        new QBoxLayout(across ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kGap);
    for (std::size_t i = 0; i < node.children.size(); ++i) {
      const LayoutNode& child = node.children[i];
      QWidget* part = Build(child);
      if (!part) continue;
      int stretch = across || Grows(child) ? 1 : 0;
      if (i < node.weights.size()) stretch = node.weights[i];
      layout->addWidget(part, stretch);
    }
    if (!across && !Grows(node)) layout->addStretch(0);
    return widget;
  }

  QWidget* Group(const LayoutNode& node) {
    if (!node.card) return Fields(node);
    auto* card = new QFrame(face_.host());
    card->setProperty("card", true);
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(kMargin, kGap, kMargin, kMargin);
    layout->setSpacing(kGap);
    const QString title = Plain(node.caption.In(face_.chinese()));
    if (!title.isEmpty()) {
      QLabel* label = CardTitle(card);
      label->setText(title);
      layout->addWidget(label);
    }
    layout->addWidget(Fields(node));
    if (!Grows(node)) layout->addStretch(1);
    return card;
  }

  QWidget* Fields(const LayoutNode& node) {
    auto* panel = new QWidget(face_.host());
    auto* fields = new FieldsLayout(node.columns);
    panel->setLayout(fields);
    for (const FieldPlace& place : node.fields) {
      if (place.controls.size() == 1) {
        AddOne(*fields, place);
      } else {
        AddLine(*fields, place);
      }
    }
    return panel;
  }

  void AddOne(FieldsLayout& fields, const FieldPlace& place) {
    Control* control = face_.screen().Find(place.controls.front());
    if (!control) return;
    ControlView& view = face_.View(*control);
    const bool memo = dynamic_cast<MemoView*>(&view) != nullptr;
    const bool bar = control->type() == ControlType::bar;
    fields.AddField(view.label(), view.widget(), place.wide || memo || bar,
                    control->type() == ControlType::label && !place.wide);
  }

  // Several controls in one line; what follows the first carries its caption before it.
  void AddLine(FieldsLayout& fields, const FieldPlace& place) {
    auto* line = new QWidget(face_.host());
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    QLabel* first_label = nullptr;
    bool first = true;
    bool choices = false;
    for (const std::string& name : place.controls) {
      Control* control = face_.screen().Find(name);
      if (!control) continue;
      ControlView& view = face_.View(*control);
      QLabel* label = control->caption().english.empty() ? nullptr : view.label();
      if (first) {
        first_label = label;
      } else if (label) {
        label->setWordWrap(false);
        row->addWidget(label);
      }
      const bool choice =
          control->type() == ControlType::check_box || control->type() == ControlType::option;
      choices |= choice;
      row->addWidget(view.widget(), choice || control->type() == ControlType::button ? 0 : 1);
      first = false;
    }
    if (choices) row->addStretch(1);
    fields.AddField(first_label, line, place.wide, false);
  }

  QWidget* Tabs(const LayoutNode& node) {
    auto* tab = dynamic_cast<Tab*>(face_.screen().Find(node.control));
    if (!tab) return nullptr;
    auto& view = static_cast<TabView&>(face_.View(*tab));
    for (const LayoutNode& child : node.children) {
      auto* frame = dynamic_cast<Frame*>(face_.screen().Find(child.control));
      QWidget* contents = Build(child);
      if (!frame || !contents) continue;
      auto* page = new QWidget(face_.host());
      auto* layout = new QVBoxLayout(page);
      layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
      layout->addWidget(contents, 1);
      if (!Grows(child)) layout->addStretch(0);
      view.AddPage(*frame, page);
    }
    return view.widget();
  }

  QWidget* Inside(const LayoutNode& node) {
    auto* frame = dynamic_cast<Frame*>(face_.screen().Find(node.control));
    if (!frame || node.children.empty()) return nullptr;
    auto& view = static_cast<FrameView&>(face_.View(*frame));
    auto* layout = new QVBoxLayout(view.body());
    layout->setContentsMargins(0, 0, 0, 0);
    if (QWidget* contents = Build(node.children.front())) layout->addWidget(contents, 1);
    if (!Grows(node)) layout->addStretch(0);
    return view.widget();
  }

  QWidget* Buttons(const LayoutNode& node) {
    auto* widget = new QWidget(face_.host());
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    for (const FieldPlace& place : node.fields) {
      Control* control = face_.screen().Find(place.controls.front());
      if (control) row->addWidget(face_.View(*control).widget());
    }
    row->addStretch(1);
    return widget;
  }

  QWidget* Heading(const LayoutNode& node) {
    auto* label = new QLabel(Plain(node.caption.In(face_.chinese())), face_.host());
    label->setFont(ScaledFont(1.5, true));
    label->setProperty("heading", true);
    return label;
  }

  ScreenFace& face_;
};

}  // namespace

BuiltScreen BuildScreen(ScreenFace& face, const Layout& layout) {
  Builder builder(face);
  BuiltScreen built;
  built.body = builder.Build(layout.root);
  built.buttons = builder.Foot(layout.buttons);
  built.grows = builder.Grows(layout.root);
  std::vector<Control*> order;
  for (const std::string& name : PlacedControls(layout)) {
    if (Control* control = face.screen().Find(name)) order.push_back(control);
  }
  face.SetOrder(order);
  return built;
}

}  // namespace kaunter
