add_test(NAME house-rules COMMAND ${CMAKE_SOURCE_DIR}/tests/checks/house-rules)
