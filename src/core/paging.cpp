#include "core/paging.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <charconv>
#include <limits>
#include <optional>
#include <utility>

#include "core/session.h"
#include "core/telling.h"
#include "core/texts.h"
#include "screen/control.h"

namespace kaunter {
namespace {

constexpr int kFirstPageSize = 100;

std::vector<std::string> Of(std::string_view alias, std::vector<std::string> columns) {
  for (std::string& column : columns) {
    column = fmt::format("{}.{}", alias, column.substr(column.find_last_of('.') + 1));
  }
  return columns;
}

std::optional<int> PageSize(const std::string& text) {
  int size = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, size);
  if (error != std::errc() || stop != end || size <= 0) return std::nullopt;
  return size;
}

}  // namespace

std::string OrderBy(const std::vector<std::string>& columns, std::string_view direction) {
  std::vector<std::string> parts;
  for (const std::string& column : columns) parts.push_back(fmt::format("{}{}", column, direction));
  return fmt::format("ORDER BY {}", fmt::join(parts, ","));
}

std::string PageStatement(std::string_view rows, const std::vector<std::string>& sort,
                          bool descending, int page_size, int limit_from) {
  return fmt::format("SELECT * FROM (SELECT TOP {} * FROM (SELECT TOP {} {} {}) as a {}) as b {}",
                     page_size, limit_from, rows, OrderBy(sort, descending ? " desc" : " asc"),
                     OrderBy(Of("a", sort), descending ? " asc" : " desc"),
                     OrderBy(Of("b", sort), descending ? " desc" : ""));
}

PageTurner::PageTurner(Session& session, ComboBox& size, Label& position,
                       std::function<void(int limit_from)> show)
    : session_(session), size_(size), position_(position), show_(std::move(show)) {
  size_.onPick = [this] { TakeSize(); };
}

void PageTurner::Start() {
  page_size_ = kFirstPageSize;
  size_.SetText(std::to_string(page_size_));
  First();
}

void PageTurner::First() { show_(page_size_); }

// Past the end the last page comes again.
void PageTurner::Next() {
  if (limit_from_ <= std::numeric_limits<int>::max() - page_size_) show_(limit_from_ + page_size_);
}

void PageTurner::Previous() {
  if (limit_from_ != page_size_) show_(limit_from_ - page_size_);
}

void PageTurner::Again() { show_(limit_from_); }

void PageTurner::Shown(int limit_from) {
  limit_from_ = limit_from;
  position_.SetText(session_.In(
      {fmt::format("Limit From {}", limit_from), fmt::format("显示至第 {} 行", limit_from)}));
}

void PageTurner::TakeSize() {
  const std::optional<int> size = PageSize(Trim(size_.text()));
  if (!size) {
    Refuse(session_, size_, {"Invalid number", "号码无效"});
    size_.SetText(std::to_string(page_size_));
    return;
  }
  page_size_ = *size;
  First();
}

}  // namespace kaunter
