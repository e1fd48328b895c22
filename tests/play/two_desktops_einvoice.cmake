# Two desktops submit the same 200 documents at the same time, on one embedded database or the PostgreSQL database NAME;
# before that a desktop is killed again and again in the midst of them. The stand-in of the service (script/with-einvoice)
# has taken each document once; what it answered is recorded, or the document's mark says that it is not known.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
if(NAME)
  include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
  make_database(${NAME})
endif()
set(service $ENV{KAUNTER_EINVOICE})
# Enough that the killed ones leave work for both, however late one of the two begins.
set(documents 200)

set(columns "''2024-01-05'' AS TrxDate,''C1'' AS CustID,''Tan'' AS CustName,''HQ'' AS CompCode,'''' AS LoanID,'''' AS SchID")
string(APPEND columns ",''Interest'' AS InvType,''06'' AS TaxType,''Interest'' AS InvDesc,10 AS InvAmt,1 AS Qty,''IG1'' AS tin")
string(APPEND columns ",''1'' AS CustTypeID,''NRIC'' AS CustType,''+60'' AS Phone,'''' AS Email,''A'' AS Address")
string(APPEND columns ",''43000'' AS Postcode,''K'' AS City,''10'' AS State,''MYS'' AS Country")
set(make "signin ADMIN zebrawindmill\nsql \"CREATE TABLE Docs (eInvID nvarchar(50))\"\n")
foreach(i RANGE 1 ${documents})
  string(APPEND make "sql \"INSERT INTO Docs VALUES ('D${i}')\"\n")
endforeach()
string(APPEND make
  "sql \"INSERT INTO DataExport (SID,SQLStatement) VALUES ('VKT-Individual','SELECT eInvID,1 AS SeqNo,${columns} FROM Docs')\"\n"
  "sql \"INSERT INTO ECustMast (CustID,TIN) VALUES ('HQ','C1')\"\n"
  "sql \"UPDATE CompMast SET ClientID='hq',ClientSecret='secret' WHERE CompCode='HQ'\"\n"
  "sql \"INSERT INTO Systemast (Param,Value) VALUES ('GetTokenInv','${service}/token'),('GetEInvAPIInv','${service}/invoice')\"\n")
# Of the documents that are not sent: what is not known is never ticked.
set(enter "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\nmenu EInvMenu\nset DateFrom 01-01-2024\n"
  "set DateTo 31-01-2024\nanswer yes\nclick SaveCmd\nset StateFilter #1\nset C3 1\nanswer yes\nclick CmdPrint\n"
  "expect message \"Submission completed\"\nclose\n")
write_scripts(make enter)
play(make)

set(slow [[{"faults":[{"path":"/invoice","times":0,"kind":"slow","seconds":0.03}]}]])
execute_process(COMMAND curl -sf -X PUT -d ${slow} ${service}/stand-in/plan OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
foreach(time 0.15 0.2 0.25 0.3 0.35 0.4 0.18 0.23 0.55 0.65)
  execute_process(COMMAND timeout -s KILL ${time} ${PROGRAM} --app ${OFFICE}/app ${database} ${now} ${OFFICE}/enter.play
    OUTPUT_QUIET ERROR_QUIET)
endforeach()
enter_at_once(a b)

execute_process(COMMAND curl -sf ${service}/stand-in/lines OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\t/invoice\t[^\n]*" sent "${lines}")
set(known "FROM EInvSending AS s LEFT JOIN EInvMast AS m ON m.eInvID=s.eInvID WHERE")
set(check "signin ADMIN zebrawindmill\nexpect message \"User ID ADMIN Sign in\"\n")
set(seen)
foreach(line ${sent})
  string(REGEX REPLACE "^\t/invoice\t[^\t]*\t([^\t]*)\t[^\t]*\t([^\t]*)\t.*$" "\\1;\\2" parts "${line}")
  list(GET parts 0 id)
  list(GET parts 1 uuid)
  list(FIND seen ${id} before)
  if(NOT before EQUAL -1)
    message(SEND_ERROR "${id} went out twice")
  endif()
  list(APPEND seen ${id})
  string(APPEND check "expect sql \"SELECT COUNT(*) ${known} s.eInvID='${id}' AND (s.State='sending' OR s.State='recorded' AND "
    "m.uuid='${uuid}')\" 1\n")
endforeach()
# Whoever was killed before the request left may leave a mark without a request; nothing else is missing.
list(LENGTH seen count)
string(APPEND check
  "expect sql \"SELECT COUNT(*) FROM EInvSending\" ${documents}\n"
  "expect sql \"SELECT COUNT(*) FROM EInvSending WHERE State NOT IN ('sending','recorded')\" 0\n"
  "expect sql \"SELECT COUNT(*) ${known} s.State='recorded' AND m.uuid IS NULL\" 0\n"
  "sql \"SELECT State,COUNT(*) FROM EInvSending GROUP BY State\"\n")
write_scripts(check)
play(check)
math(EXPR least "${documents} - 10")
if(count LESS least)
  message(SEND_ERROR "only ${count} documents reached the service")
endif()
