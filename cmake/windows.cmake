# The 64-bit Windows programs, made on Debian by mingw-w64. The libraries lie in KAUNTER_WINDOWS_ROOT,
# where packaging/windows/libraries has built them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KAUNTER_WINDOWS_ROOT)
if(NOT KAUNTER_WINDOWS_ROOT)
  message(FATAL_ERROR "KAUNTER_WINDOWS_ROOT names the folder of the libraries")
endif()
# The POSIX thread model: std::thread and std::mutex come with it.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH ${KAUNTER_WINDOWS_ROOT} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Host tools of Qt (moc, rcc) are the installed ones, of the same version.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
