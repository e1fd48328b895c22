# Plays the scripts of SCRIPT, one behind the other, with PROGRAM on a new office in the folder OFFICE; the report files of REPORTS lie
# beside the program, as they do in an installed copy.
file(REMOVE_RECURSE ${OFFICE})
file(MAKE_DIRECTORY ${OFFICE}/app)
file(GLOB reports ${REPORTS}/*)
file(COPY ${reports} DESTINATION ${OFFICE}/app)
foreach(script ${SCRIPT})
execute_process(
  COMMAND ${PROGRAM} --app ${OFFICE}/app --database ${OFFICE}/office.db --out ${OFFICE}/paper
    --trace ${OFFICE}/trace.txt --now "2024-01-31 09:00:00" ${script}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${script} ended with status ${status}")
endif()
endforeach()
