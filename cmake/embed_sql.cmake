# The scripts of schema/ and the codes of schema/codes/ as a source file, so that a program carries the tables of a new
# office in itself.
#   cmake -DOUTPUT=schema_text.cpp -DSCRIPTS=a.sql|b.sql -P embed_sql.cmake
if(CMAKE_SCRIPT_MODE_FILE)
  string(REPLACE "|" ";" scripts "${SCRIPTS}")
  set(arrays "")
  set(cases "")
  foreach(script ${scripts})
    get_filename_component(name ${script} NAME_WE)
    file(READ ${script} bytes HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND arrays "constexpr char k_${name}[] = {${bytes}};\n")
    string(APPEND cases "  if (name == \"${name}\") return {k_${name}, sizeof(k_${name})};\n")
  endforeach()
  file(WRITE ${OUTPUT}
    "// Made by cmake/embed_sql.cmake from schema/.\n#include \"core/schema_text.h\"\n\n"
    "#include <stdexcept>\n#include <string>\n\nnamespace kaunter {\nnamespace {\n\n${arrays}\n}  // namespace\n\n"
    "std::string_view SchemaText(std::string_view name) {\n${cases}"
    "  throw std::logic_error(\"no schema script \" + std::string(name));\n}\n\n}  // namespace kaunter\n")
  return()
endif()

# kaunter_embed_sql(TARGET): adds SchemaText (core/schema_text.h) to the target.
function(kaunter_embed_sql target)
  file(GLOB scripts CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/schema/*.sql
    ${CMAKE_SOURCE_DIR}/schema/codes/*.txt)
  string(REPLACE ";" "|" joined "${scripts}")
  set(output ${CMAKE_BINARY_DIR}/generated/schema_text.cpp)
  set(maker ${CMAKE_SOURCE_DIR}/cmake/embed_sql.cmake)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${output} "-DSCRIPTS=${joined}" -P ${maker}
    DEPENDS ${scripts} ${maker} VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()
