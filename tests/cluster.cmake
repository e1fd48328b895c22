# On two PostgreSQL servers that stand in for one another: script/test --engine cluster starts them.
if(TARGET kaunter-play)
  add_test(NAME standby-takes-over
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/play/standby.sh $<TARGET_FILE:kaunter-play> ${CMAKE_BINARY_DIR}/play-cluster/standby)
  set_tests_properties(standby-takes-over PROPERTIES LABELS cluster SKIP_REGULAR_EXPRESSION "no cluster to play on")
endif()
