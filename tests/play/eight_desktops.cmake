# Eight desktops save 50 customers each on one PostgreSQL server at the same time: no error, no number twice, nothing
# lost.
include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
file(REMOVE_RECURSE ${OFFICE})
file(MAKE_DIRECTORY ${OFFICE}/app)
make_database(${NAME})
list(APPEND database --now "2024-01-31 09:00:00")
set(make "signin ADMIN zebrawindmill\n")
set(enter "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\nmenu NewCustMnu\n")
foreach(i RANGE 1 50)
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
# Each desktop's fifty are there, and under each name eight.
string(APPEND check "expect sql \"SELECT COUNT(*) FROM (SELECT CustName FROM CustMast GROUP BY CustName HAVING COUNT(*)=8) AS n\" 50\n")
string(JOIN "" check ${check})
foreach(name make enter check)
  file(WRITE ${OFFICE}/${name}.play "${${name}}")
endforeach()
execute_process(COMMAND ${PROGRAM} --app ${OFFICE}/app ${database} ${OFFICE}/make.play
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
# All run at once. What they print goes to files: as a pipe it would stop one when another ends.
set(desktops)
foreach(i RANGE 1 8)
  file(MAKE_DIRECTORY ${OFFICE}/${i})
  list(APPEND desktops COMMAND sh -c "exec \"$0\" \"$@\" >'${OFFICE}/${i}.out' 2>&1" ${PROGRAM} --app ${OFFICE}/${i}
    ${database} ${OFFICE}/enter.play)
endforeach()
execute_process(${desktops} RESULTS_VARIABLE statuses)
if(NOT statuses STREQUAL "0;0;0;0;0;0;0;0")
  message(FATAL_ERROR "the desktops ended with ${statuses}; the files ${OFFICE}/*.out say why")
endif()
execute_process(COMMAND ${PROGRAM} --app ${OFFICE}/app ${database} ${OFFICE}/check.play COMMAND_ERROR_IS_FATAL ANY)
