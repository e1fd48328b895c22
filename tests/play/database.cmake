# make_database(NAME): an empty office on the PostgreSQL server that script/with-postgresql has started, with the
# database of its audit records beside it. Sets `database` to the options that lead kaunter-play there.
function(make_database name)
  if(NOT DEFINED ENV{KAUNTER_POSTGRESQL})
    message(FATAL_ERROR "no PostgreSQL server to play on: script/test --engine postgresql starts one")
  endif()
  foreach(one ${name} ${name}-Logs)
    execute_process(COMMAND dropdb --if-exists --force ${one} ERROR_QUIET)
    execute_process(COMMAND createdb -T template0 -E UTF8 ${one} COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
  file(WRITE ${OFFICE}/settings.ini
    "ConnDataSource = Office\nShortDate = dd-MM-yyyy\n[Office]\nodbc = $ENV{KAUNTER_POSTGRESQL};Database=${name}\ncreate = yes\n")
  set(database --settings ${OFFICE}/settings.ini PARENT_SCOPE)
endfunction()
