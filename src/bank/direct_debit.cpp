#include "bank/direct_debit.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "core/values.h"
#include "screen/caption_error.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr std::string_view kVersion = "0001";
constexpr std::size_t kTail = 4;
constexpr std::size_t kName = 40;
constexpr std::string_view kPurpose = "DEBIT";

// Why a field cannot be written; DebitFile puts the line before it.
struct FieldRefused : CaptionError {
  using CaptionError::CaptionError;
};

// A letter of two bytes would move all that stands behind it.
void RequirePlain(std::string_view field, std::string_view text) {
  const auto plain = [](char c) { return c >= ' ' && c <= '~'; };
  if (std::ranges::all_of(text, plain)) return;
  throw FieldRefused(
      {fmt::format("{} \"{}\" has a letter that the bank's file does not take; it "
                   "takes plain English letters, digits and signs",
                   field, text),
       fmt::format("{}“{}”含有银行文件不接受的字；只可用英文字母、数字和符号", field, text)});
}

void RequireRoom(std::string_view field, std::string_view text, std::size_t width) {
  if (text.size() <= width) return;
  throw FieldRefused(
      {fmt::format("{} \"{}\" has {} characters, its field takes {}", field, text, text.size(),
                   width),
       fmt::format("{}“{}”有 {} 个字，字段只容 {} 个", field, text, text.size(), width)});
}

class Line {
 public:
  // A text that is as long as it is.
  Line& As(std::string_view field, std::string_view text) {
    RequirePlain(field, text);
    text_ += text;
    return *this;
  }
  Line& Left(std::string_view field, std::string_view text, std::size_t width) {
    RequirePlain(field, text);
    RequireRoom(field, text, width);
    text_ += fmt::format("{:<{}}", text, width);
    return *this;
  }
  Line& Number(std::string_view field, std::int64_t number, std::size_t width) {
    const std::string digits = std::to_string(number);
    RequireRoom(field, digits, width);
    text_ += fmt::format("{:0>{}}", digits, width);
    return *this;
  }
  Line& Blanks(std::size_t count) {
    text_.append(count, ' ');
    return *this;
  }
  std::string End() const { return text_ + "\r\n"; }

 private:
  std::string text_;
};

// The text without comma and point: sen, as the shown form has two decimals.
std::int64_t SenOf(const std::string& amount) {
  const auto money = Money::TryText(amount);
  if (!money || *money <= Money()) {
    throw FieldRefused(
        {fmt::format("Amt \"{}\" is no amount", amount), fmt::format("Amt“{}”不是金额", amount)});
  }
  return money->ten_thousandths() / 100;
}

int TailOf(const std::string& account) {
  if (account.empty()) {
    throw FieldRefused({"BankAccNo is blank: enter it on the customer's record",
                        "BankAccNo 空白：请在顾客资料输入"});
  }
  const auto tail = AccountTail(account);
  if (!tail) {
    throw FieldRefused({fmt::format("BankAccNo \"{}\" does not end in a number", account),
                        fmt::format("BankAccNo“{}”的末尾不是数字", account)});
  }
  return *tail;
}

std::string Detail(const DebitSetup& setup, const Debit& debit, std::int64_t sen, int tail) {
  return Line()
      .As("DD-01", setup[kDetailID])
      .Left("BankAccNo", debit.BankAccNo, 20)
      .Number("Amt", sen, 16)
      .Left("CustName", FirstCharacters(debit.CustName, kName), kName)
      .Left("BankTransferName", debit.BankTransferName, 20)
      .Number("Line hash", tail + sen, 15)
      .Blanks(87)
      .End();
}

Caption InLine(std::size_t number, const Debit* debit, const Caption& why) {
  const std::string of = debit == nullptr ? std::string() : " (" + debit->LoanID + ")";
  return {fmt::format("Line {}{}: {}", number, of, why.english),
          fmt::format("第 {} 行{}：{}", number, of, why.chinese)};
}

}  // namespace

std::string DebitSetupKey(std::size_t index) { return fmt::format("DD-{:02}", index); }

std::optional<std::size_t> DebitIdentifierWidth(std::size_t index) {
  if (index == kSender || index == kReceiver) return 10;
  if (index == kPayee) return 20 - kPurpose.size();
  return std::nullopt;
}

Recordset StoredDebitSetup(Connection& main) {
  return main.Query("SELECT [Value] FROM Systemast WHERE Param like 'DD-%' ORDER BY Param");
}

std::optional<DebitSetup> ReadDebitSetup(Connection& main) {
  const Recordset rows = StoredDebitSetup(main);
  if (rows.RowCount() < kDebitIdentifiers) return std::nullopt;
  DebitSetup setup;
  for (std::size_t i = 0; i < kDebitIdentifiers; ++i) setup[i] = NullToEmpty(rows.rows()[i][0]);
  return setup;
}

std::optional<int> AccountTail(const std::string& account) {
  const std::string tail =
      account.size() > kTail ? account.substr(account.size() - kTail) : account;
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  if (tail.empty() || !std::ranges::all_of(tail, digit)) return std::nullopt;
  return CLng(tail);
}

std::string DebitFileName(const DebitSetup& setup, const DateTime& now) {
  return setup[kPayee] + setup[kReceiver] + Format(now, "ddmmyy") + "01.DIF";
}

std::variant<std::string, Caption> DebitFile(const DebitSetup& setup,
                                             const std::vector<Debit>& debits, const DateTime& now,
                                             const DateTime& debit_day) {
  std::size_t number = 1;
  const Debit* in_work = nullptr;
  try {
    std::string file = Line()
                           .As("DD-00", setup[kHeaderID])
                           .As("", kVersion)
                           .Left("DD-03", setup[kSender], 10)
                           .Left("DD-04", setup[kReceiver], 10)
                           .As("", Format(now, "yyyymmdd"))
                           .Left("DD-05", setup[kPayee] + std::string(kPurpose), 20)
                           .As("", Format(debit_day, "yyyymmdd"))
                           .Blanks(138)
                           .End();
    std::int64_t sum = 0;
    std::int64_t tails = 0;
    for (const Debit& debit : debits) {
      in_work = &debit;
      ++number;
      const std::int64_t sen = SenOf(debit.Amt);
      const int tail = TailOf(debit.BankAccNo);
      file += Detail(setup, debit, sen, tail);
      sum += sen;
      tails += tail;
    }
    in_work = nullptr;
    ++number;
    return file + Line()
                      .As("DD-02", setup[kFooterID])
                      .As("", kVersion)
                      .Left("DD-03", setup[kSender], 10)
                      .Left("DD-04", setup[kReceiver], 10)
                      .Number("Line count", static_cast<std::int64_t>(number), 10)
                      .Number("Sum", sum, 20)
                      .Number("Sum of accounts", tails, 15)
                      .Blanks(129)
                      .End();
  } catch (const FieldRefused& refused) {
    return InLine(number, in_work, refused.text);
  }
}

}  // namespace kaunter
