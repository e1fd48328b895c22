#include "einvoice/document_selection.h"

#include <fmt/format.h>

#include <array>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/central_database.h"
#include "core/company_access.h"
#include "core/log.h"
#include "core/session.h"
#include "core/statement_places.h"
#include "core/values.h"
#include "reports/reading_statement.h"

namespace kaunter {

using namespace einvoice_column;

namespace {

// The field that each column takes.
constexpr std::array<std::pair<int, std::string_view>, 24> kFields = {{{kID, "eInvID"},
                                                                       {kSeqNo, "SeqNo"},
                                                                       {kDate, "TrxDate"},
                                                                       {kCustID, "CustID"},
                                                                       {kCustName, "CustName"},
                                                                       {kCompCode, "CompCode"},
                                                                       {kLoanID, "LoanID"},
                                                                       {kSchID, "SchID"},
                                                                       {kInvType, "InvType"},
                                                                       {kTaxCode, "TaxType"},
                                                                       {kDescription, "InvDesc"},
                                                                       {kAmount, "InvAmt"},
                                                                       {kQty, "Qty"},
                                                                       {kTin, "tin"},
                                                                       {kCustTypeID, "CustTypeID"},
                                                                       {kCustType, "CustType"},
                                                                       {kTaxName, "CustName"},
                                                                       {kPhone, "Phone"},
                                                                       {kEmail, "Email"},
                                                                       {kAddress, "Address"},
                                                                       {kPostcode, "Postcode"},
                                                                       {kCity, "City"},
                                                                       {kState, "State"},
                                                                       {kCountry, "Country"}}};

std::string KeptStatement(Session& session, const std::string& sid) {
  const std::string sql = "SELECT SQLStatement FROM DataExport WHERE SID=" + QuoteStr(sid);
  if (!HasCentralDatabase(session)) return ScalarQuery(session.Main(), sql);
  const Recordset kept = ReadCentralDatabase(session, {sql}).front();
  return kept.Eof() ? std::string() : NullToEmpty(kept.Field(0));
}

std::string FilledStatement(Session& session, const DocumentChoice& choice) {
  const std::string kept = KeptStatement(session, choice.sid);
  if (kept.empty()) {
    throw std::runtime_error(session.In(
        {fmt::format("There is no statement {} in the central database (DataExport)", choice.sid),
         fmt::format("中央资料库（DataExport）里没有语句 {}", choice.sid)}));
  }
  std::string filled = WithPlacesFilled(kept, {{"@FromDate", SqlDate(choice.from)},
                                               {"@ToDate", SqlDate(choice.to)},
                                               {"@CompCode", QuoteStr(choice.comp_code)}});
  if (const auto fault = FaultOfReading(filled)) {
    throw std::runtime_error(session.In(
        {fmt::format("The statement {} does more than read: {}", choice.sid, fault->what),
         fmt::format("语句 {} 不只是读取：{}", choice.sid, fault->what)}));
  }
  return filled;
}

// Places of the fields in the result. The name of a tax identity stands second where both names are
// given.
std::array<std::size_t, kFields.size()> PlacesOf(Session& session, const Recordset& rows) {
  std::array<std::size_t, kFields.size()> places{};
  for (std::size_t i = 0; i < kFields.size(); ++i) {
    std::vector<std::size_t> found;
    for (std::size_t at = 0; at < rows.columns().size(); ++at) {
      if (SameText(rows.columns()[at].name, kFields[i].second)) found.push_back(at);
    }
    if (found.empty()) {
      throw std::runtime_error(
          session.In({fmt::format("The statement gives no column {}", kFields[i].second),
                      fmt::format("语句没有给出栏位 {}", kFields[i].second)}));
    }
    places[i] = kFields[i].first == kTaxName ? found.back() : found.front();
  }
  return places;
}

std::string ShownField(int column, const Value& value) {
  switch (column) {
    case kDate:
      return ShowDate(value);
    case kAmount:
      return ShowMoney(value);
    case kQty:
      return ShowInt(value);
    default:
      return NullToEmpty(value);
  }
}

// The document that a credit note takes back, and its uuid.
void FindSource(Connection& main, InvoiceRow& row) {
  const std::string id = QuoteStr(row[kID]);
  for (const auto& [table, key, old] : {std::array{"PaymentMast", "PayID", "OldPayID"},
                                        std::array{"ChargeMast", "ChargeID", "OldChargeID"}}) {
    if (main.Query(fmt::format("SELECT {} FROM {} WHERE {}={}", key, table, key, id)).Eof()) {
      continue;
    }
    row[kOldID] =
        ScalarQuery(main, fmt::format("SELECT {} FROM {} WHERE {}={}", old, table, key, id));
    row[kOldUuid] =
        ScalarQuery(main, "SELECT uuid FROM EinvMast WHERE eInvID=" + QuoteStr(row[kOldID]));
    return;
  }
}

// A statement that forgot the company must not show the documents of one that the person may not
// see.
void ExpectOwnCompany(Session& session, const std::string& comp_code) {
  if (comp_code.empty() || MayUseCompany(session, comp_code)) return;
  throw std::runtime_error(
      session.In({fmt::format("The statement gives documents of company {}", comp_code),
                  fmt::format("语句给出了公司 {} 的单据", comp_code)}));
}

std::map<SendingMarks::Line, SendingMark> MarksOf(Session& session, SendMode mode,
                                                  const std::vector<InvoiceLine>& lines) {
  std::vector<SendingMarks::Line> keys;
  keys.reserve(lines.size());
  for (const InvoiceLine& line : lines) keys.push_back(line.key());
  return SendingMarks(session, NameOf(mode)).Read(keys);
}

void ReadRecorded(Connection& main, InvoiceLine& line) {
  const std::string id = QuoteStr(line.id());
  line.cells[kUuid] = ScalarQuery(main, "SELECT uuid FROM EinvMast WHERE eInvID=" + id);
  line.cells[kStatus] = ScalarQuery(main, "SELECT lhdnstatus FROM EinvMast WHERE eInvID=" + id);
  if (!line.uuid().empty()) {
    line.cancel_uuid = ScalarQuery(main, "SELECT Canceluuid FROM EinvMast WHERE eInvID=" + id);
  }
}

// A uuid that the service gave and the office's record does not have yet.
void TakeAnswered(SendMode mode, InvoiceLine& line) {
  const bool unrecorded = line.mark.state == SendingMark::State::answered;
  if (mode != SendMode::submit || !unrecorded || line.uuid() == line.mark.uuid) return;
  line.cells[kUuid] = line.mark.uuid;
  line.cells[kStatus].clear();  // of the one that was recorded before
}

}  // namespace

std::vector<InvoiceLine> SelectDocuments(Session& session, const DocumentChoice& choice,
                                         const std::function<void(int done, int total)>& progress) {
  Connection& main = session.Main();
  const std::string statement = FilledStatement(session, choice);
  const Recordset rows = main.QueryOnly(statement);
  WriteLog(session, LogLine(session, fmt::format("{} - {}", statement, rows.RowCount())));
  const auto places = PlacesOf(session, rows);
  const int total = static_cast<int>(rows.RowCount());
  std::vector<InvoiceLine> lines;
  lines.reserve(rows.RowCount());
  for (const std::vector<Value>& row : rows.rows()) {
    InvoiceLine line;
    line.cells[kNo] = std::to_string(lines.size() + 1);
    for (std::size_t i = 0; i < kFields.size(); ++i) {
      const int column = kFields[i].first;
      line.cells[static_cast<std::size_t>(column)] = ShownField(column, row[places[i]]);
    }
    ExpectOwnCompany(session, line.cells[kCompCode]);
    lines.push_back(std::move(line));
  }
  // The marks before the uuids: another desktop that gets ahead in between is seen in one of them.
  const auto marks = MarksOf(session, choice.mode, lines);
  int done = 0;
  for (InvoiceLine& line : lines) {
    if (const auto mark = marks.find(line.key()); mark != marks.end()) line.mark = mark->second;
    ReadRecorded(main, line);
    if (line.Credit()) FindSource(main, line.cells);
    TakeAnswered(choice.mode, line);
    progress(++done, total);
  }
  for (InvoiceLine& line : lines) {
    const LineState state = StateOf(line);
    line.tone = !line.uuid().empty()          ? RowTone::warn
                : state == LineState::unknown ? RowTone::bad
                : state == LineState::refused ? RowTone::info
                                              : RowTone::plain;
  }
  return lines;
}

}  // namespace kaunter
