// An office with everything that a report may read, and the check that a report file holds: what it
// prints is counted and added up, and compared with plain statements over the same tables.
//
// The rows are written straight into the tables and meet each other in awkward ways on purpose: a
// salesman who has left, a loan whose customer belongs to another company, customers without loans,
// loans that are settled, lost or not paid out, payments that were struck out, dates on both sides
// of today (31-01-2024) and of the year's end.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <sstream>

#include "core/report_path.h"
#include "core/schema_text.h"
#include "reporting/report_criteria.h"
#include "reporting/report_selection.h"
#include "reports/report_csv.h"
#include "reports/run_report.h"
#include "reports/text_width.h"
#include "tests/reporting/staged_office.h"
#include "tests/support/places.h"

namespace kaunter {

struct ReportOffice : StagedOffice {
  ReportOffice() {
    Run("UPDATE CompanyProfile SET CompanyName='Kaunter Holdings Sdn Bhd'");
    Run("UPDATE CompMast SET CompNo='200101012345', LicenseNo='WL2101', Address='1, Jalan Satu' "
        "WHERE CompCode='HQ'");
    Rows("SalesmanMast (SalesmanID,SalesmanName,TotAccComm,TotPayComm)",
         {"'SAM','Samuel Goh',320.50,100", "'SUE','Suzanna binti Ahmad',75,0"});
    Rows("BankMast (BankCode,BankName)", {"'MBB','Maybank'", "'CIMB','CIMB Bank'"});
    Rows("AdvertiseMast (AdvertiseID,AdvertiseDesc)", {"'FRIEND','A friend told'"});
    Rows("CollateralMast (CollateralID,CollateralDesc)", {"'CAR','Motor vehicle'"});
    Rows("CampanyCategory (CompCatCode,CompCatDesc)", {"'FACT','Factory'"});
    Rows("HisStatusMast (HisStatusID,HisStatusDesc)", {"'PROMISE','Promises to pay'"});
    Rows("UserMast (UserID,UserName,UserLevel)", {"'BOB','Bob Lee','1'", "'EVE','Eve Ong','2'"});
    Customers();
    Loans();
    Schedules();
    Payments();
    Charges();
    Books();
  }

  // Further rows of a table; each text is the values of one row.
  void Rows(const std::string& table, std::initializer_list<const char*> rows) {
    for (const char* row : rows) Run(fmt::format("INSERT INTO {} VALUES ({})", table, row));
  }
  using StagedOffice::Rows;

  // The audit of the office, a database of its own.
  Connection& logs() {
    if (session().LogsConn == nullptr) {
      Run("INSERT INTO Systemast (Param,Value) VALUES ('TransLogs','1')");
      office.Connect();
      session().LogsConn->Execute("DELETE FROM TransLogs");
      for (const char* row :
           {"'2024-01-30 09:15:00','AMY','Amy','HQ','Create','Loan','L1','LoanAmt: 5,000.00'",
            "'2024-01-30 17:45:00','BOB','Bob Lee','KL','Delete','Payment','P5','PayAmt: 20.00'",
            "'2024-01-31 08:00:00','BOB','Bob Lee','KL','Log In','User','BOB',''"}) {
        session().LogsConn->Execute(fmt::format(
            "INSERT INTO TransLogs (TrxDate,UserID,UserName,ConmpCode,Type,Module,TrxID,Remarks) "
            "VALUES ({})",
            row));
      }
    }
    return *session().LogsConn;
  }

  // The queue of short messages, another one.
  Connection& sms() {
    if (session().smsconn == nullptr) {
      session().smsconn =
          OpenSqlite("smsconn", office.folder.File("sms.db"), true, session().clock);
      RunScript(*session().smsconn, SchemaText("sms"));
      for (const char* row :
           {"'C1','Chan','L1','HQ','60121','Dear Chan, it is due','DONE','AMY','2024-01-30 09:00'",
            "'C2','Adam','L2','HQ','60122','你好','FAIL','BOB','2024-01-30 23:59:59'",
            "'C1','Chan','L1','KL','60121','Thank you','READ','BOB','2024-01-31 00:00'",
            "'C3','Eve','','HQ','60123','Waits','READY','AMY',NULL"}) {
        session().smsconn->Execute(fmt::format(
            "INSERT INTO SMSList (CustID,CustName,LoanID,CompCode,HP,SMSMsg,SMSStatus,UserID,"
            "DateSent) VALUES ({})",
            row));
      }
    }
    return *session().smsconn;
  }

  // The database that a report reads.
  Connection& Of(std::string_view file) {
    return file.starts_with("AuditLogs") ? logs() : file.starts_with("SMS") ? sms() : main();
  }

 private:
  void Customers() {
    Run("UPDATE CustMast SET TrxDate='2023-01-10', CustRace='CINA', CustNIC='700101-10-5567', "
        "CustStatus='ACTIVE', CustHP1='012-2145567', OldCode='A1', CustAdd1='12, Jalan Dua', "
        "DateCreated='2023-01-10' WHERE CustID='C1'");
    Rows(
        "CustMast (CustID,CompCode,TrxDate,CustName,CustRace,CustNIC,CustStatus,AreaCode,"
        "CompCatCode,CustHP1,OldCode)",
        {"'C2','HQ','2023-05-02','Muhammad Hafizuddin bin Abdul Rahman @ Adam','MELAYU',"
         "'850505-14-5331','ACTIVE','PERSONAL','FACT','019-3345566','A2'",
         "'C3','KL','2023-12-31','Syarikat Pembinaan Maju Jaya Sdn Bhd','LAIN-LAIN','',"
         "'BAD DEBT','COMPANY','FACT','','B1'",
         "'C4','KL','2024-01-31',N'陈美玲','CINA','900909-08-5224','BLACKLIST','PERSONAL','','','"
         "'"});
    Rows(
        "RefererMast (CustID,RefererName,RefererNIC,RefererRelationship,RefererComp,"
        "RefererCompIncome,RefererHP1)",
        {"'C1','Tan Ah Lek','680202-10-5111','BROTHER','Kedai Kopi Ah Lek',2500.50,'016-2221111'",
         "'C1','Lim Bee Hoon','720303-10-5222','WIFE','',0,''",
         "'C3','Rajendran a/l Muthusamy','650404-07-5333','DIRECTOR','Maju Jaya',9800,'012-7778'"});
  }

  void Loans() {
    const std::string columns =
        "LoanMast "
        "(LoanID,CustID,CompCode,TrxDate,DateCreated,LoanAmt,LoanAmt2,PayOutAmt,TotLoanInt,"
        "LoanBal,InsRate,LoanTerm,LoanTypeID,LoanType,DragLoan,InstallmentAmt,NextDueDate,"
        "LoanGroupID,LoanStatus,SalesmanID,SalesmanComm,AdvertiseID,Bank,CollateralID,UserID,"
        "AMLACode,AMLADesc,TotPay,TotInt,TotCollectorAmt,LastPaymentDate,OldLoanCode,AgreementNo,"
        "ProcessFee,DepositAmt,TopUpAmt,TotDiscAmt,TotCharge)";
    Rows(columns,
         {// Running, one instalment paid, one overdue.
          "'L1','C1','HQ','2023-11-05','2023-11-06 10:00:00',5000,6000,4800,900,3933.33,12,'3',"
          "'MONTH','Unsecured','0',1966.67,'2024-01-05','PINJAMAN SEMASA','ACTIVE','SAM',50,"
          "'FRIEND','MBB','NIL','AMY','','',1966.67,25,10,'2023-12-05','A-1','AG1',100,50,0,0,0",
          // A large secured one, flexi, with a reason of the law against money laundering.
          "'L2','C2','HQ','2023-12-15','2023-12-15 12:00:00',60000,60000,60000,3600,60000,18,'12',"
          "'MONTH','Secured','1',900,'2024-01-31','PINJAMAN SEMASA','ACTIVE','SUE',120.5,'NIL',"
          "'CIMB','CAR','BOB','LARGE','Amount above the threshold',1800,0,0,'2024-01-15','A-2',"
          "'AG2',0,0,500,0,35.5",
          // Settled.
          "'L3','C3','KL','2023-02-01','2023-02-01 09:00:00',1200,1200,1200,120,0,10,'2','WEEK',"
          "'Unsecured','0',660,'2023-02-15','PINJAMAN SELESAI','ACTIVE','SAM',0,'NIL','MBB','NIL',"
          "'BOB','','',1260,0,0,'2023-02-15','B-1','AG3',0,0,0,5,0",
          // Lost; its company is not the customer's.
          "'L4','C3','HQ','2022-06-01','2022-06-01 09:00:00',8000,8000,8000,800,7400,10,'10',"
          "'MONTH','Secured','0',880,'2022-08-01','DALAM TINDAKAN MAHKAMAH','ACTIVE','GONE',10,"
          "'NIL','','CAR','AMY','','',1400,310.25,0,'2022-07-04','B-2','',0,0,0,0,0",
          // Made today, nothing paid out, no salesman.
          "'L5','C4','KL','2024-01-31','2024-01-31 08:30:00',3000,3500,0,300,3300,10,'3','DAILY',"
          "'Unsecured','0',1100,'2024-02-29','PINJAMAN SEMASA','ACTIVE','',0,'FRIEND','CASH','',"
          "'EVE','','',0,0,0,NULL,'','',0,0,0,0,0"});
    Run("UPDATE LoanMast SET GuarantorName='Wong Siew Mei',GuarantorNIC='810101-10-5432',"
        "GuarantorHP1='012-9988776',GuarantorRelationship='SISTER',GuarantorName2='Ganesan a/l "
        "Subramaniam',GuarantorNIC2='790909-08-5777',GuarantorRelationship2='FRIEND' WHERE "
        "LoanID='L2'");
    Run("UPDATE LoanMast SET GuarantorName='Zulkifli bin Hassan',GuarantorNIC='750505-03-5111' "
        "WHERE LoanID='L4'");
    Run("UPDATE LoanMast SET Memo2='Toyota Vios WXY 1234',Memo4=45000,PropertyAdd1='Lot 7, Jalan "
        "Kilang',ValuerName='Jurunilai Bersatu' WHERE LoanID='L2'");
    Run("UPDATE LoanMast SET PayExtra=60 WHERE LoanID='L3'");
    Run("UPDATE LoanMast SET NextCall='2024-02-02' WHERE LoanID='L1'");
  }

  void Schedules() {
    for (const char* table : {"SchMast", "SchMast2"}) {
      Rows(fmt::format("{} (SchID,LoanID,CustID,DueDate,PayableAmt,CapitalAmt,InterestAmt,LoanBal)",
                       table),
           {"1,'L1','C1','2023-12-05',1966.67,1666.67,300,3933.33",
            "2,'L1','C1','2024-01-05',1966.67,1666.67,300,1966.66",
            "3,'L1','C1','2024-02-05',1966.66,1666.66,300,0",
            "1,'L2','C2','2024-01-15',900,0,900,60000", "2,'L2','C2','2024-01-31',900,0,900,60000",
            "3,'L2','C2','2024-03-15',60900,60000,900,0", "1,'L3','C3','2023-02-08',660,600,60,660",
            "2,'L3','C3','2023-02-15',660,600,60,0", "1,'L4','C3','2022-07-01',880,800,80,7920",
            "2,'L4','C3','2022-08-01',880,800,80,7040", "3,'L4','C3','2022-09-01',7040,6400,640,0",
            "1,'L5','C4','2024-02-29',1100,1000,100,2200",
            "2,'L5','C4','2024-03-31',2200,2000,200,0"});
    }
    Run("UPDATE SchMast SET Payment=1966.67,CapitalPayment=1666.67,InterestPayment=300 WHERE "
        "LoanID='L1' AND SchID=1");
    Run("UPDATE SchMast SET Payment=900,InterestPayment=900 WHERE LoanID='L2' AND SchID=1");
    Run("UPDATE SchMast SET Payment=660,CapitalPayment=600,InterestPayment=60 WHERE LoanID='L3'");
    Run("UPDATE SchMast SET Payment=880,CapitalPayment=800,InterestPayment=80 WHERE LoanID='L4' "
        "AND SchID=1");
    Run("UPDATE SchMast SET Payment=520,CapitalPayment=480,InterestPayment=40,LateInt=310.25 WHERE "
        "LoanID='L4' AND SchID=2");
    Run("UPDATE SchMast SET IntAmt=25,DragInt=10 WHERE LoanID='L1' AND SchID=2");
    Rows("PaymentList (LoanID,SeqNo,DueDate,PayDate,PayAmt,PayID)",
         {"'L1',1,'2023-12-05','2023-12-05',1966.67,'P1'", "'L1',2,'2024-01-05',NULL,1966.67,''"});
  }

  void Payments() {
    const std::string columns =
        "PaymentMast (PayID,LoanID,CustID,SchID,CompCode,PayDate,DateCreated,CollectInfoID,PayAmt,"
        "InstalAmt,PayExtra,IntAmt,ChargeAmt,CollectorAmt,DiscAmt,IntPay,CapPay,Bank,ChqNo,"
        "ReceiptNo,OldLoanBal,NewLoanBal,PaymentStatus,UserID,Memo1,SalesmanID,SalesmanComm,"
        "NextDueDate,AMLACode,AMLADesc)";
    Rows(columns,
         {"'P1','L1','C1',1,'HQ','2023-12-05','2023-12-05 10:00:00','CASH',1966.67,1966.67,0,15,0,"
          "5,1.5,300,1666.67,'CASH','','R1',5900,3933.33,'ACTIVE','BOB','','SAM',10,'2024-01-05',"
          "'',''",
          "'P2','L2','C2',1,'HQ','2024-01-15','2024-01-15 10:00:00','CHEQUE',900,900,0,0,20,0,0,"
          "900,0,'MBB','123456','R2',60000,60000,'ACTIVE','AMY','Cheque of her husband','SUE',"
          "12.25,'2024-01-31','LARGE','Above the threshold'",
          "'P3','L3','C3',1,'KL','2023-02-08','2023-02-08 10:00:00','BANK',660,660,0,0,0,0,0,60,"
          "600,'CIMB','TT1','R3',1320,660,'ACTIVE','BOB','','SAM',0,'2023-02-15','',''",
          "'P4','L3','C3',2,'KL','2023-02-15','2023-02-16 10:00:00','CASH',660,600,60,0,0,0,5,60,"
          "600,'CASH','','R4',660,0,'ACTIVE','BOB','Settlement','SAM',0,NULL,'',''",
          "'P5','L4','C3',1,'HQ','2022-07-04','2022-07-04 10:00:00','CASH',1400,1400,0,100.25,30,"
          "0,0,120,1280,'CASH','','R5',8800,7400,'ACTIVE','AMY','','',0,'2022-08-01','',''",
          // Struck out: a cheque that came back.
          "'P6','L2','C2',2,'HQ','2024-01-31','2024-01-31 09:00:00','CHEQUE',900,900,0,0,0,0,0,"
          "900,0,'MBB','123457','R6',60000,60000,'VOID','AMY','','SUE',0,'2024-01-31','',''"});
  }

  void Charges() {
    Rows(
        "ChargeMast (ChargeID,TrxDate,LoanID,CustID,CompCode,DueDate,ChargeAmt,LateAmt,LateInt,"
        "ChargeDesc,UserID,DateCreated,PType,BatchDate)",
        {"'I1','2024-01-10','L1','C1','HQ','2024-01-05',25,1966.67,25,'Late interest','AMY',"
         "'2024-01-10','Batch','2024-01-10'",
         "'I2','2024-01-12','L2','C2','HQ','2024-01-31',35.50,0,0,'Visit to the workshop','AMY',"
         "'2024-01-12','Invoice','2024-01-12'",
         "'N1','2024-01-20','L2','C2','HQ','2024-01-31',-10,0,0,'Goodwill','BOB','2024-01-20',"
         "'Credit Note','2024-01-20'",
         "'Y1','2024-01-21','L2','C2','HQ','2024-01-31',-20,0,0,'Paid','BOB','2024-01-21',"
         "'Payment','2024-01-21'",
         "'B1','2023-02-10','L3','C3','KL','2023-02-08',4.75,660,4.75,'Interest','BOB',"
         "'2023-02-10','Batch Loan Interest','2023-02-10'"});
    Rows("DrawDownMast (SID,LoanID,CustID,TrxDate,CompCode,DrawDownAmt,Bank,ChqNo,UserID)",
         {"'D1','L1','C1','2023-11-05','HQ',4800,'MBB','C100','AMY'",
          "'D2','L2','C2','2023-12-15','HQ',60000,'CIMB','C200','BOB'",
          "'D3','L3','C3','2023-02-01','KL',1200,'CASH','','BOB'",
          "'D4','L4','C3','2022-06-01','HQ',8000,'CASH','','AMY'"});
    Rows("ChqMast (LoanID,SeqNo,ChqNo,ChqDate,ChqBank,ChqAmt,PayID,PayDate,ChqStatus)",
         {"'L2',1,'123456','2024-01-15','MBB',900,'P2','2024-01-15','PAID'",
          "'L2',2,'123457','2024-01-31','MBB',900,'P6','2024-01-31','RETURN'",
          "'L2',3,'123458','2024-03-15','MBB',900,'',NULL,''",
          "'L5',1,'777001','2024-02-29','PBB',1100.45,'',NULL,''"});
  }

  void Books() {
    Rows("PersonalExp (CompCode,UserID,TrxDate,CreatedDate,TrxDesc,DebitAmt,CreditAmt,CBCat,Bank)",
         {"'HQ','EVE','2024-01-03','2024-01-04 10:00:00','Rent of the office',0,1800,'LOAN',"
          "'MBB'",
          "'HQ','AMY','2024-01-20','2024-01-20 10:00:00','Scrap sold',45.20,0,'PAYMENT','CASH'",
          "'KL','EVE','2023-12-28','2024-01-02 10:00:00','Electricity',0,212.35,'LOAN',''"});
    Rows(
        "CashBook (CompCode,TranDate,TranType,TranDesc,TranMemo,TranAmt,CashBal,BankBal,CBType,"
        "CatCode)",
        {"'HQ','2024-01-02','Cash In','Opening','',10000,10000,0,'','PAYMENT'",
         "'HQ','2024-01-03','Bank In','Deposit','',2500.75,10000,2500.75,'','PAYMENT'",
         "'HQ','2024-01-05','Cash Out','Loan L1','A-1',4800,5200,2500.75,'','LOAN'",
         "'KL','2024-01-05','Bank Out','Loan L3','B-1',1200,0,-1200,'','LOAN'"});
    Rows(
        "FollowUpMast (HisDate,HisTime,LoanID,HisStatus,HisRemarks,NextCall,UserID,DateCreated)",
        {"'2024-01-12','10:30','L1','PROMISE','Will pay on Friday','2024-02-02','BOB','2024-01-12'",
         "'2024-01-20','09:00','L1','NIL','No answer',NULL,'BOB','2024-01-20'",
         "'2022-09-10','15:00','L4','PROMISE','Sold the lorry',NULL,'AMY','2022-09-10'"});
  }
};

// --- what a report printed

// One text of a CSV file; a quoted one may hold commas, quotes and line ends.
inline std::vector<std::vector<std::string>> CsvRows(const std::string& csv) {
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> row;
  std::string cell;
  bool quoted = false;
  const std::string_view mark = "\xEF\xBB\xBF";  // UTF-8 begins so
  for (std::size_t i = csv.starts_with(mark) ? mark.size() : 0; i < csv.size(); ++i) {
    const char c = csv[i];
    if (quoted) {
      if (c != '"')
        cell += c;
      else if (i + 1 < csv.size() && csv[i + 1] == '"')
        cell += csv[++i];
      else
        quoted = false;
    } else if (c == '"') {
      quoted = true;
    } else if (c == ',' || c == '\n') {
      row.push_back(cell);
      cell.clear();
      if (c == '\n') rows.push_back(std::exchange(row, {}));
    } else if (c != '\r') {
      cell += c;
    }
  }
  return rows;
}

// A statement, or the figures that it would work out: "1966.67 + 900".
struct ReportSum {
  std::string column;  // of the report's query, as its column line names it
  std::string sql;     // what it adds up to
};

inline const std::vector<std::string> kPlain = {"RptID;False;True"};
inline const std::vector<std::string> kSpecial = {"RptID;True;True"};

struct ReportExpectation {
  std::string file;  // "LoanMastList.rpt"
  std::vector<ReportSum> sums;
  std::string count = {};    // of the rows; "" when it is told elsewhere
  std::string formula = {};  // "" for no condition
  std::vector<std::string> parameters = kPlain;
  std::string twin = {};  // the Chinese name when it is not <name>C.rpt; "-" for none
};

inline ReportExpectation Row(const std::string& file, std::vector<ReportSum> sums = {},
                             const std::string& count = {}, const std::string& formula = {},
                             std::vector<std::string> parameters = kPlain,
                             const std::string& twin = {}) {
  return {file, std::move(sums), count, formula, std::move(parameters), twin};
}

// A loan report's condition as ReportFrm builds it, from dates of dd-mm-yyyy and the values chosen
// in lists: "LoanMast.CompCode=HQ|KL; CustMast.AreaCode=PERSONAL".
inline std::string FormulaOf(const std::string& date_field, const std::string& from,
                             const std::string& to, const std::string& lists = {},
                             const std::string& file = "LoanMastList.rpt") {
  SelectionRequest request;
  request.file = file;
  request.DateField = date_field;
  request.DateFrom = from;
  request.DateTo = to;
  std::istringstream each(lists);
  for (std::string list; std::getline(each >> std::ws, list, ';');) {
    const std::size_t is = list.find('=');
    request.filters.push_back({"List", "{" + list.substr(0, is) + "}", {}});
    std::istringstream values(list.substr(is + 1));
    for (std::string value; std::getline(values, value, '|');) {
      request.filters.back().values.push_back(value);
    }
  }
  request.level = 4;
  return BuildSelectionFormula(request)->formula;
}

class ReportCheck {
 public:
  explicit ReportCheck(ReportOffice& office) : office_(office), over_(&office.main()) {}
  // Reads another database from now on: the audit's.
  void Over(Connection& connection) { over_ = &connection; }

  // The file gives as many rows as counted and the sums told, can be laid out with nothing cut,
  // and its Chinese paper holds the same figures under Chinese captions.
  void Expect(const ReportExpectation& expected) {
    SCOPED_TRACE(expected.file + "  " + expected.formula);
    ReportJob job;
    job.Connect = over_;
    job.SelectionFormula = expected.formula;
    job.ReportTitle = "From 01-01-2024 to 31-01-2024";
    for (std::size_t i = 0; i < expected.parameters.size(); ++i) {
      job.ParameterFields[static_cast<int>(i)] = expected.parameters[i];
    }
    job.ReportFileName = PathOf(expected.file);
    ASSERT_TRUE(std::filesystem::exists(job.ReportFileName)) << job.ReportFileName;
    const std::string english = ExpectPaper(job, expected);
    std::string twin = expected.twin;
    if (twin == "-") return;
    if (twin.empty()) twin = expected.file.substr(0, expected.file.size() - 4) + "C.rpt";
    job.ReportFileName = PathOf(twin);
    SCOPED_TRACE(twin);
    EXPECT_NE(english, ExpectPaper(job, expected)) << "the Chinese paper has English captions";
  }

 private:
  static std::string PathOf(const std::string& file) {
    return test::SourceDir() + "/reports/" + file;
  }

  // Gives the headings.
  std::string ExpectPaper(const ReportJob& job, const ReportExpectation& expected) {
    try {
      const ReportRun run = RunWholeReport(job);
      ExpectFigures(run, expected);
      if (!OfNoCompany(expected.file)) ExpectCompaniesApart(job, run.rows.RowCount());
      ExpectWhole(run.document);
      std::string headings = run.file.title;
      for (const ReportColumn& column : run.file.columns) headings += "|" + column.heading;
      return headings;
    } catch (const std::exception& fault) {
      ADD_FAILURE() << fault.what();
      return {};
    }
  }

  void ExpectFigures(const ReportRun& run, const ReportExpectation& expected) {
    const auto rows = CsvRows(ReportToCsv(run));
    if (!expected.count.empty()) {
      // A summary has a row a group.
      const std::size_t count = run.file.summary ? run.rows.RowCount() : rows.size() - 1;
      EXPECT_EQ(std::to_string(count), WorkedOut(expected.count));
    }
    const auto& columns = run.file.columns;
    // The columns of the table stand behind the keys of its groups.
    const std::size_t keys = columns.empty() ? 0 : rows[0].size() - columns.size();
    for (const ReportSum& sum : expected.sums) {
      std::size_t at = keys;
      while (at < rows[0].size() &&
             !SameText(columns.empty() ? rows[0][at] : columns[at - keys].field, sum.column)) {
        ++at;
      }
      ASSERT_LT(at, rows[0].size()) << "no column " << sum.column;
      Money total;
      for (std::size_t row = 1; row < rows.size(); ++row) {
        if (!rows[row][at].empty()) total += Money::FromText(rows[row][at]);
      }
      EXPECT_EQ(total, Money::FromText(WorkedOut(sum.sql))) << sum.column;
    }
  }

  std::string WorkedOut(const std::string& sql) const {
    return ScalarQuery(*over_, sql.starts_with("SELECT") ? sql : "SELECT " + sql);
  }

  // Codes and the calculator's offers.
  static bool OfNoCompany(std::string_view file) {
    return IsOneOf(file, {"AdvertisementList.rpt", "AreaCodeList.rpt", "BankCode.rpt",
                          "CompanyCategoryList.rpt", "CollectInfoList.rpt", "LoanGroupList.rpt",
                          "LoanTypeList.rpt", "SalesmanList.rpt", "LoanCalcList.rpt"});
  }

  // Whoever sees one company gets its rows alone: those of the two companies are all rows.
  static void ExpectCompaniesApart(ReportJob job, std::size_t all) {
    std::size_t rows = 0;
    for (const char* company : {"'HQ'", "'KL'", "''"}) {
      job.Companies = company;
      rows += RunWholeReport(job).rows.RowCount();
    }
    EXPECT_EQ(rows, all) << "companies";
  }

  // Nothing on the pages is cut, and nothing stands outside of the sheet.
  static void ExpectWhole(const ReportDocument& document) {
    for (const ReportPage& page : document.pages) {
      for (const PageText& text : page.texts) {
        EXPECT_LE(TextWidth(text.text, text.points, text.bold), text.width) << "cut: " << text.text;
        EXPECT_LE(text.y + text.height, document.height_mm) << text.text;
      }
    }
  }

  ReportOffice& office_;
  Connection* over_;
};

using Rows = std::vector<ReportExpectation>;

template <typename Office = ReportOffice>
void ExpectAll(const Rows& rows) {
  Office office;
  ReportCheck check(office);
  for (const ReportExpectation& row : rows) check.Expect(row);
}

// The lists of criteria that all loan listings share, each with a value of L2.
inline const std::string kEveryLoanList =
    "LoanMast.CompCode=HQ|KL; LoanMast.LoanTypeID=MONTH; LoanMast.AdvertiseID=NIL; "
    "LoanMast.LoanGroupID=PINJAMAN SEMASA; CustMast.CompCatCode=FACT; LoanMast.CollateralID=CAR; "
    "LoanMast.LoanType=Secured; LoanMast.UserID=BOB; LoanMast.Bank=CIMB; "
    "CustMast.AreaCode=PERSONAL; LoanMast.SalesmanID=SUE";

}  // namespace kaunter
