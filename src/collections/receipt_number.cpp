#include "collections/receipt_number.h"

#include <fmt/format.h>

#include <stdexcept>

#include "core/sequences.h"
#include "core/values.h"

namespace kaunter {
namespace {

DateTime PayDay(std::string_view pay_date) {
  const std::optional<DateTime> day = DateTime::FromDisplay(pay_date);
  if (!day) throw std::invalid_argument(fmt::format("\"{}\" is no date", pay_date));
  return *day;
}

}  // namespace

ReceiptStyle ReceiptStyleOf(const Session& session, std::string_view comp_code) {
  if (session.settings.ORYYMMDD) return ReceiptStyle::dated;
  const std::string serial = ScalarQuery(
      session.Main(), "SELECT SerialReceiptNo FROM CompMast WHERE CompCode=" + QuoteStr(comp_code));
  return serial == "1" ? ReceiptStyle::serial : ReceiptStyle::monthly;
}

ReceiptSeries ReceiptSeriesOn(ReceiptStyle style, std::string_view comp_code,
                              std::string_view pay_date) {
  switch (style) {
    case ReceiptStyle::dated:
      return {Format(PayDay(pay_date), "yymmdd") + "-", "OR" + std::string(comp_code)};
    case ReceiptStyle::serial:
      return {"R", std::string(comp_code)};
    case ReceiptStyle::monthly:
      break;
  }
  return {Format(PayDay(pay_date), "yyyymm") + "-", std::string(comp_code)};
}

std::string NextReceiptNo(Session& session, std::string_view comp_code, std::string_view pay_date) {
  Connection& main = session.Main();
  const ReceiptSeries series =
      ReceiptSeriesOn(ReceiptStyleOf(session, comp_code), comp_code, pay_date);
  return NextSeries(main, series.prefix, series.owner, false, [&](const std::string& number) {
    return !main.Query(fmt::format("SELECT PayID FROM PaymentMast WHERE CompCode={} AND "
                                   "ReceiptNo={}",
                                   QuoteStr(comp_code), QuoteStr(number)))
                .Eof();
  });
}

bool ReceiptTaken(Connection& main, std::string_view comp_code, std::string_view pay_id,
                  std::string_view receipt_no) {
  return !main.Query(fmt::format("SELECT PayID FROM PaymentMast WHERE CompCode={} AND PayID <> {} "
                                 "AND ReceiptNo={}",
                                 QuoteStr(comp_code), QuoteStr(pay_id), QuoteStr(receipt_no)))
              .Eof();
}

}  // namespace kaunter
