# Several desktops on one office: what their tests share. OFFICE is the folder, PROGRAM what plays; `database` leads to
# the office, an embedded file where nothing else is said.
file(REMOVE_RECURSE ${OFFICE})
file(MAKE_DIRECTORY ${OFFICE}/app)
set(database --database ${OFFICE}/office.db)
set(now --now "2024-01-31 09:00:00")

# Writes the scripts that stand in the variables of these names.
function(write_scripts)
  foreach(name ${ARGV})
    string(JOIN "" script ${${name}})
    file(WRITE ${OFFICE}/${name}.play "${script}")
  endforeach()
endfunction()

# Plays one script by itself.
function(play name)
  execute_process(COMMAND ${PROGRAM} --app ${OFFICE}/app ${database} ${now} ${OFFICE}/${name}.play
    OUTPUT_FILE ${OFFICE}/${name}.out COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Each of these desktops plays enter.play, all at once. What they print goes to files: as a pipe it would stop one when
# another ends.
function(enter_at_once)
  foreach(desk ${ARGV})
    file(MAKE_DIRECTORY ${OFFICE}/${desk})
    list(APPEND desktops COMMAND sh -c "exec \"$0\" \"$@\" >'${OFFICE}/${desk}.out' 2>&1" ${PROGRAM}
      --app ${OFFICE}/${desk} ${database} ${now} ${OFFICE}/enter.play)
    list(APPEND well 0)
  endforeach()
  execute_process(${desktops} RESULTS_VARIABLE statuses)
  if(NOT statuses STREQUAL well)
    message(FATAL_ERROR "the desktops ended with ${statuses}; the files ${OFFICE}/*.out say why")
  endif()
endfunction()
