#include "bank/bank_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "core/values.h"
#include "platform/digest.h"

namespace kaunter {
namespace {

bool IsShortNumber(const std::string& text, std::size_t most) {
  return !text.empty() && text.size() <= most &&
         std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

BankFile::BankFile(const BankLayout& layout, const std::string& path)
    : layout_(layout), lines_(path, layout.encoding) {
  head_ = lines_.mark();
}

std::string BankFile::At(const BankPlace& place) const {
  if (layout_.delimiter == 0) return BankPartOf(lines_.text(), place);
  const auto column = static_cast<std::size_t>(place.start - 1);
  return column < columns_.size() ? PlainBankText(columns_[column]) : std::string();
}

std::string BankFile::Part(BankPart part) const {
  const BankField* const field = layout_.Find(part);
  return field == nullptr ? std::string() : At(field->place);
}

bool BankFile::Counts() const {
  return std::ranges::all_of(layout_.conditions, [this](const BankCondition& condition) {
    return SameText(At(condition.place), condition.text) == condition.holds;
  });
}

// The day that the header, or a line, tells; `shown` is how it is written there.
std::optional<DateTime> BankFile::Day(bool in_header, std::string* shown) const {
  if (const BankField* const date = layout_.Find(BankPart::date)) {
    if (date->in_header != in_header) return day_;
    *shown = At(date->place);
    return BankDate(*shown, date->pattern);
  }
  if (layout_.Find(BankPart::year)->in_header != in_header) return day_;
  const std::string year = Part(BankPart::year);
  const std::string month = Part(BankPart::month);
  const std::string day = Part(BankPart::day);
  *shown = fmt::format("{}-{}-{}", year, month, day);
  if (!IsShortNumber(year, 4) || !IsShortNumber(month, 2) || !IsShortNumber(day, 2)) {
    return std::nullopt;
  }
  return BankDate(fmt::format("{:0>4}-{:0>2}-{:0>2}", year, month, day), "yyyy-mm-dd");
}

void BankFile::ReadHeader() {
  header_read_ = true;
  head_ += lines_.raw();
  account_ = Part(BankPart::account);
  std::string shown;
  day_ = Day(true, &shown);
  const bool tells_day = !shown.empty();
  if (tells_day && !day_) {
    throw BankFileRefused(
        {fmt::format("Line {}: the header has \"{}\" where its date should stand; is it a file of "
                     "the layout {}?",
                     lines_.number(), shown, layout_.name),
         fmt::format("第 {} 行：表头的日期为“{}”；这是 {} 格式的文件吗？", lines_.number(), shown,
                     layout_.name)});
  }
}

bool BankFile::Next(BankLine& line) {
  constexpr int kOften = 100;
  while (lines_.Next()) {
    if (on_way && lines_.number() % kOften == 0) on_way();
    if (lines_.number() <= layout_.skip) {
      head_ += lines_.raw();
      continue;
    }
    if (IsBlankBankText(lines_.text())) continue;
    if (layout_.delimiter != 0) columns_ = BankColumns(lines_.text(), layout_.delimiter);
    if (layout_.has_header && !header_read_) {
      ReadHeader();
      continue;
    }
    if (!Counts() || (Part(BankPart::amount).empty() && Part(BankPart::reference).empty())) {
      ++passed_by_;
      continue;
    }
    Read(line);
    return true;
  }
  return false;
}

void BankFile::Read(BankLine& line) {
  line = {};
  line.number = lines_.number();
  line.raw = lines_.raw();
  std::string day;
  line.date = Day(false, &day);
  const std::string amount = Part(BankPart::amount);
  line.amount = BankAmount(amount, layout_.Find(BankPart::amount)->sen);
  line.reference = Part(BankPart::reference);
  const auto fault = [&](const Caption& what) {
    if (line.fault) return;
    line.fault = Caption{fmt::format("Line {}: {}", line.number, what.english),
                         fmt::format("第 {} 行：{}", line.number, what.chinese)};
  };
  if (!line.date) {
    fault({fmt::format("\"{}\" is no date", day), fmt::format("“{}”不是日期", day)});
  }
  if (!line.amount) {
    fault({fmt::format("\"{}\" is no amount", amount), fmt::format("“{}”不是金额", amount)});
  }
  if (line.reference.empty()) fault({"there is no reference", "没有参考号码"});
  const std::string date = line.date ? line.date->ToCanonical() : std::string();
  line.fingerprint = DigestOf(Digest::Kind::sha256, date + "\n" + PlainBankText(lines_.text()));
}

std::string BankLineRef(const std::string& path, int number) {
  return fmt::format("{}-{:03}", std::filesystem::path(path).filename().string(), number);
}

}  // namespace kaunter
