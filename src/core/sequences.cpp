#include "core/sequences.h"

#include <fmt/format.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

#include "core/data_access.h"
#include "core/numbers.h"
#include "core/sql_literals.h"

namespace kaunter {
namespace {

constexpr int kNoCurrentRow = 3021;

std::int32_t Raised(std::int32_t number, std::string_view key) {
  if (number == std::numeric_limits<std::int32_t>::max()) {
    throw std::overflow_error(fmt::format("the counter {} is at its end", key));
  }
  return number + 1;
}

// The counter in a row; a blank one counts as 0.
std::int32_t CounterOf(const Recordset& row) {
  const std::string text = row.Field("LoanNo").ToText();
  return text.empty() ? 0 : CLng(text);
}

std::string Padded(std::int32_t number, int digits) {
  return fmt::format("{:0{}}", number, digits);
}

bool Exists(Connection& main, std::string_view column, std::string_view table,
            const std::string& key) {
  return !ScalarQuery(main, fmt::format("SELECT {} FROM {} WHERE {}={}", column, table, column,
                                        QuoteStr(key)))
              .empty();
}

std::int32_t DrawFromSeries(Connection& main, const std::string& key) {
  const Recordset row =
      main.Query(fmt::format("SELECT * FROM NumberMast WHERE CustID={}", QuoteStr(key)));
  if (row.Eof()) {
    main.Execute(fmt::format("INSERT INTO NumberMast (CustID,LoanNo,PaymentNo) VALUES ({},{},'0')",
                             QuoteStr(key), 1));
    return 1;
  }
  const std::int32_t next = Raised(CounterOf(row), key);
  main.Execute(fmt::format("UPDATE NumberMast SET LoanNo={} WHERE CustID={}", next, QuoteStr(key)));
  return next;
}

std::string DrawCustomer(Connection& main, std::string_view prefix) {
  const std::string key = QuoteStr(prefix);
  const Recordset row =
      main.Query(fmt::format("Select LoanNo,PaymentNo from NumberMast where CustID = {}", key));
  if (row.Eof()) {
    main.Execute(fmt::format("Insert into NumberMast values ({},'0001','0')", key));
    return std::string(prefix) + "0001";
  }
  const std::string n = Padded(Raised(CounterOf(row), prefix), 4);
  main.Execute(fmt::format("Update NumberMast set CustID={},LoanNo = {} where CustID = {}", key,
                           QuoteStr(n), key));
  return std::string(prefix) + n;
}

// What loans and payments share: the counter holds the next number to use, and 0 counts as 1.
std::int32_t TakeNumber(Connection& main, std::string_view owner, std::int32_t counter) {
  const std::int32_t n = counter == 0 ? 1 : counter;
  main.Execute(fmt::format("Update NumberMast set LoanNo={} where CustID={}",
                           QuoteStr(Padded(Raised(n, owner), 3)), QuoteStr(owner)));
  return n;
}

std::string DrawPayment(Connection& main, std::string_view loan_id) {
  const Recordset row =
      main.Query(fmt::format("Select LoanNo from NumberMast where CustID={}", QuoteStr(loan_id)));
  std::int32_t n = 1;
  if (row.Eof()) {
    main.Execute(fmt::format("Insert into NumberMast values ({},'002','001')", QuoteStr(loan_id)));
  } else {
    n = TakeNumber(main, loan_id, CounterOf(row));
  }
  return fmt::format("{}-{}", loan_id, Padded(n, 3));
}

}  // namespace

std::string NextSeries(Connection& main, std::string_view letters, std::string_view owner,
                       bool long_form, const NumberTaken& taken) {
  const std::string key = fmt::format("{}#{}", owner, letters);
  std::string number;
  do {
    const std::string next = Padded(DrawFromSeries(main, key), 4);
    number = long_form ? key + next : std::string(letters) + next;
  } while (taken && taken(number));
  return number;
}

std::string NextCustomerNumber(Connection& main, std::string_view prefix) {
  std::string cust_id;
  do {
    cust_id = DrawCustomer(main, prefix);
  } while (Exists(main, "CustID", "NumberMast", cust_id) ||
           Exists(main, "CustID", "CustMast", cust_id));
  main.Execute(
      fmt::format("Insert into NumberMast (CustID,LoanNo,PaymentNo) values ({},'000','000')",
                  QuoteStr(cust_id)));
  return cust_id;
}

std::string NextLoanNumber(Connection& main, std::string_view cust_id) {
  const Recordset row =
      main.Query(fmt::format("SELECT LoanNo FROM NumberMast WHERE CustID={}", QuoteStr(cust_id)));
  if (row.Eof()) {
    throw SqlError(kNoCurrentRow,
                   fmt::format("The customer {} has no counter in NumberMast.", cust_id));
  }
  const std::string loan_id =
      fmt::format("{}-{}", cust_id, Padded(TakeNumber(main, cust_id, CounterOf(row)), 3));
  main.Execute(fmt::format("Insert into NumberMast values ({},'001','001')", QuoteStr(loan_id)));
  return loan_id;
}

std::string NextPaymentNumber(Connection& main, std::string_view loan_id) {
  std::string pay_id;
  do {
    pay_id = DrawPayment(main, loan_id);
  } while (Exists(main, "PayID", "PaymentMast", pay_id));
  return pay_id;
}

}  // namespace kaunter
