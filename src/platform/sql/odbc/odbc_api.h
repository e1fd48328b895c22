// The calls of the ODBC driver manager. On Windows they stand on the system's own header, whose
// macros would break other sources: only those of this folder include it.
#pragma once

#ifdef _WIN32
#define NOGDI
#include <windows.h>
#undef near
#undef far
#undef small
#endif
#include <sql.h>
#include <sqlext.h>
