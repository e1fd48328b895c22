# Two desktops save 200 customers each on one embedded database at the same time, or eight save 50 each on the PostgreSQL
# database NAME: no error, no number twice, nothing lost.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
set(desks a b)
set(each 200)
if(NAME)
  include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
  make_database(${NAME})
  set(desks a b c d e f g h)
  set(each 50)
endif()
list(LENGTH desks desk_count)
set(make "signin ADMIN zebrawindmill\n")
set(enter "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\nmenu NewCustMnu\n")
foreach(i RANGE 1 ${each})
  string(APPEND enter "set CompCode HQ\nset CustName \"Person ${i}\"\nset CustRace CINA\nset CustGender MALE\n"
    "set AreaCode PERSONAL\nset CustAdd1 Here\nset CustCompPos Clerk\nset CustHP1 012-3456789\nset CustCompIncome 100\nanswer yes\nclick SaveCmd\nclick CmdClear\n")
endforeach()
string(APPEND enter "close\n")
set(check "signin ADMIN zebrawindmill\n"
  "expect sql \"SELECT COUNT(*) FROM CustMast\" 400\n"
  "expect sql \"SELECT COUNT(DISTINCT CustID) FROM CustMast\" 400\n"
  "expect sql \"SELECT MAX(CustID) FROM CustMast\" HQ0400\n"
  "expect sql \"SELECT LoanNo FROM NumberMast WHERE CustID='HQ'\" 0400\n"
  "expect sql \"SELECT COUNT(*) FROM NumberMast WHERE CustID LIKE 'HQ0%'\" 400\n"
  # Each desktop's own are there: under each name as many as there are desktops.
  "expect sql \"SELECT COUNT(*) FROM (SELECT CustName FROM CustMast GROUP BY CustName HAVING COUNT(*)=${desk_count}) AS n\" ${each}\n")
write_scripts(make enter check)
play(make)
enter_at_once(${desks})
play(check)
