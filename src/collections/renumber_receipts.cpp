#include "collections/renumber_receipts.h"

#include <fmt/format.h>

#include <algorithm>

#include "collections/receipt_number.h"
#include "core/sequences.h"
#include "core/session.h"
#include "core/values.h"

namespace kaunter {
namespace {

// "202401-", with so many digits.
bool IsDatePrefix(std::string_view text, std::size_t digits) {
  return text.size() == digits + 1 && text.back() == '-' &&
         std::all_of(text.begin(), text.end() - 1, [](char c) { return c >= '0' && c <= '9'; });
}

// Documents, drawdowns and invoices of the company count under keys of the same form: only the
// letters behind the "#" tell a receipt counter from them.
bool CountsReceipts(std::string_view key, const std::string& comp_code) {
  const std::size_t mark = key.rfind('#');
  if (mark == std::string_view::npos) return false;
  const std::string_view owner = key.substr(0, mark);
  const std::string_view letters = key.substr(mark + 1);
  if (SameText(owner, comp_code)) return SameText(letters, "R") || IsDatePrefix(letters, 6);
  return SameText(owner, "OR" + comp_code) && IsDatePrefix(letters, 6);
}

void DropCounters(Connection& main, const std::string& comp_code) {
  Recordset keys = main.Query("SELECT CustID FROM NumberMast WHERE CustID LIKE '%#%'");
  for (; !keys.Eof(); keys.MoveNext()) {
    const std::string key = NullToEmpty(keys.Field(0));
    if (!CountsReceipts(key, comp_code)) continue;
    main.Execute("DELETE NumberMast WHERE CustID=" + QuoteStr(key));
  }
}

// Those from the date on differ among each other, since they come out of one series.
void RefuseNumberBorneTwice(Connection& main, const Renumbering& plan) {
  const std::string number = ScalarQuery(
      main, fmt::format("SELECT a.ReceiptNo FROM PaymentMast AS a INNER JOIN PaymentMast AS b ON "
                        "a.CompCode=b.CompCode AND a.ReceiptNo=b.ReceiptNo WHERE a.CompCode={} AND "
                        "a.PayDate >= {} AND b.PayID <> a.PayID ORDER BY a.ReceiptNo",
                        QuoteStr(plan.comp_code), SqlDate(plan.from)));
  if (!number.empty()) throw ReceiptConflict(number);
}

}  // namespace

void RenumberReceipts(Session& session, const Renumbering& plan,
                      const std::function<void(int done, int count)>& progress) {
  Connection& main = session.Main();
  DropCounters(main, plan.comp_code);
  const ReceiptStyle style = ReceiptStyleOf(session, plan.comp_code);
  if (style == ReceiptStyle::serial) {
    main.Execute(fmt::format("INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ({},{},'0')",
                             QuoteStr(plan.comp_code + "#R"), QuoteStr(plan.last_in_use)));
  }
  // PayID parts those of the same second, so that a second run gives the same numbers.
  Recordset payments = main.Query(
      fmt::format("SELECT PayID,PayDate FROM PaymentMast  WHERE CompCode={} AND PayDate >= {} "
                  "ORDER BY PayDate,DateCreated,PayID",
                  QuoteStr(plan.comp_code), SqlDate(plan.from)));
  const int count = static_cast<int>(payments.RowCount());
  for (int done = 1; !payments.Eof(); payments.MoveNext(), ++done) {
    const std::string day = Format(*payments.Field("PayDate").AsDate(), "dd-mm-yyyy");
    // Numbers are taken as they come: those in use are the ones that are given anew.
    const ReceiptSeries series = ReceiptSeriesOn(style, plan.comp_code, day);
    const std::string number = NextSeries(main, series.prefix, series.owner, false);
    main.Execute(fmt::format("UPDATE PaymentMast SET ReceiptNo={} WHERE PayID={}", QuoteStr(number),
                             QuoteStr(payments.Field("PayID").ToText())));
    progress(done, count);
  }
  RefuseNumberBorneTwice(main, plan);
}

}  // namespace kaunter
