# Plays the scripts of SCRIPT, one behind the other, with PROGRAM on a new office in the folder OFFICE; the report files of REPORTS lie
# beside the program, as they do in an installed copy. NAME is the database on the PostgreSQL server of
# script/with-postgresql; without one the office is an embedded file.
if(NOT SCRIPT)
  message(FATAL_ERROR "no script to play")
endif()
file(REMOVE_RECURSE ${OFFICE})
file(MAKE_DIRECTORY ${OFFICE}/app)
file(GLOB reports ${REPORTS}/*)
file(COPY ${reports} DESTINATION ${OFFICE}/app)
set(ENV{XDG_DATA_HOME} ${OFFICE}/data)  # not that of whoever runs this
set(database --database ${OFFICE}/office.db)
if(NAME)
  include(${CMAKE_CURRENT_LIST_DIR}/database.cmake)
  make_database(${NAME})
endif()
foreach(script ${SCRIPT})
execute_process(
  COMMAND ${PROGRAM} --app ${OFFICE}/app ${database} --out ${OFFICE}/paper
    --trace ${OFFICE}/trace.txt --now "2024-01-31 09:00:00" ${script}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${script} ended with status ${status}")
endif()
endforeach()
