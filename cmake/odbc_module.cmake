# The embedded engine's functions as a loadable extension, for a SQLite driver of unixODBC (LoadExt=).
add_library(kaunter_sqlite MODULE ${CMAKE_SOURCE_DIR}/src/platform/sql/module/kaunter_sqlite_module.cpp)
target_link_libraries(kaunter_sqlite PRIVATE kaunter_platform)
set_target_properties(kaunter_sqlite PROPERTIES
  PREFIX ""
  LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
