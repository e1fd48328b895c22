// The version of the engine behind a connection, as it tells it itself: "3.40.1", "15.0.6".
#pragma once

#include <string>

namespace kaunter {

class Connection;

std::string EngineVersion(const Connection& connection);  // "" where it tells none

}  // namespace kaunter
