#include "customers/customer_store.h"

#include <fmt/format.h>

#include "core/record.h"
#include "core/values.h"
#include "platform/sql/transaction.h"

namespace kaunter {

std::string FindCustomerByText(Connection& main, std::string_view text, std::string_view company) {
  const std::string typed = QuoteStr(text);
  const std::string comp = QuoteStr(company);
  const std::string by_loan = ScalarQuery(
      main,
      fmt::format("SELECT CustID FROM LoanMast WHERE OldLoanCode={} AND CompCode={}", typed, comp));
  if (!by_loan.empty()) return by_loan;
  return ScalarQuery(
      main, fmt::format("SELECT CustID FROM CustMast WHERE CompCode={0} AND OldCode={1} and "
                        "(CustNIC={1} Or CustOIC={1} OR CustOthIC={1})",
                        comp, typed));
}

std::optional<OtherHolder> FindOtherHolder(Connection& main, std::string_view column,
                                           std::string_view value, std::string_view cust_id,
                                           std::string_view company) {
  const Recordset row = main.Query(fmt::format(
      "SELECT CustID,CustName,CompCode FROM CustMast WHERE {}={} AND CustID<>{} and CompCode = {}",
      column, QuoteStr(value), QuoteStr(cust_id), QuoteStr(company)));
  if (row.Eof()) return std::nullopt;
  return OtherHolder{NullToEmpty(row.Field(0)), NullToEmpty(row.Field(1)),
                     NullToEmpty(row.Field(2))};
}

CustomerHistory HistoryOf(Connection& main, std::string_view cust_id) {
  const std::string id = QuoteStr(cust_id);
  CustomerHistory history;
  const Recordset loans =
      main.Query(fmt::format("SELECT COUNT(*),SUM(LoanBal) FROM LoanMast WHERE CustID={}", id));
  history.loans = CLng(NullToEmpty(loans.Field(0)));
  if (const Money* balance = loans.Field(1).AsMoney()) history.balance = *balance;
  history.payments =
      CLng(ScalarQuery(main, fmt::format("SELECT COUNT(*) FROM PaymentMast WHERE CustID={}", id)));
  return history;
}

void DeleteCustomer(Connection& main, std::string_view cust_id) {
  const std::string id = QuoteStr(cust_id);
  Transaction transaction(main);
  ExecuteOnRow(main, fmt::format("Delete from CustMast where CustID={}", id), cust_id);
  for (const char* statement :
       {"Delete from RefererMast where CustID={}", "Delete from DocumentMast where CustID={}",
        "Delete s from SchMast as s inner join LoanMast as l on s.LoanID=l.LoanID where "
        "l.CustID={}",
        "Delete p from PaymentList as p inner join LoanMast as l on p.LoanID=l.LoanID where "
        "l.CustID={}",
        "Delete from LoanMast where CustID={}", "Delete from PaymentMast where CustID={}",
        "DELETE FROM ChargeMast WHERE CustID={}", "DELETE FROM DrawDownMast WHERE CustID={}"}) {
    main.Execute(fmt::format(fmt::runtime(statement), id));
  }
  transaction.Commit();
}

const std::vector<std::string>& ImportedColumns() {
  static const std::vector<std::string> columns = {
      "CustName",    "CustNickName", "CustNIC",     "CustOIC",      "CustOthIC",
      "CustAdd1",    "CustAdd2",     "CustAdd3",    "CustPostCode", "CustCity",
      "CustState",   "CustGender",   "CustRace",    "CustTel1",     "CustTel2",
      "CustFax",     "CustHP1",      "CustHP2",     "CustCompTel1", "CustCompTel2",
      "CustCompFax", "CustComp",     "CustCompBiz", "CustCompPos",  "CustCompIncome"};
  return columns;
}

std::map<std::string, std::string> ReadLinkedCustomer(Connection& linked,
                                                      std::string_view cust_id) {
  std::string columns;
  for (const std::string& column : ImportedColumns())
    columns += (columns.empty() ? "" : ",") + column;
  const Recordset row = linked.Query(
      fmt::format("SELECT {} FROM CustMast WHERE CustID={}", columns, QuoteStr(cust_id)));
  std::map<std::string, std::string> values;
  if (row.Eof()) return values;
  for (const std::string& column : ImportedColumns()) {
    values[column] =
        column == "CustCompIncome" ? ShowMoney(row.Field(column)) : NullToEmpty(row.Field(column));
  }
  return values;
}

}  // namespace kaunter
