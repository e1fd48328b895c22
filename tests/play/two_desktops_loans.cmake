# Two desktops save 30 loans each for one customer on one embedded database at the same time: no error, no number
# twice, no loan without its schedule, and the customer's totals hold every loan.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
set(make "signin ADMIN zebrawindmill\n"
  "sql \"INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotLoanAmt2,TotTopUpAmt) VALUES ('HQ0001','HQ','Tan Ah Kow','ACTIVE',0,0,0,0)\"\n"
  "sql \"INSERT INTO NumberMast VALUES ('HQ0001','000','000')\"\n"
  "sql \"INSERT INTO SalesmanMast (SalesmanID,TotAccComm) VALUES ('SLM1',0)\"\n")
set(enter "signin ADMIN zebrawindmill\nmenu NewLoanMnu\n")
foreach(i RANGE 1 30)
  string(APPEND enter "set CustID HQ0001\nset LoanType Unsecured\nset TrxDate 31-01-2024\nset DragLoan \"Personal Loan\"\n"
    "set LoanPurpose FLAT\nset LoanAmt 10000\nset InsRate 18\nset LoanTerm 12\nclick Command3\nset SalesmanID SLM1\n"
    "set SalesmanComm 1\nanswer yes\nclick SaveCmd\nclick CmdNew\n")
endforeach()
string(APPEND enter "close\n")
set(check "signin ADMIN zebrawindmill\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast\" 60\n"
  "expect sql \"SELECT MAX(LoanID) FROM LoanMast\" HQ0001-060\n"
  "expect sql \"SELECT LoanNo FROM NumberMast WHERE CustID='HQ0001'\" 061\n"
  "expect sql \"SELECT COUNT(*) FROM NumberMast WHERE CustID LIKE 'HQ0001-%'\" 60\n"
  "expect sql \"SELECT COUNT(*) FROM SchMast\" 720\n"
  "expect sql \"SELECT TotLoan FROM CustMast\" 600000.00\n"
  "expect sql \"SELECT TotLoanBal FROM CustMast\" 708000.00\n"
  "expect sql \"SELECT TotAccComm FROM SalesmanMast WHERE SalesmanID='SLM1'\" 60.00\n")
write_scripts(make enter check)
play(make)
enter_at_once(a b)
play(check)
