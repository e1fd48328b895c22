// Whether what is saved now stands on two servers.
#pragma once

#include "platform/sql/connection.h"

namespace kaunter {

// True where the data source names several servers, and the one that leads stores alone.
bool StandbyIsMissing(Connection& connection);

}  // namespace kaunter
