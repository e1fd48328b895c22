# Two computers work out the same reports at the same time on one embedded database, each for a company of its own: each
# prints its own rows, and nothing stays behind when both have closed.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
file(GLOB reports ${REPORTS}/*)
file(COPY ${reports} DESTINATION ${OFFICE}/app)
set(make "signin ADMIN zebrawindmill\nsql \"INSERT INTO CompMast (CompCode,CompDesc) VALUES ('AB','Ah Beng')\"\n"
  "sql \"INSERT INTO CustMast (CustID,CompCode,CustName) VALUES ('C1','HQ','Tan Ah Kow')\"\n")
# 60 loans of 1,000 with a payment of 93 each at HQ, 40 with one of 50 at Ah Beng.
foreach(i RANGE 101 200)
  set(company HQ)
  set(paid 93)
  if(i GREATER 160)
    set(company AB)
    set(paid 50)
  endif()
  list(APPEND make "sql \"INSERT INTO LoanMast (LoanID,CustID,CompCode,TrxDate,LoanAmt,LoanAmt2,PayOutAmt,TotLoanInt) VALUES ('${company}-${i}','C1','${company}','2024-01-02',1000,1000,1000,120)"
    "\; INSERT INTO DrawDownMast (SID,LoanID,CustID,TrxDate,CompCode,DrawDownAmt) VALUES ('D${i}','${company}-${i}','C1','2024-01-02','${company}',1000)"
    "\; INSERT INTO PaymentMast (PayID,LoanID,CustID,CompCode,PayDate,PayAmt,InstalAmt,CapPay,IntPay,IntAmt,ChargeAmt,CollectorAmt,TopUpAmt,DiscAmt,NewLoanBal) VALUES ('P${i}','${company}-${i}','C1','${company}','2024-01-30',${paid},${paid},${paid},0,0,0,0,0,0,1000)\"\n")
endforeach()

# What one computer prints, ten times over; its balance is 60 * (1,120 - 93) or 40 * (1,120 - 50).
function(enter computer company row balance loans)
  set(own "pcname='${computer}' AND reportname=")
  set(script "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\n")
  foreach(i RANGE 1 10)
    string(APPEND script "menu StatementofAccRptMnu\nset DateFrom 01-01-2024\nset DateTo 31-01-2024\nopen List1 ${row}\n"
      "expect SelectedLbl \"(Company Code - ${company})\"\nclick SaveCmd\nexpect message \"Process complete, Press OK to continue\"\n"
      "expect report StatementList.rpt\nexpect formula \"{MasterReport.pcname}='${computer}' And {MasterReport.ReportName} = 'StatementList.rpt'\"\n"
      "expect sql \"SELECT SUM(c1) - SUM(c2) FROM MasterReport WHERE ${own}'StatementList.rpt'\" ${balance}\n"
      "expect sql \"SELECT COUNT(*) FROM MasterReport WHERE ${own}'StatementList.rpt' AND s10 NOT LIKE '${company}-%'\" 0\n"
      "sql \"SELECT 'computers at once ' + CAST(COUNT(DISTINCT pcname) AS varchar(9)) FROM MasterReport\"\n"
      "close\nexpect sql \"SELECT COUNT(*) FROM MasterReport WHERE pcname='${computer}'\" 0\n"
      "menu DailyCollRptMnu\nset DateFrom 01-01-2024\nset DateTo 31-01-2024\nopen List1 ${row}\nclick SaveCmd\n"
      "expect report DailyCollection.rpt\n"
      "expect sql \"SELECT COUNT(*) FROM MasterReport WHERE ${own}'DailyCollection.rpt' AND s10='${company}'\" ${loans}\nclose\nexpect no message\n")
  endforeach()
  file(WRITE ${OFFICE}/${computer}.play "${script}")
endfunction()
enter(FRONT HQ 2 61620.00 120)
enter(BACK AB 1 42800.00 80)
set(check "signin ADMIN zebrawindmill\nexpect sql \"SELECT COUNT(*) FROM MasterReport\" 0\n")
write_scripts(make check)
play(make)
set(common --app ${OFFICE}/app ${database} ${now})
# Both run at once. What they print goes to files: as a pipe it would stop one when the other ends.
set(desktop "exec \"$0\" \"$@\" --out '${OFFICE}'/paper-$COMPUTER --computer $COMPUTER '${OFFICE}'/$COMPUTER.play >'${OFFICE}'/$COMPUTER.out 2>&1")
execute_process(
  COMMAND sh -c "COMPUTER=FRONT; ${desktop}" ${PROGRAM} ${common}
  COMMAND sh -c "COMPUTER=BACK; ${desktop}" ${PROGRAM} ${common}
  RESULTS_VARIABLE statuses)
if(NOT statuses STREQUAL "0;0")
  message(FATAL_ERROR "the computers ended with ${statuses}; ${OFFICE}/FRONT.out and BACK.out say why")
endif()
file(STRINGS ${OFFICE}/FRONT.out both REGEX "computers at once 2")
list(LENGTH both both)
message("of 10 statements, ${both} were printed while the rows of the other computer stood there too")
play(check)
