// The small language in which a layout says what stands where on a screen.
//
//   Layout LoanCalcfrmLayout() {
//     return {"LoanCalcfrm", {1060, 680},
//             Down({Across({Group({"Terms", "条件"}, 2, {"CompCode", "CustName", ...}),
//                           Group({"Figures", "数目"}, 1, {...})}, {2, 1}),
//                   Fill("SchDG")}),
//             {"Command3", "SaveCmd", "CancelCmd"}};
//   }
//
// Every control of the screen is placed exactly once; containers too, by Page or Inside, or by
// being named among the fields. Enter and Tab follow the order of the table. A screen without a
// table of its own gets one made from its declarations (GenericLayout).
#pragma once

#include <QSize>
#include <string>
#include <string_view>
#include <vector>

#include "screen/caption.h"

namespace kaunter {

class Screen;

// One place in a group of fields: a control, or several that share one line ("LoanTerm", "/",
// "LoanTerm2"); the first one's caption stands before them.
struct FieldPlace {
  std::vector<std::string> controls;
  bool wide = false;     // crosses all columns of its group
  bool stacked = false;  // its controls stand below each other
  bool bare = false;     // the first one's caption is the only one
  FieldPlace(const char* control) : controls{control} {}
  FieldPlace(std::string control, bool is_wide = false)
      : controls{std::move(control)}, wide(is_wide) {}
};
FieldPlace Line(std::vector<std::string> controls);
FieldPlace Wide(FieldPlace place);
// A line in which only the first has a caption: an amount and its unit.
FieldPlace Beside(std::vector<std::string> controls);
// Boxes below each other that share one caption: the lines of an address.
FieldPlace Stacked(std::vector<std::string> controls);

struct LayoutNode {
  enum class Kind {
    down,       // children below each other
    across,     // children beside each other
    group,      // fields in aligned columns; a card when it has a caption or `card`
    fill,       // one control that takes the space that is left (grid, picture, memo)
    tabs,       // a Tab control; children are pages
    page,       // a page of a tab set
    inside,     // a frame control drawn as a card around its child
    buttons,    // buttons in a row, there where they act
    heading,    // a line of large text
    title,      // a label of the screen in large text: who or what is shown
    thumbnail,  // a picture, small
    figures,    // what is looked at first: captions above large values, boxes drawn without a frame
  };
  Kind kind = Kind::down;
  Caption caption;
  std::string control;
  int columns = 0;
  bool card = false;
  std::vector<FieldPlace> fields;
  std::vector<LayoutNode> children;
  std::vector<int> weights;  // of the children, in their order; empty: equal
};

LayoutNode Down(std::vector<LayoutNode> children, std::vector<int> weights = {});
LayoutNode Across(std::vector<LayoutNode> children, std::vector<int> weights = {});
LayoutNode Group(Caption caption, int columns, std::vector<FieldPlace> fields);
LayoutNode Fields(int columns, std::vector<FieldPlace> fields);
LayoutNode Fill(std::string control);
LayoutNode Tabs(std::string control, std::vector<LayoutNode> pages);
LayoutNode Page(std::string control, LayoutNode child);
LayoutNode Inside(std::string control, LayoutNode child);
LayoutNode ButtonsHere(std::vector<std::string> controls);
LayoutNode Heading(Caption text);
LayoutNode Title(std::string label);
LayoutNode Thumbnail(std::string picture);
// Locked boxes as large plain figures in one row; one that can be typed in keeps its frame.
LayoutNode Figures(std::vector<std::string> controls);

struct Layout {
  std::string screen;
  QSize size;  // first size of the window; empty: by contents
  LayoutNode root;
  std::vector<std::string> buttons;  // the row at the bottom, in focus order
};

// The table that the desktop has for this screen (without regard to case); null for none.
const Layout* FindLayout(std::string_view screen_name);
const std::vector<Layout>& AllLayouts();

// Order of declaration, frames as cards, tabs as tabs, grids and pictures with weight, the buttons
// of the screen at the bottom.
Layout GenericLayout(const Screen& screen);

// Names of all controls that the layout places, in focus order, with repetitions.
std::vector<std::string> PlacedControls(const Layout& layout);

// What is wrong between a layout and its screen, a line each: missing, placed twice, unknown, of a
// type that cannot stand there. Empty when they fit.
std::vector<std::string> LayoutProblems(const Layout& layout, const Screen& screen);

}  // namespace kaunter
