#include "desktop/fields_layout.h"

#include <QWidget>
#include <algorithm>

#include "desktop/theme.h"

namespace kaunter {
namespace {

constexpr int kRowGap = 6;
constexpr int kColumnGap = 28;
constexpr int kLabelGap = 10;
constexpr int kComfortableColumn = 340;
constexpr int kNarrowColumn = 250;  // of several
constexpr int kNarrowest = 190;     // four beside each other fit into half a monitor
constexpr int kWidestBox = 440;     // a box wider than this only makes the eye travel
constexpr int kRowsWorthAColumn = 5;

}  // namespace

// A row of several boxes is there as long as one of them is.
bool FieldsLayout::Field::Shown() const {
  const QWidget* widget = editor->widget();
  if (!widget || widget->isHidden()) return false;
  if (!widget->property("row").toBool()) return true;
  const QObjectList& parts = widget->children();
  return std::any_of(parts.begin(), parts.end(), [](const QObject* part) {
    return part->isWidgetType() && !static_cast<const QWidget*>(part)->isHidden();
  });
}

FieldsLayout::FieldsLayout(int columns) : wanted_columns_(columns) {
  setContentsMargins(0, 0, 0, 0);
}

FieldsLayout::~FieldsLayout() { qDeleteAll(items_); }

void FieldsLayout::AddField(QWidget* label, QWidget* editor, bool wide, bool from_left) {
  Field field;
  if (label) {
    addChildWidget(label);
    field.label = new QWidgetItem(label);
    items_ << field.label;
  }
  addChildWidget(editor);
  field.editor = new QWidgetItem(editor);
  items_ << field.editor;
  field.wide = wide;
  field.from_left = from_left;
  fields_ << field;
  invalidate();
}

void FieldsLayout::addItem(QLayoutItem* item) {
  items_ << item;
  Field field;
  field.editor = item;
  fields_ << field;
}

QLayoutItem* FieldsLayout::itemAt(int index) const { return items_.value(index, nullptr); }

QLayoutItem* FieldsLayout::takeAt(int index) {
  if (index < 0 || index >= items_.size()) return nullptr;
  QLayoutItem* item = items_.takeAt(index);
  fields_.removeIf([&](const Field& f) { return f.label == item || f.editor == item; });
  return item;
}

int FieldsLayout::count() const { return static_cast<int>(items_.size()); }

int FieldsLayout::ShownCount() const {
  return static_cast<int>(std::count_if(fields_.begin(), fields_.end(),
                                        [](const Field& f) { return f.Shown() && !f.wide; }));
}

int FieldsLayout::ColumnsFor(int width) const {
  const int shown = ShownCount();
  if (shown == 0) return 1;
  if (wanted_columns_ > 0) {
    // A table's number of columns holds as long as the boxes stay usable.
    const int by_width = (width + kColumnGap) / kNarrowColumn;
    return std::clamp(std::min({wanted_columns_, by_width, shown}), 1, 4);
  }
  const int by_width = (width + kColumnGap) / kComfortableColumn;
  const int by_count = (shown + kRowsWorthAColumn - 1) / kRowsWorthAColumn;
  return std::clamp(std::min(by_width, by_count), 1, 3);
}

FieldsLayout::Plan FieldsLayout::MakePlan(int width) const {
  Plan plan;
  plan.columns = ColumnsFor(width);
  plan.label_width.assign(static_cast<std::size_t>(plan.columns), 0);
  const int column_width = (width - (plan.columns - 1) * kColumnGap) / plan.columns;
  int row = 0;
  std::vector<int> block;
  const auto close_block = [&] {
    const int size = static_cast<int>(block.size());
    const int rows = (size + plan.columns - 1) / plan.columns;
    for (int i = 0; i < size; ++i) {
      plan.places.push_back(
          {block[static_cast<std::size_t>(i)], row + i % std::max(rows, 1), rows ? i / rows : 0});
    }
    row += rows;
    block.clear();
  };
  for (int i = 0; i < fields_.size(); ++i) {
    if (!fields_[i].Shown()) continue;
    if (fields_[i].wide) {
      close_block();
      plan.places.push_back({i, row++, 0});
    } else {
      block.push_back(i);
    }
  }
  close_block();
  plan.rows = row;
  std::vector<int> words(plan.label_width.size(), 0);  // the longest word of a label
  std::vector<int> most(plan.label_width.size(), column_width * 45 / 100);
  for (const Place& place : plan.places) {
    const Field& field = fields_[place.field];
    if (!field.label) continue;
    const auto column = static_cast<std::size_t>(place.column);
    // A label gives way to what the boxes hold, by a second line, down to a quarter of the column.
    const int span = field.wide ? width : column_width;
    const int beside = span - kLabelGap - field.editor->minimumSize().width();
    const int word = std::min(field.label->minimumSize().width(), column_width * 45 / 100);
    words[column] = std::max(words[column], word);
    most[column] = std::min(most[column],
                            std::clamp(beside, column_width * 27 / 100, column_width * 45 / 100));
    plan.label_width[column] = std::max(plan.label_width[column], field.label->sizeHint().width());
  }
  for (std::size_t i = 0; i < most.size(); ++i) {
    plan.label_width[i] = std::max(words[i], std::min(plan.label_width[i], most[i]));
  }
  return plan;
}

int FieldsLayout::Arrange(const QRect& rect, bool apply) const {
  const QMargins margins = contentsMargins();
  const QRect inner = rect.marginsRemoved(margins);
  const int width = std::max(inner.width(), 60);
  const Plan plan = MakePlan(width);
  const int column_width = (width - (plan.columns - 1) * kColumnGap) / plan.columns;

  struct Boxes {
    const Field* field;
    int row, label_x, label_width, editor_x, editor_width;
  };
  std::vector<Boxes> all;
  std::vector<int> heights(static_cast<std::size_t>(plan.rows), 0);
  std::vector<bool> stretches(static_cast<std::size_t>(plan.rows), false);
  for (const Place& place : plan.places) {
    const Field& field = fields_[place.field];
    const int left = place.column * (column_width + kColumnGap);
    const int label_width = plan.label_width[static_cast<std::size_t>(place.column)];
    const int span = field.wide ? width : column_width;
    int indent = label_width > 0 && !field.from_left ? label_width + kLabelGap : 0;
    // A mark whose own words need the whole column begins at its left edge.
    if (!field.label && field.editor->sizeHint().width() > span - indent) indent = 0;
    int editor_width = span - indent;
    // In a single column boxes stop where the eye would have to travel.
    if (plan.columns == 1 && !field.wide && !field.from_left) {
      editor_width = std::min(editor_width, kWidestBox);
    }
    const auto row = static_cast<std::size_t>(place.row);
    int height = field.editor->hasHeightForWidth() ? field.editor->heightForWidth(editor_width)
                                                   : field.editor->sizeHint().height();
    height = std::max(height, kBoxHeight);
    if (field.label && field.label->hasHeightForWidth()) {
      height = std::max(height, field.label->heightForWidth(label_width));
    }
    heights[row] = std::max(heights[row], height);
    if (field.wide && (field.editor->expandingDirections() & Qt::Vertical)) stretches[row] = true;
    all.push_back({&field, place.row, left, label_width, left + indent, editor_width});
  }
  int total = plan.rows > 0 ? (plan.rows - 1) * kRowGap : 0;
  for (const int height : heights) total += height;
  if (!apply) return total + margins.top() + margins.bottom();

  const auto stretching = std::count(stretches.begin(), stretches.end(), true);
  if (stretching > 0 && inner.height() > total) {
    const int more = (inner.height() - total) / static_cast<int>(stretching);
    for (std::size_t i = 0; i < heights.size(); ++i) heights[i] += stretches[i] ? more : 0;
  }
  std::vector<int> tops(heights.size(), 0);
  int y = inner.top();
  for (std::size_t i = 0; i < heights.size(); ++i) {
    tops[i] = y;
    y += heights[i] + kRowGap;
  }
  for (const Boxes& box : all) {
    const auto row = static_cast<std::size_t>(box.row);
    const bool tall = heights[row] > 2 * kBoxHeight;
    if (box.field->label) {
      // Beside a tall box the label stands at its first line.
      const int of_label = std::max(kBoxHeight, box.field->label->heightForWidth(box.label_width));
      const int height = tall ? std::min(of_label, heights[row]) : heights[row];
      box.field->label->setGeometry(
          {inner.left() + box.label_x, tops[row], box.label_width, height});
    }
    box.field->editor->setGeometry({inner.left() + box.editor_x, tops[row], box.editor_width,
                                    tall ? heights[row] : std::max(heights[row], kBoxHeight)});
  }
  return y;
}

int FieldsLayout::heightForWidth(int width) const { return Arrange({0, 0, width, 0}, false); }

QSize FieldsLayout::sizeHint() const {
  const int shown = std::max(ShownCount(), 1);
  int columns = wanted_columns_;
  if (columns == 0) {
    columns = std::clamp((shown + kRowsWorthAColumn - 1) / kRowsWorthAColumn, 1, 3);
  }
  int width = columns * kComfortableColumn + (columns - 1) * kColumnGap;
  for (const Field& field : fields_) {
    if (!field.wide || !field.Shown()) continue;
    const int label = field.label ? field.label->sizeHint().width() + kLabelGap : 0;
    width = std::max(width, label + field.editor->sizeHint().width());
  }
  return {width, heightForWidth(width)};
}

QSize FieldsLayout::minimumSize() const {
  const QMargins margins = contentsMargins();
  // A page that was never shown has a width that says nothing.
  const int height = heightForWidth(seen_ ? geometry().width() : sizeHint().width());
  return {kNarrowest + margins.left() + margins.right(), height};
}

bool FieldsLayout::HasWideStretch() const {
  return std::any_of(fields_.begin(), fields_.end(), [](const Field& f) {
    return f.Shown() && f.wide && (f.editor->expandingDirections() & Qt::Vertical);
  });
}

Qt::Orientations FieldsLayout::expandingDirections() const {
  return HasWideStretch() ? Qt::Horizontal | Qt::Vertical : Qt::Orientations(Qt::Horizontal);
}

void FieldsLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  Arrange(rect, true);
  seen_ = seen_ || (parentWidget() && parentWidget()->isVisible());
  // Another width may take other rows: who holds the panel must ask for its least height again.
  const int height = heightForWidth(rect.width());
  if (height == height_) return;
  height_ = height;
  if (QWidget* panel = parentWidget()) panel->updateGeometry();
}

}  // namespace kaunter
