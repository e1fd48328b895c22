#include "desktop/row_order.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <string>

#include "desktop/text.h"
#include "platform/money.h"
#include "screen/grid.h"

namespace kaunter {
namespace {

// dd-mm-yyyy, a time behind it or not, as a text that sorts; anything else as it stands.
std::string SortableDate(const std::string& text) {
  if (text.size() < 10 || text[2] != '-' || text[5] != '-') return text;
  return text.substr(6, 4) + text.substr(3, 2) + text.substr(0, 2) + text.substr(10);
}

int FirstTotal(const Grid& grid) {
  int row = grid.RowCount();
  while (row > 0 && grid.Tone(row - 1) == RowTone::total) --row;
  return row;
}

template <typename Key, typename Less>
void SortBy(std::vector<int>& rows, int count, bool descending, const std::vector<Key>& keys,
            const Less& less) {
  std::stable_sort(rows.begin(), rows.begin() + count, [&](int a, int b) {
    const Key& left = keys[static_cast<std::size_t>(descending ? b : a)];
    const Key& right = keys[static_cast<std::size_t>(descending ? a : b)];
    return less(left, right);
  });
}

}  // namespace

bool MaySort(const Grid& grid) {
  for (const GridColumn& column : grid.columns()) {
    if (column.editable) return false;
  }
  for (int row = FirstTotal(grid); row-- > 0;) {
    if (grid.Tone(row) == RowTone::total) return false;
  }
  return true;
}

std::vector<int> SortedRows(const Grid& grid, int column, bool descending) {
  std::vector<int> rows(static_cast<std::size_t>(grid.RowCount()));
  std::iota(rows.begin(), rows.end(), 0);
  const int count = FirstTotal(grid);
  const Kind kind = grid.columns().at(static_cast<std::size_t>(column)).kind;
  if (kind == Kind::money || kind == Kind::rate || kind == Kind::integer) {
    std::vector<std::optional<Money>> keys;
    for (int row = 0; row < count; ++row) keys.push_back(Money::TryText(grid.Cell(row, column)));
    SortBy(rows, count, descending, keys, std::less<>());
    return rows;
  }
  std::vector<QString> keys;
  for (int row = 0; row < count; ++row) {
    const std::string& cell = grid.Cell(row, column);
    keys.push_back(Q(kind == Kind::date ? SortableDate(cell) : cell));
  }
  QCollator letters(QLocale(QLocale::English));  // the machine's own may know no numbers
  letters.setCaseSensitivity(Qt::CaseInsensitive);
  letters.setNumericMode(kind != Kind::date);
  SortBy(rows, count, descending, keys,
         [&](const QString& a, const QString& b) { return letters.compare(a, b) < 0; });
  return rows;
}

}  // namespace kaunter
