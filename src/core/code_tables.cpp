#include "core/code_tables.h"

#include <fmt/format.h>

#include <algorithm>

#include "core/values.h"

namespace kaunter {

const std::vector<CodeTable>& CodeTables() {
  // "Loan Type" over the gold types and "Area Code" over the kind of customer are the house's own
  // use of these tables.
  static const std::vector<CodeTable> tables = {
      {"Races Setup",
       {"Races Setup", "种族设定"},
       "CustRaceMast",
       "CustRaceID",
       "CustRaceDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM CustMast WHERE CustRace={0}",
        "SELECT COUNT(*) FROM LoanMast WHERE GuarantorRace={0} OR GuarantorRace2={0}"},
       {"MELAYU", "CINA", "INDIA", "BUMIPUTERA (SABAH/SARAWAK)", "BUKAN WARGANEGARA", "LAIN-LAIN"}},
      {"Area Code",
       {"Area Code Setup", "地区设定"},
       "AreaMast",
       "AreaCode",
       "AreaDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM CustMast WHERE AreaCode={0}"},
       {"PERSONAL", "COMPANY"}},
      {"Salesman ID",
       {"Salesman ID Setup", "业务员设定"},
       "SalesmanMast",
       "SalesmanID",
       "SalesmanName",
       {},
       {"TotAccComm", "TotPayComm"},
       {"SELECT COUNT(*) FROM LoanMast WHERE SalesmanID={0}",
        "SELECT COUNT(*) FROM PaymentMast WHERE SalesmanID={0}"},
       {}},
      {"Advertisement Code",
       {"Advertisement Code Setup", "广告设定"},
       "AdvertiseMast",
       "AdvertiseID",
       "AdvertiseDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM LoanMast WHERE AdvertiseID={0}"},
       {}},
      {"Collection Type",
       {"Collection Type Setup", "收款方式设定"},
       "CollectInfoMast",
       "CollectInfoID",
       "CollectInfoDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM PaymentMast WHERE CollectInfoID={0}"},
       {"CASH", "CHEQUE", "BANK"}},
      {"Loan Repayment",
       {"Loan Repayment Setup", "还款方式设定"},
       "LoanTypeMast",
       "LoanTypeID",
       "LoanTypeDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM LoanMast WHERE LoanTypeID={0}"},
       {}},
      {"Loan Status",
       {"Loan Status Setup", "贷款状态设定"},
       "LoanGroupMast",
       "LoanGroupID",
       "LoanGroupDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM LoanMast WHERE LoanGroupID={0}"},
       {"PINJAMAN SEMASA", "PINJAMAN SELESAI", "DALAM PROSES DAPAT BALIK",
        "DALAM TINDAKAN MAHKAMAH"}},
      {"Follow Up",
       {"Follow Up Setup", "跟进设定"},
       "HisStatusMast",
       "HisStatusID",
       "HisStatusDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM FollowUpMast WHERE HisStatus={0}"},
       {}},
      {"Company Category",
       {"Company Category Setup", "公司类别设定"},
       "CampanyCategory",
       "CompCatCode",
       "CompCatDesc",
       {},
       {},
       {"SELECT COUNT(*) FROM CustMast WHERE CompCatCode={0}"},
       {}},
      {"Cash Book Category",
       {"Cash Book Category Setup", "现金簿类别设定"},
       "CashBookCat",
       "CatCode",
       "CatDesc",
       {},
       {},
       {"SELECT Count(TrxID) FROM PersonalExp WHERE CBCat={0}",
        "SELECT Count(DocID) FROM CashBook WHERE CatCode={0}"},
       {}},
      {"Loan Type",
       {"Loan Type Setup", "贷款种类设定"},
       "GoldTypeMast",
       "GoldID",
       "GoldDesc",
       {},
       {},
       {"SELECT Count(LoanID) FROM LoanMast WHERE LoanPurpose={0}",
        "SELECT Count(LoanID) FROM LoanCollateral WHERE GoldID={0}"},
       {}},
      {"Collateral Type",
       {"Collateral Type Setup", "抵押种类设定"},
       "CollateralMast",
       "CollateralID",
       "CollateralDesc",
       {},
       {},
       {"SELECT Count(LoanID) FROM LoanMast WHERE CollateralID={0}"},
       {}},
      {"Bank Setup",
       {"Bank Setup", "银行设定"},
       "BankMast",
       "BankCode",
       "BankName",
       {},
       {},
       {"SELECT Count(LoanID) FROM LoanMast WHERE Bank={0}",
        "SELECT Count(PayID) FROM PaymentMast WHERE Bank={0}",
        "SELECT Count(SID) FROM DrawDownMast WHERE Bank={0}"},
       {}},
      {"Power of Attorney",
       {"Power of Attorney Setup", "授权书设定"},
       "OwnerMast",
       "OwnerName",
       "OwnerIC",
       {"PANo"},
       {},
       {"SELECT Count(LoanID) FROM LoanMast WHERE OwnerName={0}"},
       {}},
  };
  return tables;
}

const CodeTable* FindCodeTable(std::string_view title) {
  for (const CodeTable& table : CodeTables()) {
    if (SameText(table.title, title)) return &table;
  }
  return nullptr;
}

bool MayDeleteCode(Connection& connection, const CodeTable& table, std::string_view code) {
  if (SameText(code, "NIL")) return false;
  for (const std::string& fixed : table.fixed) {
    if (SameText(code, fixed)) return false;
  }
  return std::all_of(table.in_use.begin(), table.in_use.end(), [&](const std::string& count) {
    return ScalarQuery(connection, fmt::format(fmt::runtime(count), QuoteStr(code))) == "0";
  });
}

bool IsNewLoanTypeCode(std::string_view code) {
  if (code == "MONTH" || code == "WEEK" || code == "DAILY") return true;
  constexpr std::string_view kDays = "DAYS";
  if (!code.ends_with(kDays)) return false;
  const std::string_view number = code.substr(0, code.size() - kDays.size());
  return !number.empty() && number.size() <= 4 &&
         std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; }) &&
         CLng(number) >= 1;
}

}  // namespace kaunter
