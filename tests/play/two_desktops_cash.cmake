# Two desktops enter 20 movements each for one company at the same time, on one embedded database or the PostgreSQL
# database NAME: the balances hold them all, each row has a pair of its own, and a
# recalculation leaves the company's balances as they are.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
if(NAME)
  include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
  make_database(${NAME})
endif()
set(make "signin ADMIN zebrawindmill\n"
  "sql \"INSERT INTO CompMast (CompCode,CashInHand,CashInBank) VALUES ('AB',0,0)\"\n"
  "sql \"INSERT INTO CashBookCat (CatCode,CatDesc) VALUES ('X','x')\"\n")
set(enter "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\nmenu CashBookMnu\nset CompCode AB\n")
foreach(i RANGE 1 20)
  string(APPEND enter "set TranType \"Cash to Bank\"\nset TranAmt ${i}.05\nset TranDesc \"Movement ${i}\"\nset CBCat X\n"
    "answer yes\nclick SaveCmd\nexpect message \"Cash Book Transaction saved\"\n")
endforeach()
string(APPEND enter "close\n")
set(check "signin ADMIN zebrawindmill\n"
  "expect sql \"SELECT COUNT(*) FROM CashBook\" 40\n"
  "expect sql \"SELECT COUNT(*) FROM (SELECT DISTINCT CashBal,BankBal FROM CashBook WHERE CashBal=-BankBal) AS p\" 40\n"
  "menu RecalCB\nset CompCode AB\nclick CheckCmd\nanswer yes\nclick RecalcCmd\nclose\n"
  "expect sql \"SELECT CashInHand FROM CompMast WHERE CompCode='AB'\" -422.00\n"
  "expect sql \"SELECT CashInBank FROM CompMast WHERE CompCode='AB'\" 422.00\n")
write_scripts(make enter check)
play(make)
enter_at_once(a b)
play(check)
