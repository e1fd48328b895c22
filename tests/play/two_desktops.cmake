# Two desktops save 200 customers each on one embedded database at the same time: no error, no number twice,
# nothing lost.
file(REMOVE_RECURSE ${OFFICE})
file(MAKE_DIRECTORY ${OFFICE}/a ${OFFICE}/b)
set(make "signin ADMIN zebrawindmill\n")
set(enter "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\nmenu NewCustMnu\n")
foreach(i RANGE 1 200)
  string(APPEND enter "set CompCode HQ\nset CustName \"Person ${i}\"\nset CustRace CINA\nset CustGender MALE\n"
    "set AreaCode PERSONAL\nset CustAdd1 Here\nset CustCompPos Clerk\nset CustHP1 012-3456789\nset CustCompIncome 100\nanswer yes\nclick SaveCmd\nclick CmdClear\n")
endforeach()
string(APPEND enter "close\n")
set(check "signin ADMIN zebrawindmill\n"
  "expect sql \"SELECT COUNT(*) FROM CustMast\" 400\n"
  "expect sql \"SELECT COUNT(DISTINCT CustID) FROM CustMast\" 400\n"
  "expect sql \"SELECT MAX(CustID) FROM CustMast\" HQ0400\n"
  "expect sql \"SELECT LoanNo FROM NumberMast WHERE CustID='HQ'\" 0400\n"
  "expect sql \"SELECT COUNT(*) FROM NumberMast WHERE CustID LIKE 'HQ0%'\" 400\n")
string(JOIN "" check ${check})
foreach(name make enter check)
  file(WRITE ${OFFICE}/${name}.play "${${name}}")
endforeach()
set(database --database ${OFFICE}/office.db --now "2024-01-31 09:00:00")
execute_process(COMMAND ${PROGRAM} --app ${OFFICE}/a ${database} ${OFFICE}/make.play
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
# Both run at once. What they print goes to files: as a pipe it would stop one when the other ends.
set(desktop "exec '${PROGRAM}' --database '${OFFICE}/office.db' --now '2024-01-31 09:00:00'")
execute_process(
  COMMAND sh -c "${desktop} --app '${OFFICE}/a' '${OFFICE}/enter.play' >'${OFFICE}/a.out' 2>&1"
  COMMAND sh -c "${desktop} --app '${OFFICE}/b' '${OFFICE}/enter.play' >'${OFFICE}/b.out' 2>&1"
  RESULTS_VARIABLE statuses)
if(NOT statuses STREQUAL "0;0")
  message(FATAL_ERROR "the desktops ended with ${statuses}; ${OFFICE}/a.out and b.out say why")
endif()
execute_process(COMMAND ${PROGRAM} --app ${OFFICE}/a ${database} ${OFFICE}/check.play
  COMMAND_ERROR_IS_FATAL ANY)
