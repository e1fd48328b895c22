#include "cash/gold_cells.h"

#include "cash/largest_amount.h"
#include "core/formats.h"

namespace kaunter {
std::optional<std::string> GoldFigure(std::string_view typed, std::string_view form) {
  const auto amount = Money::TryText(typed);
  if (!amount || *amount < Money() || IsTooLarge(*amount)) return std::nullopt;
  return Format(*amount, form);
}

Money SumOf(const Grid& grid, int column) {
  Money sum;
  for (int row = 0; row < grid.RowCount(); ++row) {
    sum += Money::TryText(grid.Cell(row, column)).value_or(Money());
  }
  return sum;
}

}  // namespace kaunter
