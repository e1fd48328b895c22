#include "desktop/grid_view.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <numeric>

#include "desktop/column_widths.h"
#include "desktop/file_drop.h"
#include "desktop/plain_views.h"
#include "desktop/row_order.h"
#include "desktop/text.h"
#include "desktop/theme.h"
#include "desktop/window_memory.h"
#include "screen/file_grid.h"

namespace kaunter {
namespace {

constexpr int kRowHeight = 28;
constexpr int kCellPadding = 9;
constexpr int kCellRoom = 2 * kCellPadding + 4;
constexpr int kLeastProse = 180;
constexpr int kProse = 60;  // characters: what is longer is no name
constexpr int kCheckColumnWidth = 36;
constexpr int kShownRows = 7;

QColor RowColor(RowTone tone, int row) {
  switch (tone) {
    case RowTone::good:
      return Look().good_soft;
    case RowTone::warn:
      return Look().warn_soft;
    case RowTone::bad:
      return Look().bad_soft;
    case RowTone::info:
      return Look().info_soft;
    case RowTone::total:
      return Look().total;
    case RowTone::plain:
    case RowTone::quiet:
      break;
  }
  return row % 2 ? Look().stripe : Look().card;
}

class CellDelegate : public QStyledItemDelegate {
 public:
  CellDelegate(GridModel& model, QTableView& table)
      : QStyledItemDelegate(&table), model_(model), table_(table) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    painter->save();
    const RowTone tone = model_.ToneOf(index.row());
    const bool selected = option.state & QStyle::State_Selected;
    painter->fillRect(option.rect, selected ? Look().accent_soft : RowColor(tone, index.row()));
    if (model_.IsCheckColumn(index.column())) {
      PaintCheck(*painter, option, index);
    } else {
      PaintText(*painter, option, index, tone);
    }
    const bool here = table_.hasFocus() && index == table_.currentIndex();
    if (here && (index.flags() & Qt::ItemIsEditable)) {
      painter->setPen(QPen(Look().accent, 1.4));
      painter->setRenderHint(QPainter::Antialiasing);
      painter->drawRoundedRect(QRectF(option.rect).adjusted(1, 1, -1, -1), 3, 3);
    }
    painter->restore();
  }

  // What is cut is told whole.
  bool helpEvent(QHelpEvent* event, QAbstractItemView*, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    const QString text = index.data(Qt::DisplayRole).toString().simplified();
    const bool cut =
        option.fontMetrics.horizontalAdvance(text) > option.rect.width() - 2 * kCellPadding;
    QToolTip::showText(event->globalPos(), cut ? text : QString(), &table_);
    return true;
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(kRowHeight);
    return size;
  }

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex& index) const override {
    const std::vector<std::string>& items = model_.ItemsOf(index.column());
    if (!items.empty()) {
      auto* list = new QComboBox(parent);
      list->addItem(QString());
      for (const std::string& item : items) list->addItem(Q(item));
      return list;
    }
    auto* edit = new QLineEdit(parent);
    if (model_.Right(index.column())) edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return edit;
  }

  // Once: a screen that redraws its grid must not wipe what is being typed.
  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    if (editor->property("filled").toBool()) return;
    QStyledItemDelegate::setEditorData(editor, index);
    editor->setProperty("filled", true);
  }

  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex&) const override {
    editor->setGeometry(option.rect);
  }

  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
    // Anywhere in its narrow column a click turns the mark.
    if (model_.IsCheckColumn(index.column()) && event->type() == QEvent::MouseButtonRelease) {
      const bool on = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
      return model->setData(index, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    }
    if (model_.IsCheckColumn(index.column())) return false;
    return QStyledItemDelegate::editorEvent(event, model, option, index);
  }

 private:
  void PaintCheck(QPainter& painter, const QStyleOptionViewItem& option,
                  const QModelIndex& index) const {
    QStyleOptionButton mark;
    mark.rect = option.rect;
    const bool on = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    mark.state = (on ? QStyle::State_On : QStyle::State_Off) |
                 (model_.grid().Editable() ? QStyle::State_Enabled : QStyle::State_None);
    table_.style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &mark, &painter, nullptr);
  }

  void PaintText(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                 RowTone tone) const {
    QFont font = option.font;
    if (tone == RowTone::total) font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    QColor color = tone == RowTone::quiet ? Look().muted : Look().text;
    if (!(option.state & QStyle::State_Enabled)) color = Look().muted;
    painter.setPen(color);
    const QRect inner = option.rect.adjusted(kCellPadding, 0, -kCellPadding, 0);
    const QString text = index.data(Qt::DisplayRole).toString().simplified();
    const Qt::Alignment align(index.data(Qt::TextAlignmentRole).value<Qt::Alignment>());
    painter.drawText(inner, static_cast<int>(align.toInt()),
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, inner.width()));
  }

  GridModel& model_;
  QTableView& table_;
};

// Tells when its width changes, so that the columns share it anew.
class Table : public QTableView {
 public:
  using QTableView::QTableView;
  std::function<void()> resized;

  QSize sizeHint() const override { return {560, (kShownRows + 1) * kRowHeight + 8}; }
  QSize minimumSizeHint() const override { return {240, 3 * kRowHeight + 12}; }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QTableView::resizeEvent(event);
    if (resized) resized();
  }
};

}  // namespace

GridView::GridView(ScreenFace& face, Grid& grid) : ControlView(face, grid), grid_(grid) {
  card_ = new QFrame(face.host());
  card_->setProperty("card", true);
  card_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  auto* layout = new QVBoxLayout(card_);
  layout->setContentsMargins(1, 1, 1, 4);
  layout->setSpacing(0);
  title_ = CardTitle(card_);
  title_->setContentsMargins(kMargin - 1, kGap - 2, kGap, 2);
  auto* table = new Table(card_);
  table_ = table;
  layout->addWidget(title_);
  layout->addWidget(table_, 1);
  model_ = new GridModel(
      grid,
      [this](int row, int column, const std::string& text) {
        bool taken = false;
        Act([&] { taken = grid_.Edit(row, column, text); });
        return taken;
      },
      [this](int row, bool on) {
        if (grid_.Editable()) Act([&] { grid_.Tick(row, on); });
      },
      table_);
  table_->setModel(model_);
  table_->setItemDelegate(new CellDelegate(*model_, *table_));
  table_->setFrameShape(QFrame::NoFrame);
  table_->setShowGrid(false);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
  table_->setTabKeyNavigation(false);
  table_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(kRowHeight);
  table_->verticalHeader()->setMinimumSectionSize(kRowHeight);
  QHeaderView* header = table_->horizontalHeader();
  header->setHighlightSections(false);
  header->setSectionsClickable(true);
  header->setMinimumSectionSize(24);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  empty_ = new QLabel(table_);
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setProperty("muted", true);
  empty_->setAttribute(Qt::WA_TransparentForMouseEvents);
  empty_->hide();

  table->resized = [this] { ShareWidth(); };
  QObject::connect(header, &QHeaderView::sectionResized, table_, [this](int, int, int) {
    if (!showing_) sized_by_hand_ = true;
  });
  QObject::connect(header, &QHeaderView::sectionClicked, table_,
                   [this](int column) { Sort(column); });
  QItemSelectionModel* selection = table_->selectionModel();
  QObject::connect(selection, &QItemSelectionModel::currentChanged, table_,
                   [this](const QModelIndex& current) { Moved(current); });
  QObject::connect(selection, &QItemSelectionModel::selectionChanged, table_, [this] {
    // A click on the row that is current already, but was not selected yet.
    const QModelIndex current = table_->currentIndex();
    if (current.isValid() && model_->GridRowOf(current.row()) != grid_.current_row()) {
      Moved(current);
    }
  });
  if (auto* files = dynamic_cast<FileGrid*>(&grid)) {
    CatchFiles(*table_, [this, files](const std::vector<std::string>& dropped) {
      this->face().Settle();  // the box that was typed in is left first
      Act([&] { files->Drop(dropped); });
    });
  }
  QObject::connect(table_, &QTableView::doubleClicked, table_, [this](const QModelIndex& index) {
    if (index.flags() & Qt::ItemIsEditable || model_->IsCheckColumn(index.column())) return;
    const int row = model_->GridRowOf(index.row());
    Act([&] { grid_.Open(row, model_->GridColumnOf(index.column())); });
  });
  // When the editor closes by Enter, the next cell to be edited becomes current.
  QObject::connect(table_->itemDelegate(), &QAbstractItemDelegate::closeEditor, table_,
                   [this](QWidget*, QAbstractItemDelegate::EndEditHint hint) {
                     if (hint == QAbstractItemDelegate::SubmitModelCache) {
                       NextEditable(table_->currentIndex());
                     }
                   });
}

void GridView::SetEmptyText(const Caption& text) { empty_text_ = text; }

void GridView::SetBare() {
  card_->setProperty("card", false);
  card_->layout()->setContentsMargins(0, 0, 0, 0);
}

void GridView::Show() {
  showing_ = true;
  const QString title = Plain(grid_.caption().In(face().chinese()));
  const bool bare = !card_->property("card").toBool();
  title_->setText(title);
  title_->setVisible(!title.isEmpty() && !bare && !title_hidden_);
  const int scroll = table_->verticalScrollBar()->value();
  if (model_->Sync(face().chinese())) {
    table_->verticalScrollBar()->setValue(scroll);
    sized_by_hand_ = false;
  }
  showing_ = false;
  MeasureColumns();
  ShowSort();
  ShareWidth();
  ShowCurrent();
  empty_->setText(Q(empty_text_.In(face().chinese())));
  empty_->setVisible(grid_.RowCount() == 0 && !empty_->text().isEmpty());
}

// A click on a heading sorts by it, a second one the other way, a third one no more.
void GridView::Sort(int column) {
  if (model_->IsCheckColumn(column) || !MaySort(grid_)) return;
  const int by = model_->GridColumnOf(column);
  const bool again = model_->sorted_by() == by;
  if (again && model_->descending()) {
    model_->SortBy(-1, false);
  } else {
    model_->SortBy(by, again);
  }
  ShowSort();
  ShowCurrent();
}

void GridView::ShowSort() {
  QHeaderView& header = *table_->horizontalHeader();
  const bool sorted = model_->sorted_by() >= 0 && MaySort(grid_);
  header.setSortIndicatorShown(sorted);
  if (!sorted) return;
  header.setSortIndicator(model_->ViewColumnOf(model_->sorted_by()),
                          model_->descending() ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void GridView::ShowCurrent() {
  const int row = grid_.current_row() < 0 ? -1 : model_->ViewRowOf(grid_.current_row());
  const QModelIndex current = table_->currentIndex();
  if (row < 0) {
    if (table_->selectionModel()->hasSelection()) {
      showing_ = true;
      table_->clearSelection();
      table_->setCurrentIndex({});
      showing_ = false;
    }
    return;
  }
  if (current.row() == row && table_->selectionModel()->isRowSelected(row)) return;
  showing_ = true;
  const int column = current.isValid() ? current.column() : model_->ViewColumnOf(0);
  table_->setCurrentIndex(model_->index(row, column));
  table_->selectRow(row);
  showing_ = false;
}

void GridView::Moved(const QModelIndex& current) {
  if (showing_ || !current.isValid()) return;
  if (!table_->selectionModel()->isRowSelected(current.row())) return;
  const int column = std::max(model_->GridColumnOf(current.column()), 0);
  const int row = model_->GridRowOf(current.row());
  Act([&] { grid_.EnterCell(row, column); });
}

GridView::~GridView() {
  if (sized_by_hand_ && table_) KeepColumns(*table_->horizontalHeader(), columns_name_);
}

void GridView::RecallColumns() {
  QString name = Q(grid_.screen().name() + "." + grid_.name());
  for (const GridColumn& column : grid_.columns()) name += "." + Q(column.name);
  if (name == columns_name_) return;
  if (sized_by_hand_) KeepColumns(*table_->horizontalHeader(), columns_name_);
  columns_name_ = name;
  showing_ = true;
  sized_by_hand_ = RestoreColumns(*table_->horizontalHeader(), name);
  showing_ = false;
}

// What each column needs, by all of its texts: a list of an office is not walked at each paint.
void GridView::MeasureColumns() {
  const QString what =
      QString("%1 %2 %3").arg(grid_.revision()).arg(face().chinese()).arg(table_->font().key());
  if (what == measured_) return;
  measured_ = what;
  needs_.clear();
  const QFontMetrics metrics(table_->font());
  WidestText texts(metrics);
  for (int i = 0; i < model_->columnCount(); ++i) {
    Needed& needed = needs_.emplace_back();
    if (model_->IsCheckColumn(i)) continue;
    const GridColumn& column = grid_.columns()[static_cast<std::size_t>(model_->GridColumnOf(i))];
    texts.Restart();
    const int read = model_->GridColumnOf(i);
    for (int row = 0; row < grid_.RowCount(); ++row) texts.Add(grid_.Cell(row, read));
    needed.contents = texts.width();
    // Figures and dates must never be cut (a cut amount reads as another amount), nor keys and
    // names.
    needed.whole = column.kind != Kind::text && column.kind != Kind::memo;
    needed.prose = column.kind == Kind::memo || (!needed.whole && texts.longest() > kProse);
    needed.heading = needed.broken = model_->Heading(i);
    if (metrics.horizontalAdvance(needed.heading) > needed.contents) {
      needed.broken = InTwoLines(needed.heading, metrics);
    }
  }
}

std::vector<ColumnNeed> GridView::Needs(bool broken_headings) const {
  std::vector<ColumnNeed> needs;
  const QFontMetrics metrics(table_->font());
  const int most = WholeTextWidth(metrics);
  for (int i = 0; i < static_cast<int>(needs_.size()); ++i) {
    const Needed& needed = needs_[static_cast<std::size_t>(i)];
    ColumnNeed& need = needs.emplace_back();
    if (model_->IsCheckColumn(i)) {
      need.least = need.liked = kCheckColumnWidth;
      continue;
    }
    need.weight = grid_.columns()[static_cast<std::size_t>(model_->GridColumnOf(i))].weight;
    if (need.weight == 0) continue;  // hidden
    const int bound = needed.prose ? kLeastProse : most;
    const int least = needed.whole ? needed.contents : std::min(needed.contents, bound);
    const int head = metrics.size(0, broken_headings ? needed.broken : needed.heading).width();
    const int liked = needed.whole ? needed.contents : std::min(needed.contents, most);
    need.least = std::max(head, least) + kCellRoom;
    need.liked = std::max(head, liked) + kCellRoom;
  }
  return needs;
}

int GridView::Missing() const {
  if (!table_->isVisible() || sized_by_hand_) return 0;
  const std::vector<ColumnNeed> needs = Needs(false);
  const int liked = std::accumulate(needs.begin(), needs.end(), 0,
                                    [](int sum, const ColumnNeed& n) { return sum + n.liked; });
  return std::max(0, liked - table_->viewport()->width());
}

void GridView::ShareWidth() {
  RecallColumns();
  empty_->setGeometry(table_->viewport()->geometry());
  const int columns = model_->columnCount();
  if (columns == 0 || sized_by_hand_ || showing_ || columns != static_cast<int>(needs_.size())) {
    return;
  }
  showing_ = true;
  const int room = table_->viewport()->width();
  std::vector<ColumnNeed> needs = Needs(false);
  const int least = std::accumulate(needs.begin(), needs.end(), 0,
                                    [](int sum, const ColumnNeed& n) { return sum + n.least; });
  // Headings take a second line before anything is pushed out of sight.
  const bool broken = least > room;
  QStringList headings;
  if (broken) {
    needs = Needs(true);
    for (const Needed& needed : needs_) headings << needed.broken;
  }
  model_->SetHeadings(headings);
  const std::vector<int> widths = SharedWidths(room, needs);
  for (int i = 0; i < columns; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const bool hidden = needs[at].weight == 0 && !model_->IsCheckColumn(i);
    table_->setColumnHidden(i, hidden);
    if (!hidden) table_->setColumnWidth(i, widths[at]);
  }
  // The last column takes what the divisions left over.
  const int used = table_->horizontalHeader()->length();
  const int rest = room - used;
  for (int i = columns - 1; i >= 0 && rest > 0; --i) {
    if (table_->isColumnHidden(i) || model_->IsCheckColumn(i)) continue;
    table_->setColumnWidth(i, table_->columnWidth(i) + rest);
    break;
  }
  showing_ = false;
}

// What a person sees cut who has not chosen the widths: by the widths as they stand.
std::vector<std::string> GridView::CutColumns() const {
  std::vector<std::string> cut;
  const QFontMetrics metrics(table_->font());
  for (int i = 0; i < model_->columnCount() && !sized_by_hand_; ++i) {
    if (table_->isColumnHidden(i) || model_->IsCheckColumn(i)) continue;
    const QVariant heading = model_->headerData(i, Qt::Horizontal, Qt::DisplayRole);
    const int inside = table_->columnWidth(i) - 2 * kCellPadding;
    bool short_of = metrics.size(0, heading.toString()).width() > inside;
    const GridColumn& column = grid_.columns()[static_cast<std::size_t>(model_->GridColumnOf(i))];
    qsizetype longest = 0;
    int widest = 0;  // of what must be whole
    for (int row = 0; row < model_->rowCount() && column.kind != Kind::memo; ++row) {
      const QString text = model_->index(row, i).data(Qt::DisplayRole).toString().simplified();
      const int width = metrics.horizontalAdvance(text);
      longest = std::max(longest, text.size());
      if (column.kind != Kind::text || width <= WholeTextWidth(metrics)) {
        widest = std::max(widest, width);
      }
    }
    const bool prose = column.kind == Kind::text && longest > kProse;
    short_of = short_of || (!prose && widest > inside);
    if (short_of) cut.push_back(column.name);
  }
  return cut;
}

void GridView::NextEditable(const QModelIndex& from) {
  for (int row = from.row(), column = from.column() + 1; row < model_->rowCount(); ++row) {
    for (; column < model_->columnCount(); ++column) {
      const QModelIndex index = model_->index(row, column);
      if (index.flags() & Qt::ItemIsEditable) {
        table_->setCurrentIndex(index);
        table_->selectRow(row);
        table_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        return;
      }
    }
    column = 0;
  }
}

bool GridView::UseKey(const QKeyEvent& event) {
  const QModelIndex current = table_->currentIndex();
  if (event.key() == Qt::Key_Space && grid_.has_checks() && current.isValid()) {
    const int row = model_->GridRowOf(current.row());
    if (grid_.Editable()) Act([&] { grid_.Tick(row, !grid_.Ticked(row)); });
    return true;
  }
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  // The Enter that closes an editor comes by here too, and is used up by it.
  if (QApplication::focusWidget() != table_) return true;
  if (!current.isValid()) return false;
  if (current.flags() & Qt::ItemIsEditable) {
    table_->edit(current);
  } else if (grid_.onKey) {
    return false;  // the screen's own Enter
  } else if (grid_.onOpen) {
    const int row = model_->GridRowOf(current.row());
    Act([&] { grid_.Open(row, std::max(model_->GridColumnOf(current.column()), 0)); });
  } else {
    face().MoveOn(*this);
  }
  return true;
}

}  // namespace kaunter
