# Texts, dates and figures that a spreadsheet likes to spoil are exported and printed; READER reads the files back.
include(${CMAKE_CURRENT_LIST_DIR}/desktops.cmake)
file(GLOB reports ${REPORTS}/*)
file(COPY ${reports} DESTINATION ${OFFICE}/app)
file(MAKE_DIRECTORY ${OFFICE}/files)
file(READ ${CMAKE_CURRENT_LIST_DIR}/read_back.txt script)
string(REPLACE "FOLDER" "${OFFICE}/files" script "${script}")
file(WRITE ${OFFICE}/read_back.play "${script}")
execute_process(
  COMMAND ${PROGRAM} --app ${OFFICE}/app ${database} ${now} --out ${OFFICE}/paper ${OFFICE}/read_back.play
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${READER} ${CMAKE_CURRENT_LIST_DIR}/read_back.py ${OFFICE} COMMAND_ERROR_IS_FATAL ANY)
