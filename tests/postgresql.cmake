# On a PostgreSQL server: the play scripts, several desktops at once, the daily batch, a connection that is cut, and the
# same work on both engines compared row by row. script/test --engine postgresql starts one; without it they are skipped.
if(TARGET kaunter-play)
  get_property(all DIRECTORY PROPERTY TESTS)
  foreach(name ${all})
    # The demo is played on both engines by postgresql-same-rows.
    if(NOT name MATCHES "^play-" OR name STREQUAL "play-demo")
      continue()
    endif()
    string(REGEX REPLACE "^play-" "" script ${name})
    string(REPLACE "-" "_" database ${script})
    set(played ${CMAKE_CURRENT_SOURCE_DIR}/play/${script}.play)
    set(place ${CMAKE_CURRENT_BINARY_DIR})
    if(name STREQUAL "play-moving-in")
      set(played "${moving_in}")
      set(place ${CMAKE_SOURCE_DIR}/demo)
    endif()
    add_test(NAME postgresql-${script}
      WORKING_DIRECTORY ${place}
      COMMAND ${CMAKE_COMMAND}
        -DPROGRAM=$<TARGET_FILE:kaunter-play>
        "-DSCRIPT=${played}"
        -DOFFICE=${CMAKE_BINARY_DIR}/play-postgresql/${script}
        -DNAME=play_${database}
        -DREPORTS=${CMAKE_SOURCE_DIR}/reports
        -P ${CMAKE_CURRENT_SOURCE_DIR}/play/run_script.cmake)
    list(APPEND on_server postgresql-${script})
  endforeach()
  add_test(NAME postgresql-eight-desktops
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play>
      -DOFFICE=${CMAKE_BINARY_DIR}/play-postgresql/eight-desktops -DNAME=eight_desktops
      -P ${CMAKE_CURRENT_SOURCE_DIR}/play/two_desktops.cmake)
  list(APPEND on_server postgresql-eight-desktops)
  add_test(NAME postgresql-four-desktops-payments
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play> -DCOUNT=24
      -DOFFICE=${CMAKE_BINARY_DIR}/play-postgresql/four-desktops-payments -DNAME=four_desktops_payments
      -DREPORTS=${CMAKE_SOURCE_DIR}/reports -P ${CMAKE_CURRENT_SOURCE_DIR}/play/four_desktops_payments.cmake)
  list(APPEND on_server postgresql-four-desktops-payments)
  add_test(NAME postgresql-two-desktops-cash
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play>
      -DOFFICE=${CMAKE_BINARY_DIR}/play-postgresql/two-desktops-cash -DNAME=two_desktops_cash
      -P ${CMAKE_CURRENT_SOURCE_DIR}/play/two_desktops_cash.cmake)
  list(APPEND on_server postgresql-two-desktops-cash)
  add_test(NAME postgresql-two-desktops-einvoice
    COMMAND ${CMAKE_SOURCE_DIR}/script/with-einvoice ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play>
      -DOFFICE=${CMAKE_BINARY_DIR}/play-postgresql/two-desktops-einvoice -DNAME=two_desktops_einvoice
      -P ${CMAKE_CURRENT_SOURCE_DIR}/play/two_desktops_einvoice.cmake)
  list(APPEND on_server postgresql-two-desktops-einvoice)
  if(TARGET kaunter-office)
    add_test(NAME postgresql-backup-drill
      COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:kaunter-play> -DTOOL=$<TARGET_FILE:kaunter-office>
        -DOFFICE=${CMAKE_BINARY_DIR}/play-postgresql/backup-drill -DNAME=backup_drill
        -P ${CMAKE_CURRENT_SOURCE_DIR}/play/backup_drill.cmake)
    list(APPEND on_server postgresql-backup-drill)
  endif()
  if(TARGET test_dailybatch)
    add_test(NAME postgresql-daily-batch COMMAND test_dailybatch --gtest_filter=Postgresql*)
    list(APPEND on_server postgresql-daily-batch)
  endif()
  if(TARGET test_bank)
    add_test(NAME postgresql-bank COMMAND test_bank --gtest_filter=Postgresql*)
    list(APPEND on_server postgresql-bank)
  endif()
  if(TARGET test_collections)
    add_test(NAME postgresql-cut-connection COMMAND test_collections --gtest_filter=PostgresqlCut*)
    list(APPEND on_server postgresql-cut-connection)
  endif()
  if(TARGET test_upkeep)
    add_test(NAME postgresql-upkeep COMMAND test_upkeep --gtest_filter=Postgresql*)
    list(APPEND on_server postgresql-upkeep)
  endif()
  add_test(NAME postgresql-first-start COMMAND test_core --gtest_filter=FirstStartPostgresql*)
  list(APPEND on_server postgresql-first-start)
  add_test(NAME postgresql-same-rows COMMAND test_play --gtest_filter=*Postgresql*)
  list(APPEND on_server postgresql-same-rows)
  set_tests_properties(${on_server} PROPERTIES LABELS "postgresql;only-postgresql"
    SKIP_REGULAR_EXPRESSION "no PostgreSQL server to play on")
endif()
if(TEST platform)
  set_tests_properties(platform PROPERTIES LABELS postgresql)
endif()
