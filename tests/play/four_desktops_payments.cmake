# Four desktops take COUNT payments each at the same time, on one embedded database or on the PostgreSQL database NAME:
# half of them on a loan of their own, a quarter on a personal and a quarter on a flexi loan that all share. Each payment
# is stored once, or refused with a message and taken again; no receipt number and no payment code stands twice, the
# counters are right, and the ledger is what a further rebuild would make of it. A fifth desktop verifies the ledger all
# the while, and is never told of a payment that is on its way.
if(NOT COUNT)
  set(COUNT 40)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
if(NAME)
  include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
  make_database(${NAME})
endif()
math(EXPR all "4 * ${COUNT}")
math(EXPR own "${COUNT} / 2")
set(personal HQ0001-005)
set(flexi HQ0001-006)

set(make "signin ADMIN zebrawindmill\n"
  "sql \"INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotLoanAmt2,TotTopUpAmt) VALUES ('HQ0001','HQ','Tan Ah Kow','ACTIVE',0,0,0,0)\"\n"
  "sql \"INSERT INTO NumberMast VALUES ('HQ0001','000','000')\"\n"
  "menu NewLoanMnu\n")
foreach(scheme "Personal Loan" "Personal Loan" "Personal Loan" "Personal Loan" "Personal Loan" "Flexi Loan")
  list(APPEND make "set CustID HQ0001\nset LoanType Unsecured\nset TrxDate 01-01-2024\nset DragLoan \"${scheme}\"\n"
    "set LoanPurpose FLAT\nset LoanAmt 10000\nset InsRate 18\nset LoanTerm 12\n")
  if(scheme STREQUAL "Flexi Loan")
    list(APPEND make "set LoanTerm3 12\nclick Command3\nset FirstPayment 1\n")
  endif()
  list(APPEND make "click Command3\nanswer yes\nclick SaveCmd\nclick CmdNew\n")
endforeach()
list(APPEND make "close\nsql \"UPDATE LoanMast SET PayOutAmt=LoanAmt\"\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast WHERE LoanBal > 0\" 6\n")

# A payment is 45.01; on the flexi loan 3 of it are extra capital.
function(take payments loan)
  string(APPEND ${payments} "set LoanID ${loan}\nset PayDate 31-01-2024\nset TotPay 45.01\n")
  if(loan STREQUAL flexi)
    string(APPEND ${payments} "set PayExtra 3\n")
  endif()
  string(APPEND ${payments} "answer yes\nclick SaveCmd\nclick CmdClear\n")
  set(${payments} "${${payments}}" PARENT_SCOPE)
endfunction()

# What must hold, whoever saved last.
set(nothing_twice
  "expect sql \"SELECT COUNT(*) FROM PaymentMast\" ${all}\n"
  "expect sql \"SELECT COUNT(DISTINCT PayID) FROM PaymentMast\" ${all}\n"
  "expect sql \"SELECT COUNT(DISTINCT ReceiptNo) FROM PaymentMast\" ${all}\n"
  "expect sql \"SELECT LoanNo FROM NumberMast WHERE CustID='HQ#202401-'\" ${all}\n"
  "expect sql \"SELECT COUNT(*) FROM NumberMast WHERE CustID LIKE 'HQ0001-%' AND CustID < '${personal}' AND LoanNo <> ${own}+1\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM NumberMast WHERE CustID >= '${personal}' AND CustID <= '${flexi}' AND LoanNo <> ${COUNT}+1\" 0\n")
set(identities
  "expect sql \"SELECT COUNT(*) FROM LoanMast AS l WHERE l.TotPay <> (SELECT SUM(p.InstalAmt) FROM PaymentMast AS p WHERE p.LoanID=l.LoanID)\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast AS l WHERE l.PayExtra <> (SELECT SUM(p.PayExtra) FROM PaymentMast AS p WHERE p.LoanID=l.LoanID)\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast AS l WHERE l.TotPay <> (SELECT SUM(s.Payment) FROM SchMast AS s WHERE s.LoanID=l.LoanID)\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM SchMast WHERE Payment <> CapitalPayment+InterestPayment\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM PaymentMast WHERE IntPay+CapPay <> InstalAmt+PayExtra\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast AS l WHERE l.LoanBal <> (SELECT p.NewLoanBal FROM PaymentMast AS p WHERE p.PayID=l.LastPaymentNo)\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast AS l WHERE l.LastPaymentNo <> (SELECT MAX(p.PayID) FROM PaymentMast AS p WHERE p.LoanID=l.LoanID)\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM LoanMast WHERE DragLoan='0' AND LoanBal+TotPay <> 11800\" 0\n"
  "expect sql \"SELECT COUNT(*) FROM CustMast WHERE TotLoanBal <> (SELECT SUM(LoanBal) FROM LoanMast)\" 0\n")
string(JOIN "" nothing_twice ${nothing_twice})
string(JOIN "" identities ${identities})

set(check "signin ADMIN zebrawindmill\n${nothing_twice}${identities}")
# A payment of each shared loan is saved again as it is, which rebuilds the loan: nothing may change.
string(APPEND check "sql \"SELECT LoanID,LoanBal,TotPay FROM LoanMast ORDER BY LoanID\"\n"
  "sql \"SELECT LoanID,SchID,Payment,CapitalPayment,InterestPayment,PayExtra,LoanBal FROM SchMast ORDER BY LoanID,SchID\"\n"
  "sql \"SELECT PayID,IntPay,CapPay,OldLoanBal,NewLoanBal FROM PaymentMast ORDER BY PayID\"\n")
set(rebuild "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\nmenu EditPaymentMnu\n")
foreach(loan ${personal} ${flexi})
  string(APPEND rebuild "set PayID ${loan}-007\nanswer yes\nclick SaveCmd\nexpect message \"Loan ID ${loan}-007 Saved\"\n")
endforeach()
string(APPEND rebuild "close\n")

write_scripts(make check rebuild)
play(make)

# The loan of a desktop's k-th payment.
function(loan_of loan desk k)
  math(EXPR kind "${k} % 4")
  set(${loan} HQ0001-00${desk} PARENT_SCOPE)
  if(kind EQUAL 1)
    set(${loan} ${personal} PARENT_SCOPE)
  elseif(kind EQUAL 3)
    set(${loan} ${flexi} PARENT_SCOPE)
  endif()
endfunction()

# All run at once. What they print goes to files: as a pipe it would stop one when another ends. A payment that is
# refused because the others did not let it through ends its script; it is then taken again, and the rest behind it.
set(left 1 2 3 4)
math(EXPR last "${COUNT} - 1")
foreach(desk ${left})
  set(taken${desk} 0)
endforeach()
set(refusals 0)
foreach(attempt RANGE 1 9)
  set(desktops)
  foreach(desk ${left})
    set(enter "signin ADMIN zebrawindmill\nmenu NewPaymentMnu\n")
    foreach(k RANGE ${taken${desk}} ${last})
      loan_of(loan ${desk} ${k})
      take(enter ${loan})
    endforeach()
    file(MAKE_DIRECTORY ${OFFICE}/${desk})
    file(WRITE ${OFFICE}/enter${desk}.play "${enter}close\n")
    list(APPEND desktops COMMAND sh -c "exec \"$0\" \"$@\" >'${OFFICE}/desk${desk}.out' 2>&1" ${PROGRAM}
      --app ${OFFICE}/${desk} ${database} ${now} ${OFFICE}/enter${desk}.play)
  endforeach()
  if(attempt EQUAL 1)
    string(REPEAT "click VerifyCmd\n" 20 verify)
    file(WRITE ${OFFICE}/verify.play "signin ADMIN zebrawindmill\nmenu ReUpdInt\n${verify}close\n")
    file(MAKE_DIRECTORY ${OFFICE}/verify)
    list(APPEND desktops COMMAND sh -c "exec \"$0\" \"$@\" >'${OFFICE}/verify.out' 2>&1" ${PROGRAM}
      --app ${OFFICE}/verify ${database} ${now} ${OFFICE}/verify.play)
  endif()
  execute_process(${desktops} RESULTS_VARIABLE statuses)
  if(attempt EQUAL 1)
    list(POP_BACK statuses)
    file(STRINGS ${OFFICE}/verify.out held REGEX "6 loans verified, all hold$")
    file(STRINGS ${OFFICE}/verify.out broken REGEX "not hold$")
    if(NOT held OR broken)
      message(FATAL_ERROR "the desktop that verifies was told of what is on its way: ${OFFICE}/verify.out")
    endif()
  endif()
  set(behind)
  foreach(desk status IN ZIP_LISTS left statuses)
    file(STRINGS ${OFFICE}/desk${desk}.out saved REGEX "Payment ID .* Saved$")
    file(STRINGS ${OFFICE}/desk${desk}.out busy REGEX "^1222 - Lock request time out")
    list(LENGTH saved saved)
    math(EXPR taken${desk} "${taken${desk}} + ${saved}")
    if(NOT busy STREQUAL "" AND taken${desk} LESS COUNT)
      list(APPEND behind ${desk})
      math(EXPR refusals "${refusals} + 1")
    elseif(NOT status EQUAL 0)
      message(FATAL_ERROR "desktop ${desk} ended with ${status}; ${OFFICE}/desk${desk}.out says why")
    endif()
  endforeach()
  set(left ${behind})
  if(NOT left)
    break()
  endif()
endforeach()
message("${all} payments, ${refusals} refused and taken again")
play(check)
file(READ ${OFFICE}/check.out before)
file(RENAME ${OFFICE}/check.out ${OFFICE}/before.out)
play(rebuild)
play(check)
file(READ ${OFFICE}/check.out after)
if(NOT before STREQUAL after)
  message(FATAL_ERROR "a rebuild changed what four desktops left; compare ${OFFICE}/before.out with check.out")
endif()
