# The drill: three desktops post payments; in the middle of it the office is backed up. Then the machine is lost: the
# desktops are killed and the office is gone. It is restored elsewhere, and every receipt that was told as saved before
# the backup began is there, none twice, and the ledger holds. Embedded, or the PostgreSQL database NAME.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
if(NAME)
  include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
  make_database(${NAME})
endif()
set(elsewhere ${OFFICE}/elsewhere)
file(MAKE_DIRECTORY ${elsewhere})

set(make "signin ADMIN zebrawindmill\n"
  "sql \"INSERT INTO CustMast (CustID,CompCode,CustName,CustStatus,TotLoan,TotLoanBal,TotLoanAmt2,TotTopUpAmt) VALUES ('HQ0001','HQ','Tan Ah Kow','ACTIVE',0,0,0,0)\"\n"
  "sql \"INSERT INTO NumberMast VALUES ('HQ0001','000','000')\"\n"
  "menu NewLoanMnu\n")
foreach(loan RANGE 1 3)
  list(APPEND make "set CustID HQ0001\nset LoanType Unsecured\nset TrxDate 01-01-2024\nset DragLoan \"Personal Loan\"\n"
    "set LoanPurpose FLAT\nset LoanAmt 10000\nset InsRate 18\nset LoanTerm 12\nclick Command3\nanswer yes\nclick SaveCmd\nclick CmdNew\n")
endforeach()
list(APPEND make "close\nsql \"UPDATE LoanMast SET PayOutAmt=LoanAmt\"\n")
write_scripts(make)
play(make)

# More payments than a desktop can post before it is killed.
foreach(desk RANGE 1 3)
  string(REPEAT "set LoanID HQ0001-00${desk}\nset PayDate 31-01-2024\nset TotPay 1.01\nanswer yes\nclick SaveCmd\nclick CmdClear\n"
    2000 pay)
  file(WRITE ${OFFICE}/enter${desk}.play "signin ADMIN zebrawindmill\nmenu NewPaymentMnu\n${pay}close\n")
  file(MAKE_DIRECTORY ${OFFICE}/${desk})
endforeach()
string(REPLACE ";" "' '" reach "${database};${now}")
execute_process(COMMAND sh -eu -c "
  desks=
  for desk in 1 2 3; do
    '${PROGRAM}' --app '${OFFICE}/'$desk '${reach}' '${OFFICE}/enter'$desk.play >'${OFFICE}/desk'$desk.out 2>&1 &
    desks=\"$desks $!\"
  done
  saved() { cat '${OFFICE}'/desk?.out | grep -o 'Payment ID [^ ]* Saved' | sort; }
  trap 'kill -9 $desks 2>/dev/null || true' EXIT
  tries=0
  until [ $(saved | wc -l) -ge 20 ]; do
    tries=$((tries + 1)); [ $tries -lt 1200 ] || { echo 'the desktops post nothing'; exit 1; }
    sleep 0.1
  done
  saved >'${OFFICE}/before.txt'
  began=$(date +%s%3N)
  '${TOOL}' --app '${OFFICE}/app' '${reach}' backup --to '${OFFICE}/backups'
  echo $(($(date +%s%3N) - began)) >'${OFFICE}/took.txt'
  saved >'${OFFICE}/after.txt'
  kill -9 $desks
  wait || true
  " RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the backup under load ended with ${status}")
endif()
file(STRINGS ${OFFICE}/before.txt before)
file(STRINGS ${OFFICE}/after.txt after)
list(LENGTH before told)
list(LENGTH after later)
if(NOT later GREATER told)
  message(FATAL_ERROR "no desktop went on while the office was backed up")
endif()

# The machine is lost.
if(NAME)
  foreach(one ${NAME} ${NAME}-Logs)
    execute_process(COMMAND dropdb --force ${one} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
else()
  file(GLOB lost ${OFFICE}/office*.db*)
  file(REMOVE ${lost})
  set(database --database ${elsewhere}/office.db)
endif()
string(TIMESTAMP began "%s")
execute_process(COMMAND ${TOOL} --app ${OFFICE}/app ${database} restore --to ${OFFICE}/backups --lose 0 COMMAND_ERROR_IS_FATAL ANY)
string(TIMESTAMP ended "%s")
math(EXPR restored_in "${ended} - ${began}")
execute_process(COMMAND ${TOOL} --app ${OFFICE}/app ${database} check COMMAND_ERROR_IS_FATAL ANY)

set(look "signin ADMIN zebrawindmill\nsql \"SELECT PayID FROM PaymentMast ORDER BY PayID\"\n"
  "expect sql \"SELECT COUNT(*)-COUNT(DISTINCT ReceiptNo) FROM PaymentMast\" 0\n")
write_scripts(look)
play(look)
file(STRINGS ${OFFICE}/look.out there REGEX "^HQ0001-")
list(LENGTH there restored)
foreach(line ${before})
  string(REGEX REPLACE "Payment ID (.*) Saved" "\\1" id "${line}")
  list(FIND there ${id} place)
  if(place EQUAL -1)
    message(FATAL_ERROR "${id} was told as saved before the backup, and is lost")
  endif()
endforeach()
file(STRINGS ${OFFICE}/took.txt took)
message("${told} receipts when the backup began, ${later} when it was done (${took} ms), ${restored} restored (${restored_in} s)")
