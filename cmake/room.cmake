# Warnings are errors everywhere; third-party headers are system includes and stay out of it.
add_library(kaunter_flags INTERFACE)
target_include_directories(kaunter_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(kaunter_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion
  $<$<BOOL:${KAUNTER_WERROR}>:-Werror>)
# GCC 12 at -O3 sees overlaps inside std::string that cannot be (its bug 105651).
target_compile_options(kaunter_flags INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
target_compile_definitions(kaunter_flags INTERFACE
  KAUNTER_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
  KAUNTER_VERSION_MINOR=${PROJECT_VERSION_MINOR}
  KAUNTER_VERSION_REVISION=${PROJECT_VERSION_PATCH})
if(WIN32)
  # Windows 10; the system's header without macros of plain words.
  target_compile_definitions(kaunter_flags INTERFACE _WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)
endif()
if(KAUNTER_SANITIZE)
  target_compile_options(kaunter_flags INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
    -fno-sanitize-recover=undefined)
  target_link_options(kaunter_flags INTERFACE -fsanitize=address,undefined)
endif()
if(KAUNTER_FUZZ)
  # Warnings are GCC's here: clang's own do not stop a fuzz target.
  target_compile_options(kaunter_flags INTERFACE -Wno-error -fsanitize=fuzzer-no-link,address,undefined
    -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  target_link_options(kaunter_flags INTERFACE -fsanitize=address,undefined)
endif()

# kaunter_room(NAME [QT] LINK libraries...): a static library kaunter_NAME of all files in src/NAME,
# main.cpp and what belongs to another system (x_windows.cpp, x_posix.cpp) excepted. A room without
# a source file is an interface library.
function(kaunter_room name)
  cmake_parse_arguments(ROOM "QT" "" "LINK" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${name}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  list(FILTER sources EXCLUDE REGEX "/module/")
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
  else()
    list(FILTER sources EXCLUDE REGEX "_windows\\.cpp$")
  endif()
  if(sources)
    add_library(kaunter_${name} STATIC ${sources})
    target_link_libraries(kaunter_${name} PUBLIC kaunter_flags ${ROOM_LINK})
    if(ROOM_QT)
      set_target_properties(kaunter_${name} PROPERTIES AUTOMOC ON)
    endif()
  else()
    add_library(kaunter_${name} INTERFACE)
    target_link_libraries(kaunter_${name} INTERFACE kaunter_flags ${ROOM_LINK})
  endif()
endfunction()

# kaunter_program(NAME MAIN libraries...): a program, left in bin/ of the build folder.
function(kaunter_program name main)
  if(EXISTS ${CMAKE_SOURCE_DIR}/${main})
    add_executable(${name} ${main})
    target_link_libraries(${name} PRIVATE ${ARGN})
    if(WIN32)
      kaunter_windows_program(${name})
    endif()
  endif()
endfunction()

# What Windows reads out of a program file: its manifest, version and icon.
function(kaunter_windows_program name)
  set(folder ${CMAKE_SOURCE_DIR}/packaging/windows)
  set(KAUNTER_MANIFEST ${folder}/program.manifest)
  if(KAUNTER_ICON)
    set(KAUNTER_ICON_LINE "1 ICON \"${KAUNTER_ICON}\"")
  endif()
  configure_file(${folder}/program.rc.in ${CMAKE_BINARY_DIR}/generated/${name}.rc @ONLY)
  target_sources(${name} PRIVATE ${CMAKE_BINARY_DIR}/generated/${name}.rc)
endfunction()
