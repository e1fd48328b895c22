#include "core/einvoice_codes.h"

#include <fmt/format.h>

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "core/central_database.h"
#include "core/data_access.h"
#include "core/log.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/sql_literals.h"
#include "core/telling.h"
#include "platform/sql/transaction.h"
#include "screen/desk.h"

namespace kaunter {
namespace {

// The endpoint of credit notes is not among them: each office keeps its own.
constexpr std::string_view kSettingKeys =
    "('GetTokenurl','GetTINurl','Getclient_id','Getclient_secret','GetEInvAPIConsolidated',"
    "'GetEInvAPICancel','GetEInvAPIInv','GetEInvAPIStatus','GetTokenInv','GetEInvAPISelfBill')";

struct Copied {
  EInvoiceCodes into;
  std::string delete_local;
  std::string select_central;
};

std::vector<Copied> Copies() {
  std::vector<Copied> copies = {
      {{&EInvoiceTables::settings, "Systemast", "Param", "Value"},
       fmt::format("delete Systemast Where Param in {}", kSettingKeys),
       fmt::format("select * FROM Systemast where Param in {}", kSettingKeys)}};
  for (const EInvoiceCodes& codes : kCodeTables) {
    copies.push_back({codes, fmt::format("delete from {}", codes.table),
                      fmt::format("SELECT * FROM {}", codes.table)});
  }
  return copies;
}

void Replace(Connection& main, const Copied& copy, Recordset& central) {
  main.Execute(copy.delete_local);
  for (; !central.Eof(); central.MoveNext()) {
    main.Execute(fmt::format("INSERT INTO {} ({},{}) VALUES ({},{})", copy.into.table,
                             copy.into.code, copy.into.name,
                             QuoteStr(central.Field(copy.into.code).ToText()),
                             QuoteStr(central.Field(copy.into.name).ToText())));
  }
}

void Transfer(Session& session, const EInvoiceTables& tables) {
  Connection& main = session.Main();
  std::vector<Copied> copies = Copies();
  std::erase_if(copies, [&](const Copied& copy) {
    return !(tables.*copy.into.wanted) || !TableExists(main, copy.into.table);
  });
  std::vector<std::string> statements;
  for (const Copied& copy : copies) statements.push_back(copy.select_central);
  std::vector<Recordset> central = ReadCentralDatabase(session, std::move(statements));
  Transaction transaction(main);
  for (std::size_t i = 0; i < copies.size(); ++i) Replace(main, copies[i], central[i]);
  if (tables.whole()) main.Execute("DELETE FROM Systemast WHERE Param='EInvCodesDue'");
  transaction.Commit();
}

}  // namespace

bool RefreshEInvoiceCodeTables(Session& session, Desk& desk, const EInvoiceTables& tables) {
  if (!HasCentralDatabase(session)) {
    WriteLog(session, LogLine(session,
                              "Transfer Setting Code - no data source AMLA on this PC, the "
                              "e-invoicing codes stay as they are"));
    return false;
  }
  try {
    Transfer(session, tables);
    return true;
  } catch (const std::exception& error) {
    LogRollback(session, "Transfer Setting Code", error);
    desk.Message(MessageKind::critical, session.ProgramTitle,
                 session.In(Failed("an error occur during transfering setting code", error)));
    return false;
  }
}

void RefreshIfDue(Session& session, Desk& desk) {
  if (!HasCentralDatabase(session) || ReadSetting(session.Main(), "EInvCodesDue").empty()) return;
  RefreshEInvoiceCodeTables(session, desk, {});
}

}  // namespace kaunter
