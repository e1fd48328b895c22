// What is typed into the cells of the gold screens, and how it is shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/money.h"
#include "screen/caption.h"
#include "screen/grid.h"

namespace kaunter {

inline const Caption kTextTooLong{"The text is too long", "文字过长"};

// As the columns keep them: amounts and pieces to the sen, weights to the ten-thousandth of a gram.
inline constexpr std::string_view kAmountForm = "#,##0.00";
inline constexpr std::string_view kPieceForm = "#,##0.##";
inline constexpr std::string_view kWeightForm = "#,##0.00##";

// An amount of gold in its shown form; nothing for letters, for less than 0 and for more than any
// purchase comes to.
std::optional<std::string> GoldFigure(std::string_view typed, std::string_view form);

// A text may not be cut silently: widths of the item's columns.
inline constexpr std::size_t kItemDescLength = 300;
inline constexpr std::size_t kItemRemarkLength = 1000;

// The sum of a column; blank cells are 0.
Money SumOf(const Grid& grid, int column);

}  // namespace kaunter
