#include "links/sms_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "core/amounts.h"
#include "core/identity.h"
#include "core/values.h"
#include "reports/report_encoding.h"

namespace kaunter {
namespace {

std::string Column(const Recordset& row, std::string_view column) {
  return NullToEmpty(row.Field(column));
}

std::string AndEquals(std::string_view column, const std::string& text) {
  return text.empty() ? "" : fmt::format(" AND {}={}", column, QuoteStr(text));
}

// When somebody was registered.
std::string AndRegistered(std::string_view column, const SmsChoice& choice) {
  std::string condition;
  if (!choice.DateFrom.empty()) {
    condition += fmt::format(" AND {} >= {}", column, SqlDate(choice.DateFrom));
  }
  if (!choice.DateTo.empty()) {
    const DateTime day = DateTime::FromDisplay(choice.DateTo).value().AddDays(1);
    condition += fmt::format(" AND {} < {}", column, SqlDate(day));
  }
  return condition;
}

SmsRow Person(const std::string& id, const std::string& name, const std::string& number) {
  SmsRow row;
  row.CustID = id;
  row.CustName = name;
  row.given = number;
  row.HP = NormaliseMobile(number);
  return row;
}

void TakeCompany(SmsRow& row, const Recordset& from) {
  row.CompCode = Column(from, "CompCode");
  row.Area = Column(from, "AreaCode");
  row.Tel = Column(from, "Tel1");
  row.CompHP = Column(from, "HP1");
}

// --- loans

constexpr std::string_view kLoanColumns =
    "c.custHP1,c.custname,l.compcode,c.custid,c.custname,l.loangroupid,l.nextduedate,l.DragLoan,"
    "l.LoanTypeID,l.LoanBal,l.NextDueDate,l.LoanAmt,l.TrxDate,l.InstallmentAmt,l.InsRate,"
    "p.AreaCode,p.Tel1,p.HP1";

// The two kinds of loan go by other words here than on the loan screen; they are wanted so.
std::string Collateral(const std::string& loan_type) {
  if (loan_type == "Secured") return " AND l.LoanType='Collateral'";
  if (loan_type == "Unsecured") return " AND l.LoanType='Non Collateral'";
  return "";
}

std::string DueStatement(const SmsChoice& choice) {
  const std::string from = choice.DateFrom.empty()
                               ? ""
                               : fmt::format("and s.DueDate >= {} AND ", SqlDate(choice.DateFrom));
  return fmt::format(
      "select s.loanid,sum(s.payableamt-s.payment) as DueAmt, sum(s.DragInt-s.DragIntPaid) as "
      "DueInt,{0} from ((schmast as s inner join loanmast as l on l.loanid=s.loanid) inner join "
      "custmast as c on l.custid=c.custid) inner join CompMast as p on p.CompCode=l.CompCode where "
      "s.payableamt-s.payment > 0 and c.custHP1 <> '' {1}s.DueDate <= {2}{3}{4}{5} group by "
      "s.loanid,{0} order by s.loanid",
      kLoanColumns, from.empty() ? "and " : from, SqlDate(choice.DateTo),
      AndEquals("l.CompCode", choice.CompCode), AndEquals("l.LoanGroupID", choice.LoanStatus),
      Collateral(choice.LoanType2));
}

Money DueAmount(const Recordset& row, const SmsChoice& choice) {
  const std::string flexi = Column(row, "DragLoan");
  if (flexi.empty() || flexi == "0") return Sen(row, "DueAmt");
  if (!choice.all_interest) return Sen(row, "LoanBal");
  RunningInterest loan;
  loan.LoanTypeID = Column(row, "LoanTypeID");
  loan.InsRate = Money::TryText(Column(row, "InsRate")).value_or(Money());
  loan.LoanBal = Sen(row, "LoanBal");
  loan.DueInt = Sen(row, "DueInt");
  loan.next_due = row.Field("NextDueDate").AsDate();
  return InterestUntil(loan, DateTime::FromDisplay(choice.DateTo).value());
}

std::vector<SmsRow> DueLoans(Connection& main, const SmsChoice& choice) {
  std::vector<SmsRow> rows;
  for (Recordset loan = main.Query(DueStatement(choice)); !loan.Eof(); loan.MoveNext()) {
    SmsRow row = Person(Column(loan, "CustID"), Column(loan, "CustName"), Column(loan, "CustHP1"));
    TakeCompany(row, loan);
    row.LoanID = Column(loan, "LoanID");
    row.Status = Column(loan, "LoanGroupID");
    row.DueDate = ShowDate(loan.Field("NextDueDate"));
    row.DueAmt = Format(DueAmount(loan, choice), "#,##0.00");
    row.LoanAmt = ShowMoney(loan.Field("LoanAmt"));
    row.LoanDate = ShowDate(loan.Field("TrxDate"));
    row.InstallmentAmt = ShowMoney(loan.Field("InstallmentAmt"));
    row.LoanBal = ShowMoney(loan.Field("LoanBal"));
    rows.push_back(std::move(row));
  }
  return rows;
}

// --- customers

std::string Birthday(const Value& date) {
  return date.AsDate() == nullptr ? "" : Format(*date.AsDate(), "d mmmm");
}

// A customer with several loans is there several times.
std::string SettledStatement(const SmsChoice& choice) {
  return "SELECT c.CustID,p.AreaCode,c.CustName,c.custHP1,c.DOB,p.Tel1,p.HP1,l.CompCode FROM "
         "CustMast as c inner join CompMast as p on p.CompCode=c.CompCode INNER JOIN LoanMast as l "
         "on l.CustID=c.CustID WHERE c.CustStatus='ACTIVE' AND c.TotLoanBal=0 AND c.TotLoan <> 0 " +
         AndEquals("l.CompCode", choice.CompCode) + AndRegistered("c.TrxDate", choice);
}

std::string CustomerStatement(const SmsChoice& choice) {
  return "SELECT l.CustID,p.AreaCode,l.CustName,l.CustHP1,l.DOB,p.Tel1,p.HP1,l.CompCode FROM "
         "CustMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1 " +
         AndEquals("l.CompCode", choice.CompCode) + AndEquals("l.CustStatus", choice.CustStatus) +
         AndEquals("l.CustRace", choice.CustRace) +
         (choice.MMonth.empty() ? "" : " AND DateName(month,DOB) = " + QuoteStr(choice.MMonth)) +
         AndRegistered("l.TrxDate", choice);
}

std::vector<SmsRow> Customers(Connection& main, const std::string& statement) {
  std::vector<SmsRow> rows;
  for (Recordset one = main.Query(statement); !one.Eof(); one.MoveNext()) {
    SmsRow row = Person(Column(one, "CustID"), Column(one, "CustName"), Column(one, "CustHP1"));
    TakeCompany(row, one);
    row.DOB = Birthday(one.Field("DOB"));
    rows.push_back(std::move(row));
  }
  return rows;
}

// --- staff

std::vector<SmsRow> Staff(Connection& main, const SmsChoice& choice) {
  std::vector<SmsRow> rows;
  for (Recordset one = main.Query(
           "SELECT l.UserID,p.AreaCode,l.UserName,l.UserHP1,l.UserLevel,p.Tel1,p.HP1,l.CompCode "
           "FROM UserMast as l inner join CompMast as p on p.CompCode=l.CompCode WHERE 1=1 " +
           AndEquals("l.CompCode", choice.CompCode) + AndEquals("l.UserLevel", choice.UserLevel) +
           AndRegistered("l.DateCreated", choice));
       !one.Eof(); one.MoveNext()) {
    SmsRow row = Person(Column(one, "UserID"), Column(one, "UserName"), Column(one, "UserHP1"));
    TakeCompany(row, one);
    row.Status = Column(one, "UserLevel");
    row.Staff = row.CustName;
    rows.push_back(std::move(row));
  }
  return rows;
}

// --- a file of numbers, a line each: the number, and perhaps a name behind a comma, a semicolon or
// a tab

constexpr std::uintmax_t kLargestFile = 5'000'000;

std::string WholeFile(const std::string& name) {
  const std::filesystem::path path(name);
  std::error_code unreadable;
  const std::uintmax_t size = std::filesystem::file_size(path, unreadable);
  if (unreadable) throw std::runtime_error(name + ": " + unreadable.message());
  if (size > kLargestFile) throw std::runtime_error(name + ": > 5 MB");
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (file && size > 0) text << file.rdbuf();
  if (!file || !text) throw std::runtime_error(name);
  return text.str();
}

std::vector<SmsRow> Listed(Connection& main, const SmsChoice& choice) {
  const Recordset company =
      main.Query("SELECT CompCode,AreaCode,Tel1,HP1 FROM CompMast WHERE CompCode=" +
                 QuoteStr(choice.CompCode));
  std::vector<SmsRow> rows;
  std::istringstream lines(Utf8Text(WholeFile(choice.TextFileName), choice.TextFileName));
  for (std::string line; std::getline(lines, line);) {
    std::erase(line, '\r');
    if (Trim(line).empty()) continue;
    const std::size_t mark = line.find_first_of(",;\t");
    const std::string name =
        mark == std::string::npos ? "" : Trim(std::string_view(line).substr(mark + 1));
    SmsRow row = Person("", name, Trim(std::string_view(line).substr(0, mark)));
    if (!company.Eof()) TakeCompany(row, company);
    rows.push_back(std::move(row));
  }
  return rows;
}

// Months by which `to` can go back, one by one, with the day still on or behind `from`.
int MonthsBack(const DateTime& from, DateTime to) {
  int months = 0;
  for (to = to.AddMonths(-1); to >= from; to = to.AddMonths(-1)) ++months;
  return months;
}

// The days of a step: those of "14DAYS" stand before its last four letters.
double StepDays(const std::string& loan_type) {
  if (SameText(loan_type, "WEEK")) return 7;
  if (SameText(loan_type, "DAILY")) return 1;
  constexpr std::size_t kDays = 4;
  const std::string days =
      loan_type.substr(0, loan_type.size() - std::min(loan_type.size(), kDays));
  return IsNumeric(days) ? CDbl(days) : 0;
}

}  // namespace

std::vector<SmsRow> ReadSmsRows(Connection& main, const SmsChoice& choice) {
  switch (choice.type) {
    case SmsType::outstanding_due:
      return DueLoans(main, choice);
    case SmsType::full_settled:
      return Customers(main, SettledStatement(choice));
    case SmsType::other:
      return Customers(main, CustomerStatement(choice));
    case SmsType::staff:
      return Staff(main, choice);
    case SmsType::text_file:
      return Listed(main, choice);
    case SmsType::resend:
      break;
  }
  throw std::logic_error("rows of the queue are read from the queue");
}

SmsValues ValuesOf(const SmsRow& row, const std::string& company, const DateTime& now,
                   const std::string& staff) {
  return {row.CustName,
          row.LoanID,
          row.DueDate,
          row.DueAmt,
          row.LoanAmt,
          row.LoanDate,
          row.InstallmentAmt,
          row.LoanBal,
          company,
          std::to_string(now.day),
          std::to_string(now.month),
          std::to_string(now.year),
          Format(now, "dd-mm-yyyy"),
          row.Staff.empty() ? staff : row.Staff,
          row.DOB,
          row.Tel,
          row.CompHP};
}

Money InterestUntil(const RunningInterest& loan, const DateTime& to) {
  std::int64_t periods = 1;
  if (loan.next_due != nullptr) {
    if (SameText(loan.LoanTypeID, "MONTH")) {
      periods += MonthsBack(loan.next_due->DateOnly(), to);
    } else if (const double step = StepDays(loan.LoanTypeID); step > 0) {
      const int days = to.DayNumber() - loan.next_due->DayNumber();
      // Through the text of two decimals: 6.996 steps are seven.
      periods = static_cast<std::int64_t>(Fix(CDbl(Format(days / step, "#0.00")) + 1));
    }
  }
  const Money rate = Money::FromDouble(loan.InsRate.ToDouble() / 100);
  return periods * (rate * loan.LoanBal) + loan.DueInt;
}

}  // namespace kaunter
