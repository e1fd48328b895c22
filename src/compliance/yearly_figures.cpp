// What each figure of the yearly return counts. docs/returns.md tells the same in words.
#include "compliance/yearly_return.h"

namespace kaunter {
namespace {

// Employer, race and income are asked of persons alone: a company has none.
std::string Person(std::string_view condition) {
  return " AND cm.AreaCode='PERSONAL' and " + std::string(condition);
}
std::string Company(std::string_view condition) {
  return " and cm.AreaCode ='COMPANY' and " + std::string(condition);
}
std::string Income(std::string_view from, std::string_view to) {
  std::string condition = "cm.CustCompIncome >= " + std::string(from);
  if (!to.empty()) condition += " and cm.CustCompIncome <= " + std::string(to);
  return Person(condition);
}
std::string Size(std::string_view from, std::string_view to) {
  std::string condition;
  if (!from.empty()) condition += " and {size} >= " + std::string(from);
  if (!to.empty()) condition += " and {size} <= " + std::string(to);
  return condition;
}

constexpr std::string_view kOtherRaces =
    "not cm.CustRace in ('MELAYU','MALAY','CINA','CHINESE','INDIA','INDIAN','BUMIPUTERA "
    "(SABAH/SARAWAK)','BUKAN WARGANEGARA')";

constexpr std::string_view kOtherEmployer =
    "isnull(employer,'') not in ('Government','Private','Own Business','Unemployment','Student')";

}  // namespace

const std::vector<YearlyFigure>& YearlyFigures() {
  using enum FigureKind;
  // clang-format off
  static const std::vector<YearlyFigure> figures = {
      {.place = "field01", .name = {"Loans made", "发放的贷款"}, .kind = amount,
       .condition = "", .because = "lm.LoanType"},
      {.place = "IntAmt", .name = {"Interest of the loans made", "所发放贷款的利息"}, .kind = interest,
       .condition = "", .because = "lm.LoanType"},
      {.place = "", .name = {"Loans made without a customer record", "没有顾客资料的贷款"}, .kind = count,
       .condition = " and cm.CustID is null", .because = "lm.CustID", .without_customer = true},
      {.place = "3A", .name = {"Collected in the period", "期内收款"}, .kind = collected,
       .condition = "", .because = ""},
      {.place = "3B", .name = {"Collected in the period on earlier loans", "期内收回的旧贷款"},
       .kind = collected,
       .condition = "", .because = "", .earlier = true},
      {.place = "field02", .name = {"Secured loans", "有抵押贷款（笔）"}, .kind = count,
       .condition = " AND LoanType='Secured'", .because = "lm.LoanType"},
      {.place = "field03", .name = {"Unsecured loans", "无抵押贷款（笔）"}, .kind = count,
       .condition = " AND LoanType='Unsecured'", .because = "lm.LoanType"},
      {.place = "field04", .name = {"All loans", "全部贷款（笔）"}, .kind = count,
       .condition = "", .because = "lm.LoanType"},
      {.place = "", .name = {"Neither secured nor unsecured", "不属有抵押或无抵押"}, .kind = count,
       .condition = " AND isnull(LoanType,'') not in ('Secured','Unsecured')",
       .because = "lm.LoanType"},
      {.place = "field05", .name = {"Lent to persons", "借给个人"}, .kind = amount,
       .condition = " AND cm.AreaCode='PERSONAL'", .because = "cm.AreaCode"},
      {.place = "field06", .name = {"Lent to companies", "借给公司"}, .kind = amount,
       .condition = " AND cm.AreaCode='COMPANY'", .because = "cm.AreaCode"},
      {.place = "", .name = {"Lent to neither person nor company", "不属个人或公司"}, .kind = count,
       .condition = " AND isnull(cm.AreaCode,'') not in ('PERSONAL','COMPANY')",
       .because = "cm.AreaCode"},
      {.place = "field07", .name = {"Persons: government", "个人：政府"}, .kind = count,
       .condition = Person("employer = 'Government'"), .because = "cm.Employer"},
      {.place = "field08", .name = {"Persons: private sector", "个人：私人界"}, .kind = count,
       .condition = Person("employer = 'Private'"), .because = "cm.Employer"},
      {.place = "field09", .name = {"Persons: own business", "个人：自雇"}, .kind = count,
       .condition = Person("employer = 'Own Business'"), .because = "cm.Employer"},
      {.place = "field10", .name = {"Persons: unemployed and students", "个人：失业及学生"}, .kind = count,
       .condition = Person("(employer = 'Unemployment' or employer = 'Student')"),
       .because = "cm.Employer"},
      {.place = "", .name = {"Persons: another employer", "个人：其他职业"}, .kind = count,
       .condition = Person(kOtherEmployer),
       .because = "cm.Employer"},
      {.place = "field11", .name = {"Loans to Malays", "贷款笔数：马来人"}, .kind = count,
       .condition = Person("(cm.CustRace = 'MELAYU' or cm.CustRace = 'MALAY')"),
       .because = "cm.CustRace"},
      {.place = "field12", .name = {"Loans to Chinese", "贷款笔数：华人"}, .kind = count,
       .condition = Person("(cm.CustRace = 'CINA' or cm.CustRace = 'CHINESE')"),
       .because = "cm.CustRace"},
      {.place = "field13", .name = {"Loans to Indians", "贷款笔数：印度人"}, .kind = count,
       .condition = Person("(cm.CustRace = 'INDIA' or cm.CustRace = 'INDIAN')"),
       .because = "cm.CustRace"},
      {.place = "field14", .name = {"Loans to other races", "贷款笔数：其他种族"}, .kind = count,
       .condition = Person(kOtherRaces), .because = "cm.CustRace"},
      {.place = "2Biv", .name = {"Loans to Bumiputera of Sabah and Sarawak", "贷款笔数：沙巴与砂拉越土著"},
       .kind = count,
       .condition = Person("(cm.CustRace = 'BUMIPUTERA (SABAH/SARAWAK)')"),
       .because = "cm.CustRace"},
      {.place = "2Bvi", .name = {"Loans to persons who are no citizens", "贷款笔数：非公民"}, .kind = count,
       .condition = Person("(cm.CustRace = 'BUKAN WARGANEGARA')"), .because = "cm.CustRace"},
      {.place = "field15", .name = {"Lent to Malays", "贷款额：马来人"}, .kind = amount,
       .condition = Person("(cm.CustRace = 'MELAYU' or cm.CustRace = 'MALAY')"),
       .because = "cm.CustRace"},
      {.place = "field16", .name = {"Lent to Chinese", "贷款额：华人"}, .kind = amount,
       .condition = Person("(cm.CustRace = 'CINA' or cm.CustRace = 'CHINESE')"),
       .because = "cm.CustRace"},
      {.place = "field17", .name = {"Lent to Indians", "贷款额：印度人"}, .kind = amount,
       .condition = Person("(cm.CustRace = 'INDIA' or cm.CustRace = 'INDIAN')"),
       .because = "cm.CustRace"},
      {.place = "field18", .name = {"Lent to other races", "贷款额：其他种族"}, .kind = amount,
       .condition = Person(kOtherRaces), .because = "cm.CustRace"},
      {.place = "2Civ", .name = {"Lent to Bumiputera of Sabah and Sarawak", "贷款额：沙巴与砂拉越土著"},
       .kind = amount,
       .condition = Person("(cm.CustRace = 'BUMIPUTERA (SABAH/SARAWAK)')"),
       .because = "cm.CustRace"},
      {.place = "2Cvi", .name = {"Lent to persons who are no citizens", "贷款额：非公民"}, .kind = amount,
       .condition = Person("(cm.CustRace = 'BUKAN WARGANEGARA')"), .because = "cm.CustRace"},
      {.place = "", .name = {"Persons whose race is not known", "种族不详"}, .kind = count,
       .condition = Person("cm.CustRace is null"), .because = "cm.CustRace"},
      {.place = "field19", .name = {"Monthly income 0 to 500", "月收入 0至500"}, .kind = count,
       .condition = Income("0", "500"), .because = "cm.CustCompIncome"},
      {.place = "field20", .name = {"Monthly income 500.01 to 1,000", "月收入 500.01至1,000"},
       .kind = count,
       .condition = Income("500.01", "1000"), .because = "cm.CustCompIncome"},
      {.place = "field21", .name = {"Monthly income 1,000.01 to 5,000", "月收入 1,000.01至5,000"},
       .kind = count,
       .condition = Income("1000.01", "5000"), .because = "cm.CustCompIncome"},
      {.place = "field22", .name = {"Monthly income 5,000.01 to 10,000", "月收入 5,000.01至10,000"},
       .kind = count,
       .condition = Income("5000.01", "10000"), .because = "cm.CustCompIncome"},
      {.place = "field23", .name = {"Monthly income from 10,000.01", "月收入 10,000.01起"},
       .kind = count,
       .condition = Income("10000.01", ""), .because = "cm.CustCompIncome"},
      {.place = "", .name = {"Monthly income negative or not known", "月收入为负数或不详"}, .kind = count,
       .condition = Person("(cm.CustCompIncome < 0 or cm.CustCompIncome is null)"),
       .because = "cm.CustCompIncome"},
      {.place = "field24", .name = {"Size up to 1,000", "贷款额 up至1,000"}, .kind = count,
       .condition = Size("", "1000"), .because = "{size}", .without_customer = true},
      {.place = "field25", .name = {"Size 1,000.01 to 5,000", "贷款额 1,000.01至5,000"}, .kind = count,
       .condition = Size("1000.01", "5000"), .because = "{size}"},
      {.place = "field26", .name = {"Size 5,000.01 to 10,000", "贷款额 5,000.01至10,000"},
       .kind = count,
       .condition = Size("5000.01", "10000"), .because = "{size}"},
      {.place = "field27", .name = {"Size 10,000.01 to 50,000", "贷款额 10,000.01至50,000"},
       .kind = count,
       .condition = Size("10000.01", "50000"), .because = "{size}"},
      {.place = "field28", .name = {"Size 50,000.01 to 100,000", "贷款额 50,000.01至100,000"},
       .kind = count,
       .condition = Size("50000.01", "100000"), .because = "{size}"},
      {.place = "field29", .name = {"Size 100,000.01 to 1,000,000", "贷款额 100,000.01至1,000,000"},
       .kind = count,
       .condition = Size("100000.01", "1000000"), .because = "{size}"},
      {.place = "field30", .name = {"Size from 1,000,000.01", "贷款额 1,000,000.01起"}, .kind = count,
       .condition = Size("1000000.01", ""), .because = "{size}"},
      {.place = "", .name = {"Loans whose amount or interest is not known", "数额或利息不详的贷款"}, .kind = count,
       .condition = " and lm.LoanAmt+lm.TotLoanInt is null", .because = "{size}"},
      {.place = "field31", .name = {"Lent to Bumiputera companies", "贷款额：土著公司"}, .kind = amount,
       .condition = Company("cm.OldCode='Bumi'"), .because = "cm.OldCode"},
      {.place = "field32", .name = {"Lent to other companies", "贷款额：非土著公司"}, .kind = amount,
       .condition = Company("cm.OldCode='Non Bumi'"), .because = "cm.OldCode"},
      {.place = "field33", .name = {"Lent to foreign companies", "贷款额：外国公司"}, .kind = amount,
       .condition = Company("cm.OldCode='Foreigner'"), .because = "cm.OldCode"},
      {.place = "field34", .name = {"Loans to Bumiputera companies", "贷款笔数：土著公司"}, .kind = count,
       .condition = Company("cm.OldCode='Bumi'"), .because = "cm.OldCode"},
      {.place = "field35", .name = {"Loans to other companies", "贷款笔数：非土著公司"}, .kind = count,
       .condition = Company("cm.OldCode='Non Bumi'"), .because = "cm.OldCode"},
      {.place = "field36", .name = {"Loans to foreign companies", "贷款笔数：外国公司"}, .kind = count,
       .condition = Company("cm.OldCode='Foreigner'"), .because = "cm.OldCode"},
      {.place = "", .name = {"Companies of no known kind", "种类不详的公司"}, .kind = count,
       .condition = Company("isnull(cm.OldCode,'') not in ('Bumi','Non Bumi','Foreigner')"),
       .because = "cm.OldCode"},
  };
  // clang-format on
  return figures;
}

}  // namespace kaunter
