#include "cash/gold_cells.h"

#include "core/formats.h"

namespace kaunter {
namespace {

// Sums of a few thousand such lines still fit.
const Money kLargest = Money::FromInteger(100'000'000'000);

}  // namespace

std::optional<std::string> GoldFigure(std::string_view typed, std::string_view form) {
  const auto amount = Money::TryText(typed);
  if (!amount || *amount < Money() || *amount > kLargest) return std::nullopt;
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
