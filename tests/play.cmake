# Every tests/play/*.play is a test of its own: played on a new office, it must end with status 0.
# A script's papers and database lie in a folder of the build, made anew for each run.
if(TARGET kaunter-play)
  file(GLOB scripts CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/play/*.play)
  foreach(script ${scripts})
    get_filename_component(name ${script} NAME_WE)
    set(office ${CMAKE_BINARY_DIR}/play/${name})
    add_test(NAME play-${name}
      COMMAND ${CMAKE_COMMAND}
        -DPROGRAM=$<TARGET_FILE:kaunter-play>
        "-DSCRIPT=${script}"
        -DOFFICE=${office}
        -DREPORTS=${CMAKE_SOURCE_DIR}/reports
        -P ${CMAKE_CURRENT_SOURCE_DIR}/play/run_script.cmake)
  endforeach()
  # The demo office and the day that is played on it are one test.
  if(TARGET DailyBatch)
    set(office ${CMAKE_BINARY_DIR}/play/demo)
    add_test(NAME play-demo
      COMMAND sh -c "rm -rf '${office}' && exec '${CMAKE_SOURCE_DIR}/script/with-einvoice' script/demo '$<TARGET_FILE_DIR:kaunter-play>' \
        '${office}' make day -- --database '${office}/office.db'")
  endif()
  # Old books move into an office of their own; their files are named from the demo's folder.
  set(moving_in "${CMAKE_SOURCE_DIR}/demo/moving-in.play;${CMAKE_SOURCE_DIR}/demo/conversion.play")
  add_test(NAME play-moving-in
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play> "-DSCRIPT=${moving_in}"
      -DOFFICE=${CMAKE_BINARY_DIR}/play/moving-in -DREPORTS=${CMAKE_SOURCE_DIR}/reports
      -P ${CMAKE_CURRENT_SOURCE_DIR}/play/run_script.cmake
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}/demo)
  # Debian's Python, which has the reader of workbooks that script/setup installs.
  find_program(reader NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
  if(reader)
    add_test(NAME export-read-back
      COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play> -DOFFICE=${CMAKE_BINARY_DIR}/play/read-back
        -DREPORTS=${CMAKE_SOURCE_DIR}/reports -DREADER=${reader}
        -P ${CMAKE_CURRENT_SOURCE_DIR}/play/read_back.cmake)
    set_tests_properties(export-read-back PROPERTIES SKIP_REGULAR_EXPRESSION "no openpyxl")
  endif()
  foreach(what two_desktops two_desktops_loans two_desktops_reports two_desktops_cash four_desktops_payments)
    string(REPLACE "_" "-" name ${what})
    add_test(NAME ${name}
      COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play> -DOFFICE=${CMAKE_BINARY_DIR}/play/${name}
        -DREPORTS=${CMAKE_SOURCE_DIR}/reports -P ${CMAKE_CURRENT_SOURCE_DIR}/play/${what}.cmake)
  endforeach()
  if(TARGET kaunter-office)
    add_test(NAME backup-drill
      COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play> -DTOOL=$<TARGET_FILE:kaunter-office>
        -DOFFICE=${CMAKE_BINARY_DIR}/play/backup-drill -P ${CMAKE_CURRENT_SOURCE_DIR}/play/backup_drill.cmake)
  endif()
  add_test(NAME two-desktops-einvoice
    COMMAND ${CMAKE_SOURCE_DIR}/script/with-einvoice ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play>
      -DOFFICE=${CMAKE_BINARY_DIR}/play/two-desktops-einvoice
      -P ${CMAKE_CURRENT_SOURCE_DIR}/play/two_desktops_einvoice.cmake)
endif()
