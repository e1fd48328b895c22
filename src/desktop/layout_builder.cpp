#include "desktop/layout_builder.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/control_view.h"
#include "desktop/fields_layout.h"
#include "desktop/grid_view.h"
#include "desktop/layout_table.h"
#include "desktop/line_layout.h"
#include "desktop/plain_views.h"
#include "desktop/text.h"
#include "desktop/text_box_view.h"
#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr int kSectionGap = 28;
constexpr int kThumbnail = 54;
constexpr int kLineGap = 10;

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
        if (!control) return nullptr;
        ControlView& view = face_.View(*control);
        // The tab above says it already.
        if (auto* grid = dynamic_cast<GridView*>(&view);
            grid && control->caption().english == page_caption_) {
          grid->HideTitle();
        }
        return view.widget();
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
      case LayoutNode::Kind::title:
        return Title(node);
      case LayoutNode::Kind::thumbnail:
        return Thumbnail(node);
      case LayoutNode::Kind::figures:
        return Figures(node);
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
    // Sections beside each other have no frames: more room keeps them apart.
    layout->setSpacing(in_card_ == 0 ? 8 : across ? kSectionGap : kGap);
    for (std::size_t i = 0; i < node.children.size(); ++i) {
      const LayoutNode& child = node.children[i];
      QWidget* part = Build(child);
      if (!part) continue;
      int stretch = across || Grows(child) ? 1 : 0;
      if (i < node.weights.size()) stretch = node.weights[i];
      layout->addWidget(part, stretch);
    }
    if (!across && !Grows(node)) layout->addStretch(1);
    return widget;
  }

  QWidget* Group(const LayoutNode& node) {
    if (!node.card) return Fields(node);
    auto* card = new QFrame(face_.host());
    auto* layout = new QVBoxLayout(card);
    // A card within a card would be a frame too many: there a title is enough.
    if (in_card_) {
      layout->setContentsMargins(0, 0, 0, 0);
      layout->setSpacing(6);
    } else {
      card->setProperty("card", true);
      layout->setContentsMargins(kMargin, kGap, kMargin, kMargin);
      layout->setSpacing(kGap);
    }
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
      } else if (place.stacked) {
        AddStack(*fields, place);
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

  // What a box wants of its line: a post code little, a name much.
  static int ShareOfLine(const Control& control) {
    const auto* box = dynamic_cast<const TextBox*>(&control);
    if (!box || box->kind() != Kind::text || box->max_length == 0) return 14;
    return std::clamp(box->max_length, 6, 24);
  }

  void AddStack(FieldsLayout& fields, const FieldPlace& place) {
    auto* stack = new QWidget(face_.host());
    stack->setProperty("row", true);
    auto* column = new QVBoxLayout(stack);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    QLabel* label = nullptr;
    for (const std::string& name : place.controls) {
      Control* control = face_.screen().Find(name);
      if (!control) continue;
      ControlView& view = face_.View(*control);
      if (!label) label = view.label();
      column->addWidget(view.widget());
    }
    fields.AddField(label, stack, place.wide, false);
  }

  // Several controls in one line; what follows the first carries its caption before it.
  void AddLine(FieldsLayout& fields, const FieldPlace& place) {
    auto* line = new QWidget(face_.host());
    line->setProperty("row", true);
    auto* row = new LineLayout(kLineGap);
    line->setLayout(row);
    QLabel* first_label = nullptr;
    bool first = true;
    for (const std::string& name : place.controls) {
      Control* control = face_.screen().Find(name);
      if (!control) continue;
      ControlView& view = face_.View(*control);
      const bool silent = control->caption().english.empty() || (place.bare && !first);
      QLabel* label = silent ? nullptr : view.label();
      if (label && !first) label->setWordWrap(false);
      auto* words = qobject_cast<QLabel*>(view.widget());
      if (words) words->setWordWrap(false);
      const bool fixed = words || control->type() == ControlType::check_box ||
                         control->type() == ControlType::option ||
                         control->type() == ControlType::button;
      row->Add(first ? nullptr : label, view.widget(), fixed ? 0 : ShareOfLine(*control));
      if (first) first_label = label;
      first = false;
    }
    fields.AddField(first_label, line, place.wide, false);
  }

  QWidget* Tabs(const LayoutNode& node) {
    auto* tab = dynamic_cast<Tab*>(face_.screen().Find(node.control));
    if (!tab) return nullptr;
    const InCard in_card(*this);
    auto& view = static_cast<TabView&>(face_.View(*tab));
    const std::vector<Control*> declared = face_.screen().Children(tab);
    for (const LayoutNode& child : node.children) {
      auto* frame = dynamic_cast<Frame*>(face_.screen().Find(child.control));
      page_caption_ = frame ? frame->caption().english : std::string();
      QWidget* contents = Build(child);
      if (!frame || !contents) continue;
      auto* page = new QWidget(face_.host());
      auto* layout = new QVBoxLayout(page);
      layout->setContentsMargins(kMargin, 8, kMargin, 8);
      layout->addWidget(contents, 1);
      if (!Grows(child)) layout->addStretch(0);
      const auto at = std::find(declared.begin(), declared.end(), frame);
      view.AddPage(*frame, static_cast<int>(at - declared.begin()), page);
    }
    return view.widget();
  }

  QWidget* Inside(const LayoutNode& node) {
    auto* frame = dynamic_cast<Frame*>(face_.screen().Find(node.control));
    if (!frame || node.children.empty()) return nullptr;
    auto& view = static_cast<FrameView&>(face_.View(*frame));
    const bool in_card = in_card_ > 0;
    if (in_card) view.SetBare();
    const InCard inside(*this);
    // A frame without a title is a strip above the rest: it stays low.
    if (!in_card && frame->caption().english.empty()) view.SetLow();
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

  QWidget* Title(const LayoutNode& node) {
    Control* control = face_.screen().Find(node.control);
    if (!control) return nullptr;
    QWidget* widget = face_.View(*control).widget();
    widget->setProperty("title", true);
    return widget;
  }

  QWidget* Figures(const LayoutNode& node) {
    auto* strip = new QWidget(face_.host());
    auto* row = new QHBoxLayout(strip);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kMargin);
    for (const FieldPlace& place : node.fields) {
      Control* control = face_.screen().Find(place.controls.front());
      if (!control) continue;
      ControlView& view = face_.View(*control);
      view.DrawAsFigure();
      auto* figure = new QVBoxLayout;
      figure->setSpacing(0);
      if (QLabel* label = view.label()) {
        label->setWordWrap(false);
        figure->addWidget(label);
      }
      figure->addWidget(view.widget());
      row->addLayout(figure, 1);
    }
    return strip;
  }

  QWidget* Heading(const LayoutNode& node) {
    auto* label = new QLabel(Plain(node.caption.In(face_.chinese())), face_.host());
    label->setFont(ScaledFont(1.5, true));
    label->setProperty("heading", true);
    return label;
  }

  QWidget* Thumbnail(const LayoutNode& node) {
    Control* control = face_.screen().Find(node.control);
    if (!control) return nullptr;
    QWidget* widget = face_.View(*control).widget();
    widget->setFixedSize(kThumbnail, kThumbnail);
    return widget;
  }

  // While it lives, what is built stands in a card.
  struct InCard {
    explicit InCard(Builder& of) : builder(of) { ++builder.in_card_; }
    ~InCard() { --builder.in_card_; }
    InCard(const InCard&) = delete;
    InCard& operator=(const InCard&) = delete;
    Builder& builder;
  };

  ScreenFace& face_;
  int in_card_ = 0;
  std::string page_caption_;  // of the page that is being built
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
