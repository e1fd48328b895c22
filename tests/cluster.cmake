# On two PostgreSQL servers that stand in for one another: script/test --engine cluster starts them.
if(TARGET kaunter-play)
  foreach(play "takes-over;kill;kill" "faults;freeze;cut;mute;alone;fill;kill")
    list(POP_FRONT play name)
    add_test(NAME standby-${name}
      COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/play/standby.sh $<TARGET_FILE:kaunter-play> ${CMAKE_BINARY_DIR}/play-cluster/${name} ${play})
    set_tests_properties(standby-${name} PROPERTIES LABELS cluster RUN_SERIAL TRUE TIMEOUT 900
      SKIP_REGULAR_EXPRESSION "no cluster to play on")
  endforeach()
endif()
