#include "bank/taken_lines.h"

#include <fmt/format.h>

#include "core/values.h"
#include "screen/text.h"

namespace kaunter {
namespace {

constexpr const char* kColumns =
    "SELECT r.RefNo,r.Remarks,r.PayID,r.ErrMsg,r.LineHash,p.PayID as Stored,p.LoanID FROM "
    "PaymentReader as "
    "r LEFT OUTER JOIN PaymentMast as p on p.PayID=r.PayID WHERE ";

TakenLine LineIn(const Recordset& row) {
  const auto text = [&row](std::string_view column) { return NullToEmpty(row.Field(column)); };
  return {text("RefNo"),
          text("Remarks"),
          text("PayID"),
          text("ErrMsg"),
          text("LineHash"),
          text("LoanID"),
          !row.Field("Stored").IsNull()};
}

// A message may be longer than its column.
std::string Fitting(const std::string& text) {
  constexpr std::size_t kColumn = 1000;
  return QuoteStr(FirstCharacters(text, kColumn));
}

}  // namespace

std::optional<TakenLine> ReadTakenLine(Connection& main, std::string_view ref_no) {
  const Recordset row = main.Query(kColumns + ("r.RefNo=" + QuoteStr(ref_no)));
  if (row.Eof()) return std::nullopt;
  return LineIn(row);
}

std::vector<TakenLine> SameLinesElsewhere(Connection& main, std::string_view line_hash,
                                          std::string_view file) {
  std::vector<TakenLine> lines;
  if (line_hash.empty()) return lines;
  const std::string own = std::string(file) + "-";
  for (Recordset row = main.Query(kColumns + ("r.LineHash=" + QuoteStr(line_hash))); !row.Eof();
       row.MoveNext()) {
    TakenLine line = LineIn(row);
    const std::string name = line.RefNo.substr(0, line.RefNo.rfind('-') + 1);
    if (line.Pays() && !SameText(name, own)) lines.push_back(std::move(line));
  }
  return lines;
}

Caption OtherLineOfThisName(const TakenLine& taken) {
  return {
      fmt::format("Another line was taken as {}, payment {}: a file of this name was read before. "
                  "Rename this file and read it again",
                  taken.RefNo, taken.PayID),
      fmt::format("{} 已用于另一行（付款 {}）：曾读取同名文件。请将此文件改名后再读取", taken.RefNo,
                  taken.PayID)};
}

void HoldLine(Connection& main, std::string_view ref_no) {
  const std::string ref = QuoteStr(ref_no);
  // Where two come at once the key stops the second one.
  if (main.Execute("UPDATE PaymentReader SET RefNo=RefNo WHERE RefNo=" + ref) == 0) {
    main.Execute(fmt::format(
        "INSERT INTO PaymentReader (RefNo,Remarks,PayID,ErrMsg) VALUES ({},'','','')", ref));
  }
}

void WriteTakenLine(Connection& main, const TakenLine& line, std::string_view user) {
  main.Execute(fmt::format(
      "UPDATE PaymentReader SET Remarks={},PayID={},ErrMsg={},LineHash={},UserID={},DateCreated="
      "getdate() WHERE RefNo={}",
      Fitting(line.Remarks), QuoteStr(line.PayID), Fitting(line.ErrMsg), QuoteStr(line.LineHash),
      QuoteStr(user), QuoteStr(line.RefNo)));
}

}  // namespace kaunter
