// Which engine is behind a connection, and its version as it tells it itself: "3.40.1", "15.0.6".
#pragma once

#include <string>

namespace kaunter {

class Connection;

// Connection::EngineName of the two that an office can begin on.
inline constexpr const char* kEmbeddedEngine = "SQLite";
inline constexpr const char* kPostgresqlEngine = "PostgreSQL";

std::string EngineVersion(const Connection& connection);  // "" where it tells none

}  // namespace kaunter
