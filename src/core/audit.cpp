#include "core/audit.h"

#include <fmt/format.h>

#include <exception>
#include <string>

#include "core/data_access.h"
#include "core/session.h"
#include "core/shown.h"
#include "core/sql_literals.h"
#include "platform/host.h"

namespace kaunter {
namespace {

// A labelled pair of the remarks: how a value is shown and its place in the select.
struct Part {
  std::string_view label;
  std::string (*show)(const Value&);
  std::size_t index;
};

struct Module {
  std::vector<std::string_view> names;
  std::string_view select;  // the key follows
  std::vector<Part> parts;
};

const std::vector<Module>& Modules() {
  static const std::vector<Module> modules = {
      {{"Loan"},
       "SELECT LoanAmt,PayOutAmt,TrxDate FROM LoanMast WHERE LoanID=",
       {{"Date ", ShowDate, 2}, {", Loan Amount ", ShowMoney, 0}, {", Capital ", ShowMoney, 1}}},
      {{"Payment"},
       "SELECT PayAmt,CollectorAmt,IntAmt,DiscAmt,PayDate FROM PaymentMast WHERE PayID=",
       {{"Date ", ShowDate, 4},
        {", Payment Amount ", ShowMoney, 0},
        {", Flexi Interest ", ShowMoney, 1},
        {", Late Charge ", ShowMoney, 2},
        {", Discount ", ShowMoney, 3}}},
      {{"Customer"},
       "SELECT CustName,CustNIC,CustOIC,CustOthIC,TrxDate FROM CustMast WHERE CustID=",
       {{"Date ", ShowDate, 4},
        {", Customer Name ", NullToEmpty, 0},
        {", New IC ", NullToEmpty, 1},
        {", Old IC ", NullToEmpty, 2},
        {", Other IC ", NullToEmpty, 3}}},
      {{"Expenses"},
       "SELECT TrxDesc,DebitAmt,CreditAmt,TrxDate FROM PersonalExp WHERE TrxID=",
       {{"Date ", ShowDate, 3},
        {", Desc ", NullToEmpty, 0},
        {", Debit ", ShowMoney, 1},
        {", Credit ", ShowMoney, 2}}},
      {{"Buy Gold"},
       "SELECT TotEstAmt,TotAmt,OtherAmt,PayAmt,TrxDate FROM GoldTransMast WHERE LoanID=",
       {{"Date ", ShowDate, 4},
        {", Estimate ", ShowMoney, 0},
        {", Tot Amt ", ShowMoney, 1},
        {", Other ", ShowMoney, 2},
        {", Pay Amt ", ShowMoney, 3}}},
      {{"Cash Book"},
       "SELECT TranDate,TranType,TranAmt,TranDesc FROM CashBook WHERE DocID=",
       {{"Date ", ShowDate, 0},
        {", Type ", NullToEmpty, 1},
        {", Amt ", ShowMoney, 2},
        {", Desc ", NullToEmpty, 3}}},
      {{"Drawdown"},
       "SELECT TrxDate,DrawDownAmt,Payee FROM DrawDownMast WHERE SID=",
       {{"Date ", ShowDate, 0}, {", Amt ", ShowMoney, 1}, {", Payee ", NullToEmpty, 2}}},
      {{"Self-Bill"},
       "SELECT TrxDate,SuppName,SelfBillAmt,SelfBillTaxAmt,uuid FROM SelfBillMast WHERE SID=",
       {{"Date ", ShowDate, 0},
        {", Supplier ", NullToEmpty, 1},
        {", Amt ", ShowMoney, 2},
        {", Tax ", ShowMoney, 3},
        {", uuid ", NullToEmpty, 4}}},
      {{"Invoice", "Credit Note", "Batch"},
       "SELECT TrxDate,ChargeAmt FROM ChargeMast WHERE ChargeID=",
       {{"Date ", ShowDate, 0}, {", Amt ", ShowMoney, 1}}},
  };
  return modules;
}

const Module* FindModule(std::string_view name) {
  for (const Module& module : Modules()) {
    for (std::string_view known : module.names) {
      if (known == name) return &module;
    }
  }
  return nullptr;
}

std::string Remarks(const Session& session, std::string_view name, std::string_view trx_id,
                    const std::vector<Value>& old_values) {
  if (name == "User") {
    const Host host = ThisHost();
    return fmt::format("{} - {} / {}", host.name, host.address, ServerNow(session.Main(), true));
  }
  const Module* module = FindModule(name);
  if (module == nullptr) return "";
  const Recordset row = session.Main().Query(std::string(module->select) + QuoteStr(trx_id));
  std::string remarks;
  for (const Part& part : module->parts) {
    const Value before = part.index < old_values.size() ? old_values[part.index] : Value();
    const std::string shown = part.show(before);
    remarks += fmt::format("{}{}/{}", part.label, shown,
                           row.Eof() ? shown : part.show(row.Field(part.index)));
  }
  return remarks;
}

}  // namespace

void WriteAudit(const Session& session, std::string_view type, std::string_view module,
                std::string_view comp_code, std::string_view trx_id,
                const std::vector<Value>& old_values) {
  if (!session.settings.TransLogs || session.LogsConn == nullptr) return;
  try {
    const std::string remarks = Remarks(session, module, trx_id, old_values);
    Connection& logs = *session.LogsConn;
    const Recordset now = logs.Query("SELECT CURRENT_TIMESTAMP");
    logs.Execute(fmt::format(
        "INSERT INTO TransLogs (TrxDate,UserID,UserName,ConmpCode,Type,Module,TrxID,Remarks) "
        "VALUES ({},{},{},{},{},{},{},{})",
        SqlDateTime(ShowDateTime(now.Field(0))), QuoteStr(session.CurrentUserID), QuoteStr(""),
        QuoteStr(comp_code), QuoteStr(type), QuoteStr(module), QuoteStr(trx_id),
        QuoteStr(remarks)));
  } catch (const std::exception&) {
    // The work that is audited is done; a trail that cannot be written must not undo or disturb it.
  }
}

}  // namespace kaunter
